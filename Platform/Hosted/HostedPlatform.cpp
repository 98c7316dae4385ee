#include "Platform/Hosted/HostedPlatform.h"

#include "Platform/Hosted/HostedDefaults.h"
#include "Platform/Hosted/HostedMainLoop.h"
#include "Platform/Hosted/HostedNetwork.h"
#include "Platform/Hosted/HostedServices.h"
#include "Platform/Native/NativeDispatch.h"
#include "Platform/NotificationCenter.h"
#include "Platform/View/TextMeasurer.h"
#include "Platform/View/UIApplication.h"

#include <optional>
#include <utility>

namespace korvane {

struct HostedPlatform::Parts {
    explicit Parts(Host itsHost) : host(std::move(itsHost)) {
        if (host.load && host.save) defaults.emplace(host);
        if (host.send) network.emplace(host);
    }

    const Host host;
    const HostValues values{host};
    HostedDevice device{values};
    HostedScreen screen;
    HostedFonts fonts{values};
    FixedAdvances textMeasurer;
    HostedBundle bundle{values};
    std::optional<HostedFacts> facts;
    std::optional<HostedDefaults> defaults;
    std::optional<HostedNetwork> network;
    HostedMainLoop* loop = nullptr; // which the dispatch owns
    std::optional<NativeDispatch> dispatch;
};

HostedPlatform::HostedPlatform(Host host)
    : parts_(std::make_unique<Parts>(std::move(host))), installation_(*this, services()) {}

/// The threads end while the platform is still whole, since their work may ask for it.
HostedPlatform::~HostedPlatform() {
    if (parts_->network) parts_->network->stop();
    endNetwork();
    parts_->dispatch->end();
}

/// The system's services, and before them what the host gives.
PlatformServices HostedPlatform::services() {
    Parts& own = *parts_;
    auto loop = std::make_unique<HostedMainLoop>(own.host.wakeMain);
    own.loop = loop.get();
    own.dispatch.emplace(std::move(loop));
    const PlatformServices system = servicesWith({.device = own.device,
                                                  .mainScreen = own.screen,
                                                  .fonts = own.fonts,
                                                  .textMeasurer = own.textMeasurer,
                                                  .dispatch = *own.dispatch});
    own.facts.emplace(own.values, HostedFacts::System{system.locales, system.timeZone, system.locationManager,
                                                      system.identifierManager, system.integrityChecks,
                                                      system.processInfo});
    HostedFacts& facts = *own.facts;
    NSUserDefaults& defaults = own.defaults ? *own.defaults : system.userDefaults;
    URLSessionMaker& urlSessions = own.network ? *own.network : system.urlSessions;
    return {.device = own.device,
            .mainScreen = own.screen,
            .fonts = own.fonts,
            .textMeasurer = own.textMeasurer,
            .locales = facts,
            .timeZone = facts,
            .locationManager = facts,
            .identifierManager = facts,
            .userDefaults = defaults,
            .mainBundle = own.bundle,
            .networkInterfaces = system.networkInterfaces,
            .processInfo = facts,
            .integrityChecks = facts,
            .dispatch = *own.dispatch,
            .urlSessions = urlSessions};
}

bool HostedPlatform::runMain(Seconds limit) {
    return parts_->loop->runWithin(limit);
}

bool HostedPlatform::complete(std::uint64_t number, HostAnswer answer) {
    return parts_->network && parts_->network->complete(number, std::move(answer));
}

void HostedPlatform::addCertificateAuthorities(const std::string& pem) {
    SystemPlatform::addCertificateAuthorities(pem);
    if (parts_->network) parts_->network->addCertificateAuthorities(pem);
}

void HostedPlatform::turn(UIDeviceOrientation orientation, CGSize screen) {
    parts_->device.setOrientation(orientation);
    parts_->screen.setSize(screen);
    application().deviceDidRotate();
}

void HostedPlatform::setCaptured(bool isCaptured) {
    if (parts_->screen.isCaptured() == isCaptured) return;
    parts_->screen.setCaptured(isCaptured);
    notificationCenter().post({UIScreen::capturedDidChangeNotification});
}

void HostedPlatform::setActive(bool isActive) {
    if (isActive)
        application().didBecomeActive();
    else
        application().willResignActive();
}

} // namespace korvane
