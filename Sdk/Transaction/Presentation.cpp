#include "Sdk/Transaction/Transaction.h"

#include "Platform/NotificationCenter.h"
#include "Platform/Platform.h"
#include "Sdk/Events/SdkError.h"
#include "Ui/Screens/ChallengeStoryboard.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "Ui/Screens/TopController.h"
#include "Ui/Screens/VCFactory.h"

#include <algorithm>

namespace korvane {

namespace {

constexpr const char* kPresentRoot = "presentRootChallengeVc(_:)";
constexpr const char* kUpdate = "updateViewControllerContainer(for:)";

std::optional<UiType> uiTypeOf(const CRes& cRes) {
    return cRes.acsUiType ? fromRawValue<UiType>(*cRes.acsUiType) : std::nullopt;
}

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

/// A challenge that began with an HTML page stays with pages; the other way round nothing is said.
void Transaction::updateViewControllerContainer(const CRes& cRes) {
    using enum SdkErrorCase;
    const auto type = uiTypeOf(cRes);
    if (!channelgeFlowType_) {
        if (!type) KORVANE_RAISE(kUpdate, InvalidAcsResponseException, "Unknown CRes.acsUiType");
        channelgeFlowType_ = type;
    }
    if (channelgeFlowType_ == UiType::HTML_OTHER && type && type != UiType::HTML_OTHER)
        KORVANE_RAISE(kUpdate, InvalidAcsResponseException,
                      "Challenge attempts to switch between native and html challenge views.");
    const auto factory = vcFactory_.get();
    lastCResViewControllerContainer_.set(
        factory ? std::make_shared<const ViewControllerContainer>(factory->getViewControllerContainer(cRes))
                : nullptr);
}

std::shared_ptr<ChallengeViewController> Transaction::controllerFor(Orientation orientation) const {
    const auto container = lastCResViewControllerContainer_.get();
    if (!container) return nullptr;
    const auto controller = container->controllersMap().find(orientation);
    return controller == container->controllersMap().end() ? nullptr : controller->second;
}

void Transaction::presentRootChallengeVc(const CRes& cRes) {
    try {
        updateViewControllerContainer(cRes);
        if (const auto orientation = getOrientation()) lastPresentedOrientation_ = *orientation;
        present(firstController());
    } catch (const std::exception& error) {
        cancelChallengeTimer();
        const std::string text = "Got error on challenge VC init from CRes: " + genericDescription(error);
        KORVANE_LOG(kPresentRoot, text);
        endWithRuntimeError(text);
    }
}

std::shared_ptr<ChallengeViewController> Transaction::firstController() const {
    const auto container = lastCResViewControllerContainer_.get();
    const bool isHtml = container && container->isHtmlChallenge();
    const Orientation orientation = isHtml ? Orientation::PORTRAIT : lastPresentedOrientation_.load();
    auto controller = controllerFor(orientation);
    if (!controller)
        KORVANE_RAISE(kPresentRoot, SdkErrorCase::InvalidInputException,
                      "Can not get VC for " + std::string(rawValue(orientation)) +
                          " orientation from lastCResViewControllerContainer.controllersMap.");
    return controller;
}

void Transaction::present(std::shared_ptr<ChallengeViewController> controller) {
    const auto root = std::make_shared<ChallengeRootNavigationController>(std::move(controller));
    root->transaction = shared_from_this();
    challengeRootVC_ = root;
    if (const auto top = getTopController()) top->present(root, UIAnimated::yes);
    addOrientationListener();
    updatingOfLastCResViewControllerContainerInProgress_ = false;
}

void Transaction::addOrientationListener() {
    orientationListener_ = NotificationCenter::defaultCenter().addObserver(
        UIDevice::orientationDidChangeNotification, [weak = weak_from_this()](const Notification&) {
            if (const auto self = weak.lock()) self->didRotate();
        });
}

void Transaction::removeOrientationListener() {
    orientationListener_.reset();
}

void Transaction::didRotate() {
    changeOrientationQueue_->async([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->handleRotation();
    });
}

/// On the queue of the rotations, which waits for the main queue; that one never waits for it.
void Transaction::handleRotation() {
    const UIDeviceOrientation held = Platform::current().device().orientation();
    const auto& supported = supportedOrientations;
    if (std::find(supported.begin(), supported.end(), held) == supported.end()) return;
    if (updatingOfLastCResViewControllerContainerInProgress_) return;
    const auto orientation = getOrientation();
    if (!orientation || *orientation == lastPresentedOrientation_) return;
    lastPresentedOrientation_ = *orientation;
    Platform::current().dispatch().mainQueue().sync([this] { swapOrientations(); });
}

/// On the main queue, where what is held of screens may be the last of them.
void Transaction::swapOrientations() {
    const auto container = lastCResViewControllerContainer_.get();
    if (!container || container->isHtmlChallenge()) return;
    if (allPossibleControllersInStack_)
        popOtherOrientation();
    else
        pushOtherOrientation();
}

void Transaction::pushOtherOrientation() {
    const auto root = challengeRootVC_.lock();
    const auto controller = controllerFor(lastPresentedOrientation_);
    if (!root || !controller) return;
    const auto top = root->topViewController();
    if (top == controller) return;
    copyTypedText(top, controller);
    root->pushViewController(controller, UIAnimated::no);
    allPossibleControllersInStack_ = true;
}

void Transaction::popOtherOrientation() {
    const auto root = challengeRootVC_.lock();
    if (!root) return;
    copyTypedText(root->topViewController(), controllerFor(lastPresentedOrientation_));
    root->popViewController(UIAnimated::no);
    allPossibleControllersInStack_ = false;
}

void Transaction::presentWeb(const std::string& html) {
    std::shared_ptr<ChallengeWebViewController> screen;
    try {
        const UIStoryboard storyboard = challengeStoryboard();
        screen = std::dynamic_pointer_cast<ChallengeWebViewController>(
            storyboard.instantiateViewController("htmlChallengeVc"));
    } catch (const UIStoryboardError&) {
        // Told below, as the screen that is missing.
    }
    if (!screen) {
        KORVANE_LOG("presentWeb(html:)", "Can not get VC for htmlChallengeVc.");
        return;
    }
    static_cast<void>(screen->view());
    screen->pageString = html;
    screen->challengeWebView->loadHTMLString(html);
    if (const auto top = getTopController()) top->present(screen, UIAnimated::yes);
}

void Transaction::presentRoot(ByteView CResData) {
    try {
        processInitCRes(CRes::decode(asText(CResData)));
    } catch (const std::exception& error) {
        fatalError(error.what());
    }
}

} // namespace korvane
