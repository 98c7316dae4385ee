#pragma once

#include "Platform/JSON.h"
#include "Sdk/Messages/CRes.h"
#include "Sdk/Messages/ChallengeParameters.h"

namespace korvane {

/// Identifiers of one transaction, as they stand in its messages.
inline constexpr const char* kServerTransID = "8a880dc0-d2d2-4067-bcb1-b08d1690b26e";
inline constexpr const char* kAcsTransID = "d7c1ee99-9478-44a6-b1f2-391e29c6b340";
inline constexpr const char* kSdkTransID = "b2385523-a66c-4907-ac3c-91848e8c0067";

/// The JSON of a valid text challenge, with counter 1 and version 2.2.0.
[[nodiscard]] JSON validCResJSON();

/// The same, decoded.
[[nodiscard]] CRes validCRes();

/// The JSON of a valid final response.
[[nodiscard]] JSON finalCResJSON();

/// What the application handed over for this transaction.
[[nodiscard]] ChallengeParameters validParameters();

} // namespace korvane
