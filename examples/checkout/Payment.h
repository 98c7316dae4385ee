#pragma once

#include "Platform/JSON.h"
#include "Sdk/Service/ThreeDS2Service.h"
#include "Ui/Customisation/Theme.h"
#include "examples/checkout/Acs.h"
#include "examples/checkout/Cards.h"
#include "examples/checkout/Outcome.h"

#include <QObject>

#include <functional>
#include <memory>

namespace korvane::checkout {

/// One payment, as a merchant's app makes it: the authentication request goes through the shop's server, and
/// where the bank asks for a challenge, the library takes over until it tells the ending. Main thread.
class Payment final : public ChallengeStatusReceiver, public std::enable_shared_from_this<Payment> {
public:
    /// Hears the ending, once; it may let the payment go.
    using Ended = std::function<void(const Outcome&)>;

    Payment(const Card& card, korvane::Theme look, Ended ended);
    Payment(const Payment&) = delete;
    Payment& operator=(const Payment&) = delete;
    ~Payment() override = default;

    void begin(Acs& acs);

    /// Ends the payment, for which the library has told no ending.
    void giveUp() { end(unheardOutcome()); }

    void completed(const CompletionEvent& event) override { end(outcomeOf(event)); }
    void cancelled() override { end(cancelledOutcome()); }
    void timedout() override { end(timedOutOutcome()); }
    void protocolError(const ProtocolErrorEvent& event) override { end(outcomeOf(event)); }
    void runtimeError(const RuntimeErrorEvent& event) override { end(outcomeOf(event)); }

private:
    void createTransaction(const AcsSite& site);
    void authenticate(const AcsSite& site);
    void takeAnswer(const std::optional<Bytes>& body, const std::optional<std::string>& error);
    void challenge(const JSON& answer);
    void end(const Outcome& outcome);

    const Card& card_;
    const korvane::Theme look_;
    Ended ended_;
    ThreeDS2Service service_;
    std::shared_ptr<Transaction> transaction_;
};

} // namespace korvane::checkout
