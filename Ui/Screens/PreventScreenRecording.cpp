#include "Ui/Screens/PreventScreenRecording.h"

#include "Platform/Platform.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UINavigationController.h"
#include "Platform/View/UIWindow.h"

namespace korvane {

PreventScreenRecording::~PreventScreenRecording() {
    removeBlurScreen();
}

void PreventScreenRecording::setPreventScreenCapture(bool isPrevented) {
    isPreventScreenCapture_ = isPrevented;
    const bool hides = isEnablePreventScreenCapture;
    controller_.view()->hideFromCapture(hides);
    if (const auto stack = controller_.navigationController()) stack->navigationBar()->hideFromCapture(hides);
}

void PreventScreenRecording::setPreventScreenRecording(bool isPrevented) {
    isPreventScreenRecording_ = isPrevented;
    if (!isPrevented) {
        observer_.reset();
        // Nobody would uncover the window afterwards.
        removeBlurScreen();
        return;
    }
    if (!isEnablePreventScreenRecording) return;
    observer_ = NotificationCenter::defaultCenter().addObserver(
        UIScreen::capturedDidChangeNotification, [this](const Notification&) { preventScreenRecording(); });
    preventScreenRecording();
}

void PreventScreenRecording::preventScreenRecording() {
    if (Platform::current().mainScreen().isCaptured())
        blurScreen();
    else
        removeBlurScreen();
}

void PreventScreenRecording::blurScreen(UIBlurEffectStyle style) {
    const auto window = UIApplication::shared().keyWindow();
    if (!window) return;
    removeBlurScreen();
    screen_ = window->snapshotView();
    screen_->setFrame(Platform::current().mainScreen().bounds());
    auto blur = std::make_shared<UIVisualEffectView>(style);
    blur->setFrame(screen_->bounds());
    screen_->addSubview(std::move(blur));
    window->addSubview(screen_);
}

void PreventScreenRecording::removeBlurScreen() {
    if (screen_) screen_->removeFromSuperview();
    screen_ = nullptr;
}

} // namespace korvane
