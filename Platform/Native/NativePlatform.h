#pragma once

#include "Platform/Platform.h"

#include <memory>

namespace korvane {

/// The headless platform: the services of the operating system, without a screen. While it lives it is the
/// platform of the process.
class NativePlatform final : public Platform {
public:
    NativePlatform();
    ~NativePlatform() override;

    [[nodiscard]] UIDevice& device() override;
    [[nodiscard]] UIScreen& mainScreen() override;
    [[nodiscard]] UIFontServices& fonts() override;
    [[nodiscard]] LocaleServices& locales() override;
    [[nodiscard]] TimeZone& timeZone() override;
    [[nodiscard]] CLLocationManager& locationManager() override;
    [[nodiscard]] ASIdentifierManager& identifierManager() override;
    [[nodiscard]] NSUserDefaults& userDefaults() override;
    [[nodiscard]] NSBundle& mainBundle() override;
    [[nodiscard]] NetworkInterfaces& networkInterfaces() override;
    [[nodiscard]] NSProcessInfo& processInfo() override;
    [[nodiscard]] IntegrityChecks& integrityChecks() override;

private:
    struct Services;

    std::unique_ptr<Services> services_;
    Installation installation_{*this};
};

} // namespace korvane
