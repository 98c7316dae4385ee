#pragma once

#include "Platform/Dispatch.h"
#include "Platform/View/UIView.h"
#include "keyboard/CustomKeyboardLayout.h"
#include "keyboard/CustomKeyboardStates.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvane {

class CustomKeyboard;

/// Hears of what is typed. Every operation may be left out.
class CustomKeyboardDelegate {
public:
    virtual ~CustomKeyboardDelegate() = default;

    /// Any key, before what follows.
    virtual void customKeyboardKeyboardButtonPressed(CustomKeyboard& /*keyboard*/,
                                                     const std::shared_ptr<KeyboardButton>& /*button*/) {}
    /// A key that types.
    virtual void customKeyboardKeyButtonPressed(CustomKeyboard& /*keyboard*/, const std::string& /*key*/) {}
    virtual void customKeyboardSpaceButtonPressed(CustomKeyboard& /*keyboard*/) {}
    /// Also again and again while the key is held down.
    virtual void customKeyboardBackspaceButtonPressed(CustomKeyboard& /*keyboard*/) {}
    virtual void customKeyboardGlobeButtonPressed(CustomKeyboard& /*keyboard*/) {}
    virtual void customKeyboardReturnButtonPressed(CustomKeyboard& /*keyboard*/) {}
};

/// The keyboard: it shows one page of keys at a time, and makes of presses what its delegate hears of and
/// which page comes next. Main queue only.
///
/// From small letters one tap on shift gives one capital, two within `shiftToggleInterval` lock capitals.
/// Backspace that is held down repeats. A key's menu opens while the key is held, and stays open when the
/// finger goes up beside it.
class CustomKeyboard : public UIView, public KeyboardLayoutDelegate {
    struct Private {};

public:
    /// @param with  the first page; small letters if absent.
    [[nodiscard]] static std::shared_ptr<CustomKeyboard>
    make(std::optional<CustomKeyboardLayoutState> with = std::nullopt);
    [[nodiscard]] static std::shared_ptr<CustomKeyboard> make(const CGRect& frame);

    CustomKeyboard(Private, const CGRect& frame, std::optional<CustomKeyboardLayoutState> with);
    ~CustomKeyboard() override;

    [[nodiscard]] const CustomKeyboardLayout& keyboardLayout() const noexcept { return *keyboardLayout_; }
    [[nodiscard]] std::shared_ptr<CustomKeyboardDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(std::weak_ptr<CustomKeyboardDelegate> delegate) { delegate_ = std::move(delegate); }

    [[nodiscard]] CustomKeyboardLayoutState keyboardLayoutState() const noexcept { return state_; }
    /// Shows the state's page; an open menu goes with the page before. From letters to letters in another
    /// case, fingers that are down go along, each on the key that now lies under it: whoever types fast has
    /// the next letter down already. On any other page there is something else under a finger than it aimed
    /// at, and those that are down count for nothing any more. A focus on a key stays in its place.
    void setKeyboardLayoutState(CustomKeyboardLayoutState state);

    /// Within this time a second tap on shift locks capitals.
    Seconds shiftToggleInterval{0.5};
    /// Between two deletions of a backspace that is held down, and before the first.
    Seconds backspaceDeleteInterval{0.1};
    Seconds backspaceAutoDeleteModeInterval{0.5};
    /// How long a key is held until its menu opens.
    Seconds keyMenuOpenTimeInterval{1.0};

    /// Whether an open menu stays open when a finger goes up.
    [[nodiscard]] bool keyMenuLocked() const noexcept { return keyMenuLocked_; }
    /// The key whose menu is open, or null.
    [[nodiscard]] const std::shared_ptr<KeyboardButton>& keyMenuShowingKeyboardButton() const noexcept {
        return keyMenuShowingKeyboardButton_;
    }

    [[nodiscard]] const std::shared_ptr<KeyboardLayout>&
    getKeyboardLayout(CustomKeyboardLayoutState ofState) const;
    [[nodiscard]] const std::shared_ptr<KeyboardLayout>& getCurrentKeyboardLayout() const {
        return getKeyboardLayout(state_);
    }
    /// Capitals, locked capitals, small letters, numbers, symbols, number pad.
    void enumerateKeyboardLayouts(const std::function<void(KeyboardLayout&)>& enumerate) const;

