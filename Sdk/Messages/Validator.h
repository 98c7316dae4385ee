#pragma once

#include "Sdk/Events/KorvaneError.h"
#include "Sdk/Messages/CRes.h"
#include "Sdk/Messages/ChallengeParameters.h"

#include <optional>
#include <string>

namespace korvane {

/// What a response is judged by. Borrows response and parameters.
struct ValidationContainer {
    const CRes& cRes;
    /// The transaction's counter of sent requests at this moment.
    int counter;
    /// The version of this transaction.
    std::string messageVersion;
    const ChallengeParameters& challengeParameters;
    /// In lower case.
    std::string sdkTransactionID;
    /// True for the response to the first request of the challenge.
    bool initCRes;
};

/// Judges a decoded response before the library acts on it. Lengths are user-perceived characters.
class Validator {
public:
    /// Five stages, in order: counter, required fields, transaction identifiers, values, critical
    /// extensions. Inside a stage all rules run and their findings are listed; the first stage that finds
    /// anything ends the judgement.
    /// @return no value for an accepted response, else the protocol's error with the names at
    /// fault in its details.
    [[nodiscard]] static std::optional<KorvaneError> validateCRes(const ValidationContainer& container);
};

} // namespace korvane
