#include "tools/challenge/Session.h"

#include "Platform/View/UIApplication.h"
#include "Sdk/Events/SdkError.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "Ui/Screens/TopController.h"
#include "tools/challenge/Actions.h"
#include "tools/challenge/FailureNames.h"
#include "tools/challenge/Hints.h"
#include "tools/challenge/ScreenText.h"
#include "tools/common/Arguments.h"
#include "tools/common/JSONBreak.h"
#include "tools/common/Terminal.h"

#include <iostream>

namespace korvane::challenge {

namespace {

using tools::Arguments;
using tools::InputError;
using tools::Member;
using tools::MemberType;
using tools::Presence;

constexpr CGSize kPortrait{390, 844};
constexpr CGSize kLandscape{844, 390};

/// How long a turned device may take to show another screen; after that the present one stays.
constexpr Seconds kTurnLimit{0.5};
/// Longer than anything takes after the screens have gone: the rest of an exchange, and an error to the ACS.
constexpr Seconds kSilenceLimit{16};

class StandardErrorLogger final : public IKorvaneLogger {
public:
    void log(const std::string& message, const char* file, const char* function, unsigned line) override {
        const std::string text =
            std::string(file) + ":" + std::to_string(line) + " " + function + ": " + message;
        const std::string names = namesOfFailures(message);
        std::cerr << tools::printable(text + (names.empty() ? "" : " [" + names + "]") + "\n") << std::flush;
    }
};

class GivenCertificates final : public TransactionCertsProducerProtocol {
public:
    explicit GivenCertificates(TransactionCerts certificates) : certificates_(std::move(certificates)) {}