    /// Makes all pages anew and shows the present state's. Fingers that are down count for nothing any more.
    void reload();
    /// The same with the pages that are there, for another state.
    void reload(CustomKeyboardLayoutState with);
    void switchToLetters(CustomKeyboardShiftState shiftState);
    /// One capital letter comes next.
    void capitalize() { switchToLetters(CustomKeyboardShiftState::Once); }

    [[nodiscard]] bool isFocusGroup() const override { return true; }
    /// The height that keys of a comfortable size need on the main screen; any width.
    [[nodiscard]] CGSize sizeThatFits(CGSize size) const override;
    /// All pages, the ones that are not shown too.
    void layoutSubviews() override;
    [[nodiscard]] std::vector<std::shared_ptr<UIView>> alternates() const override;
    void touchesBegan(const UITouches& touches) override;
    void touchesMoved(const UITouches& touches) override;
    void touchesEnded(const UITouches& touches) override;
    void touchesCancelled(const UITouches& touches) override;
    [[nodiscard]] bool pointInside(CGPoint point) const override;

    void keyboardLayoutDidKeyPressStart(KeyboardLayout& layout,
                                        const std::shared_ptr<KeyboardButton>& button) override;
    void keyboardLayoutDidKeyPressEnd(KeyboardLayout& layout,
                                      const std::shared_ptr<KeyboardButton>& button) override;
    void keyboardLayoutDidTouchesBegin(KeyboardLayout& layout, const UITouches& touches) override;
    void keyboardLayoutDidTouchesMove(KeyboardLayout& layout, const UITouches& touches) override;
    void keyboardLayoutDidTouchesEnd(KeyboardLayout& layout, const UITouches& touches) override;
    void keyboardLayoutDidTouchesCancel(KeyboardLayout& layout, const UITouches& touches) override;

protected:
    /// No finger is on a keyboard that is not shown.
    void didMoveToWindow() override;

private:
    using TimerField = std::shared_ptr<Timer> CustomKeyboard::*;
    using Touches = std::vector<KeyboardButtonTouch>;

    void defaultInit();

    // Pages, and the fingers on them.
    void makePages();
    void keyboardLayoutStateDidChange(std::optional<CustomKeyboardLayoutState> oldState,
                                      CustomKeyboardLayoutState newState);
    Touches detach(KeyboardLayout& layout);
    [[nodiscard]] std::optional<CGPoint> focusOn(const UIView& page) const;
    void passOn(UITouchPhase phase, const UITouches& touches);
    void dropFingers();

    // Presses.
    void act(CustomKeyboardIdentifier identifier);
    void pressShift(CustomKeyboardIdentifier identifier);

    // Timers.
    void start(TimerField timer, Seconds interval, std::function<void(CustomKeyboard&)> fires);
    void startOnce(TimerField timer, Seconds interval, std::function<void(CustomKeyboard&)> fires);
    void invalidate(TimerField timer);
    void invalidateHoldTimers();
    void startShiftToggleTimer();
    void startBackspaceAutoDeleteModeTimer();
    void startBackspaceAutoDeleteMode();
    void startBackspaceDeleteTimer();
    void startKeyMenuOpenTimer(const std::shared_ptr<KeyboardButton>& forKeyboardButton);
    void autoDelete();

    // The open menu.
    void openKeyMenu(const std::shared_ptr<KeyboardButton>& button);
    void setKeyMenuShowingKeyboardButton(std::shared_ptr<KeyboardButton> button);
    void showMenuOf(std::shared_ptr<KeyboardButton> button);
    void dropKeyMenu(KeyboardLayout& layout);
    void updateTypingEnabled();
    void updateSelection(const UITouches& touches);
    void chooseFromMenu(const UITouches& touches);

    std::unique_ptr<CustomKeyboardLayout> keyboardLayout_;
    std::weak_ptr<CustomKeyboardDelegate> delegate_;
    CustomKeyboardLayoutState state_;
    UITouches fingers_; // that are down and count
    std::shared_ptr<Timer> shiftToggleTimer_;
    std::shared_ptr<Timer> backspaceDeleteTimer_;
    std::shared_ptr<Timer> backspaceAutoDeleteModeTimer_;
    std::shared_ptr<Timer> keyMenuOpenTimer_;
    bool keyMenuLocked_ = false;
    std::shared_ptr<KeyboardButton> keyMenuShowingKeyboardButton_;
};

} // namespace korvane
