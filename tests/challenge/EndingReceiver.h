#pragma once

#include "Sdk/Events/ChallengeStatusReceiver.h"

#include <string>

namespace korvane {

/// Puts what an application hears into one text, such as "completed(id, Y)".
class EndingReceiver : public ChallengeStatusReceiver {
public:
    void completed(const CompletionEvent& event) override {
        hear("completed(" + event.getSdkTransactionID() + ", " + event.getTransactionStatus() + ")");
    }
    void cancelled() override { hear("cancelled"); }
    void timedout() override { hear("timedout"); }
    void protocolError(const ProtocolErrorEvent& event) override {
        const ErrorMessage& error = event.getErrorMessage();
        hear("protocolError(" + event.getSdkTransactionID() + ", " + error.getErrorCode() + ", " +
             error.getErrorDetails() + ")");
    }
    void runtimeError(const RuntimeErrorEvent& event) override {
        hear("runtimeError(" + event.getErrorCode() + ", " + event.getErrorMessage() + ")");
    }

protected:
    virtual void hear(std::string ending) = 0;
};

} // namespace korvane