    [[nodiscard]] TransactionCerts getCerts(const std::string& /*directoryServerID*/) override {
        return certificates_;
    }

private:
    TransactionCerts certificates_;
};

constexpr Member kValues[] = {
    {"threeDSServerTransID", MemberType::text, Presence::optional},
    {"acsTransID", MemberType::text, Presence::optional},
    {"acsRefNumber", MemberType::text, Presence::optional},
    {"acsSignedContent", MemberType::text, Presence::optional},
    {"threeDSRequestorAppURL", MemberType::text, Presence::optional},
    // What the directory server read of the device: the test ACS shows it, and no challenge needs it.
    {"deviceData", MemberType::object, Presence::optional},
};

/// Of what a server answers: it may say more than a challenge needs.
JSON knownValues(const JSON& answer) {
    JSON values = JSON::object();
    for (const Member& member : kValues)
        if (const auto found = answer.find(member.name); found != answer.end() && member.name != "deviceData")
            values[std::string(member.name)] = *found;
    return values;
}

JSON requestEvent(const AuthenticationRequestParameters& request) {
    return JSON::object({{"event", "authenticationRequest"},
                         {"deviceData", request.getDeviceData()},
                         {"sdkTransId", request.getSDKTransactionID()},
                         {"sdkAppID", request.getSDKAppID()},
                         {"sdkReferenceNum", request.getSDKReferenceNumber()},
                         {"ephemeralPublic", JSON::parse(request.getSDKEphemeralPublicKey())},
                         {"messageVersion", request.getMessageVersion()}});
}

int pageOf(const ChallengeViewController& screen) {
    const auto* page = dynamic_cast<const ChallengeWebViewController*>(&screen);
    return page ? page->challengeWebView->loadCount() : 0;
}

} // namespace

Session::Session(HeadlessPlatform& platform, Options options, TransactionCerts certificates,
                 EventWriter& events, std::shared_ptr<const Wire> wire)
    : platform_(platform), options_(std::move(options)), certificates_(std::move(certificates)),
      events_(events), wire_(std::move(wire)) {}

void Session::begin() {
    platform_.turn(UIDeviceOrientation::portrait, kPortrait);
    window_ = std::make_shared<UIWindow>();
    host_ = std::make_shared<UIViewController>();
    window_->setRootViewController(host_);
    window_->makeKeyAndVisible();
    finger_.emplace(window_);
    window_->setFrameRequest([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->lookSoon();
    });
    const auto logger = options_.isLogging ? std::make_shared<StandardErrorLogger>() : nullptr;
    service_.setCertProducer(std::make_shared<GivenCertificates>(certificates_));
    service_.initialize(std::make_shared<ConfigParameters>(), nullptr, logger, Locale{options_.locale});
    try {
        transaction_ = service_.createTransaction(options_.directoryServer, options_.messageVersion);
        const JSON request = requestEvent(transaction_->getAuthenticationRequestParameters());
        events_.write(request);
        if (!options_.authenticate.empty()) authenticate(request);
    } catch (const SdkError& error) {
        const std::string kind(rawValue(error.kind()));
        events_.write({{"event", "sdkError"}, {"kind", kind}, {"message", error.message()}});
        stop();
        return;
    }
    reader_ = std::make_unique<LineReader>(platform_.dispatch(), [weak = weak_from_this()](InputLine line) {
        if (const auto self = weak.lock()) self->takeLine(std::move(line));
    });
    serveLines();
}

// Lines.

void Session::takeLine(InputLine line) {
    lines_.push_back(std::move(line));
    serveLines();
}

void Session::serveLines() {
    while (turn_ == Turn::application || turn_ == Turn::cardholder) {
        // Who does not see the screens cannot answer them.
        if (!events_.isGood()) {
            inputEnded();
            return;
        }
        if (lines_.empty()) return;
        const InputLine line = std::move(lines_.front());
        lines_.pop_front();
        serve(line);
    }
}

/// A line that cannot be served changes nothing.
void Session::serve(const InputLine& line) {
    try {
        if (line.kind == InputLine::Kind::end) {
            inputEnded();
            return;
        }
        if (line.kind == InputLine::Kind::tooLong) throw Refusal("The line has more than 1 MiB.");
        const auto object = JSONSerialization::jsonObject(line.text);
        if (!object || !object->is_object()) throw Refusal(tools::complaintAboutLine(line.text));
        if (turn_ == Turn::application)
            startChallenge(*object);
        else
            act(*object);
    } catch (const InputError& error) {
        events_.writeError(error.description());
    } catch (const Refusal& refusal) {
        events_.writeError(refusal.what());
    }
}

void Session::authenticate(const JSON& request) {
    turn_ = Turn::library;
    askServer(options_.authenticate, request, wire_, [weak = weak_from_this()](const ServerReply& reply) {
        if (const auto self = weak.lock()) self->takeReply(reply);
    });
}

void Session::takeReply(const ServerReply& reply) {
    const auto giveUp = [this](const std::string& complaint) {
        events_.writeError(options_.authenticate + ": " + complaint);
        turn_ = Turn::nobody;
        stop();
    };
    if (!reply.values) return giveUp(reply.complaint);
    try {
        startChallenge(knownValues(*reply.values));
    } catch (const InputError& error) {
        giveUp("The answer's member " + error.description());
    }
}

void Session::startChallenge(const JSON& values) {
    const Arguments arguments(values, kValues);
    const auto parameters = std::make_shared<ChallengeParameters>();
    parameters->tdsServerTransactionId = arguments.textIfPresent("threeDSServerTransID");
    parameters->acsTransactionId = arguments.textIfPresent("acsTransID");
    parameters->acsRefNumber = arguments.textIfPresent("acsRefNumber");
    parameters->acsSignedContent = arguments.textIfPresent("acsSignedContent");
    parameters->tdsRequestorAppURL = arguments.textIfPresent("threeDSRequestorAppURL");
    signedContent_ = parameters->acsSignedContent.value_or(std::string());
    turn_ = Turn::library;
    transaction_->doChallenge(parameters, shared_from_this(), options_.timeout);
}

void Session::act(const JSON& line) {
    const Stage stage{standingScreen(), *finger_,
                      [this](UIDeviceOrientation orientation) { turnDevice(orientation); }};
    const Aftermath aftermath = performAction(line, stage);
    turn_ = Turn::library;
    if (aftermath == Aftermath::screen && !stage.screen->spinner) showAgain();
}

void Session::inputEnded() {
    if (turn_ == Turn::cardholder) {
        act({{"action", "cancel"}});
        return;
    }
    events_.writeError("The input ended before the challenge.");
    turn_ = Turn::nobody;
    stop();
}

// Screens.

void Session::lookSoon() {
    platform_.dispatch().mainQueue().async([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->look();
    });
}

std::shared_ptr<ChallengeViewController> Session::standingScreen() const {
    return std::dynamic_pointer_cast<ChallengeViewController>(getTopController());
}

/// Tells of a screen once it stands and nothing is under way on it.
void Session::look() {
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
    if (!isNew || screen->spinner || turn_ != Turn::library) return;
    shown_ = screen;
    shownPage_ = pageOf(*screen);
    turn_ = Turn::cardholder;
    events_.write(screenEvent(*screen));
    serveLines();
}

void Session::showAgain() {
    shown_.reset();
    lookSoon();
}

void Session::turnDevice(UIDeviceOrientation orientation) {
    platform_.turn(orientation, orientation == UIDeviceOrientation::portrait ? kPortrait : kLandscape);
    const auto work = [weak = weak_from_this()] {
        if (const auto self = weak.lock(); self && self->turn_ == Turn::library) self->showAgain();
    };
    platform_.dispatch().mainQueue().asyncAfter(kTurnLimit, std::make_shared<DispatchWorkItem>(work));
}

/// The library can take its last screen away without telling an ending.
void Session::watchForSilentEnd() {
    if (shown_.expired() || hasEnded_) return;
    shown_.reset();
    const auto work = [weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self || self->hasEnded_ || self->standingScreen()) return;
        self->events_.writeError("The screens have gone and the library told no ending.");
        self->stop();
    };
    platform_.dispatch().mainQueue().asyncAfter(kSilenceLimit, std::make_shared<DispatchWorkItem>(work));
}

