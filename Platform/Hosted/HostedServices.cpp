#include "Platform/Hosted/HostedServices.h"

#include "Platform/DecimalText.h"
#include "Platform/JSON.h"

#include <charconv>
#include <cmath>
#include <utility>

namespace korvane {

namespace {

constexpr std::pair<std::string_view, UIUserInterfaceIdiom> kIdioms[] = {
    {"phone", UIUserInterfaceIdiom::phone}, {"pad", UIUserInterfaceIdiom::pad},
    {"tv", UIUserInterfaceIdiom::tv},       {"carPlay", UIUserInterfaceIdiom::carPlay},
    {"mac", UIUserInterfaceIdiom::mac},
};

constexpr std::pair<std::string_view, CLAuthorizationStatus> kPermissions[] = {
    {"notDetermined", CLAuthorizationStatus::notDetermined},
    {"restricted", CLAuthorizationStatus::restricted},
    {"denied", CLAuthorizationStatus::denied},
    {"authorizedAlways", CLAuthorizationStatus::authorizedAlways},
    {"authorizedWhenInUse", CLAuthorizationStatus::authorizedWhenInUse},
};

/// The row of a word, or another value where there is no such word.
template <class Rows, class Value>
Value valueOf(const std::optional<std::string>& word, const Rows& rows, Value otherwise) {
    for (const auto& [name, value] : rows)
        if (word == name) return value;
    return otherwise;
}

/// A number of the whole text, of at most that size on either side of 0.
std::optional<double> degrees(const std::string& text, double most) {
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || !(std::abs(value) <= most)) return std::nullopt;
    return value;
}

} // namespace

std::vector<std::string> HostValues::texts(HostValue value) const {
    std::vector<std::string> texts;
    if (host_.values) texts = host_.values(value);
    std::erase_if(texts, [](const std::string& text) { return !isUtf8(text); });
    return texts;
}

std::optional<std::string> HostValues::text(HostValue value) const {
    auto all = texts(value);
    return all.size() == 1 ? std::optional(std::move(all.front())) : std::nullopt;
}

bool HostValues::flag(HostValue value, bool otherwise) const {
    const auto answer = text(value);
    return answer == "yes" || (answer != "no" && otherwise);
}

std::string HostedDevice::systemName() const {
    return values_.text(HostValue::systemName).value_or(NativeDevice::systemName());
}

std::string HostedDevice::systemVersion() const {
    return values_.text(HostValue::systemVersion).value_or(NativeDevice::systemVersion());
}

std::string HostedDevice::name() const {
    return values_.text(HostValue::deviceName).value_or(NativeDevice::name());
}

std::optional<std::string> HostedDevice::identifierForVendor() const {
    return values_.text(HostValue::vendorIdentifier);
}

UIUserInterfaceIdiom HostedDevice::userInterfaceIdiom() const {
    return valueOf(values_.text(HostValue::idiom), kIdioms, NativeDevice::userInterfaceIdiom());
}

std::vector<std::string> HostedFonts::familyNames() const {
    return values_.texts(HostValue::fontFamilies);
}

std::vector<std::string> HostedFonts::fontNamesForFamilyName(const std::string& /*family*/) const {
    return {};
}

std::string HostedFonts::systemFontDescription(double size) const {
    return "font-size: " + decimalText(size) + "pt";
}

Locale HostedFacts::current() const {
    const auto own = values_.text(HostValue::locale);
    return own ? Locale{*own} : system_.locales.current();
}

std::vector<std::string> HostedFacts::availableIdentifiers() const {
    auto own = values_.texts(HostValue::availableLocales);
    return own.empty() ? system_.locales.availableIdentifiers() : std::move(own);
}

std::vector<std::string> HostedFacts::preferredLanguages() const {
    auto own = values_.texts(HostValue::preferredLanguages);
    return own.empty() ? system_.locales.preferredLanguages() : std::move(own);
}

std::optional<std::string> HostedFacts::abbreviation() const {
    auto own = values_.text(HostValue::timeZone);
    return own ? std::move(own) : system_.timeZone.abbreviation();
}

CLAuthorizationStatus HostedFacts::authorizationStatus() const {
    return valueOf(values_.text(HostValue::locationPermission), kPermissions,
                   system_.location.authorizationStatus());
}

/// Half a place, and one off the globe, is none.
std::optional<CLLocation> HostedFacts::location() const {
    const auto own = values_.texts(HostValue::location);
    if (own.empty()) return system_.location.location();
    if (own.size() != 2) return std::nullopt;
    const auto latitude = degrees(own.front(), 90), longitude = degrees(own.back(), 180);
    if (!latitude || !longitude) return std::nullopt;
    return CLLocation{{*latitude, *longitude}};
}

std::string HostedFacts::advertisingIdentifier() const {
    const auto own = values_.text(HostValue::advertisingIdentifier);
    return own ? *own : system_.advertising.advertisingIdentifier();
}

bool HostedFacts::isJailbroken() const {
    return values_.flag(HostValue::isJailbroken, system_.integrity.isJailbroken());
}

bool HostedFacts::isEmulator() const {
    return values_.flag(HostValue::isEmulator, system_.integrity.isEmulator());
}

bool HostedFacts::isDebuggerAttached() const {
    return values_.flag(HostValue::isDebuggerAttached, system_.integrity.isDebuggerAttached());
}

bool HostedFacts::isOSVersionSupported() const {
    return values_.flag(HostValue::isSystemSupported, system_.integrity.isOSVersionSupported());
}

std::string HostedFacts::machine() const {
    const auto own = values_.text(HostValue::machine);
    return own ? *own : system_.process.machine();
}

std::optional<std::string> HostedFacts::environmentVariable(const std::string& name) const {
    return system_.process.environmentVariable(name);
}

std::optional<std::string> HostedBundle::appStoreReceiptURL() const {
    return values_.text(HostValue::receiptURL);
}

std::string HostedBundle::privateFrameworksPath() const {
    const auto own = values_.text(HostValue::resources);
    return own ? *own : NativeMainBundle::privateFrameworksPath();
}

std::optional<std::vector<std::string>>
HostedBundle::stringsForInfoDictionaryKey(const std::string& key) const {
    if (key != "UISupportedInterfaceOrientations") return std::nullopt;
    auto own = values_.texts(HostValue::supportedOrientations);
    return own.empty() ? std::nullopt : std::optional(std::move(own));
}

} // namespace korvane
