#include "tools/acs/Messages.h"

#include "Platform/Text.h"
#include "Platform/UUID.h"
#include "Sdk/Events/KorvaneError.h"

#include <algorithm>
#include <array>
#include <set>

namespace korvane::acs {

namespace {

std::optional<std::string> unlessEmpty(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

constexpr int kSystemFailure = 404;

/// The detail of an error, which may hold names of the peer's choice, in bytes at most.
std::string shortened(const std::string& detail) {
    constexpr std::size_t kLongest = 1000;
    return detail.size() > kLongest ? repairedUtf8(detail.substr(0, kLongest)) + "..." : detail;
}

} // namespace

std::string makeTransactionID() {
    std::string text = makeUUIDString();
    for (char& character : text)
        if (character >= 'A' && character <= 'F') character = static_cast<char>(character - 'A' + 'a');
    return text;
}

bool isTransactionID(std::string_view text) {
    constexpr std::string_view kForm = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    constexpr std::string_view kDigits = "0123456789abcdef";
    return std::equal(text.begin(), text.end(), kForm.begin(), kForm.end(), [&](char character, char form) {
        return form == '-' ? character == '-' : kDigits.find(character) != std::string_view::npos;
    });
}

std::string counterAtoS(int counter) {
    const std::string digits = std::to_string(counter);
    return std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') + digits;
}

Erro ProtocolFault::erro(std::string_view faultyMessageType, const TransactionIDs& ids) const {
    const KorvaneError error = KorvaneError::getErrorByCode(code_);
    Erro erro;
    erro.threeDSServerTransID = unlessEmpty(ids.threeDSServerTransID);
    erro.acsTransID = unlessEmpty(ids.acsTransID);
    erro.errorCode = std::to_string(error.code);
    erro.errorComponent = "A";
    erro.errorDescription = error.description;
    erro.errorDetail = detail_.empty() ? error.details : shortened(detail_);
    erro.errorMessageType = faultyMessageType;
    erro.messageType = "Erro";
    erro.messageVersion = unlessEmpty(ids.messageVersion);
    erro.sdkTransID = unlessEmpty(ids.sdkTransID);
    return erro;
}

JSON erroOf(const JSON& cres) {
    const auto member = [&](const char* name) { return cres.value(name, std::string()); };
    const TransactionIDs ids{member("threeDSServerTransID"), member("acsTransID"), member("sdkTransID"),
                             member("messageVersion")};
    return JSON::parse(
        ProtocolFault(kSystemFailure, "The scenario asks for an error.").erro("CReq", ids).jsonString());
}

JSON readObject(std::string_view text) {
    // The object itself would look through all its members for each new one.
    JSON::object_t object;
    std::set<std::string, std::less<>> names;
    std::string repeated;
    const auto add = [&](std::string_view name, JSON&& value) {
        if (names.emplace(name).second)
            object.emplace_back(std::string(name), std::move(value));
        else
            repeated += (repeated.empty() ? "" : ",") + std::string(name);
    };
    if (JSONSerialization::forEachMember(text, add) != JSONTopLevel::object) throw ProtocolFault(101);
    if (!repeated.empty()) throw ProtocolFault(204, repeated);
    return JSON(std::move(object));
}

} // namespace korvane::acs
