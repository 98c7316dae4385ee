#pragma once

#include "Platform/Bytes.h"
#include "Platform/Export.h"
#include "Sdk/Events/ChallengeStatusReceiver.h"
#include "Sdk/Messages/ChallengeParameters.h"
#include "Sdk/Transaction/AuthenticationRequestParameters.h"
#include "Ui/Screens/ProgressDialog.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace korvane {

struct TransactionArguments;

/// One 3DS transaction: the values of its authentication request, and the challenge if the ACS demands one.
/// Made by `ThreeDS2Service::createTransaction`. A running challenge goes on when the application lets go.
class KORVANE_EXPORT Transaction final {
    struct Private {};

public:
    [[nodiscard]] static std::shared_ptr<Transaction> make(TransactionArguments arguments);

    Transaction(Private, TransactionArguments arguments);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    /// The values to send through the 3DS server: the same ones at each call. Any thread, beside a
    /// running challenge too.
    /// @throws SdkError InvalidInputException without an ephemeral key.
    [[nodiscard]] AuthenticationRequestParameters getAuthenticationRequestParameters() const;

    /// Starts the challenge that the ACS demands and returns at once. Everything else reaches the receiver,
    /// on the main queue: one ending. To be called once for a transaction, on any thread; a challenge that
    /// ended before it had a screen may be started anew.
    /// @param timeout  for the whole challenge, in minutes; with 0 or less it is over at once. A number whose
    ///                 seconds cannot be counted ends the process (`fatalError`).
    void doChallenge(std::shared_ptr<ChallengeParameters> challengeParameters,
                     std::shared_ptr<ChallengeStatusReceiver> challengeStatusReceiver, std::int64_t timeout);

    /// What the application can show while it waits: a spinner of its own producer where there is one and a
    /// controller to cover, else the library's. Any thread.
    [[nodiscard]] std::shared_ptr<ProgressDialog> getProgressView() const;

    /// Does nothing: what a transaction holds is released with it.
    void close() {}

    /// What the cardholder entered last; no value before.
    [[nodiscard]] std::optional<std::string> challengeData() const;

    // Ways to a screen without an ACS, to try screens out.

    /// Presents a page. Main queue only.
    void presentWeb(const std::string& html);
    /// Presents the screen of a response; one that is none ends the process (`fatalError`).
    /// Blocks for the logos.
    void presentRoot(ByteView CResData);

private:
    struct Parts;
    const std::unique_ptr<const Parts> parts_;
};

} // namespace korvane
