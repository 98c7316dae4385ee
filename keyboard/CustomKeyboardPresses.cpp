#include "Platform/Platform.h"
#include "keyboard/CustomKeyboard.h"
#include "keyboard/KeyMenu.h"

namespace korvane {

namespace {

using State = CustomKeyboardLayoutState;
using Shift = CustomKeyboardShiftState;

/// From the opening or the closing of a menu until keys type again or no more.
constexpr Seconds kTypingDelay{0.1};

} // namespace

// Presses.

void CustomKeyboard::keyboardLayoutDidKeyPressStart(KeyboardLayout& /*layout*/,
                                                    const std::shared_ptr<KeyboardButton>& button) {
    invalidateHoldTimers();
    if (button->identifier() == rawValue(CustomKeyboardIdentifier::Backspace))
        startBackspaceAutoDeleteModeTimer();
    if (button->style() && button->style()->keyPopType) {
        button->showKeyPop(true);
        if (button->keyMenu()) startKeyMenuOpenTimer(button);
    } else if (button->keyMenu()) {
        openKeyMenu(button);
        keyMenuLocked_ = false;
    }
}

void CustomKeyboard::keyboardLayoutDidKeyPressEnd(KeyboardLayout& /*layout*/,
                                                  const std::shared_ptr<KeyboardButton>& button) {
    const auto self = shared_from_this();
    if (const auto listener = delegate()) listener->customKeyboardKeyboardButtonPressed(*this, button);
    if (button->type().kind() == KeyboardButtonType::Kind::Key) {
        if (const auto listener = delegate())
            listener->customKeyboardKeyButtonPressed(*this, button->type().string());
        if (state_ == State::Letters(Shift::Once)) return setKeyboardLayoutState(State::Letters(Shift::Off));
    }
    if (!button->identifier()) return;
    if (const auto known = fromRawValue<CustomKeyboardIdentifier>(*button->identifier())) act(*known);
}

void CustomKeyboard::act(CustomKeyboardIdentifier identifier) {
    using Identifier = CustomKeyboardIdentifier;
    const auto listener = delegate();
    switch (identifier) {
    case Identifier::Space:
        if (listener) listener->customKeyboardSpaceButtonPressed(*this);
        return;
    case Identifier::Backspace:
        if (listener) listener->customKeyboardBackspaceButtonPressed(*this);
        return;
    case Identifier::Globe:
        if (listener) listener->customKeyboardGlobeButtonPressed(*this);
        return;
    case Identifier::Return:
        if (listener) listener->customKeyboardReturnButtonPressed(*this);
        return;
    case Identifier::Numbers: return setKeyboardLayoutState(State::Numbers());
    case Identifier::Letters: return setKeyboardLayoutState(State::Letters(Shift::Off));
    case Identifier::Symbols: return setKeyboardLayoutState(State::Symbols());
    case Identifier::ShiftOff:
    case Identifier::ShiftOn:
    case Identifier::ShiftOnce: return pressShift(identifier);
    }
}

/// The identifier tells what the page that shows it is: small letters, locked capitals, one capital.
void CustomKeyboard::pressShift(CustomKeyboardIdentifier identifier) {
    const bool isWindowOpen = shiftToggleTimer_ != nullptr;
    if (identifier == CustomKeyboardIdentifier::ShiftOn) {
        if (!isWindowOpen) setKeyboardLayoutState(State::Letters(Shift::Off));
        return;
    }
    if (isWindowOpen) {
        setKeyboardLayoutState(State::Letters(Shift::On));
        invalidate(&CustomKeyboard::shiftToggleTimer_);
        return;
    }
    const bool isOff = identifier == CustomKeyboardIdentifier::ShiftOff;
    setKeyboardLayoutState(State::Letters(isOff ? Shift::Once : Shift::Off));
    startShiftToggleTimer();
}

// Timers.

void CustomKeyboard::start(TimerField timer, Seconds interval, std::function<void(CustomKeyboard&)> fires) {
    invalidate(timer);
    this->*timer = Timer::scheduledTimer(Platform::current().dispatch(), interval,
                                         [weak = weakFrom(this), fires = std::move(fires)] {
                                             if (const auto keyboard = weak.lock()) fires(*keyboard);
                                         });
}

void CustomKeyboard::startOnce(TimerField timer, Seconds interval,
                               std::function<void(CustomKeyboard&)> fires) {
    start(timer, interval, [timer, fires = std::move(fires)](CustomKeyboard& keyboard) {
        keyboard.invalidate(timer);
        fires(keyboard);
    });
}

void CustomKeyboard::invalidate(TimerField timer) {
    const auto ended = std::exchange(this->*timer, nullptr);
    if (ended) ended->invalidate();
}

/// The timers that run because a key is held down.
void CustomKeyboard::invalidateHoldTimers() {
    invalidate(&CustomKeyboard::backspaceAutoDeleteModeTimer_);
    invalidate(&CustomKeyboard::backspaceDeleteTimer_);
    invalidate(&CustomKeyboard::keyMenuOpenTimer_);
}

/// While it runs the shift window is open; its end is all that it does.
void CustomKeyboard::startShiftToggleTimer() {
    startOnce(&CustomKeyboard::shiftToggleTimer_, shiftToggleInterval, [](CustomKeyboard&) {});
}

void CustomKeyboard::startBackspaceAutoDeleteModeTimer() {
    startOnce(&CustomKeyboard::backspaceAutoDeleteModeTimer_, backspaceAutoDeleteModeInterval,
              [](CustomKeyboard& keyboard) { keyboard.startBackspaceAutoDeleteMode(); });
}

void CustomKeyboard::startBackspaceAutoDeleteMode() {
    invalidate(&CustomKeyboard::backspaceDeleteTimer_);
    startBackspaceDeleteTimer();
}

void CustomKeyboard::startBackspaceDeleteTimer() {
    start(&CustomKeyboard::backspaceDeleteTimer_, backspaceDeleteInterval,
          [](CustomKeyboard& keyboard) { keyboard.autoDelete(); });
}

void CustomKeyboard::autoDelete() {
    if (const auto listener = delegate()) listener->customKeyboardBackspaceButtonPressed(*this);
}

void CustomKeyboard::startKeyMenuOpenTimer(const std::shared_ptr<KeyboardButton>& forKeyboardButton) {
    startOnce(&CustomKeyboard::keyMenuOpenTimer_, keyMenuOpenTimeInterval,
              [weak = std::weak_ptr(forKeyboardButton)](CustomKeyboard& keyboard) {
                  if (const auto button = weak.lock()) keyboard.openKeyMenu(button);
              });
}

// The open menu.

void CustomKeyboard::openKeyMenu(const std::shared_ptr<KeyboardButton>& button) {
    setKeyMenuShowingKeyboardButton(button);
}

void CustomKeyboard::setKeyMenuShowingKeyboardButton(std::shared_ptr<KeyboardButton> button) {
    showMenuOf(std::move(button));
    Platform::current().dispatch().mainQueue().asyncAfter(
        kTypingDelay, std::make_shared<DispatchWorkItem>(weakly(this, &CustomKeyboard::updateTypingEnabled)));
}

/// Closes the open menu and opens a key's, if there is one.
void CustomKeyboard::showMenuOf(std::shared_ptr<KeyboardButton> button) {
    const auto old = std::exchange(keyMenuShowingKeyboardButton_, std::move(button));
    if (old) {
        old->showKeyPop(false);
        old->showKeyMenu(false);
    }
    if (!keyMenuShowingKeyboardButton_) return;
    keyMenuShowingKeyboardButton_->showKeyPop(false);
    keyMenuShowingKeyboardButton_->showKeyMenu(true);
}

/// For a page that goes away: it types again at once when it comes back.
void CustomKeyboard::dropKeyMenu(KeyboardLayout& layout) {
    showMenuOf(nullptr);
    keyMenuLocked_ = false;
    layout.setTypingEnabled(true);
}

void CustomKeyboard::updateTypingEnabled() {
    getCurrentKeyboardLayout()->setTypingEnabled(!keyMenuShowingKeyboardButton_ && !keyMenuLocked_);
}

void CustomKeyboard::updateSelection(const UITouches& touches) {
    if (!keyMenuShowingKeyboardButton_ || touches.empty()) return;
    keyMenuShowingKeyboardButton_->keyMenu()->updateSelection(touches.front()->location(this), *this);
}

void CustomKeyboard::keyboardLayoutDidTouchesBegin(KeyboardLayout& /*layout*/, const UITouches& touches) {
    updateSelection(touches);
}

void CustomKeyboard::keyboardLayoutDidTouchesMove(KeyboardLayout& /*layout*/, const UITouches& touches) {
    updateSelection(touches);
}

void CustomKeyboard::keyboardLayoutDidTouchesEnd(KeyboardLayout& /*layout*/, const UITouches& touches) {
    invalidateHoldTimers();
    chooseFromMenu(touches);
}

void CustomKeyboard::keyboardLayoutDidTouchesCancel(KeyboardLayout& /*layout*/, const UITouches& touches) {
    invalidateHoldTimers();
    chooseFromMenu(touches);
}

/// A finger has gone up. On an item it chooses that; beside the menu it closes one that was locked, and locks
/// one that was not.
void CustomKeyboard::chooseFromMenu(const UITouches& touches) {
    if (!keyMenuShowingKeyboardButton_ || touches.empty()) return;
    const auto self = shared_from_this();
    const auto menu = keyMenuShowingKeyboardButton_->keyMenu();
    menu->updateSelection(touches.front()->location(this), *this);
    const int selected = menu->selectedIndex();
    if (selected < 0) {
        if (keyMenuLocked_) {
            setKeyMenuShowingKeyboardButton(nullptr);
            keyMenuLocked_ = false;
            getCurrentKeyboardLayout()->setTypingEnabled(true);
            return;
        }
    } else {
        const auto index = static_cast<std::size_t>(selected);
        if (index < menu->items().size()) {
            const auto item = menu->items()[index];
            const auto action = item->action();
            if (action) action(*item);
        }
        setKeyMenuShowingKeyboardButton(nullptr);
    }
    keyMenuLocked_ = selected < 0;
}

} // namespace korvane
