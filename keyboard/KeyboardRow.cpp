#include "keyboard/KeyboardRow.h"

#include "keyboard/HalfPoints.h"

#include <algorithm>

namespace korvane {

namespace {

const KeyboardRow* asRow(const KeyboardRowElement& element) {
    const auto* row = std::get_if<std::shared_ptr<KeyboardRow>>(&element);
    return row ? row->get() : nullptr;
}

const KeyboardButton* asButton(const KeyboardRowElement& element) {
    const auto* button = std::get_if<std::shared_ptr<KeyboardButton>>(&element);
    return button ? button->get() : nullptr;
}

std::shared_ptr<UIView> sharedView(const KeyboardRowElement& element) {
    return std::visit([](const auto& one) { return std::static_pointer_cast<UIView>(one); }, element);
}

UIView& viewOf(const KeyboardRowElement& element) {
    return std::visit([](const auto& one) -> UIView& { return *one; }, element);
}

CGPoint within(const UIView& view, CGPoint point) {
    const CGPoint origin = view.frame().origin;
    return {point.x - origin.x, point.y - origin.y};
}

} // namespace

KeyboardRow::KeyboardRow(std::optional<KeyboardRowStyle> style, std::optional<Characters> characters)
    : style_(style), characters_(std::move(characters)) {
    setUserInteractionEnabled(false);
    if (!characters_) return;
    for (const auto& element : *characters_)
        addSubview(sharedView(element));
}

double KeyboardRow::padding(double KeyboardRowStyle::*portrait, double KeyboardRowStyle::*landscape) const {
    if (!style_) return 0;
    return isPortrait_ ? *style_.*portrait : *style_.*landscape;
}

double KeyboardRow::getLeadingPadding() const {
    return padding(&KeyboardRowStyle::leadingPadding, &KeyboardRowStyle::leadingPaddingLandscape);
}

double KeyboardRow::getTrailingPadding() const {
    return padding(&KeyboardRowStyle::trailingPadding, &KeyboardRowStyle::trailingPaddingLandscape);
}

double KeyboardRow::getTopPadding() const {
    return padding(&KeyboardRowStyle::topPadding, &KeyboardRowStyle::topPaddingLandscape);
}

double KeyboardRow::getBottomPadding() const {
    return padding(&KeyboardRowStyle::bottomPadding, &KeyboardRowStyle::bottomPaddingLandscape);
}

double KeyboardRow::getButtonsPadding() const {
    return padding(&KeyboardRowStyle::buttonsPadding, &KeyboardRowStyle::buttonsPaddingLandscape);
}

UIEdgeInsets KeyboardRow::buttonHitRangeInsets() const {
    const double side = -getButtonsPadding() / 2;
    return {-getTopPadding(), side, -getBottomPadding(), side};
}

double KeyboardRow::ownPaddings() const {
    const double gaps =
        characters_ && !characters_->empty() ? static_cast<double>(characters_->size() - 1) : 0;
    return gaps * getButtonsPadding() + getLeadingPadding() + getTrailingPadding();
}

double KeyboardRow::getRelativeWidthForPercent(double percent) const {
    return (frame().size.width - ownPaddings()) * percent;
}

double KeyboardRow::getWidthForKeyboardButton(const KeyboardButton& button) const {
    const KeyboardButtonWidth& width = button.widthInRow();
    switch (width.kind()) {
    case KeyboardButtonWidth::Kind::Static: return width.value();
    case KeyboardButtonWidth::Kind::Relative: return getRelativeWidthForPercent(width.value());
    case KeyboardButtonWidth::Kind::Dynamic: break;
    }
    return getOptimumButtonWidth();
}

std::size_t KeyboardRow::shares() const {
    return characters_ ? characters_->size() : 0;
}

double KeyboardRow::getOptimumButtonWidth() const {
    if (!characters_) return 0;
    double taken = ownPaddings();
    std::size_t sharing = 0;
    for (const auto& element : *characters_) {
        if (const KeyboardRow* const row = asRow(element)) {
            taken += row->ownPaddings();
            sharing += row->shares();
        } else if (asButton(element)->widthInRow().kind() == KeyboardButtonWidth::Kind::Dynamic) {
            ++sharing;
        } else {
            taken += getWidthForKeyboardButton(*asButton(element));
        }
    }
    if (sharing == 0) return 0;
    return std::max(0.0, (frame().size.width - taken) / static_cast<double>(sharing));
}

double KeyboardRow::width(const KeyboardRowElement& element, double share) const {
    if (const KeyboardRow* const row = asRow(element))
        return static_cast<double>(row->shares()) * share + row->ownPaddings();
    const KeyboardButton& button = *asButton(element);
    const bool isDynamic = button.widthInRow().kind() == KeyboardButtonWidth::Kind::Dynamic;
    return isDynamic ? share : std::max(0.0, getWidthForKeyboardButton(button));
}

void KeyboardRow::forEachKey(const std::function<void(const std::shared_ptr<KeyboardButton>&)>& call) const {
    if (!characters_) return;
    for (const auto& element : *characters_) {
        if (const KeyboardRow* const row = asRow(element))
            row->forEachKey(call);
        else
            call(std::get<std::shared_ptr<KeyboardButton>>(element));
    }
}

std::shared_ptr<KeyboardButton> KeyboardRow::keyboardButton(CGPoint at) const {
    if (!characters_) return nullptr;
    for (const auto& element : *characters_) {
        const UIView& place = viewOf(element);
        const CGPoint inside = within(place, at);
        if (place.isHidden() || !place.pointInside(inside)) continue;
        if (const auto* row = std::get_if<std::shared_ptr<KeyboardRow>>(&element))
            return (*row)->keyboardButton(inside);
        return std::get<std::shared_ptr<KeyboardButton>>(element);
    }
    return nullptr;
}

UIEdgeInsets KeyboardRow::hitRangeInsets() const {
    return hitRangeInsets_ ? *hitRangeInsets_ : buttonHitRangeInsets();
}

void KeyboardRow::setHitRangeInsets(const UIEdgeInsets& insets) {
    if (hitRangeInsets_ == insets) return;
    hitRangeInsets_ = insets;
    setNeedsLayout();
}

bool KeyboardRow::pointInside(CGPoint point) const {
    return CGRectContainsPoint(UIEdgeInsetsInsetRect(bounds(), hitRangeInsets()), point);
}

void KeyboardRow::insert(std::shared_ptr<KeyboardButton> button, std::size_t atIndex) {
    if (!characters_) characters_.emplace();
    addSubview(button);
    const std::size_t index = std::min(atIndex, characters_->size());
    characters_->insert(characters_->begin() + static_cast<std::ptrdiff_t>(index), std::move(button));
    setNeedsLayout();
}

void KeyboardRow::remove(std::size_t atIndex) {
    if (!characters_ || atIndex >= characters_->size()) return;
    const auto place = characters_->begin() + static_cast<std::ptrdiff_t>(atIndex);
    sharedView(*place)->removeFromSuperview();
    characters_->erase(place);
    setNeedsLayout();
}

void KeyboardRow::layoutSubviews() {
    if (!characters_ || characters_->empty()) return;
    for (const auto& element : *characters_) {
        const auto* row = std::get_if<std::shared_ptr<KeyboardRow>>(&element);
        if (!row) continue;
        (*row)->parentRow_ = weakFrom(this);
        (*row)->setPortrait(isPortrait_);
    }
    placeElements();
    shareGaps();
}

/// From left to right. Rounding does not add up: the right edge of each is the exact one, rounded.
void KeyboardRow::placeElements() {
    const double share = getOptimumButtonWidth();
    const double gap = getButtonsPadding();
    const double height = bounds().size.height;
    double left = getLeadingPadding();
    double exact = left;
    for (const auto& element : *characters_) {
        exact += width(element, share);
        const double right = std::max(left, onHalfPoint(exact));
        viewOf(element).setFrame({{left, 0}, {right - left, height}});
        left = right + gap;
        exact += gap;
    }
}

/// Each gap belongs to its two neighbours by halves. The first and the last element reach as far as the row
/// itself does, and that is to the edges of the screen: a thumb that comes from the side cannot miss them.
void KeyboardRow::shareGaps() {
    const UIEdgeInsets reach = hitRangeInsets();
    double edge = reach.left; // where touches on an element begin
    for (std::size_t index = 0; index < characters_->size(); ++index) {
        const auto& element = (*characters_)[index];
        const CGRect frame = viewOf(element).frame();
        const bool isLast = index + 1 == characters_->size();
        const double next =
            isLast ? bounds().size.width - reach.right
                   : (CGRectGetMaxX(frame) + viewOf((*characters_)[index + 1]).frame().origin.x) / 2;
        const UIEdgeInsets insets{reach.top, edge - frame.origin.x, reach.bottom,
                                  CGRectGetMaxX(frame) - next};
        std::visit([&insets](const auto& one) { one->setHitRangeInsets(insets); }, element);
        edge = next;
    }
}

} // namespace korvane
