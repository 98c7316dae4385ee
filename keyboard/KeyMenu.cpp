#include "keyboard/KeyMenu.h"

namespace korvane {

KeyMenu::KeyMenu(std::vector<std::shared_ptr<KeyMenuItem>> items, KeyMenuStyle style, KeyMenuType type)
    : items_(std::move(items)), style_(std::move(style)), type_(type) {
    setUserInteractionEnabled(false);
    setBackgroundColor(style_.backgroundColor);
    if (style_.shadow) applyShadow(*style_.shadow, *this);
    for (const auto& item : items_) {
        if (item->titleLabel()) item->titleLabel()->setTag(titleLabelTag);
        addSubview(item);
    }
}

void KeyMenu::updateSelection(CGPoint touchLocation, const UIView& inView) {
    int under = -1;
    for (std::size_t index = 0; index < items_.size(); ++index)
        if (CGRectContainsPoint(convertTo(&inView, items_[index]->frame()), touchLocation))
            under = static_cast<int>(index);
    select(under);
}

void KeyMenu::select(int index) {
    selectedIndex_ = index;
    for (std::size_t place = 0; place < items_.size(); ++place)
        items_[place]->setHighlighted(static_cast<int>(place) == index);
}

void KeyMenu::generateHorizontalMenu() {
    const double step = style_.itemSize.width + style_.horizontalMenuItemPadding;
    double x = style_.horizontalMenuLeftPadding;
    for (const auto& item : items_) {
        item->setFrame({{x, 0}, style_.itemSize});
        const bool isLast = item == items_.back();
        item->setSeparator(isLast ? KeyMenuItem::Edge::none : KeyMenuItem::Edge::right);
        x += isLast ? style_.itemSize.width : step;
    }
    setFrame({frame().origin, {x + style_.horizontalMenuRightPadding, style_.itemSize.height}});
    select(-1);
}

void KeyMenu::generateVerticalMenu() {
    double y = 0;
    for (const auto& item : items_) {
        item->setFrame({{style_.horizontalMenuLeftPadding, y}, style_.itemSize});
        item->setSeparator(item == items_.back() ? KeyMenuItem::Edge::none : KeyMenuItem::Edge::bottom);
        y += style_.itemSize.height;
    }
    const double width =
        style_.horizontalMenuLeftPadding + style_.itemSize.width + style_.horizontalMenuRightPadding;
    setFrame({frame().origin, {width, y}});
    select(-1);
}

} // namespace korvane
