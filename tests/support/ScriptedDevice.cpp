#include "tests/support/ScriptedDevice.h"

#include "Platform/Failure.h"
#include "Platform/View/TextMeasurer.h"

#include <cmath>

namespace korvane {

namespace {

struct Device final : UIDevice {
    explicit Device(DeviceScript& s) : script(s) {}
    [[nodiscard]] std::string systemName() const override { return script.systemName; }
    [[nodiscard]] std::string systemVersion() const override { return script.systemVersion; }
    [[nodiscard]] std::string name() const override { return script.deviceName; }
    [[nodiscard]] std::optional<std::string> identifierForVendor() const override {
        return script.identifierForVendor;
    }
    [[nodiscard]] UIUserInterfaceIdiom userInterfaceIdiom() const override {
        return script.userInterfaceIdiom;
    }
    [[nodiscard]] UIDeviceOrientation orientation() const override { return script.orientation; }
    DeviceScript& script;
};

struct Screen final : UIScreen {
    explicit Screen(DeviceScript& s) : script(s) {}
    [[nodiscard]] CGRect bounds() const override { return script.bounds; }
    [[nodiscard]] bool isCaptured() const override { return script.isCaptured; }
    DeviceScript& script;
};

struct Fonts final : UIFontServices {
    explicit Fonts(DeviceScript& s) : script(s) {}
    [[nodiscard]] std::vector<std::string> familyNames() const override {
        std::vector<std::string> names;
        for (const auto& [family, fonts] : script.fonts)
            names.push_back(family);
        return names;
    }
    [[nodiscard]] std::vector<std::string> fontNamesForFamilyName(const std::string& family) const override {
        for (const auto& [name, fonts] : script.fonts)
            if (name == family) return fonts;
        return {};
    }
    [[nodiscard]] double systemFontSize() const override { return script.systemFontSize; }
    [[nodiscard]] double labelFontSize() const override { return script.labelFontSize; }
    [[nodiscard]] double buttonFontSize() const override { return script.buttonFontSize; }
    [[nodiscard]] double smallSystemFontSize() const override { return script.smallSystemFontSize; }
    [[nodiscard]] std::string systemFontDescription(double size) const override {
        return script.systemFontDescription + std::to_string(std::lround(size));
    }
    DeviceScript& script;
};

struct Locales final : LocaleServices {
    explicit Locales(DeviceScript& s) : script(s) {}
    [[nodiscard]] Locale current() const override { return script.currentLocale; }
    [[nodiscard]] std::vector<std::string> availableIdentifiers() const override {
        return script.availableIdentifiers;
    }
    [[nodiscard]] std::vector<std::string> preferredLanguages() const override {
        return script.preferredLanguages;
    }
    DeviceScript& script;
};

struct Zone final : TimeZone {
    explicit Zone(DeviceScript& s) : script(s) {}
    [[nodiscard]] std::optional<std::string> abbreviation() const override {
        return script.timeZoneAbbreviation;
    }
    DeviceScript& script;
};

struct Location final : CLLocationManager {
    explicit Location(DeviceScript& s) : script(s) {}
    [[nodiscard]] CLAuthorizationStatus authorizationStatus() const override {
        return static_cast<CLAuthorizationStatus>(script.locationStatus);
    }
    [[nodiscard]] std::optional<CLLocation> location() const override {
        ++script.locationReads;
        return script.location;
    }
    DeviceScript& script;
};

struct Advertising final : ASIdentifierManager {
    explicit Advertising(DeviceScript& s) : script(s) {}
    [[nodiscard]] std::string advertisingIdentifier() const override { return script.advertisingIdentifier; }
    DeviceScript& script;
};

struct Defaults final : NSUserDefaults {
    explicit Defaults(DeviceScript& s) : script(s) {}
    [[nodiscard]] std::optional<JSON> valueForKey(const std::string& key) const override {
        const auto found = script.defaults.find(key);
        return found == script.defaults.end() ? std::nullopt : std::optional(found->second);
    }
    void setObject(const JSON& object, const std::string& key) override { script.defaults[key] = object; }
    bool synchronize() override { return ++script.synchronizations > 0; }
    DeviceScript& script;
};

struct Bundle final : NSBundle {
    explicit Bundle(DeviceScript& s) : script(s) {}
    [[nodiscard]] std::optional<std::string> appStoreReceiptURL() const override { return script.receiptURL; }
    [[nodiscard]] std::optional<std::string> URLForResource(const std::string& name,
                                                            const std::string& extension) const override {
        return FolderBundle(script.mainBundlePath).URLForResource(name, extension);
    }
    [[nodiscard]] std::string bundlePath() const override { return script.mainBundlePath; }
    [[nodiscard]] std::optional<std::vector<std::string>>
    stringsForInfoDictionaryKey(const std::string& key) const override {
        const auto found = script.infoDictionary.find(key);
        return found == script.infoDictionary.end() ? std::nullopt : std::optional(found->second);
    }
    DeviceScript& script;
};

struct Interfaces final : NetworkInterfaces {
    explicit Interfaces(DeviceScript& s) : script(s) {}
    [[nodiscard]] std::vector<NetworkInterface> list() const override { return script.interfaces; }
    DeviceScript& script;
};

struct Process final : NSProcessInfo {
    explicit Process(DeviceScript& s) : script(s) {}
    [[nodiscard]] std::string machine() const override { return script.machine; }
    [[nodiscard]] std::optional<std::string> environmentVariable(const std::string& name) const override {
        const auto found = script.environment.find(name);
        return found == script.environment.end() ? std::nullopt : std::optional(found->second);
    }
    DeviceScript& script;
};

struct Integrity final : IntegrityChecks {
    explicit Integrity(DeviceScript& s) : script(s) {}
    [[nodiscard]] bool isJailbroken() const override { return script.isJailbroken; }
    [[nodiscard]] bool isEmulator() const override { return script.isEmulator; }
    [[nodiscard]] bool isDebuggerAttached() const override { return script.isDebuggerAttached; }
    [[nodiscard]] bool isOSVersionSupported() const override { return script.isOSVersionSupported; }
    DeviceScript& script;
};

} // namespace

struct ScriptedDevice::Services {
    DeviceScript& script;
    Device device{script};
    Screen mainScreen{script};
    Fonts fonts{script};
    FixedAdvances textMeasurer{};
    Locales locales{script};
    Zone timeZone{script};
    Location locationManager{script};
    Advertising identifierManager{script};
    Defaults userDefaults{script};
    Bundle mainBundle{script};
    Interfaces networkInterfaces{script};
    Process processInfo{script};
    Integrity integrityChecks{script};
};

ScriptedDevice::ScriptedDevice() : services_(new Services{script_}) {}

ScriptedDevice::~ScriptedDevice() = default;

UIDevice& ScriptedDevice::device() {
    return services_->device;
}

UIScreen& ScriptedDevice::mainScreen() {
    return services_->mainScreen;
}

UIFontServices& ScriptedDevice::fonts() {
    return services_->fonts;
}

TextMeasurer& ScriptedDevice::textMeasurer() {
    return services_->textMeasurer;
}

LocaleServices& ScriptedDevice::locales() {
    return services_->locales;
}

TimeZone& ScriptedDevice::timeZone() {
    return services_->timeZone;
}

CLLocationManager& ScriptedDevice::locationManager() {
    return services_->locationManager;
}

ASIdentifierManager& ScriptedDevice::identifierManager() {
    return services_->identifierManager;
}

NSUserDefaults& ScriptedDevice::userDefaults() {
    return services_->userDefaults;
}

NSBundle& ScriptedDevice::mainBundle() {
    return services_->mainBundle;
}

NetworkInterfaces& ScriptedDevice::networkInterfaces() {
    return services_->networkInterfaces;
}

NSProcessInfo& ScriptedDevice::processInfo() {
    return services_->processInfo;
}

IntegrityChecks& ScriptedDevice::integrityChecks() {
    return services_->integrityChecks;
}

Dispatch& ScriptedDevice::dispatch() {
    fatalError("A scripted device has no queues.");
}

std::shared_ptr<URLSession> ScriptedDevice::makeURLSession(const URLSessionConfiguration&) {
    fatalError("A scripted device has no network.");
}

} // namespace korvane
