#pragma once

#include "Platform/Failure.h"
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
    std::string deviceName = "Ada's phone";
    std::optional<std::string> identifierForVendor = "6BA7B810-9DAD-41D1-80B4-00C04FD430C8";
    UIUserInterfaceIdiom userInterfaceIdiom = UIUserInterfaceIdiom::phone;
    CGRect bounds{{0, 0}, {375, 667}};
    UIDeviceOrientation orientation = UIDeviceOrientation::portrait;
    bool isCaptured = false;

    /// Families and their fonts, in the order in which the device lists them.
    std::vector<std::pair<std::string, std::vector<std::string>>> fonts{
        {"Courier", {"Courier", "Courier-Bold"}}};
    double systemFontSize = 14;
    /// The size is appended to it.
    std::string systemFontDescription = "system font of size ";

    std::vector<std::string> availableIdentifiers{"en_GB", "fr"};
    std::vector<std::string> preferredLanguages{"en-GB", "fr-CA"};
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
    std::map<std::string, JSON> defaults;
    int synchronizations = 0;

    /// How often the location itself was read.
    int locationReads = 0;
};

/// A platform whose every answer a test sets. Test thread only.
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

    [[nodiscard]] UIDevice& device() override { return *this; }
    [[nodiscard]] UIScreen& mainScreen() override { return *this; }
    [[nodiscard]] UIFontServices& fonts() override { return *this; }
    [[nodiscard]] TextMeasurer& textMeasurer() override { return textMeasurer_; }
    [[nodiscard]] LocaleServices& locales() override { return *this; }
    [[nodiscard]] TimeZone& timeZone() override { return *this; }
    [[nodiscard]] CLLocationManager& locationManager() override { return *this; }
    [[nodiscard]] ASIdentifierManager& identifierManager() override { return *this; }
    [[nodiscard]] NSUserDefaults& userDefaults() override { return *this; }
    [[nodiscard]] NSBundle& mainBundle() override { return *this; }
    [[nodiscard]] NetworkInterfaces& networkInterfaces() override { return *this; }
    [[nodiscard]] NSProcessInfo& processInfo() override { return *this; }
    [[nodiscard]] IntegrityChecks& integrityChecks() override { return *this; }

    /// A device alone has neither queues nor a network (`fatalError`): see SimulatedPlatform.
    [[nodiscard]] Dispatch& dispatch() override { fatalError("A scripted device has no queues."); }
    [[nodiscard]] std::shared_ptr<URLSession> makeURLSession(const URLSessionConfiguration&) override {
        fatalError("A scripted device has no network.");
    }

private:
    template <class Map>
    static auto find(const Map& map, const std::string& key) {
        const auto found = map.find(key);
        return found == map.end() ? std::nullopt : std::optional(found->second);
    }

    [[nodiscard]] std::string systemName() const override { return "iOS"; }
    [[nodiscard]] std::string systemVersion() const override { return "14.4"; }
    [[nodiscard]] std::string name() const override { return script_.deviceName; }
    [[nodiscard]] std::optional<std::string> identifierForVendor() const override {
        return script_.identifierForVendor;
    }
    [[nodiscard]] UIUserInterfaceIdiom userInterfaceIdiom() const override {
        return script_.userInterfaceIdiom;
    }
    [[nodiscard]] UIDeviceOrientation orientation() const override { return script_.orientation; }

    [[nodiscard]] CGRect bounds() const override { return script_.bounds; }
    [[nodiscard]] bool isCaptured() const override { return script_.isCaptured; }

    [[nodiscard]] std::vector<std::string> familyNames() const override {
        std::vector<std::string> names;
        for (const auto& [family, fonts] : script_.fonts)
            names.push_back(family);
        return names;
    }
    [[nodiscard]] std::vector<std::string> fontNamesForFamilyName(const std::string& family) const override {
        for (const auto& [name, fonts] : script_.fonts)
            if (name == family) return fonts;
        return {};
    }
    [[nodiscard]] double systemFontSize() const override { return script_.systemFontSize; }
    [[nodiscard]] double labelFontSize() const override { return 17; }
    [[nodiscard]] double buttonFontSize() const override { return 18; }
    [[nodiscard]] double smallSystemFontSize() const override { return 12; }
    [[nodiscard]] std::string systemFontDescription(double size) const override {
        return script_.systemFontDescription + std::to_string(std::lround(size));
    }

    [[nodiscard]] Locale current() const override { return {"en_GB"}; }
    [[nodiscard]] std::vector<std::string> availableIdentifiers() const override {
        return script_.availableIdentifiers;
    }
    [[nodiscard]] std::vector<std::string> preferredLanguages() const override {
        return script_.preferredLanguages;
    }
    [[nodiscard]] std::optional<std::string> abbreviation() const override {
        return script_.timeZoneAbbreviation;
    }

    [[nodiscard]] CLAuthorizationStatus authorizationStatus() const override {
        return static_cast<CLAuthorizationStatus>(script_.locationStatus);
    }
    [[nodiscard]] std::optional<CLLocation> location() const override {
        ++script_.locationReads;
        return script_.location;
    }
    [[nodiscard]] std::string advertisingIdentifier() const override { return script_.advertisingIdentifier; }

    [[nodiscard]] std::optional<JSON> valueForKey(const std::string& key) const override {
        return find(script_.defaults, key);
    }
    void setObject(const JSON& object, const std::string& key) override { script_.defaults[key] = object; }
    bool synchronize() override { return ++script_.synchronizations > 0; }

    [[nodiscard]] std::optional<std::string> appStoreReceiptURL() const override {
        return script_.receiptURL;
    }
    [[nodiscard]] std::optional<std::string> URLForResource(const std::string& name,
                                                            const std::string& extension) const override {
        return FolderBundle(script_.mainBundlePath).URLForResource(name, extension);
    }
    [[nodiscard]] std::string bundlePath() const override { return script_.mainBundlePath; }
    [[nodiscard]] std::optional<std::vector<std::string>>
    stringsForInfoDictionaryKey(const std::string& key) const override {
        return find(script_.infoDictionary, key);
    }

    [[nodiscard]] std::vector<NetworkInterface> list() const override { return script_.interfaces; }
    [[nodiscard]] std::string machine() const override { return script_.machine; }
    [[nodiscard]] std::optional<std::string> environmentVariable(const std::string& name) const override {
        return find(script_.environment, name);
    }

    [[nodiscard]] bool isJailbroken() const override { return script_.isJailbroken; }
    [[nodiscard]] bool isEmulator() const override { return script_.isEmulator; }
    [[nodiscard]] bool isDebuggerAttached() const override { return script_.isDebuggerAttached; }
    [[nodiscard]] bool isOSVersionSupported() const override { return script_.isOSVersionSupported; }

    mutable DeviceScript script_;
    FixedAdvances textMeasurer_;
    Installation installation_{*this};
};

} // namespace korvane
