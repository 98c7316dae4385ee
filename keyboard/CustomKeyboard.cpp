#include "keyboard/CustomKeyboard.h"

#include "Platform/Platform.h"
#include "Platform/View/UIWindow.h"

#include <algorithm>
#include <array>
#include <iterator>

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
    : UIView(frame), state_(with.value_or(State::Letters(Shift::Off))) {
    setMultipleTouchEnabled(true);
}

CustomKeyboard::~CustomKeyboard() {
    invalidate(&CustomKeyboard::shiftToggleTimer_);
    invalidateHoldTimers();
}

void CustomKeyboard::defaultInit() {
    makePages();
    keyboardLayoutStateDidChange(std::nullopt, state_);
}

/// The keyboard takes the touches itself, so that a finger stays its own when the page changes under it.
void CustomKeyboard::makePages() {
    keyboardLayout_ = std::make_unique<CustomKeyboardLayout>();
    enumerateKeyboardLayouts([](KeyboardLayout& page) { page.setUserInteractionEnabled(false); });
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
    const auto shown = getKeyboardLayout(newState);
    const bool takesFingersAlong =
        oldState && (old == shown || (oldState->isLetters() && newState.isLetters()));
    if (!takesFingersAlong) dropFingers();
    const auto focus = old ? focusOn(*old) : std::nullopt;
    const Touches touches = old ? detach(*old) : Touches{};
    shown->setDelegate(weakFrom(this));
    addSubview(shown);
    shown->setFrame({{0, 0}, bounds().size});
    setNeedsLayout();
    if (takesFingersAlong) shown->adoptTouches(touches);
    if (focus) window()->focusSystem().focus(shown->keyboardButton(*focus));
}

/// The middle of the key of a page that is focused, or no value.
std::optional<CGPoint> CustomKeyboard::focusOn(const UIView& page) const {
    const auto shownIn = window();
    const auto key = shownIn ? shownIn->focusSystem().focusedView() : nullptr;
    if (!key || !key->isDescendant(page)) return std::nullopt;
    const CGSize size = key->bounds().size;
    return key->convertTo(&page, CGPoint{size.width / 2, size.height / 2});
}

/// Takes a page away.
/// @return the fingers that were on its keys.
CustomKeyboard::Touches CustomKeyboard::detach(KeyboardLayout& layout) {
    dropKeyMenu(layout);
    invalidate(&CustomKeyboard::keyMenuOpenTimer_);
    Touches touches = layout.releaseTouches();
    layout.setDelegate({});
    layout.removeFromSuperview();
    return touches;
}

/// What becomes of fingers that are down is nobody's business any more, and what waits for that ends.
void CustomKeyboard::dropFingers() {
    fingers_.clear();
    invalidateHoldTimers();
}

void CustomKeyboard::reload() {
    detach(*getCurrentKeyboardLayout());
    makePages();
    keyboardLayoutStateDidChange(std::nullopt, state_);
}

void CustomKeyboard::reload(CustomKeyboardLayoutState with) {
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
    enumerateKeyboardLayouts([this](KeyboardLayout& page) {
        page.setFrame({{0, 0}, bounds().size});
        if (!page.superview()) page.layoutIfNeeded();
    });
}

std::vector<std::shared_ptr<UIView>> CustomKeyboard::alternates() const {
    std::vector<std::shared_ptr<UIView>> pages;
    for (const Page page : kPages)
        pages.push_back((*keyboardLayout_.*page)());
    return pages;
}

void CustomKeyboard::touchesBegan(const UITouches& touches) {
    UIView::touchesBegan(touches);
    fingers_.insert(fingers_.end(), touches.begin(), touches.end());
    passOn(UITouchPhase::began, touches);
}

void CustomKeyboard::touchesMoved(const UITouches& touches) {
    UIView::touchesMoved(touches);
    passOn(UITouchPhase::moved, touches);
}

void CustomKeyboard::touchesEnded(const UITouches& touches) {
    UIView::touchesEnded(touches);
    passOn(UITouchPhase::ended, touches);
}

void CustomKeyboard::touchesCancelled(const UITouches& touches) {
    UIView::touchesCancelled(touches);
    passOn(UITouchPhase::cancelled, touches);
}

/// To the page that is shown: any finger of this moment can put another one in its place, which the rest go
/// to then, or drops the rest.
void CustomKeyboard::passOn(UITouchPhase phase, const UITouches& touches) {
    const auto self = shared_from_this();
    const auto counts = [this](const auto& touch) { return std::ranges::count(fingers_, touch) > 0; };
    UITouches counted;
    std::ranges::copy_if(touches, std::back_inserter(counted), counts);
    if (counted.empty()) return;
    std::shared_ptr(getCurrentKeyboardLayout())->report(phase, counted);
    for (const auto& touch : counted) {
        if (!counts(touch)) continue;
        if (phase == UITouchPhase::ended || phase == UITouchPhase::cancelled) std::erase(fingers_, touch);
        std::shared_ptr(getCurrentKeyboardLayout())->follow(phase, touch);
    }
}

/// The page may have a menu that rises above the keyboard.
bool CustomKeyboard::pointInside(CGPoint point) const {
    return UIView::pointInside(point) || getCurrentKeyboardLayout()->pointInside(point);
}

void CustomKeyboard::didMoveToWindow() {
    if (window()) return;
    dropFingers();
    getCurrentKeyboardLayout()->releaseTouches();
    dropKeyMenu(*getCurrentKeyboardLayout());
}

} // namespace korvane
