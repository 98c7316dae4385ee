#pragma once

#include "Sdk/Events/ChallengeStatusReceiver.h"

#include <functional>
#include <string>
#include <utility>

namespace korvane {

/// Puts what an application hears into one text, such as "completed(id, Y)".
class EndingReceiver final : public ChallengeStatusReceiver {
public:
    explicit EndingReceiver(std::function<void(std::string)> hear) : hear_(std::move(hear)) {}

    void completed(const CompletionEvent& event) override {
        hear_("completed(" + event.getSdkTransactionID() + ", " + event.getTransactionStatus() + ")");
    }
    void cancelled() override { hear_("cancelled"); }
    void timedout() override { hear_("timedout"); }
    void protocolError(const ProtocolErrorEvent& event) override {
        const ErrorMessage& error = event.getErrorMessage();
        hear_("protocolError(" + event.getSdkTransactionID() + ", " + error.getErrorCode() + ", " +
              error.getErrorDetails() + ")");
    }
    void runtimeError(const RuntimeErrorEvent& event) override {
        hear_("runtimeError(" + event.getErrorCode() + ", " + event.getErrorMessage() + ")");
    }

private:
    std::function<void(std::string)> hear_;
};

} // namespace korvane
