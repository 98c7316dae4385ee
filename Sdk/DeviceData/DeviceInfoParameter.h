#pragma once

#include "Platform/EnumTable.h"

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

[[nodiscard]] constexpr std::string_view rawValue(DeviceInfoParameter value) {
    using enum DeviceInfoParameter;
    switch (value) {
    case PLATFORM: return "C001";
    case DEVICE_MODEL: return "C002";
    case OS_NAME: return "C003";
    case OS_VERSION: return "C004";
    case LOCALE: return "C005";
    case TIME_ZONE: return "C006";
    case ADVERTISING_ID: return "C007";
    case SCREEN_RESOLUTION: return "C008";
    case DEVICE_NAME: return "C009";
    case IP_ADDRESS: return "C010";
    case LATITUDE: return "C011";
    case LONGITUDE: return "C012";
    case WTF_PARAM: return "C013";
    case SDK_APP_ID: return "C014";
    case SDK_VERSION: return "C015";
    case IDENTIFIER_FOR_VENDOR: return "I001";
    case USER_INTERFACE_IDIOM: return "I002";
    case FONT_FAMILY_NAMES: return "I003";
    case FONT_NAMES_FOR_FAMILY_NAME: return "I004";
    case SYSTEM_FONT: return "I005";
    case LABEL_FONT_SIZE: return "I006";
    case BUTTON_FONT_SIZE: return "I007";
    case SMALL_SYSTEM_FONT_SIZE: return "I008";
    case SYSTEM_FONT_SIZE: return "I009";
    case SYSTEM_LOCALE: return "I010";
    case AVAILABLE_LOCALES: return "I011";
    case PREFERRED_LANGUAGES: return "I012";
    case DEFAULT_TIME_ZONE: return "I013";
    case APPS_RECIPT: return "I014";
    }
    return kNoRawValue;
}

/// Why a parameter has no value.
enum class ParameterUnavailableReason {
    MARKET_OR_REGIONAL_RESTRICTION,
    PLATFORM_NOT_SUPPORTED,
    COLLECTION_NOT_POSSIBLE_WITHOUT_USER_PERMISSION,
    VALUE_IS_EMPTY_OR_BLANK,
};

[[nodiscard]] constexpr std::string_view rawValue(ParameterUnavailableReason value) {
    using enum ParameterUnavailableReason;
    switch (value) {
    case MARKET_OR_REGIONAL_RESTRICTION: return "RE01";
    case PLATFORM_NOT_SUPPORTED: return "RE02";
    case COLLECTION_NOT_POSSIBLE_WITHOUT_USER_PERMISSION: return "RE03";
    case VALUE_IS_EMPTY_OR_BLANK: return "RE04";
    }
    return kNoRawValue;
}

} // namespace korvane
