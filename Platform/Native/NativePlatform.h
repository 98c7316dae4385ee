#pragma once

#include "Platform/Platform.h"

#include <functional>
#include <memory>
#include <string>

namespace korvane {

/// The headless platform: the services of the operating system, without a screen. While it lives it is the
/// platform of the process. Its end waits for the work that runs on its queues and drops the rest.
class NativePlatform final : public Platform {
public:
    NativePlatform();
    ~NativePlatform() override;

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
    [[nodiscard]] Dispatch& dispatch() override;
    [[nodiscard]] std::shared_ptr<URLSession>
    makeURLSession(const URLSessionConfiguration& configuration) override;

    /// Runs the main queue's work on the calling thread until `stopMain()`. One thread at a time.
    void runMain();

    /// As `runMain`, until `isDone` says true: it is asked before the first and after each piece of work.
    void runMainUntil(const std::function<bool()>& isDone);

    /// Ends `runMain()`, or the next one if none runs. Any thread.
    void stopMain();

    /// Holds the device in another way: its screen has that size from now on, and the application is told.
    /// Main queue only.
    void turn(UIDeviceOrientation orientation, CGSize screen);

    /// Trusts further authorities in every session made from now on, as a test bed needs. Before other
    /// threads use the platform.
    /// @param pem  certificates in PEM, one after the other.
    void addCertificateAuthorities(const std::string& pem);

private:
    struct Services;

    std::unique_ptr<Services> services_;
    Installation installation_{*this};
};

} // namespace korvane
