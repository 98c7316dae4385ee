#include "Sdk/Events/KorvaneError.h"

#include <array>
#include <string_view>

namespace korvane {

namespace {

struct ErrorRow {
    int code;
    std::string_view description;
    std::string_view details;
};

constexpr std::array<ErrorRow, 8> kErrors{{
    {101, "Message not recognised", "Invalid Message Type"},
    {201, "A message element required as defined in Table A.1 is missing from the message.",
     "List of missing fields."},
    {202, "Critical message extension not recognised.", "List of ids of not recognised message extensions."},
    {203, "Data element not in the required format or value is invalid as defined in Table A.1",
     "List of erroneous fields."},
    {204, "Valid data element presents more than once in the message.", "List of erroneous fields."},
    {301, "Transaction ID received is not valid for the receiving component.",
     "The Transaction ID received was invalid."},
    {302, "Data could not be decrypted by the receiving system due to technical or other reason.",
     "Data could not decrypt."},
    {402, "Transaction timed-out.", "Timeout expiry reached for the transaction as defined in Section 5.5."},
}};

constexpr int kSystemFailure = 404;

} // namespace

KorvaneError KorvaneError::getErrorByCode(int code) {
    for (const ErrorRow& row : kErrors)
        if (row.code == code) return {code, std::string(row.description), std::string(row.details)};
    return {kSystemFailure, "Permanent system failure.", "Unknown code " + std::to_string(code)};
}

RuntimeErrorEvent convertKorvaneErrorToRuntimeError(const KorvaneError& error) {
    return {std::to_string(error.code), error.description};
}

} // namespace korvane
