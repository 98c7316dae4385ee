#include "Sdk/DeviceData/DeviceDataCollection.h"

#include "Platform/DecimalText.h"
#include "Platform/LetterCase.h"
#include "Platform/Text.h"
#include "Sdk/DeviceData/DeviceIdentity.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <variant>

namespace korvane {

namespace {

using enum DeviceInfoParameter;
using enum ParameterUnavailableReason;

/// The parameter does not appear in the document at all.
struct LeftOut {};

/// What one read gives.
using Outcome = std::variant<std::string, LeftOut, ParameterUnavailableReason>;

/// The device during one collection: longitude and latitude come from one look at the location.
class Device {
public:
    Device(Platform& itsPlatform, const CollectionInput& itsInput) : platform(itsPlatform), input(itsInput) {}

    Outcome coordinate(double CLLocationCoordinate2D::*part) {
        if (!look_) look_ = look();
        if (!look_->isPermitted) return COLLECTION_NOT_POSSIBLE_WITHOUT_USER_PERMISSION;
        if (!look_->location) return LeftOut{};
        return decimalText(look_->location->coordinate.*part);
    }

    Platform& platform;
    const CollectionInput& input;

private:
    struct Look {
        bool isPermitted = false;
        std::optional<CLLocation> location;
    };

    Look look() {
        const CLLocationManager& manager = platform.locationManager();
        const CLAuthorizationStatus status = manager.authorizationStatus();
        const bool isPermitted = status == CLAuthorizationStatus::authorizedWhenInUse ||
                                 status == CLAuthorizationStatus::authorizedAlways;
        if (!isPermitted) return {};
        return {true, manager.location()};
    }

