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

/// The machine that the process runs on: one filling of the seam, of which a process has one at a time. The
/// services live as long as the platform.
class KORVANE_EXPORT Platform {
public:
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    virtual ~Platform();

    /// The platform of this process. Any thread. Without one, the process ends (`fatalError`).
    [[nodiscard]] static Platform& current();

    /// Whether the process has a platform: for what may outlive it. Any thread.
    [[nodiscard]] static bool isInstalled() noexcept;

    [[nodiscard]] virtual UIDevice& device() = 0;
    [[nodiscard]] virtual UIScreen& mainScreen() = 0;
    [[nodiscard]] virtual UIFontServices& fonts() = 0;
    [[nodiscard]] virtual TextMeasurer& textMeasurer() = 0;
    [[nodiscard]] virtual LocaleServices& locales() = 0;
    [[nodiscard]] virtual TimeZone& timeZone() = 0;
    [[nodiscard]] virtual CLLocationManager& locationManager() = 0;
    [[nodiscard]] virtual ASIdentifierManager& identifierManager() = 0;
    [[nodiscard]] virtual NSUserDefaults& userDefaults() = 0;
    [[nodiscard]] virtual NSBundle& mainBundle() = 0;
    [[nodiscard]] virtual NetworkInterfaces& networkInterfaces() = 0;
    [[nodiscard]] virtual NSProcessInfo& processInfo() = 0;
    [[nodiscard]] virtual IntegrityChecks& integrityChecks() = 0;
    [[nodiscard]] virtual Dispatch& dispatch() = 0;
    [[nodiscard]] virtual std::shared_ptr<URLSession>
    makeURLSession(const URLSessionConfiguration& configuration) = 0;

    /// The same for every filling: what is observed, and what is shown.
    [[nodiscard]] NotificationCenter& notificationCenter() noexcept;
    [[nodiscard]] UIApplication& application() noexcept;

protected:
    Platform();

    /// Makes a filling the platform of the process for as long as this object lives. It is a filling's last
    /// member, so that no thread meets a platform whose services are not there yet, or there no more.
    class Installation {
    public:
        /// A second platform beside a living one ends the process (`fatalError`).
        explicit Installation(Platform& platform);
        Installation(const Installation&) = delete;
        Installation& operator=(const Installation&) = delete;
        /// Windows go first, while the services are still there for what they hold.
        ~Installation();

    private:
        Platform& platform_;
    };

private:
    struct Interface;

    std::unique_ptr<Interface> interface_;
};

} // namespace korvane
