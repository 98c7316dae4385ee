#pragma once

#include "Platform/JSON.h"
#include "Sdk/Messages/Erro.h"

#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace korvane::acs {

inline constexpr std::string_view kJSONType = "application/json;charset=UTF-8";
inline constexpr std::string_view kJOSEType = "application/jose;charset=UTF-8";

/// What binds messages to one transaction. The texts are UUIDs in lower case, but for the version.
struct TransactionIDs {
    std::string threeDSServerTransID;
    std::string acsTransID;
    std::string sdkTransID;
    std::string messageVersion;
};

/// A fresh UUID in lower case.
[[nodiscard]] std::string makeTransactionID();

[[nodiscard]] bool isTransactionID(std::string_view text);

/// "000" for 0, "010" for 10.
[[nodiscard]] std::string counterAtoS(int counter);

/// A fault of the peer's message, as the protocol numbers it.
class ProtocolFault : public std::exception {
public:
    /// @param detail  the names at fault, or empty for the code's own words.
    explicit ProtocolFault(int code, std::string detail = {}) : code_(code), detail_(std::move(detail)) {}

    [[nodiscard]] int code() const noexcept { return code_; }
    [[nodiscard]] const char* what() const noexcept override { return detail_.c_str(); }

    /// The error that goes back.
    /// @param ids  what is known of the transaction; empty texts are left out.
    [[nodiscard]] Erro erro(std::string_view faultyMessageType, const TransactionIDs& ids) const;

private:
    int code_;
    std::string detail_;
};

/// An error of the ACS's own (404) that refers to the transaction of a CRes.
[[nodiscard]] JSON erroOf(const JSON& cres);

/// The members of a JSON object, each name once.
/// @throws ProtocolFault 101 for text that is no object, 204 for a repeated member.
[[nodiscard]] JSON readObject(std::string_view text);

} // namespace korvane::acs
