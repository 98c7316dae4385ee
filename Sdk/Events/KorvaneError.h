#pragma once

#include "Sdk/Events/Events.h"

#include <string>

namespace korvane {

/// The protocol's error codes that the library finds itself. Source: EMV 3-D Secure, error codes.
enum class ProtocolErrorCode : int {
    messageNotRecognised = 101,
    elementMissing = 201,
    criticalExtension = 202,
    elementInvalid = 203,
    elementRepeated = 204,
    transactionUnknown = 301,
    notDecrypted = 302,
    timedOut = 402,
};

/// An error of the challenge protocol as it travels inside the library: a value, not a raised failure. `code`
/// is the protocol's error code.
struct KorvaneError {
    int code;
    std::string description;
    std::string details;

    /// The protocol's texts for a code. A code that has none gives 404, with the code
    /// asked for in the details.
    [[nodiscard]] static KorvaneError getErrorByCode(int code);
    [[nodiscard]] static KorvaneError getErrorByCode(ProtocolErrorCode code);
    /// The same, with what is known of this case in place of the details.
    [[nodiscard]] static KorvaneError withDetails(ProtocolErrorCode code, std::string details);

    friend bool operator==(const KorvaneError&, const KorvaneError&) = default;
};

/// The code as decimal text, and the description; the details are dropped.
[[nodiscard]] RuntimeErrorEvent convertKorvaneErrorToRuntimeError(const KorvaneError& error);

} // namespace korvane
