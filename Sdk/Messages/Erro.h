#pragma once

#include "Platform/Bytes.h"
#include "Sdk/Events/Events.h"

#include <optional>
#include <string>

namespace korvane {

/// The protocol's error message, sent in both directions. A value; JSON names equal field names, every field
/// may be absent, and none is checked.
struct Erro {
    std::optional<std::string> threeDSServerTransID = std::nullopt;
    std::optional<std::string> acsTransID = std::nullopt;
    /// Never set by the library.
    std::optional<std::string> dsTransID = std::nullopt;
    /// Decimal text.
    std::optional<std::string> errorCode = std::nullopt;
    /// "C" where the library found the error.
    std::optional<std::string> errorComponent = std::nullopt;
    std::optional<std::string> errorDescription = std::nullopt;
    std::optional<std::string> errorDetail = std::nullopt;
    /// The type of the message at fault.
    std::optional<std::string> errorMessageType = std::nullopt;
    std::optional<std::string> messageType = std::nullopt;
    std::optional<std::string> messageVersion = std::nullopt;
    std::optional<std::string> sdkTransID = std::nullopt;

    /// The UTF-8 JSON text of the fields that are present, in declaration order.
    [[nodiscard]] std::string jsonString() const;

    /// @throws DecodingError for text that is no JSON object, and for a field that is no string.
    [[nodiscard]] static Erro decode(ByteView json);

    friend bool operator==(const Erro&, const Erro&) = default;
};

/// The public form of an error, with a text of its own in place of each absent field.
[[nodiscard]] ErrorMessage convertErroToErrorMessage(const Erro& erro);

} // namespace korvane
