#pragma once

#include "Platform/Platform.h"

#include <optional>
#include <string>

namespace korvane {

/// The stable identifier of the application on this device, read anew at each call: the vendor's
/// identifier in lower case, or, where there is none, a UUID in upper case that is made once and kept
/// in the user defaults.
[[nodiscard]] std::string appID(Platform& platform);

/// The last IPv4 or IPv6 address of the interface "en0", in numbers, or no value.
[[nodiscard]] std::optional<std::string> getWiFiAddress(const NetworkInterfaces& interfaces);

/// The device's name for people, as in "iPhone 11", as the first caller's process information told it:
/// computed once in a process. Any thread.
[[nodiscard]] const std::string& modelName(const NSProcessInfo& process);

/// What `modelName` computes. A machine that is not known has its identifier for a name; a simulator has
/// "Simulator " and the name of the model that it simulates.
[[nodiscard]] std::string computeModelName(const NSProcessInfo& process);

} // namespace korvane
