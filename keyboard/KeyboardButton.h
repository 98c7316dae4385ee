#pragma once

#include "Platform/View/UIImageView.h"
#include "Platform/View/UILabel.h"
#include "Platform/View/UIView.h"
#include "keyboard/KeyboardStyles.h"

#include <memory>
#include <optional>
#include <string>

namespace korvane {

class KeyMenu;
class KeyPop;

/// By these tags the views are found again that a key has put beside itself.
inline constexpr int KeyboardButtonPopupViewTag = 9101;
inline constexpr int KeyboardButtonMenuViewTag = 9102;

/// What a key is: it types its string, it shows a text, or it shows an image.
class KeyboardButtonType {
public:
    enum class Kind { Key, Text, Image };

    [[nodiscard]] static KeyboardButtonType Key(std::string string) {
        return {Kind::Key, std::move(string), nullptr};
    }
    [[nodiscard]] static KeyboardButtonType Text(std::string string) {
        return {Kind::Text, std::move(string), nullptr};
    }
    /// Null for an image that is missing.
    [[nodiscard]] static KeyboardButtonType Image(UIImagePtr image) {
        return {Kind::Image, {}, std::move(image)};
    }

    [[nodiscard]] Kind kind() const noexcept { return kind_; }
    /// Empty for an image.
    [[nodiscard]] const std::string& string() const noexcept { return string_; }
    [[nodiscard]] const UIImagePtr& image() const noexcept { return image_; }

private:
    KeyboardButtonType(Kind kind, std::string string, UIImagePtr image)
        : kind_(kind), string_(std::move(string)), image_(std::move(image)) {}

    Kind kind_;
    std::string string_;
    UIImagePtr image_;
};

/// How wide a key is: so many points, a share of what its row has for keys, or as wide as
/// what is left allows.
class KeyboardButtonWidth {
public:
    enum class Kind { Static, Relative, Dynamic };

    [[nodiscard]] static constexpr KeyboardButtonWidth Static(double width) { return {Kind::Static, width}; }
    /// @param percent  from 0 to 1.
    [[nodiscard]] static constexpr KeyboardButtonWidth Relative(double percent) {
        return {Kind::Relative, percent};
    }
    [[nodiscard]] static constexpr KeyboardButtonWidth Dynamic() { return {Kind::Dynamic, 0}; }

    [[nodiscard]] constexpr Kind kind() const noexcept { return kind_; }
    /// Points of a static width, the share of a relative one.
    [[nodiscard]] constexpr double value() const noexcept { return value_; }

private:
    constexpr KeyboardButtonWidth(Kind kind, double value) : kind_(kind), value_(value) {}

    Kind kind_;
    double value_;
};

/// One key. Main queue only. It takes no touches itself: they belong to its layout.
class KeyboardButton : public UIView {
public:
    explicit KeyboardButton(KeyboardButtonType type, std::optional<KeyboardButtonStyle> style = std::nullopt,
                            KeyboardButtonWidth width = KeyboardButtonWidth::Dynamic(),
                            std::shared_ptr<KeyMenu> menu = nullptr,
                            std::optional<std::string> identifier = std::nullopt);

    /// A new key of the same arguments.
    [[nodiscard]] std::shared_ptr<KeyboardButton> copy() const;

    [[nodiscard]] const KeyboardButtonType& type() const noexcept { return type_; }
    [[nodiscard]] const KeyboardButtonWidth& widthInRow() const noexcept { return widthInRow_; }
    [[nodiscard]] const std::optional<KeyboardButtonStyle>& style() const noexcept { return style_; }
    /// Null for none, here and below.
    [[nodiscard]] const std::shared_ptr<KeyMenu>& keyMenu() const noexcept { return keyMenu_; }
    [[nodiscard]] const std::shared_ptr<UILabel>& textLabel() const noexcept { return textLabel_; }
    [[nodiscard]] const std::shared_ptr<UIImageView>& imageView() const noexcept { return imageView_; }
    [[nodiscard]] const std::optional<std::string>& identifier() const noexcept { return identifier_; }

    /// How far inside the bounds touches count; negative ones reach into the gaps around the key.
    [[nodiscard]] const UIEdgeInsets& hitRangeInsets() const noexcept { return hitRangeInsets_; }
    void setHitRangeInsets(const UIEdgeInsets& insets) { hitRangeInsets_ = insets; }
    [[nodiscard]] bool pointInside(CGPoint point) const override {
        return CGRectContainsPoint(UIEdgeInsetsInsetRect(bounds(), hitRangeInsets_), point);
    }

    [[nodiscard]] bool canBecomeFocused() const override { return true; }

    /// A shift key is selected while capitals come.
    [[nodiscard]] UIAccessibilityState accessibilityState() const override;

    /// Makes the content anew from type and style.
    void reload();
    void layoutSubviews() override;

    /// Shows what the key shows while it is pressed, once, or removes it. A key whose style has no
    /// pop-up shows nothing.
    void showKeyPop(bool show);
    /// Opens the key's menu above it, or removes it. A key without a menu shows nothing.
    void showKeyMenu(bool show);

protected:
    [[nodiscard]] UIAccessibilityRole defaultAccessibilityRole() const override {
        return UIAccessibilityRole::button;
    }
    /// The caption, or what the key does if that says little.
    [[nodiscard]] std::string defaultAccessibilityLabel() const override;

private:
    [[nodiscard]] std::shared_ptr<KeyPop> createKeyPop(KeyPopType type);
    [[nodiscard]] std::shared_ptr<KeyMenu> createKeyMenu(const std::shared_ptr<KeyMenu>& menu);
    [[nodiscard]] std::shared_ptr<UIView> popUpHolder() const;
    [[nodiscard]] std::shared_ptr<KeyPop> shownKeyPop() const;

    KeyboardButtonType type_;
    KeyboardButtonWidth widthInRow_;
    std::optional<KeyboardButtonStyle> style_;
    std::shared_ptr<KeyMenu> keyMenu_;
    std::shared_ptr<UILabel> textLabel_;
    std::shared_ptr<UIImageView> imageView_;
    std::optional<std::string> identifier_;
    UIEdgeInsets hitRangeInsets_;
};

/// The caption of a key or its image, as a new view.
[[nodiscard]] std::shared_ptr<UILabel> makeKeyLabel(const KeyboardButton& of);
[[nodiscard]] std::shared_ptr<UIImageView> makeKeyImageView(const KeyboardButton& of);
/// Where a key's content lies within a rectangle: a caption fills it, an image has its style's size.
[[nodiscard]] CGRect keyContentFrame(const KeyboardButton& of, const CGRect& within);

} // namespace korvane