    std::optional<Look> look_;
};

std::string screenResolution(const UIScreen& screen) {
    const CGSize size = screen.bounds().size;
    return decimalText(size.width) + "x" + decimalText(size.height);
}

/// Nothing stands between the last font of a family and the name of the next family.
std::string fontNamesByFamily(const UIFontServices& fonts) {
    std::string result;
    for (const std::string& family : fonts.familyNames())
        result += family + ": " + joined(fonts.fontNamesForFamilyName(family));
    return result;
}

Outcome vendorIdentifier(const UIDevice& device) {
    std::optional<std::string> identifier = device.identifierForVendor();
    if (!identifier) return LeftOut{};
    return uppercased(*std::move(identifier));
}

Outcome receipt(const NSBundle& bundle) {
    std::optional<std::string> url = bundle.appStoreReceiptURL();
    if (!url) return VALUE_IS_EMPTY_OR_BLANK;
    return *std::move(url);
}

Outcome timeZone(Device& device) {
    return device.platform.timeZone().abbreviation().value_or("");
}

struct ParameterRow {
    DeviceInfoParameter parameter;
    Outcome (*read)(Device&);
};

/// All that is collected, in the order of collection.
constexpr std::array<ParameterRow, 28> kParameters{{
    {DEVICE_MODEL, [](Device& d) -> Outcome { return modelName(d.platform.processInfo()); }},
    {OS_NAME, [](Device& d) -> Outcome { return d.platform.device().systemName(); }},
    {OS_VERSION, [](Device& d) -> Outcome { return d.platform.device().systemVersion(); }},
    {LOCALE, [](Device& d) -> Outcome { return localeParameter(d.input.locale); }},
    {TIME_ZONE, timeZone},
    {ADVERTISING_ID,
     [](Device& d) -> Outcome { return uppercased(d.platform.identifierManager().advertisingIdentifier()); }},
    {SCREEN_RESOLUTION, [](Device& d) -> Outcome { return screenResolution(d.platform.mainScreen()); }},
    {DEVICE_NAME, [](Device& d) -> Outcome { return d.platform.device().name(); }},
    {SDK_APP_ID, [](Device& d) -> Outcome { return appID(d.platform); }},
    {SDK_VERSION, [](Device& d) -> Outcome { return d.input.sdkVersion; }},
    {IP_ADDRESS,
     [](Device& d) -> Outcome {
         return getWiFiAddress(d.platform.networkInterfaces()).value_or("127.0.0.1");
     }},
    {LONGITUDE, [](Device& d) { return d.coordinate(&CLLocationCoordinate2D::longitude); }},
    {LATITUDE, [](Device& d) { return d.coordinate(&CLLocationCoordinate2D::latitude); }},
    {WTF_PARAM, [](Device&) -> Outcome { return VALUE_IS_EMPTY_OR_BLANK; }},
    {IDENTIFIER_FOR_VENDOR, [](Device& d) { return vendorIdentifier(d.platform.device()); }},
    {USER_INTERFACE_IDIOM,
     [](Device& d) -> Outcome {
         return std::to_string(static_cast<int>(d.platform.device().userInterfaceIdiom()));
     }},
    {FONT_FAMILY_NAMES, [](Device& d) -> Outcome { return joined(d.platform.fonts().familyNames()); }},
    {FONT_NAMES_FOR_FAMILY_NAME, [](Device& d) -> Outcome { return fontNamesByFamily(d.platform.fonts()); }},
    {SYSTEM_FONT,
     [](Device& d) -> Outcome {
         const UIFontServices& fonts = d.platform.fonts();
         return fonts.systemFontDescription(fonts.systemFontSize());
     }},
    {LABEL_FONT_SIZE, [](Device& d) -> Outcome { return decimalText(d.platform.fonts().labelFontSize()); }},
    {BUTTON_FONT_SIZE, [](Device& d) -> Outcome { return decimalText(d.platform.fonts().buttonFontSize()); }},
    {SMALL_SYSTEM_FONT_SIZE,
     [](Device& d) -> Outcome { return decimalText(d.platform.fonts().smallSystemFontSize()); }},
    {SYSTEM_FONT_SIZE, [](Device& d) -> Outcome { return decimalText(d.platform.fonts().systemFontSize()); }},
    {SYSTEM_LOCALE, [](Device& d) -> Outcome { return d.platform.locales().current().identifier; }},
    {AVAILABLE_LOCALES,
     [](Device& d) -> Outcome { return joined(d.platform.locales().availableIdentifiers()); }},
    {PREFERRED_LANGUAGES,
     [](Device& d) -> Outcome { return joined(d.platform.locales().preferredLanguages()); }},
    {DEFAULT_TIME_ZONE, timeZone},
    {APPS_RECIPT, [](Device& d) { return receipt(d.platform.mainBundle()); }},
}};

/// The platform stands in the data from the start; each of the others is collected, and once.
static_assert(std::ranges::all_of(EnumTable<DeviceInfoParameter>::rows, [](const auto& row) {
    const auto count = std::ranges::count(kParameters, row.value, &ParameterRow::parameter);
    return count == (row.value == PLATFORM ? 0 : 1);
}));

void put(DeviceInfoParameter parameter, Outcome outcome, DeviceData& data) {
    const std::string key(rawValue(parameter));
    if (auto* value = std::get_if<std::string>(&outcome)) {
        data.deviceData.insert_or_assign(key, std::move(*value));
    } else if (const auto* reason = std::get_if<ParameterUnavailableReason>(&outcome)) {
        data.notAvailableDeviceParameters.insert_or_assign(key, rawValue(*reason));
    } else {
        data.deviceData.erase(key);
    }
}

/// The first two pieces between underscores, empty ones not counted, or no value.
std::optional<std::string> languageAndRegion(std::string_view identifier) {
    constexpr auto kEnd = std::string_view::npos;
    const std::size_t language = identifier.find_first_not_of('_');
    if (language == kEnd) return std::nullopt;
    const std::size_t languageEnd = identifier.find('_', language);
    const std::size_t region = identifier.find_first_not_of('_', languageEnd);
    if (languageEnd == kEnd || region == kEnd) return std::nullopt;
    const std::size_t regionEnd = std::min(identifier.find('_', region), identifier.size());
    return std::string(identifier.substr(language, languageEnd - language)) + "-" +
           std::string(identifier.substr(region, regionEnd - region));
}

} // namespace

void collectDeviceData(Platform& platform, const CollectionInput& input, DeviceData& data) {
    Device device(platform, input);
    for (const ParameterRow& row : kParameters)
        put(row.parameter, row.read(device), data);
}

std::string localeParameter(const std::optional<Locale>& locale) {
    constexpr const char* kFallback = "en-US";
    if (!locale) return kFallback;
    const std::string& identifier = locale->identifier;
    if (identifier.find('-') != std::string::npos) return identifier;
    if (identifier.find('_') != std::string::npos) return languageAndRegion(identifier).value_or(kFallback);
    return characterCount(identifier) == 2 ? identifier : kFallback;
}

DeviceInfo makeDeviceInfo(const DeviceData& data, const std::vector<Warning>& warnings) {
    DeviceInfo info;
    info.deviceData = data.deviceData;
    if (!data.notAvailableDeviceParameters.empty())
        info.notAvailableDeviceParameters = data.notAvailableDeviceParameters;
    if (!warnings.empty()) {
        std::vector<std::string>& identifiers = info.securityWarning.emplace();
        for (const Warning& warning : warnings)
            identifiers.push_back(warning.getId());
    }
    return info;
}

} // namespace korvane
