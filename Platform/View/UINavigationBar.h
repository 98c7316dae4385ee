#pragma once

#include "Platform/Export.h"
#include "Platform/View/UIControl.h"
#include "Platform/View/UILabel.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvane {

class UINavigationItem;

/// The place at the end of a bar: a view of its user's making. Main queue only.
class UIBarButtonItem final : public NSObject {
public:
    explicit UIBarButtonItem(std::shared_ptr<UIView> customView) : customView_(std::move(customView)) {}

    [[nodiscard]] const std::shared_ptr<UIView>& customView() const noexcept { return customView_; }

private:
    std::shared_ptr<UIView> customView_;
};

/// What a bar shows for one screen. Main queue only.
class KORVANE_EXPORT UINavigationItem final : public NSObject {
public:
    explicit UINavigationItem(std::string title = {}) : title_(std::move(title)) {}

    [[nodiscard]] const std::string& title() const noexcept { return title_; }
    void setTitle(std::string title);
    [[nodiscard]] const std::shared_ptr<UIBarButtonItem>& rightBarButtonItem() const noexcept {
        return right_;
    }
    void setRightBarButtonItem(std::shared_ptr<UIBarButtonItem> item);

private:
    friend class UINavigationBar;

    void changed();

    std::string title_;
    std::shared_ptr<UIBarButtonItem> right_;
    std::function<void()> onChange_; // set by the bar that shows the item
};

/// Font and colour of a title; what is absent stays as it is.
struct UITitleTextAttributes {
    std::optional<UIFont> font;
    std::optional<UIColor> foregroundColor;
    friend bool operator==(const UITitleTextAttributes&, const UITitleTextAttributes&) = default;
};

/// A bar with a title in the middle and a view at its end. Main queue only.
class KORVANE_EXPORT UINavigationBar : public UIView {
public:
    /// The platform's height of a bar, in points.
    static constexpr double kHeight = 44;

    UINavigationBar();
    ~UINavigationBar() override;

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::navigationBar; }

    [[nodiscard]] const std::vector<std::shared_ptr<UINavigationItem>>& items() const noexcept {
        return items_;
    }
    /// The last item is the one that is shown.
    void setItems(std::vector<std::shared_ptr<UINavigationItem>> items);
    /// Null without items.
    [[nodiscard]] std::shared_ptr<UINavigationItem> topItem() const;

    void setTitleTextAttributes(const UITitleTextAttributes& attributes);
    [[nodiscard]] const std::optional<UIColor>& barTintColor() const noexcept { return barTintColor_; }
    void setBarTintColor(std::optional<UIColor> color) {
        assign(barTintColor_, std::move(color), UIViewChange::paint);
    }
    [[nodiscard]] bool isTranslucent() const noexcept { return isTranslucent_; }
    void setTranslucent(bool isTranslucent) { assign(isTranslucent_, isTranslucent, UIViewChange::paint); }

    [[nodiscard]] const std::shared_ptr<UILabel>& titleLabel() const noexcept { return titleLabel_; }

    [[nodiscard]] std::shared_ptr<UIView> hitTest(CGPoint point) override;
    void layoutSubviews() override;
    [[nodiscard]] CGSize sizeThatFits(CGSize size) const override { return {size.width, kHeight}; }

private:
    void showTopItem();
    void showAtEnd(const std::shared_ptr<UIView>& view);

    std::vector<std::shared_ptr<UINavigationItem>> items_;
    std::shared_ptr<UILabel> titleLabel_;
    std::shared_ptr<UIView> rightView_;
    UITitleTextAttributes attributes_;
    std::optional<UIColor> barTintColor_;
    bool isTranslucent_ = true;
};

} // namespace korvane
