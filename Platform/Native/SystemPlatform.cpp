#include "Platform/Native/SystemPlatform.h"

#include "Platform/Native/CurlEngine.h"
#include "Platform/Native/NativeAbsences.h"
#include "Platform/Native/NativeLocales.h"
#include "Platform/Native/NativeMainBundle.h"
#include "Platform/Native/NativeNetworkInterfaces.h"
#include "Platform/Native/NativeProcess.h"
#include "Platform/Native/NativeURLSession.h"
#include "Platform/Native/NativeUserDefaults.h"

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
    std::shared_ptr<CurlEngine> network = std::make_shared<CurlEngine>();
    std::string authorities;
};

SystemPlatform::SystemPlatform() : services_(std::make_unique<Services>()) {}

SystemPlatform::~SystemPlatform() = default;

void SystemPlatform::endNetwork() {
    services_->network->stop();
}

LocaleServices& SystemPlatform::locales() {
    return services_->locales;
}

TimeZone& SystemPlatform::timeZone() {
    return services_->timeZone;
}

CLLocationManager& SystemPlatform::locationManager() {
    return services_->location;
}

ASIdentifierManager& SystemPlatform::identifierManager() {
    return services_->advertising;
}

NSUserDefaults& SystemPlatform::userDefaults() {
    return services_->defaults;
}

NSBundle& SystemPlatform::mainBundle() {
    return services_->bundle;
}

NetworkInterfaces& SystemPlatform::networkInterfaces() {
    return services_->interfaces;
}

NSProcessInfo& SystemPlatform::processInfo() {
    return services_->process;
}

IntegrityChecks& SystemPlatform::integrityChecks() {
    return services_->integrity;
}

std::shared_ptr<URLSession> SystemPlatform::makeURLSession(const URLSessionConfiguration& configuration) {
    URLSessionConfiguration own = configuration;
    own.additionalCertificateAuthorities += services_->authorities;
    return std::make_shared<NativeURLSession>(services_->network, own);
}

void SystemPlatform::addCertificateAuthorities(const std::string& pem) {
    services_->authorities += "\n" + pem;
}

} // namespace korvane
