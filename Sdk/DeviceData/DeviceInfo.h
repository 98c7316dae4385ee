#pragma once

#include "Platform/Bytes.h"
#include "Platform/JSONDecoding.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// The device document of one transaction. Keys are raw values of `DeviceInfoParameter`.
struct DeviceInfo {
    static constexpr std::string_view dataVersion = "1.4";

    StringTable deviceData;
    /// Values are raw values of `ParameterUnavailableReason`.
    std::optional<StringTable> notAvailableDeviceParameters;
    /// The identifiers of the service's warnings, in their order.
    std::optional<std::vector<std::string>> securityWarning;

    /// The UTF-8 JSON text: "DV", "DD", "DPNA", "SW", of which an absent one is left out. Octets that are not
    /// UTF-8 come as replacement characters.
    [[nodiscard]] std::string jsonString() const;

    /// Reads the JSON form back; "DV" is not looked at.
    /// @throws DecodingError naming the member.
    [[nodiscard]] static DeviceInfo decode(ByteView json);

    friend bool operator==(const DeviceInfo&, const DeviceInfo&) = default;
};

} // namespace korvane
