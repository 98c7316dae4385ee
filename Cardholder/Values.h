#pragma once

#include "Platform/JSON.h"
#include "Sdk/Messages/ChallengeParameters.h"
#include "Sdk/Transaction/AuthenticationRequestParameters.h"

#include <memory>

namespace korvane::cardholder {

// What goes out to the 3DS server and comes back from it, as JSON.

[[nodiscard]] JSON requestValues(const AuthenticationRequestParameters& request);

/// The values among what a server answers, which may say more than a challenge needs.
[[nodiscard]] JSON knownValues(const JSON& answer);

/// @throws InputError for a member that is not known, and for one that is no text.
[[nodiscard]] std::shared_ptr<ChallengeParameters> challengeParameters(const JSON& values);

} // namespace korvane::cardholder
