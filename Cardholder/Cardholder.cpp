#include "Cardholder/Cardholder.h"

#include "Cardholder/Actions.h"
#include "Cardholder/ScreenText.h"
#include "Platform/Platform.h"
#include "Platform/View/UIApplication.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "Ui/Screens/TopController.h"

#include <algorithm>
#include <utility>

namespace korvane::cardholder {

namespace {

constexpr CGSize kPhone{390, 844};

/// How long a turned device may take to show another screen; after that the present one stays.
constexpr Seconds kTurnLimit{0.5};
/// Longer than anything takes after the screens have gone: the rest of an exchange, and an error to the ACS.
constexpr Seconds kSilenceLimit{16};

DispatchQueue& mainQueue() {
    return Platform::current().dispatch().mainQueue();
}

int pageOf(const ChallengeViewController& screen) {
    const auto* page = dynamic_cast<const ChallengeWebViewController*>(&screen);
    return page ? page->challengeWebView->loadCount() : 0;
}

} // namespace

std::shared_ptr<Cardholder> Cardholder::make(Tell tell, Finish finish, Turn turn) {
    auto made = std::make_shared<Cardholder>(Private(), std::move(tell), std::move(finish), std::move(turn));
    made->openWindow();
    return made;
}

Cardholder::Cardholder(Private, Tell tell, Finish finish, Turn turn)
    : tell_(std::move(tell)), finish_(std::move(finish)), turnTo_(std::move(turn)) {}

/// A platform holds windows until they are removed; the challenge may have had no end.
Cardholder::~Cardholder() {
    if (window_ && Platform::isInstalled()) UIApplication::shared().remove(window_);
}

void Cardholder::openWindow() {
    const CGSize size = Platform::current().mainScreen().bounds().size;
    if (size.width <= 0 || size.height <= 0) turnTo_(UIDeviceOrientation::portrait, kPhone);
    window_ = std::make_shared<UIWindow>();
    host_ = std::make_shared<UIViewController>();
    window_->setRootViewController(host_);
    window_->makeKeyAndVisible();
    finger_ = std::make_unique<Finger>(window_);
    window_->setFrameRequest([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->lookSoon();
    });
}

void Cardholder::begin(Transaction& transaction, std::shared_ptr<ChallengeParameters> parameters,
                       std::int64_t minutes) {
    turn_ = Whose::librarys;
    transaction.doChallenge(std::move(parameters), shared_from_this(), minutes);
}

void Cardholder::act(const JSON& action) {
    if (!isWaiting()) throw Refusal("No screen waits for an action.");
    const Stage stage{standingScreen(), *finger_,
                      [this](UIDeviceOrientation orientation) { turnDevice(orientation); }};
    if (!stage.screen) throw Refusal("The screen has gone.");
    const Aftermath aftermath = performAction(action, stage);
    turn_ = Whose::librarys;
    if (aftermath == Aftermath::screen && !stage.screen->spinner) showAgain();
}

// Screens.

void Cardholder::lookSoon() {
    mainQueue().async([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->look();
    });
}

std::shared_ptr<ChallengeViewController> Cardholder::standingScreen() const {
    return std::dynamic_pointer_cast<ChallengeViewController>(getTopController());
}

/// Tells of a screen once it stands and nothing is under way on it.
void Cardholder::look() {
    window_->layoutIfNeeded();
    window_->frameTaken();
    const auto screen = standingScreen();
    if (!screen) {
        watchForSilentEnd();
        return;
    }
    if (!screen->hasAppeared()) {
        lookSoon();
        return;
    }
    const bool isNew = shown_.lock() != screen || shownPage_ != pageOf(*screen);
    if (!isNew || screen->spinner || turn_ != Whose::librarys) return;
    shown_ = screen;
    shownPage_ = pageOf(*screen);
    turn_ = Whose::cardholders;
    tell_(screenEvent(*screen));
}

void Cardholder::showAgain() {
    shown_.reset();
    lookSoon();
}

void Cardholder::turnDevice(UIDeviceOrientation orientation) {
    const CGSize size = Platform::current().mainScreen().bounds().size;
    const auto [shorter, longer] = std::minmax(size.width, size.height);
    const bool isUpright = orientation == UIDeviceOrientation::portrait;
    turnTo_(orientation, isUpright ? CGSize{shorter, longer} : CGSize{longer, shorter});
    const auto work = [weak = weak_from_this()] {
        if (const auto self = weak.lock(); self && self->turn_ == Whose::librarys) self->showAgain();
    };
    mainQueue().asyncAfter(kTurnLimit, std::make_shared<DispatchWorkItem>(work));
}

/// The library can take its last screen away without telling an ending.
void Cardholder::watchForSilentEnd() {
    if (shown_.expired() || hasEnded_) return;
    shown_.reset();
    const auto work = [weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self || self->hasEnded_ || self->standingScreen()) return;
        self->tell_(
            {{"event", "error"}, {"message", "The screens have gone and the library told no ending."}});
        self->finish();
    };
    mainQueue().asyncAfter(kSilenceLimit, std::make_shared<DispatchWorkItem>(work));
}

// Endings.

void Cardholder::completed(const CompletionEvent& event) {
    end({{"event", "completed"},
         {"sdkTransactionID", event.getSdkTransactionID()},
         {"transactionStatus", event.getTransactionStatus()}});
}

void Cardholder::cancelled() {
    end({{"event", "cancelled"}});
}

void Cardholder::timedout() {
    end({{"event", "timedout"}});
}

void Cardholder::protocolError(const ProtocolErrorEvent& event) {
    const ErrorMessage& error = event.getErrorMessage();
    end({{"event", "protocolError"},
         {"sdkTransactionID", event.getSdkTransactionID()},
         {"errorCode", error.getErrorCode()},
         {"errorDescription", error.getErrorDescription()},
         {"errorDetails", error.getErrorDetails()},
         {"transactionID", error.getTransactionID()}});
}

void Cardholder::runtimeError(const RuntimeErrorEvent& event) {
    end({{"event", "runtimeError"},
         {"errorCode", event.getErrorCode()},
         {"errorMessage", event.getErrorMessage()}});
}

/// Only the first ending counts: a challenge whose time ran out before its first screen may go on unseen.
void Cardholder::end(const JSON& event) {
    if (std::exchange(hasEnded_, true)) return;
    turn_ = Whose::nobodys;
    finishWhenScreensAreGone();
    tell_(event);
}

/// With the screens goes what the library still has to tell the ACS.
void Cardholder::finishWhenScreensAreGone() {
    mainQueue().async([weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self) return;
        if (self->host_->presentedViewController())
            self->finishWhenScreensAreGone();
        else
            mainQueue().async([self] { self->finish(); });
    });
}

/// The screen is free for another challenge.
void Cardholder::finish() {
    turn_ = Whose::nobodys;
    UIApplication::shared().remove(window_);
    if (const auto told = std::exchange(finish_, nullptr)) told();
}

} // namespace korvane::cardholder
