#pragma once

#include "Sdk/Messages/CRes.h"
#include "Sdk/Messages/Erro.h"

#include <optional>
#include <string>

namespace korvane {

/// What one exchange with the ACS came to. A value.
struct CReqSendingResult {
    /// A response that was accepted; all else is empty then.
    std::optional<CRes> cres = std::nullopt;
    /// An error: the ACS's, or one that the library found and has yet to send.
    std::optional<Erro> erro = std::nullopt;
    /// Whether `erro` came from the ACS, and so must not go back to it.
    bool receivedError = false;
    /// What went wrong, in a few words.
    std::optional<std::string> errorDescription = std::nullopt;

    friend bool operator==(const CReqSendingResult&, const CReqSendingResult&) = default;
};

} // namespace korvane
