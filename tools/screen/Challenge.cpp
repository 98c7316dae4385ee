#include "tools/screen/Challenge.h"

#include "Cardholder/Values.h"
#include "Input/InputError.h"
#include "Sdk/Events/SdkError.h"
#include "tools/challenge/Certificates.h"

#include <utility>

namespace korvane::screen {

namespace {

constexpr const char* kMessageVersion = "2.2.0";
constexpr const char* kLocale = "en-US";
constexpr std::int64_t kMinutes = 60; // who looks at screens takes time

} // namespace

Challenge::Challenge(AcsOptions options, Theme theme, std::shared_ptr<const challenge::Wire> wire,
                     std::function<void(const Ending&)> ended)
    : options_(std::move(options)), theme_(std::move(theme)), wire_(std::move(wire)),
      ended_(std::move(ended)) {}

void Challenge::begin() {
    try {
        service_.setCertProducer(
            std::make_shared<challenge::GivenCertificates>(challenge::readTransactionCerts(options_.server)));
        service_.initialize(std::make_shared<ConfigParameters>(), theme_.customization, theme_.constraints,
                            nullptr, Locale{kLocale});
        transaction_ = service_.createTransaction(options_.server.identifier, kMessageVersion);
        challenge::askServer(options_.url,
                             cardholder::requestValues(transaction_->getAuthenticationRequestParameters()),
                             wire_, [weak = weak_from_this()](const challenge::ServerReply& reply) {
                                 if (const auto self = weak.lock()) self->takeReply(reply);
                             });
    } catch (const SdkError& error) {
        end({}, error.message());
    }
}

void Challenge::takeReply(const challenge::ServerReply& reply) {
    if (!reply.values) return end({}, options_.url + ": " + reply.complaint);
    try {
        transaction_->doChallenge(cardholder::challengeParameters(cardholder::knownValues(*reply.values)),
                                  shared_from_this(), kMinutes);
    } catch (const input::InputError& error) {
        end({}, options_.url + ": The answer's member " + error.description());
    }
}

void Challenge::completed(const CompletionEvent& event) {
    end("completed", "The challenge was completed with status " + event.getTransactionStatus() + ".");
}

void Challenge::cancelled() {
    end("cancelled", "The challenge was cancelled.");
}

void Challenge::timedout() {
    end("timedout", "The challenge took too long.");
}

void Challenge::protocolError(const ProtocolErrorEvent& event) {
    const ErrorMessage& error = event.getErrorMessage();
    end("protocolError", "The challenge ended with error " + error.getErrorCode() + ": " +
                             error.getErrorDescription() + " (" + error.getErrorDetails() + ")");
}

void Challenge::runtimeError(const RuntimeErrorEvent& event) {
    end("runtimeError", "The challenge ended with an error of the library's: " + event.getErrorMessage());
}

/// The transaction holds this object as its receiver, so that it is let go here.
void Challenge::end(const std::string& event, const std::string& text) {
    const auto ended = std::exchange(ended_, nullptr);
    if (!ended) return;
    const auto self = shared_from_this();
    transaction_ = nullptr;
    ended({event, text});
}

} // namespace korvane::screen
