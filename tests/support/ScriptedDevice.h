#pragma once

#include "Platform/JSON.h"
#include "Platform/Platform.h"
#include "Platform/View/TextMeasurer.h"

#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace korvane {

/// What a scripted device answers: a telephone, of which a test changes what it is about.
struct DeviceScript {
    std::optional<std::string> identifierForVendor = "6BA7B810-9DAD-41D1-80B4-00C04FD430C8";
    UIUserInterfaceIdiom userInterfaceIdiom = UIUserInterfaceIdiom::phone;
    CGRect bounds{{0, 0}, {375, 667}};
    UIDeviceOrientation orientation = UIDeviceOrientation::portrait;
    bool isCaptured = false;

    /// Families and their fonts, in the order in which the device lists them.
    std::vector<std::pair<std::string, std::vector<std::string>>> fonts{
        {"Courier", {"Courier", "Courier-Bold"}}};
    double systemFontSize = 14;

    std::optional<std::string> timeZoneAbbreviation = "CET";

    int locationStatus = 0;
    std::optional<CLLocation> location;
    std::string advertisingIdentifier = "00000000-0000-0000-0000-000000000000";
    std::optional<std::string> receiptURL;
    /// The folder of the application's own files.
    std::string mainBundlePath = "/nonexistent";
    /// The application's own settings.
    std::map<std::string, std::vector<std::string>> infoDictionary;
    std::vector<NetworkInterface> interfaces;
    std::string machine = "iPhone12,1";
    std::map<std::string, std::string> environment;

    bool isJailbroken = false;
    bool isEmulator = false;
    bool isDebuggerAttached = false;
    bool isOSVersionSupported = true;

    /// The user defaults, and how often they were saved.
    std::map<std::string, std::string> defaults;
    int synchronizations = 0;

    /// How often the location itself was read.
    int locationReads = 0;
};

/// What a platform is of whose every answer a test sets: all but queues and network. Test thread only.
class ScriptedDevice : public Platform,
                       protected UIDevice,
                       protected UIScreen,
                       protected UIFontServices,
                       protected LocaleServices,
                       protected TimeZone,
                       protected CLLocationManager,
                       protected ASIdentifierManager,
                       protected NSUserDefaults,
                       protected NSBundle,
                       protected NetworkInterfaces,
                       protected NSProcessInfo,
                       protected IntegrityChecks {
public:
    [[nodiscard]] DeviceScript& script() noexcept { return script_; }

protected:
    /// The device's services with what a device alone has not. For the `Installation` of the platform.
    [[nodiscard]] PlatformServices servicesWith(Dispatch& dispatch, URLSessionMaker& urlSessions,
                                                NSUserDefaults& userDefaults) {
        return {.device = *this,
                .mainScreen = *this,
                .fonts = *this,
                .textMeasurer = textMeasurer_,
                .locales = *this,
                .timeZone = *this,
                .locationManager = *this,
                .identifierManager = *this,
                .userDefaults = userDefaults,
                .mainBundle = *this,
                .networkInterfaces = *this,
                .processInfo = *this,
                .integrityChecks = *this,
                .dispatch = dispatch,
                .urlSessions = urlSessions};
    }

private:
    template <class Map>
    static auto find(const Map& map, const std::string& key) {
        const auto found = map.find(key);
        return found == map.end() ? std::nullopt : std::optional(found->second);
    }

    std::string systemName() const override { return "iOS"; }
    std::string systemVersion() const override { return "14.4"; }
    std::string name() const override { return "Ada's phone"; }
    std::optional<std::string> identifierForVendor() const override { return script_.identifierForVendor; }
    UIUserInterfaceIdiom userInterfaceIdiom() const override { return script_.userInterfaceIdiom; }
    UIDeviceOrientation orientation() const override { return script_.orientation; }

    CGRect bounds() const override { return script_.bounds; }
    bool isCaptured() const override { return script_.isCaptured; }

    std::vector<std::string> familyNames() const override {
        std::vector<std::string> names;
        for (const auto& [family, fonts] : script_.fonts)
            names.push_back(family);
        return names;
    }
    std::vector<std::string> fontNamesForFamilyName(const std::string& family) const override {
        for (const auto& [name, fonts] : script_.fonts)
            if (name == family) return fonts;
        return {};
    }
    double systemFontSize() const override { return script_.systemFontSize; }
    double labelFontSize() const override { return 17; }
    double buttonFontSize() const override { return 18; }
    double smallSystemFontSize() const override { return 12; }
    std::string systemFontDescription(double size) const override {
        return "system font of size " + std::to_string(std::lround(size));
    }

    Locale current() const override { return {"en_GB"}; }
    std::vector<std::string> availableIdentifiers() const override { return {"en_GB", "fr"}; }
    std::vector<std::string> preferredLanguages() const override { return {"en-GB", "fr-CA"}; }
    std::optional<std::string> abbreviation() const override { return script_.timeZoneAbbreviation; }

    CLAuthorizationStatus authorizationStatus() const override {
        return static_cast<CLAuthorizationStatus>(script_.locationStatus);
    }
    std::optional<CLLocation> location() const override {
        ++script_.locationReads;
        return script_.location;
    }
    std::string advertisingIdentifier() const override { return script_.advertisingIdentifier; }

    std::optional<std::string> valueForKey(const std::string& key) const override {
        return find(script_.defaults, key);
    }
    void setObject(const std::string& object, const std::string& key) override {
        if (isUtf8(object)) script_.defaults[key] = object;
    }
    bool synchronize() override { return ++script_.synchronizations > 0; }

    std::optional<std::string> appStoreReceiptURL() const override { return script_.receiptURL; }
    std::optional<std::string> URLForResource(const std::string& name,
                                              const std::string& extension) const override {
        return FolderBundle(script_.mainBundlePath).URLForResource(name, extension);
    }
    std::string bundlePath() const override { return script_.mainBundlePath; }
    std::optional<std::vector<std::string>>
    stringsForInfoDictionaryKey(const std::string& key) const override {
        return find(script_.infoDictionary, key);
    }

    std::vector<NetworkInterface> list() const override { return script_.interfaces; }
    std::string machine() const override { return script_.machine; }
    std::optional<std::string> environmentVariable(const std::string& name) const override {
        return find(script_.environment, name);
    }

    bool isJailbroken() const override { return script_.isJailbroken; }
    bool isEmulator() const override { return script_.isEmulator; }
    bool isDebuggerAttached() const override { return script_.isDebuggerAttached; }
    bool isOSVersionSupported() const override { return script_.isOSVersionSupported; }

    mutable DeviceScript script_;
    FixedAdvances textMeasurer_;
};

} // namespace korvane
