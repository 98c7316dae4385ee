#pragma once

#include "Platform/ASIdentifierManager.h"
#include "Platform/CLLocationManager.h"
#include "Platform/Hosted/Host.h"
#include "Platform/IntegrityChecks.h"
#include "Platform/Locale.h"
#include "Platform/NSProcessInfo.h"
#include "Platform/Native/NativeDevice.h"
#include "Platform/Native/NativeMainBundle.h"
#include "Platform/Native/SizedScreen.h"
#include "Platform/Native/UsualFontSizes.h"
#include "Platform/TimeZone.h"

#include <atomic>
#include <string_view>

namespace korvane {

// The services that a host's values make, and the system's where the host has none. Threads as in the seam.

/// The host's answers as values; what it does not know, and what is no UTF-8, is absent.
class HostValues {
public:
    explicit HostValues(const Host& host) : host_(host) {}

    [[nodiscard]] std::vector<std::string> texts(HostValue value) const;
    /// @return no value unless there is just one text.
    [[nodiscard]] std::optional<std::string> text(HostValue value) const;
    [[nodiscard]] bool flag(HostValue value, bool otherwise) const;

private:
    const Host& host_;
};

class HostedDevice final : public NativeDevice {
public:
    explicit HostedDevice(const HostValues& values) : values_(values) {}

    [[nodiscard]] std::string systemName() const override;
    [[nodiscard]] std::string systemVersion() const override;
    [[nodiscard]] std::string name() const override;
    [[nodiscard]] std::optional<std::string> identifierForVendor() const override;
    [[nodiscard]] UIUserInterfaceIdiom userInterfaceIdiom() const override;

private:
    const HostValues& values_;
};

/// Empty, until the host says how large it is.
class HostedScreen final : public SizedScreen {
public:
    [[nodiscard]] bool isCaptured() const override { return isCaptured_; }
    void setCaptured(bool isCaptured) { isCaptured_ = isCaptured; }

private:
    std::atomic<bool> isCaptured_{false};
};

class HostedFonts final : public UsualFontSizes {
public:
    explicit HostedFonts(const HostValues& values) : values_(values) {}

    [[nodiscard]] std::vector<std::string> familyNames() const override;
    /// The host tells no fonts of a family.
    [[nodiscard]] std::vector<std::string> fontNamesForFamilyName(const std::string& family) const override;
    [[nodiscard]] std::string systemFontDescription(double size) const override;

private:
    const HostValues& values_;
};

/// What is read on the main queue, when a service is initialised.
class HostedFacts final : public LocaleServices,
                          public TimeZone,
                          public CLLocationManager,
                          public ASIdentifierManager,
                          public IntegrityChecks,
                          public NSProcessInfo {
public:
    /// The system's own answers.
    struct System {
        const LocaleServices& locales;
        const TimeZone& timeZone;
        const CLLocationManager& location;
        const ASIdentifierManager& advertising;
        const IntegrityChecks& integrity;
        const NSProcessInfo& process;
    };

    HostedFacts(const HostValues& values, const System& system) : values_(values), system_(system) {}

    [[nodiscard]] Locale current() const override;
    [[nodiscard]] std::vector<std::string> availableIdentifiers() const override;
    [[nodiscard]] std::vector<std::string> preferredLanguages() const override;
    [[nodiscard]] std::optional<std::string> abbreviation() const override;
    [[nodiscard]] CLAuthorizationStatus authorizationStatus() const override;
    [[nodiscard]] std::optional<CLLocation> location() const override;
    [[nodiscard]] std::string advertisingIdentifier() const override;
    [[nodiscard]] bool isJailbroken() const override;
    [[nodiscard]] bool isEmulator() const override;
    [[nodiscard]] bool isDebuggerAttached() const override;
    [[nodiscard]] bool isOSVersionSupported() const override;
    [[nodiscard]] std::string machine() const override;
    [[nodiscard]] std::optional<std::string> environmentVariable(const std::string& name) const override;

private:
    const HostValues& values_;
    const System system_;
};

class HostedBundle final : public NativeMainBundle {
public:
    explicit HostedBundle(const HostValues& values) : values_(values) {}

    [[nodiscard]] std::optional<std::string> appStoreReceiptURL() const override;
    [[nodiscard]] std::string privateFrameworksPath() const override;
    [[nodiscard]] std::optional<std::vector<std::string>>
    stringsForInfoDictionaryKey(const std::string& key) const override;

private:
    const HostValues& values_;
};

} // namespace korvane
