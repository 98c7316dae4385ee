#pragma once

#include "Platform/View/UIView.h"
#include "keyboard/KeyMenuItem.h"

#include <memory>
#include <optional>
#include <vector>

namespace korvane {

enum class KeyMenuType { Horizontal, Vertical };

/// The look of a menu. Lengths are in points.
struct KeyMenuStyle {
    std::optional<Shadow> shadow = std::nullopt;
    UIColor backgroundColor = UIColor::white();
    CGSize itemSize{40, 40};
    double horizontalMenuItemPadding = 5;
    double horizontalMenuLeftPadding = 5;
    double horizontalMenuRightPadding = 5;
};

/// The alternatives that open on a key that is held down. Main queue only. It takes no touches: the keyboard
/// tells it where the finger is.
class KeyMenu : public UIView {
public:
    /// Marks the items' titles.
    static constexpr int titleLabelTag = 9103;

    KeyMenu(std::vector<std::shared_ptr<KeyMenuItem>> items, KeyMenuStyle style, KeyMenuType type);

    [[nodiscard]] const std::vector<std::shared_ptr<KeyMenuItem>>& items() const noexcept { return items_; }
    [[nodiscard]] const KeyMenuStyle& style() const noexcept { return style_; }
    [[nodiscard]] KeyMenuType type() const noexcept { return type_; }
    /// -1 while the finger is on no item.
    [[nodiscard]] int selectedIndex() const noexcept { return selectedIndex_; }

    /// Highlights the item under a place, and only that one.
    /// @param inView  whose coordinates the place is in; of the same tree.
    void updateSelection(CGPoint touchLocation, const UIView& inView);

    /// Places the items and takes the size that they need; nothing is selected then. Side by side, a
    /// separator stands in the gap behind each item but the last; stacked, it lies at the item's foot.
    void generateHorizontalMenu();
    void generateVerticalMenu();

private:
    void select(int index);

    std::vector<std::shared_ptr<KeyMenuItem>> items_;
    KeyMenuStyle style_;
    KeyMenuType type_;
    int selectedIndex_ = -1;
};

} // namespace korvane
