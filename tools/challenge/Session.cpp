#include "tools/challenge/Session.h"

#include "Cardholder/Actions.h"
#include "Cardholder/Values.h"
#include "Input/Arguments.h"
#include "Platform/JSONBreak.h"
#include "Sdk/Events/SdkError.h"
#include "tools/challenge/Certificates.h"
#include "tools/challenge/FailureNames.h"
#include "tools/challenge/Hints.h"
#include "tools/common/Terminal.h"

#include <iostream>

namespace korvane::challenge {

namespace {

using cardholder::Cardholder;
using cardholder::Refusal;
using input::InputError;

class StandardErrorLogger final : public IKorvaneLogger {
public:
    void log(const std::string& message, const char* file, const char* function, unsigned line) override {
        const std::string text =
            std::string(file) + ":" + std::to_string(line) + " " + function + ": " + message;
        const std::string names = namesOfFailures(message);
        std::cerr << tools::printable(text + (names.empty() ? "" : " [" + names + "]") + "\n") << std::flush;
    }
};

} // namespace

Session::Session(HeadlessPlatform& platform, Options options, TransactionCerts certificates,
                 EventWriter& events, std::shared_ptr<const Wire> wire)
    : platform_(platform), options_(std::move(options)), certificates_(std::move(certificates)),
      events_(events), wire_(std::move(wire)) {}

void Session::begin() {
    cardholder_ = Cardholder::make(
        [weak = weak_from_this()](const JSON& event) {
            if (const auto self = weak.lock()) self->tell(event);
        },
        [weak = weak_from_this()] {
            if (const auto self = weak.lock()) self->stop();
        },
        [&platform = platform_](UIDeviceOrientation orientation, CGSize screen) {
            platform.turn(orientation, screen);
        });
    const auto logger = options_.isLogging ? std::make_shared<StandardErrorLogger>() : nullptr;
    service_.setCertProducer(std::make_shared<GivenCertificates>(certificates_));
    service_.initialize(std::make_shared<ConfigParameters>(), nullptr, logger, Locale{options_.locale});
    try {
        transaction_ = service_.createTransaction(options_.server.identifier, options_.messageVersion);
        const JSON request = cardholder::requestValues(transaction_->getAuthenticationRequestParameters());
        JSON event{{"event", "authenticationRequest"}};
        event.update(request);
        events_.write(event);
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
    while (turn_ == Turn::application || (cardholder_ && cardholder_->isWaiting())) {
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
        if (!object || !object->is_object()) throw Refusal(complaintAboutLine(line.text));
        if (turn_ == Turn::application)
            startChallenge(*object);
        else
            cardholder_->act(*object);
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
        startChallenge(cardholder::knownValues(*reply.values));
    } catch (const InputError& error) {
        giveUp("The answer's member " + error.description());
    }
}

void Session::startChallenge(const JSON& values) {
    auto parameters = cardholder::challengeParameters(values);
    signedContent_ = parameters->acsSignedContent.value_or(std::string());
    turn_ = Turn::library;
    cardholder_->begin(*transaction_, std::move(parameters), options_.timeout);
}

void Session::inputEnded() {
    if (cardholder_ && cardholder_->isWaiting()) {
        cardholder_->act({{"action", "cancel"}});
        return;
    }
    events_.writeError("The input ended before the challenge.");
    turn_ = Turn::nobody;
    stop();
}

/// A screen has use for a line; an ending may be told more about.
void Session::tell(JSON event) {
    if (hasEnded()) {
        turn_ = Turn::nobody;
        const std::string hint = hintAt(event, {*wire_, certificates_.dsRootCADerBytes, signedContent_});
        if (!hint.empty()) event["hint"] = hint;
    }
    events_.write(event);
    serveLines();
}

void Session::stop() {
    reader_ = nullptr;
    transaction_ = nullptr;
    platform_.stopMain();
}

} // namespace korvane::challenge
