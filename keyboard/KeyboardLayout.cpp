#include "keyboard/KeyboardLayout.h"

#include "Platform/Platform.h"
#include "keyboard/HalfPoints.h"

#include <algorithm>
#include <utility>

namespace korvane {

KeyboardLayout::KeyboardLayout(std::optional<KeyboardLayoutStyle> style, std::optional<Rows> rows)
    : style_(std::move(style)), rows_(std::move(rows)) {
    setMultipleTouchEnabled(true);
    if (style_) setBackgroundColor(style_->backgroundColor);
    if (!rows_) return;
    for (const auto& one : *rows_) {
        one->setPortrait(isPortrait());
        addSubview(one);
    }
}

bool KeyboardLayout::isPortrait() const {
    const CGSize screen = Platform::current().mainScreen().bounds().size;
    return screen.height > screen.width;
}

std::shared_ptr<KeyboardRow> KeyboardLayout::row(std::size_t atIndex) const {
    return rows_ && atIndex < rows_->size() ? (*rows_)[atIndex] : nullptr;
}

std::shared_ptr<KeyboardButton> KeyboardLayout::getKeyboardButton(std::size_t atRowIndex,
                                                                  std::size_t buttonIndex) const {
    const auto found = row(atRowIndex);
    if (!found || !found->characters() || buttonIndex >= found->characters()->size()) return nullptr;
    const auto* button = std::get_if<std::shared_ptr<KeyboardButton>>(&(*found->characters())[buttonIndex]);
    return button ? *button : nullptr;
}

void KeyboardLayout::forEachKey(
    const std::function<void(const std::shared_ptr<KeyboardButton>&)>& call) const {
    if (!rows_) return;
    for (const auto& one : *rows_)
        one->forEachKey(call);
}

std::shared_ptr<KeyboardButton> KeyboardLayout::getKeyboardButton(std::string_view withIdentifier) const {
    std::shared_ptr<KeyboardButton> found;
    forEachKey([&](const auto& key) {
        if (!found && key->identifier() == withIdentifier) found = key;
    });
    return found;
}

void KeyboardLayout::addKeyboardButton(std::shared_ptr<KeyboardButton> keyboardButton, std::size_t rowAtIndex,
                                       std::size_t buttonIndex) {
    if (const auto found = row(rowAtIndex)) found->insert(std::move(keyboardButton), buttonIndex);
}

void KeyboardLayout::removeKeyboardButton(std::size_t atRowIndex, std::size_t buttonIndex) {
    if (const auto found = row(atRowIndex)) found->remove(buttonIndex);
}

double KeyboardLayout::getRowPaddings() const {
    double sum = 0;
    if (!rows_) return sum;
    for (const auto& one : *rows_)
        sum += one->getTopPadding() + one->getBottomPadding();
    return sum;
}

double KeyboardLayout::getOptimumRowHeight() const {
    if (!rows_ || rows_->empty()) return 0;
    return std::max(0.0, (bounds().size.height - getRowPaddings()) / static_cast<double>(rows_->size()));
}

/// From top to bottom; paddings belong to the row that has them, so that no touch falls between two rows.
void KeyboardLayout::layoutSubviews() {
    if (!rows_ || rows_->empty()) return;
    for (const auto& one : *rows_)
        one->setPortrait(isPortrait());
    const double height = getOptimumRowHeight();
    double top = 0;
    double exact = 0;
    for (const auto& one : *rows_) {
        top += one->getTopPadding();
        exact += one->getTopPadding() + height;
        const double bottom = std::max(top, onHalfPoint(exact));
        one->setFrame({{0, top}, {bounds().size.width, bottom - top}});
        UIEdgeInsets insets = one->buttonHitRangeInsets();
        if (one == rows_->back()) insets.bottom = bottom - bounds().size.height;
        one->setHitRangeInsets(insets);
        top = bottom + one->getBottomPadding();
        exact += one->getBottomPadding();
    }
}

std::shared_ptr<KeyboardButton> KeyboardLayout::keyboardButton(CGPoint at) {
    if (!rows_) return nullptr;
    layoutIfNeeded();
    for (const auto& one : *rows_) {
        const CGPoint origin = one->frame().origin;
        const CGPoint inside{at.x - origin.x, at.y - origin.y};
        if (one->pointInside(inside)) return one->keyboardButton(inside);
    }
    return nullptr;
}

bool KeyboardLayout::pointInside(CGPoint point) const {
    if (UIView::pointInside(point)) return true;
    const auto menu = viewWithTag(KeyboardButtonMenuViewTag);
    return menu && CGRectContainsPoint(menu->convertTo(this, menu->bounds()), point);
}

KeyboardButtonTouch* KeyboardLayout::entry(const UITouch& touch) {
    const auto isIts = [&touch](const KeyboardButtonTouch& one) { return one.touch.get() == &touch; };
    const auto found = std::ranges::find_if(currentTouches_, isIts);
    return found == currentTouches_.end() ? nullptr : &*found;
}

void KeyboardLayout::report(UITouchPhase phase, const UITouches& touches) {
    const auto listener = delegate();
    if (!listener) return;
    switch (phase) {
    case UITouchPhase::began: listener->keyboardLayoutDidTouchesBegin(*this, touches); break;
    case UITouchPhase::moved: listener->keyboardLayoutDidTouchesMove(*this, touches); break;
    case UITouchPhase::ended: listener->keyboardLayoutDidTouchesEnd(*this, touches); break;
    case UITouchPhase::cancelled: listener->keyboardLayoutDidTouchesCancel(*this, touches); break;
    }
}

void KeyboardLayout::follow(UITouchPhase phase, const std::shared_ptr<UITouch>& touch) {
    switch (phase) {
    case UITouchPhase::began: begin(touch); break;
    case UITouchPhase::moved: move(touch); break;
    case UITouchPhase::ended: end(touch); break;
    case UITouchPhase::cancelled: cancel(touch); break;
    }
}

void KeyboardLayout::handle(UITouchPhase phase, const UITouches& touches) {
    const auto self = shared_from_this();
    report(phase, touches);
    for (const auto& touch : touches)
        follow(phase, touch);
}

void KeyboardLayout::touchesBegan(const UITouches& touches) {
    UIView::touchesBegan(touches);
    handle(UITouchPhase::began, touches);
}

void KeyboardLayout::touchesMoved(const UITouches& touches) {
    UIView::touchesMoved(touches);
    handle(UITouchPhase::moved, touches);
}

void KeyboardLayout::touchesEnded(const UITouches& touches) {
    UIView::touchesEnded(touches);
    handle(UITouchPhase::ended, touches);
}

void KeyboardLayout::touchesCancelled(const UITouches& touches) {
    UIView::touchesCancelled(touches);
    handle(UITouchPhase::cancelled, touches);
}

void KeyboardLayout::begin(const std::shared_ptr<UITouch>& touch) {
    if (!typingEnabled_) return;
    const auto button = keyboardButton(touch->location(this));
    if (!button) return;
    currentTouches_.push_back({touch, button});
    if (const auto listener = delegate()) listener->keyboardLayoutDidKeyPressStart(*this, button);
}

void KeyboardLayout::move(const std::shared_ptr<UITouch>& touch) {
    const KeyboardButtonTouch* const known = entry(*touch);
    if (!known || !typingEnabled_) return;
    const auto from = known->button;
    const auto to = keyboardButton(touch->location(this));
    if (!to || to == from) return;
    from->showKeyPop(false);
    if (const auto listener = delegate()) listener->keyboardLayoutDidDraggedIn(*this, from, to);
    KeyboardButtonTouch* const still = entry(*touch);
    if (!still) return; // whoever was told has changed the page
    still->button = to;
    to->showKeyPop(true);
}

/// The finger of a menu that has opened meanwhile goes without a word: the menu has had it.
///
/// The entry goes first, because a report can change the page, and a finger that is no more must not go on to
/// the next one.
void KeyboardLayout::end(const std::shared_ptr<UITouch>& touch) {
    const auto button = take(*touch);
    if (!button || !typingEnabled_) return;
    if (const auto listener = delegate()) listener->keyboardLayoutDidKeyPressEnd(*this, button);
}

void KeyboardLayout::cancel(const std::shared_ptr<UITouch>& touch) {
    static_cast<void>(take(*touch));
}

/// Ends a finger's entry and its pop-up.
/// @return the key that it was on, or null.
std::shared_ptr<KeyboardButton> KeyboardLayout::take(const UITouch& touch) {
    const KeyboardButtonTouch* const found = entry(touch);
    if (!found) return nullptr;
    auto button = found->button;
    currentTouches_.erase(currentTouches_.begin() + (found - currentTouches_.data()));
    button->showKeyPop(false);
    return button;
}

std::vector<KeyboardButtonTouch> KeyboardLayout::releaseTouches() {
    auto released = std::exchange(currentTouches_, {});
    for (const KeyboardButtonTouch& one : released)
        one.button->showKeyPop(false);
    return released;
}

void KeyboardLayout::adoptTouches(const std::vector<KeyboardButtonTouch>& touches) {
    for (const KeyboardButtonTouch& one : touches) {
        const auto button = keyboardButton(one.touch->location(this));
        if (!button) continue;
        currentTouches_.push_back({one.touch, button});
        button->showKeyPop(true);
    }
}

} // namespace korvane
