#pragma once

#include "Platform/RawValue.h"

namespace korvane {

/// What is told about a device. The texts of the cases are the codes on the wire.
enum class DeviceInfoParameter {
    PLATFORM,
    DEVICE_MODEL,
    OS_NAME,
    OS_VERSION,
    LOCALE,
    TIME_ZONE,
    ADVERTISING_ID,
    SCREEN_RESOLUTION,
    DEVICE_NAME,
    IP_ADDRESS,
    LATITUDE,
    LONGITUDE,
    WTF_PARAM,
    SDK_APP_ID,
    SDK_VERSION,
    IDENTIFIER_FOR_VENDOR,
    USER_INTERFACE_IDIOM,
    FONT_FAMILY_NAMES,
    FONT_NAMES_FOR_FAMILY_NAME,
    SYSTEM_FONT,
    LABEL_FONT_SIZE,
    BUTTON_FONT_SIZE,
    SMALL_SYSTEM_FONT_SIZE,
    SYSTEM_FONT_SIZE,
    SYSTEM_LOCALE,
    AVAILABLE_LOCALES,
    PREFERRED_LANGUAGES,
    DEFAULT_TIME_ZONE,
    APPS_RECIPT,
};

template <>
struct RawValues<DeviceInfoParameter> {
    static constexpr std::array<std::string_view, 29> texts{
        "C001", "C002", "C003", "C004", "C005", "C006", "C007", "C008", "C009", "C010",
        "C011", "C012", "C013", "C014", "C015", "I001", "I002", "I003", "I004", "I005",
        "I006", "I007", "I008", "I009", "I010", "I011", "I012", "I013", "I014"};
};

/// Why a parameter has no value.
enum class ParameterUnavailableReason {
    MARKET_OR_REGIONAL_RESTRICTION,
    PLATFORM_NOT_SUPPORTED,
    COLLECTION_NOT_POSSIBLE_WITHOUT_USER_PERMISSION,
    VALUE_IS_EMPTY_OR_BLANK,
};

template <>
struct RawValues<ParameterUnavailableReason> {
    static constexpr std::array<std::string_view, 4> texts{"RE01", "RE02", "RE03", "RE04"};
};

} // namespace korvane
