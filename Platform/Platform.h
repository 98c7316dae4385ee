#pragma once

#include "Platform/ASIdentifierManager.h"
#include "Platform/CLLocationManager.h"
#include "Platform/Dispatch.h"
#include "Platform/Export.h"
#include "Platform/IntegrityChecks.h"
#include "Platform/Locale.h"
#include "Platform/NSBundle.h"
#include "Platform/NSProcessInfo.h"
#include "Platform/NSUserDefaults.h"
#include "Platform/NetworkInterfaces.h"
#include "Platform/TimeZone.h"
#include "Platform/UIDevice.h"
#include "Platform/UIFontServices.h"
#include "Platform/UIScreen.h"
#include "Platform/URLSession.h"

#include <memory>

namespace korvane {

class NotificationCenter;
class TextMeasurer;
class UIApplication;

/// What a filling gives: every service of the seam. One that is left out does not compile.
struct PlatformServices {
    UIDevice& device;
    UIScreen& mainScreen;
    UIFontServices& fonts;
    TextMeasurer& textMeasurer;
    LocaleServices& locales;
    TimeZone& timeZone;
    CLLocationManager& locationManager;
    ASIdentifierManager& identifierManager;
    NSUserDefaults& userDefaults;
    NSBundle& mainBundle;
    NetworkInterfaces& networkInterfaces;
    NSProcessInfo& processInfo;
    IntegrityChecks& integrityChecks;
    Dispatch& dispatch;
    URLSessionMaker& urlSessions;
};

/// The machine that the process runs on: one filling of the seam, of which a process has one at a time. Its
/// services are there from its `Installation` on until that goes; asked for one before or after, the process
/// ends (`fatalError`).
class KORVANE_EXPORT Platform {
public:
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    virtual ~Platform();

    /// The platform of this process. Any thread. Without one, the process ends (`fatalError`).
    [[nodiscard]] static Platform& current();

    /// Whether the process has a platform: for what may outlive it. Any thread.
    [[nodiscard]] static bool isInstalled() noexcept;

    [[nodiscard]] UIDevice& device() const { return services().device; }
    [[nodiscard]] UIScreen& mainScreen() const { return services().mainScreen; }
    [[nodiscard]] UIFontServices& fonts() const { return services().fonts; }
    [[nodiscard]] TextMeasurer& textMeasurer() const { return services().textMeasurer; }
    [[nodiscard]] LocaleServices& locales() const { return services().locales; }
    [[nodiscard]] TimeZone& timeZone() const { return services().timeZone; }
    [[nodiscard]] CLLocationManager& locationManager() const { return services().locationManager; }
    [[nodiscard]] ASIdentifierManager& identifierManager() const { return services().identifierManager; }
    [[nodiscard]] NSUserDefaults& userDefaults() const { return services().userDefaults; }
    [[nodiscard]] NSBundle& mainBundle() const { return services().mainBundle; }
    [[nodiscard]] NetworkInterfaces& networkInterfaces() const { return services().networkInterfaces; }
    [[nodiscard]] NSProcessInfo& processInfo() const { return services().processInfo; }
    [[nodiscard]] IntegrityChecks& integrityChecks() const { return services().integrityChecks; }
    [[nodiscard]] Dispatch& dispatch() const { return services().dispatch; }
    [[nodiscard]] std::shared_ptr<URLSession>
    makeURLSession(const URLSessionConfiguration& configuration) const {
        return services().urlSessions.makeSession(configuration);
    }

    /// The same for every filling: what is observed, and what is shown.
    [[nodiscard]] NotificationCenter& notificationCenter() noexcept;
    [[nodiscard]] UIApplication& application() noexcept;

protected:
    Platform();

    /// Makes a filling the platform of the process, with its services, for as long as this object lives. It
    /// is the last member of the class that is made, behind all services: so no thread meets a platform whose
    /// services are not there yet, or there no more. What must end while they are still there, such as queues
    /// and exchanges, that class ends in its destructor's body, before this goes.
    class KORVANE_EXPORT Installation {
    public:
        /// A second platform beside a living one ends the process (`fatalError`).
        Installation(Platform& platform, const PlatformServices& services);
        Installation(const Installation&) = delete;
        Installation& operator=(const Installation&) = delete;
        /// Windows go first, while the services are still there for what they hold.
        ~Installation();

    private:
        Platform& platform_;
        const PlatformServices services_;
    };

private:
    struct Interface;

    [[nodiscard]] const PlatformServices& services() const;

    std::unique_ptr<Interface> interface_;
    const PlatformServices* services_ = nullptr;
};

} // namespace korvane