// Endings.

void Session::completed(const CompletionEvent& event) {
    end({{"event", "completed"},
         {"sdkTransactionID", event.getSdkTransactionID()},
         {"transactionStatus", event.getTransactionStatus()}});
}

void Session::cancelled() {
    end({{"event", "cancelled"}});
}

void Session::timedout() {
    end({{"event", "timedout"}});
}

void Session::protocolError(const ProtocolErrorEvent& event) {
    const ErrorMessage& error = event.getErrorMessage();
    end({{"event", "protocolError"},
         {"sdkTransactionID", event.getSdkTransactionID()},
         {"errorCode", error.getErrorCode()},
         {"errorDescription", error.getErrorDescription()},
         {"errorDetails", error.getErrorDetails()},
         {"transactionID", error.getTransactionID()}});
}

void Session::runtimeError(const RuntimeErrorEvent& event) {
    end({{"event", "runtimeError"},
         {"errorCode", event.getErrorCode()},
         {"errorMessage", event.getErrorMessage()}});
}

/// Only the first ending counts: a challenge whose time ran out before its first screen may go on unseen.
void Session::end(JSON event) {
    if (std::exchange(hasEnded_, true)) return;
    turn_ = Turn::nobody;
    const std::string hint = hintAt(event, {*wire_, certificates_.dsRootCADerBytes, signedContent_});
    if (!hint.empty()) event["hint"] = hint;
    events_.write(event);
    stopWhenScreensAreGone();
}

/// The transaction holds this object as its receiver.
void Session::stop() {
    reader_ = nullptr;
    transaction_ = nullptr;
    platform_.stopMain();
}

/// With the screens goes what the library still has to tell the ACS.
void Session::stopWhenScreensAreGone() {
    platform_.dispatch().mainQueue().async([weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self) return;
        if (self->host_->presentedViewController())
            self->stopWhenScreensAreGone();
        else
            self->platform_.dispatch().mainQueue().async([self] { self->stop(); });
    });
}

} // namespace korvane::challenge
