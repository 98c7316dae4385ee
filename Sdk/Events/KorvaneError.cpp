#include "Sdk/Events/KorvaneError.h"

#include <optional>
#include <string_view>
#include <utility>

namespace korvane {

namespace {

struct Texts {
    std::string_view description;
    std::string_view details;
};

/// The texts of a code; a number that the protocol has no code for has none.
std::optional<Texts> textsOf(ProtocolErrorCode code) {
    using enum ProtocolErrorCode;
    switch (code) {
    case messageNotRecognised: return Texts{"Message not recognised", "Invalid Message Type"};
    case elementMissing:
        return Texts{"A message element required as defined in Table A.1 is missing from the message.",
                     "List of missing fields."};
    case criticalExtension:
        return Texts{"Critical message extension not recognised.",
                     "List of ids of not recognised message extensions."};
    case elementInvalid:
        return Texts{"Data element not in the required format or value is invalid as defined in Table A.1",
                     "List of erroneous fields."};
    case elementRepeated:
        return Texts{"Valid data element presents more than once in the message.",
                     "List of erroneous fields."};
    case transactionUnknown:
        return Texts{"Transaction ID received is not valid for the receiving component.",
                     "The Transaction ID received was invalid."};
    case notDecrypted:
        return Texts{"Data could not be decrypted by the receiving system due to technical or other reason.",
                     "Data could not decrypt."};
    case timedOut:
        return Texts{"Transaction timed-out.",
                     "Timeout expiry reached for the transaction as defined in Section 5.5."};
    }
    return std::nullopt;
}

constexpr int kSystemFailure = 404;

} // namespace

KorvaneError KorvaneError::getErrorByCode(int code) {
    if (const auto texts = textsOf(ProtocolErrorCode{code}))
        return {code, std::string(texts->description), std::string(texts->details)};
    return {kSystemFailure, "Permanent system failure.", "Unknown code " + std::to_string(code)};
}

KorvaneError KorvaneError::getErrorByCode(ProtocolErrorCode code) {
    return getErrorByCode(static_cast<int>(code));
}

KorvaneError KorvaneError::withDetails(ProtocolErrorCode code, std::string details) {
    KorvaneError error = getErrorByCode(code);
    error.details = std::move(details);
    return error;
}

RuntimeErrorEvent convertKorvaneErrorToRuntimeError(const KorvaneError& error) {
    return {std::to_string(error.code), error.description};
}

} // namespace korvane
