#pragma once

#include "Platform/Platform.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvane {

/// What a scripted device answers: a telephone, of which a test changes what it is about.
struct DeviceScript {
    std::string systemName = "iOS";
    std::string systemVersion = "14.4";
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
    double labelFontSize = 17;
    double buttonFontSize = 18;
    double smallSystemFontSize = 12;
    /// The size is appended to it.
    std::string systemFontDescription = "system font of size ";

    Locale currentLocale{"en_GB"};
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
class ScriptedDevice : public Platform {
public:
    ScriptedDevice();
    ~ScriptedDevice() override;

    [[nodiscard]] DeviceScript& script() noexcept { return script_; }

    [[nodiscard]] UIDevice& device() override;
    [[nodiscard]] UIScreen& mainScreen() override;
    [[nodiscard]] UIFontServices& fonts() override;
    [[nodiscard]] TextMeasurer& textMeasurer() override;
    [[nodiscard]] LocaleServices& locales() override;
    [[nodiscard]] TimeZone& timeZone() override;
    [[nodiscard]] CLLocationManager& locationManager() override;
    [[nodiscard]] ASIdentifierManager& identifierManager() override;
    [[nodiscard]] NSUserDefaults& userDefaults() override;
    [[nodiscard]] NSBundle& mainBundle() override;
    [[nodiscard]] NetworkInterfaces& networkInterfaces() override;
    [[nodiscard]] NSProcessInfo& processInfo() override;
    [[nodiscard]] IntegrityChecks& integrityChecks() override;

    /// A device alone has neither queues nor a network (`fatalError`): see SimulatedPlatform.
    [[nodiscard]] Dispatch& dispatch() override;
    [[nodiscard]] std::shared_ptr<URLSession>
    makeURLSession(const URLSessionConfiguration& configuration) override;

private:
    struct Services;

    DeviceScript script_;
    std::unique_ptr<Services> services_;
    Installation installation_{*this};
};

} // namespace korvane
