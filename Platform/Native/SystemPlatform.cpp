#include "Platform/Native/SystemPlatform.h"

#include "Platform/Native/NativeAbsences.h"
#include "Platform/Native/NativeLocales.h"
#include "Platform/Native/NativeMainBundle.h"
#include "Platform/Native/NativeNetworkInterfaces.h"
#include "Platform/Native/NativeProcess.h"
#include "Platform/Native/NativeUserDefaults.h"
#include "Platform/Native/SystemNetwork.h"

#include <utility>

namespace korvane {

struct SystemPlatform::Services {
    NativeLocales locales;
    NativeTimeZone timeZone;
    NoLocation location;
    NoAdvertising advertising;
    NativeUserDefaults defaults{NativeUserDefaults::usualPlace()};
    NativeMainBundle bundle;
    NativeNetworkInterfaces interfaces;
    NativeProcessInfo process;
    NativeIntegrityChecks integrity;
    std::unique_ptr<SystemNetwork> network = makeSystemNetwork();
};

SystemPlatform::SystemPlatform() : services_(std::make_unique<Services>()) {}

SystemPlatform::~SystemPlatform() = default;

PlatformServices SystemPlatform::servicesWith(const FillingServices& own) {
    return {.device = own.device,
            .mainScreen = own.mainScreen,
            .fonts = own.fonts,
            .textMeasurer = own.textMeasurer,
            .locales = services_->locales,
            .timeZone = services_->timeZone,
            .locationManager = services_->location,
            .identifierManager = services_->advertising,
            .userDefaults = services_->defaults,
            .mainBundle = services_->bundle,
            .networkInterfaces = services_->interfaces,
            .processInfo = services_->process,
            .integrityChecks = services_->integrity,
            .dispatch = own.dispatch,
            .urlSessions = *services_->network};
}

void SystemPlatform::endNetwork() {
    services_->network->stop();
}

void SystemPlatform::addCertificateAuthorities(const std::string& pem) {
    services_->network->addCertificateAuthorities(pem);
}

void SystemPlatform::watchAnswers(AnswerWatcher watcher) {
    services_->network->watchAnswers(std::move(watcher));
}

} // namespace korvane
