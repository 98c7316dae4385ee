#pragma once

#include "Platform/Export.h"
#include "Sdk/Events/Events.h"

namespace korvane {

/// Hears the one ending of a challenge. Implemented by the application; every call comes on the main queue.
class KORVANE_EXPORT ChallengeStatusReceiver {
public:
    virtual ~ChallengeStatusReceiver() = default;

    /// The challenge ended with a final transaction status.
    virtual void completed(const CompletionEvent& event) = 0;

    /// The cardholder cancelled.
    virtual void cancelled() = 0;

    /// The time of `doChallenge` ran out.
    virtual void timedout() = 0;

    /// The ACS sent an error, or the library found one in its messages and told it so.
    virtual void protocolError(const ProtocolErrorEvent& event) = 0;

    /// Any other failure.
    virtual void runtimeError(const RuntimeErrorEvent& event) = 0;
};

} // namespace korvane
