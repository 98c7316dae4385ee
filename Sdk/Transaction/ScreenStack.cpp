#include "Sdk/Transaction/ScreenStack.h"

#include "Platform/Platform.h"
#include "Sdk/Events/SdkError.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/TopController.h"

#include <algorithm>

namespace korvane {

namespace {

/// What has been typed goes along when the device is turned.
void copyTypedText(const std::shared_ptr<UIViewController>& from,
                   const std::shared_ptr<UIViewController>& to) {
    const auto source = std::dynamic_pointer_cast<ChallengeTextNativeViewController>(from);
    const auto target = std::dynamic_pointer_cast<ChallengeTextNativeViewController>(to);
    if (!source || !target) return;
    static_cast<void>(target->view()); // so that its field is there
    target->otp->setText(source->otp->text());
}

} // namespace

ScreenStack::ScreenStack(std::function<bool()> mayTurn)
    : mayTurn_(std::move(mayTurn)),
      changeOrientationQueue_(Platform::current().dispatch().makeSerialQueue("Change orientation queue")) {}

/// The last to let go may stand on any queue; views go on the main queue. After the platform there is none.
ScreenStack::~ScreenStack() {
    if (auto screens = lastCResViewControllerContainer_.exchange(nullptr); screens && Platform::isInstalled())
        Platform::current().dispatch().mainQueue().async([screens = std::move(screens)] {});
}

void ScreenStack::hold(std::shared_ptr<const ViewControllerContainer> twins) {
    lastCResViewControllerContainer_.set(std::move(twins));
}

std::shared_ptr<ChallengeViewController> ScreenStack::controllerFor(Orientation orientation) const {
    const auto container = lastCResViewControllerContainer_.get();
    if (!container) return nullptr;
    const auto controller = container->controllersMap().find(orientation);
    return controller == container->controllersMap().end() ? nullptr : controller->second;
}

void ScreenStack::readOrientation() {
    if (const auto orientation = getOrientation()) lastPresentedOrientation_ = *orientation;
}

std::shared_ptr<ChallengeViewController> ScreenStack::firstController() {
    readOrientation();
    const auto container = lastCResViewControllerContainer_.get();
    const bool isHtml = container && container->isHtmlChallenge();
    const Orientation orientation = isHtml ? Orientation::PORTRAIT : lastPresentedOrientation_.load();
    auto controller = controllerFor(orientation);
    if (!controller)
        KORVANE_RAISE("presentRootChallengeVc(_:)", SdkErrorCase::InvalidInputException,
                      "Can not get VC for " + std::string(rawValue(orientation)) +
                          " orientation from lastCResViewControllerContainer.controllersMap.");
    return controller;
}

std::shared_ptr<ChallengeViewController> ScreenStack::nextController() {
    readOrientation();
    return controllerFor(lastPresentedOrientation_);
}

void ScreenStack::present(std::shared_ptr<ChallengeViewController> controller,
                          std::shared_ptr<ChallengeActions> transaction) {
    const auto root = std::make_shared<ChallengeRootNavigationController>(std::move(controller));
    root->transaction = std::move(transaction);
    challengeRootVC_ = root;
    if (const auto top = getTopController()) top->present(root, UIAnimated::yes);
    addOrientationListener();
}

void ScreenStack::replace(const std::shared_ptr<ChallengeViewController>& controller) {
    if (const auto root = challengeRootVC_.lock()) root->setViewControllers({controller}, UIAnimated::yes);
}

void ScreenStack::dismiss(std::function<void()> completion) {
    if (const auto root = challengeRootVC_.lock()) root->dismiss(UIAnimated::yes, std::move(completion));
}

void ScreenStack::hideSpinner() {
    if (const auto screen = topController<ChallengeViewController>()) screen->hideSpinner();
}

void ScreenStack::addOrientationListener() {
    orientationListener_ = NotificationCenter::defaultCenter().addObserver(
        UIDevice::orientationDidChangeNotification, [weak = weak_from_this()](const Notification&) {
            if (const auto self = weak.lock()) self->didRotate();
        });
}

void ScreenStack::didRotate() {
    changeOrientationQueue_->async([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->handleRotation();
    });
}

void ScreenStack::handleRotation() {
    const UIDeviceOrientation held = Platform::current().device().orientation();
    if (std::ranges::find(supportedOrientations, held) == supportedOrientations.end()) return;
    if (!mayTurn_()) return;
    const auto orientation = getOrientation();
    if (!orientation || *orientation == lastPresentedOrientation_) return;
    lastPresentedOrientation_ = *orientation;
    Platform::current().dispatch().mainQueue().sync([this] { swapOrientations(); });
}

/// On the main queue, where what is held of screens may be the last of them.
void ScreenStack::swapOrientations() {
    const auto container = lastCResViewControllerContainer_.get();
    if (!container || container->isHtmlChallenge()) return;
    if (allPossibleControllersInStack_)
        popOtherOrientation();
    else
        pushOtherOrientation();
}

void ScreenStack::pushOtherOrientation() {
    const auto root = challengeRootVC_.lock();
    const auto controller = controllerFor(lastPresentedOrientation_);
    if (!root || !controller) return;
    const auto top = root->topViewController();
    if (top == controller) return;
    copyTypedText(top, controller);
    root->pushViewController(controller, UIAnimated::no);
    allPossibleControllersInStack_ = true;
}

void ScreenStack::popOtherOrientation() {
    const auto root = challengeRootVC_.lock();
    if (!root) return;
    copyTypedText(root->topViewController(), controllerFor(lastPresentedOrientation_));
    root->popViewController(UIAnimated::no);
    allPossibleControllersInStack_ = false;
}

} // namespace korvane
