#include "keyboard/CustomKeyboard.h"

#include "Platform/Platform.h"

#include <algorithm>
#include <array>

namespace korvane {

namespace {

using State = CustomKeyboardLayoutState;
using Shift = CustomKeyboardShiftState;
using Page = const std::shared_ptr<KeyboardLayout>& (CustomKeyboardLayout::*)() const noexcept;

/// By the compact form of the state.
constexpr std::array<Page, 6> kPageOfState{
    &CustomKeyboardLayout::uppercase,        &CustomKeyboardLayout::lowercase,
    &CustomKeyboardLayout::uppercaseToggled, &CustomKeyboardLayout::numbers,
    &CustomKeyboardLayout::symbols,          &CustomKeyboardLayout::numberPad};

/// The order in which the pages are told.
constexpr std::array<Page, 6> kPages{
    &CustomKeyboardLayout::uppercase, &CustomKeyboardLayout::uppercaseToggled,
    &CustomKeyboardLayout::lowercase, &CustomKeyboardLayout::numbers,
    &CustomKeyboardLayout::symbols,   &CustomKeyboardLayout::numberPad};

} // namespace

std::shared_ptr<CustomKeyboard> CustomKeyboard::make(std::optional<CustomKeyboardLayoutState> with) {
    auto keyboard = std::make_shared<CustomKeyboard>(Private{}, CGRect{}, with);
    keyboard->defaultInit();
    return keyboard;
}

std::shared_ptr<CustomKeyboard> CustomKeyboard::make(const CGRect& frame) {
    auto keyboard = std::make_shared<CustomKeyboard>(Private{}, frame, std::nullopt);
    keyboard->defaultInit();
    return keyboard;
}

CustomKeyboard::CustomKeyboard(Private /*token*/, const CGRect& frame,
                               std::optional<CustomKeyboardLayoutState> with)
    : UIView(frame), state_(with.value_or(State::Letters(Shift::Off))) {}

CustomKeyboard::~CustomKeyboard() {
    invalidate(&CustomKeyboard::shiftToggleTimer_);
    invalidateHoldTimers();
}

void CustomKeyboard::defaultInit() {
    keyboardLayout_ = std::make_unique<CustomKeyboardLayout>();
    keyboardLayoutStateDidChange(std::nullopt, state_);
}

const std::shared_ptr<KeyboardLayout>&
CustomKeyboard::getKeyboardLayout(CustomKeyboardLayoutState ofState) const {
    const auto page = static_cast<std::size_t>(State::compactForm(ofState));
    return (*keyboardLayout_.*kPageOfState[page])();
}

void CustomKeyboard::enumerateKeyboardLayouts(const std::function<void(KeyboardLayout&)>& enumerate) const {
    for (const Page page : kPages)
        enumerate(*(*keyboardLayout_.*page)());
}

void CustomKeyboard::setKeyboardLayoutState(CustomKeyboardLayoutState state) {
    const State old = std::exchange(state_, state);
    keyboardLayoutStateDidChange(old, state);
}

/// A page can be touched before the next layout pass, and so its frame is right at once.
void CustomKeyboard::keyboardLayoutStateDidChange(std::optional<CustomKeyboardLayoutState> oldState,
                                                  CustomKeyboardLayoutState newState) {
    const auto old = oldState ? getKeyboardLayout(*oldState) : nullptr;
    const Touches touches = old ? detach(*old) : Touches{};
    const auto shown = getKeyboardLayout(newState);
    shown->setDelegate(weakFrom(this));
    addSubview(shown);
    shown->setFrame({{0, 0}, bounds().size});
    setNeedsLayout();
    if (old) shown->adoptTouches(touches, *old);
}

/// Takes a page away.
/// @return the fingers that were on it.
CustomKeyboard::Touches CustomKeyboard::detach(KeyboardLayout& layout) {
    dropKeyMenu(layout);
    invalidate(&CustomKeyboard::keyMenuOpenTimer_);
    Touches touches = layout.releaseTouches();
    layout.setDelegate({});
    layout.removeFromSuperview();
    return touches;
}

/// Fingers that are down never come up any more: what waits for that ends here.
void CustomKeyboard::reload() {
    invalidateHoldTimers();
    detach(*getCurrentKeyboardLayout());
    keyboardLayout_ = std::make_unique<CustomKeyboardLayout>();
    keyboardLayoutStateDidChange(std::nullopt, state_);
}

void CustomKeyboard::reload(CustomKeyboardLayoutState with) {
    invalidateHoldTimers();
    detach(*getCurrentKeyboardLayout());
    while (!subviews().empty())
        std::shared_ptr<UIView>(subviews().back())->removeFromSuperview();
    setKeyboardLayoutState(with);
    keyboardLayoutStateDidChange(std::nullopt, state_);
}

void CustomKeyboard::switchToLetters(CustomKeyboardShiftState shiftState) {
    setKeyboardLayoutState(State::Letters(shiftState));
}

/// Four rows of keys that a thumb meets: lower in landscape on a telephone, where the screen is low, and
/// higher on a tablet, whose keys are wide. A screen is a tablet's from 600 points on its shorter side.
CGSize CustomKeyboard::sizeThatFits(CGSize size) const {
    constexpr double kTabletSide = 600;
    constexpr double kPhonePortrait = 216;
    constexpr double kPhoneLandscape = 162;
    constexpr double kTabletPortrait = 264;
    constexpr double kTabletLandscape = 352;
    const CGSize screen = Platform::current().mainScreen().bounds().size;
    const bool isPortrait = screen.height > screen.width;
    if (std::min(screen.width, screen.height) >= kTabletSide)
        return {size.width, isPortrait ? kTabletPortrait : kTabletLandscape};
    return {size.width, isPortrait ? kPhonePortrait : kPhoneLandscape};
}

void CustomKeyboard::layoutSubviews() {
    getCurrentKeyboardLayout()->setFrame({{0, 0}, bounds().size});
}

/// The page may have a menu that rises above the keyboard.
bool CustomKeyboard::pointInside(CGPoint point) const {
    return UIView::pointInside(point) || getCurrentKeyboardLayout()->pointInside(point);
}

void CustomKeyboard::didMoveToWindow() {
    if (window()) return;
    invalidateHoldTimers();
    dropKeyMenu(*getCurrentKeyboardLayout());
}

} // namespace korvane
