#pragma once

#include "Platform/View/UIControl.h"
#include "Platform/View/UIImageView.h"
#include "Platform/View/UILabel.h"

#include <array>
#include <optional>

namespace korvane {

enum class UIControlContentHorizontalAlignment { center, left, right, fill };

/// A control with a title and an image, image first. Main queue only.
///
/// Where it is read from the right to the left, it lies as in a mirror: left is then right.
/// Title, colour and image that a state has none of are those of the normal state.
class UIButton : public UIControl {
public:
    UIButton();

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::button; }

    [[nodiscard]] const std::string& title(ControlState forState) const;
    void setTitle(std::string title, ControlState forState);
    [[nodiscard]] UIColor titleColor(ControlState forState) const;
    void setTitleColor(std::optional<UIColor> color, ControlState forState);
    [[nodiscard]] UIImagePtr image(ControlState forState) const;
    void setImage(UIImagePtr image, ControlState forState);
    [[nodiscard]] const std::string& currentTitle() const { return title(state()); }
    [[nodiscard]] UIImagePtr currentImage() const { return image(state()); }

    /// Shows the present state's title; its text and colour are the button's to set.
    [[nodiscard]] const std::shared_ptr<UILabel>& titleLabel() const noexcept { return titleLabel_; }
    /// Shows the present state's image; null until the button has had one.
    [[nodiscard]] const std::shared_ptr<UIImageView>& imageView() const noexcept { return imageView_; }

    /// Room around both, and shifts of each, as they push the title or the image aside.
    [[nodiscard]] const UIEdgeInsets& contentEdgeInsets() const noexcept { return contentEdgeInsets_; }
    void setContentEdgeInsets(const UIEdgeInsets& insets);
    [[nodiscard]] const UIEdgeInsets& titleEdgeInsets() const noexcept { return titleEdgeInsets_; }
    void setTitleEdgeInsets(const UIEdgeInsets& insets);
    [[nodiscard]] const UIEdgeInsets& imageEdgeInsets() const noexcept { return imageEdgeInsets_; }
    void setImageEdgeInsets(const UIEdgeInsets& insets);
    [[nodiscard]] UIControlContentHorizontalAlignment contentHorizontalAlignment() const noexcept {
        return alignment_;
    }
    void setContentHorizontalAlignment(UIControlContentHorizontalAlignment alignment);

    /// What lies between ground and title while the button is pressed; no value for nothing.
    [[nodiscard]] virtual std::optional<UIColor> pressedTint() const;

    void layoutSubviews() override;
    [[nodiscard]] CGSize sizeThatFits(CGSize size) const override;

protected:
    /// How wide a title can be in a button of a width, without what lies around and beside it.
    [[nodiscard]] double titleRoom(double width) const;
    void stateDidChange() override;
    void subviewContentDidChange() override { invalidateIntrinsicContentSize(); }
    [[nodiscard]] UIAccessibilityRole defaultAccessibilityRole() const override {
        return UIAccessibilityRole::button;
    }
    [[nodiscard]] std::string defaultAccessibilityLabel() const override { return currentTitle(); }

private:
    struct Look {
        std::string title;
        std::optional<UIColor> titleColor;
        UIImagePtr image;
    };

    [[nodiscard]] const Look& look(ControlState state) const {
        return looks_[static_cast<std::size_t>(state)];
    }
    template <class Value>
    void setLook(Value Look::*part, Value value, ControlState state);
    void setInsets(UIEdgeInsets& insets, const UIEdgeInsets& value);
    [[nodiscard]] CGSize imageSize() const;
    [[nodiscard]] double shift(const UIEdgeInsets& insets) const;

    std::array<Look, kControlStates> looks_;
    std::shared_ptr<UILabel> titleLabel_;
    std::shared_ptr<UIImageView> imageView_;
    UIEdgeInsets contentEdgeInsets_;
    UIEdgeInsets titleEdgeInsets_;
    UIEdgeInsets imageEdgeInsets_;
    UIControlContentHorizontalAlignment alignment_ = UIControlContentHorizontalAlignment::center;
};

} // namespace korvane
