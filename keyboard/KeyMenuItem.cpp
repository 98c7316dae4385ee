#include "keyboard/KeyMenuItem.h"

#include "keyboard/KeyPictures.h"

namespace korvane {

KeyMenuItem::KeyMenuItem(std::optional<std::string> title, KeyMenuItemStyle style, Action action)
    : title_(std::move(title)), style_(std::move(style)), action_(std::move(action)) {
    if (title_) {
        titleLabel_ = std::make_shared<KeyLabel>();
        titleLabel_->setText(*title_);
        titleLabel_->setTextAlignment(NSTextAlignment::center);
        addSubview(titleLabel_);
    }
    showState();
}

void KeyMenuItem::setHighlighted(bool highlighted) {
    if (highlighted == highlighted_) return;
    highlighted_ = highlighted;
    showState();
}

void KeyMenuItem::showState() {
    setBackgroundColor(highlighted_ ? std::optional(style_.highlightedBackgroundColor) : std::nullopt);
    if (!titleLabel_) return;
    titleLabel_->setTextColor(highlighted_ ? style_.highlightedTextColor : style_.textColor);
    titleLabel_->setFont(highlighted_ ? style_.highlightedFont : style_.font);
}

void KeyMenuItem::setSeparator(Edge edge) {
    edge_ = edge;
    if (separator_) separator_->removeFromSuperview();
    separator_ = nullptr;
    if (edge == Edge::none) return;
    separator_ = std::make_shared<UIView>();
    separator_->setBackgroundColor(style_.separatorColor);
    addSubview(separator_);
    setNeedsLayout();
}

void KeyMenuItem::layoutSubviews() {
    const CGSize size = bounds().size;
    if (titleLabel_) titleLabel_->setFrame(bounds());
    if (!separator_) return;
    const double width = style_.separatorWidth;
    separator_->setFrame(edge_ == Edge::right ? CGRect{{size.width, 0}, {width, size.height}}
                                              : CGRect{{0, size.height - width}, {size.width, width}});
}

} // namespace korvane
