#include "Sdk/Events/KorvaneError.h"

#include <array>
#include <string_view>
#include <utility>

namespace korvane {

namespace {

struct ErrorRow {
    ProtocolErrorCode code;
    std::string_view description;
    std::string_view details;
};

using enum ProtocolErrorCode;

constexpr std::array<ErrorRow, 8> kErrors{{
    {messageNotRecognised, "Message not recognised", "Invalid Message Type"},
    {elementMissing, "A message element required as defined in Table A.1 is missing from the message.",
     "List of missing fields."},
    {criticalExtension, "Critical message extension not recognised.",
     "List of ids of not recognised message extensions."},
    {elementInvalid, "Data element not in the required format or value is invalid as defined in Table A.1",
     "List of erroneous fields."},
    {elementRepeated, "Valid data element presents more than once in the message.",
     "List of erroneous fields."},
    {transactionUnknown, "Transaction ID received is not valid for the receiving component.",
     "The Transaction ID received was invalid."},
    {notDecrypted, "Data could not be decrypted by the receiving system due to technical or other reason.",
     "Data could not decrypt."},
    {timedOut, "Transaction timed-out.",
     "Timeout expiry reached for the transaction as defined in Section 5.5."},
}};

constexpr int kSystemFailure = 404;

} // namespace

KorvaneError KorvaneError::getErrorByCode(int code) {
    for (const ErrorRow& row : kErrors)
        if (static_cast<int>(row.code) == code)
            return {code, std::string(row.description), std::string(row.details)};
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
