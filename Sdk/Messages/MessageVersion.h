#pragma once

#include "Platform/EnumTable.h"

#include <string_view>

namespace korvane {

/// The versions of the protocol's messages that the library speaks. A transaction has one from its creation.
enum class MessageVersion { v2_1_0, v2_2_0 };

/// As messages have it.
[[nodiscard]] constexpr std::string_view rawValue(MessageVersion version) {
    switch (version) {
    case MessageVersion::v2_1_0: return "2.1.0";
    case MessageVersion::v2_2_0: return "2.2.0";
    }
    return kNoRawValue;
}

} // namespace korvane
