#include "Platform/View/UIApplication.h"

#include "Platform/NotificationCenter.h"
#include "Platform/Platform.h"
#include "Platform/View/UIView.h"
#include "Platform/View/UIWindow.h"

#include <algorithm>

namespace korvane {

UIApplication& UIApplication::shared() {
    return Platform::current().application();
}

std::shared_ptr<UIWindow> UIApplication::keyWindow() const {
    return windows_.empty() ? nullptr : windows_.back();
}

void UIApplication::makeKey(const std::shared_ptr<UIWindow>& window) {
    std::erase(windows_, window);
    windows_.push_back(window);
}

void UIApplication::remove(const std::shared_ptr<UIWindow>& window) {
    window->cancelTouches();
    window->endEditing();
    window->isVisible_ = false;
    std::erase(windows_, window);
}

void UIApplication::setFirstResponder(const std::shared_ptr<UIResponder>& responder) {
    const auto old = firstResponder_.lock();
    if (old == responder) return;
    firstResponder_ = responder;
    showInput(responder.get());
    if (old) old->didResignFirstResponder();
    if (!responder || firstResponder_.lock() != responder) return;
    const auto view = std::dynamic_pointer_cast<UIView>(responder);
    if (const auto window = view ? view->window() : nullptr) window->focusSystem().didBeginTyping(view);
    responder->didBecomeFirstResponder();
}

void UIApplication::showInput(const UIResponder* responder) {
    const auto input = responder ? responder->inputView() : nullptr;
    const auto* view = dynamic_cast<const UIView*>(responder);
    const auto window = view && view->window() ? view->window() : keyWindow();
    const auto before = inputWindow_.lock();
    auto& center = NotificationCenter::defaultCenter();
    if (before && (!input || before != window)) {
        inputWindow_.reset();
        const CGRect frame = before->inputFrame();
        before->showInput(nullptr);
        center.post({UIResponder::keyboardWillHideNotification, frame});
    }
    if (!input || !window) return;
    inputWindow_ = window;
    window->showInput(input);
    center.post({UIResponder::keyboardWillShowNotification, window->inputFrame()});
}

void UIApplication::setTextScale(double scale) {
    if (textScale_.exchange(scale) == scale) return;
    const auto windows = windows_;
    for (const auto& window : windows) {
        window->invalidateTree();
        window->layoutIfNeeded();
    }
}

void UIApplication::willResignActive() {
    if (state_ != UIApplicationState::active) return;
    state_ = UIApplicationState::inactive;
    NotificationCenter::defaultCenter().post({willResignActiveNotification});
}

void UIApplication::didBecomeActive() {
    if (state_ == UIApplicationState::active) return;
    state_ = UIApplicationState::active;
    NotificationCenter::defaultCenter().post({didBecomeActiveNotification});
}

void UIApplication::deviceDidRotate() {
    const CGRect screen = Platform::current().mainScreen().bounds();
    const auto windows = windows_;
    for (const auto& window : windows) {
        window->setFrame(screen);
        window->layoutIfNeeded();
    }
    NotificationCenter::defaultCenter().post({UIDevice::orientationDidChangeNotification});
}

void UIApplication::afterAnimation(Seconds length, std::function<void()> work) const {
    DispatchQueue& main = Platform::current().dispatch().mainQueue();
    if (!playsAnimations_) return main.async(std::move(work));
    main.asyncAfter(length, std::make_shared<DispatchWorkItem>(std::move(work)));
}

void UIApplication::end() {
    const auto windows = std::exchange(windows_, {});
    firstResponder_.reset();
    inputWindow_.reset();
    for (const auto& window : windows)
        window->clear();
}

} // namespace korvane
