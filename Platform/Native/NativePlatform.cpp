#include "Platform/Native/NativePlatform.h"

#include "Platform/Native/CurlEngine.h"
#include "Platform/Native/NativeAbsences.h"
#include "Platform/Native/NativeDevice.h"
#include "Platform/Native/NativeDispatch.h"
#include "Platform/Native/NativeFonts.h"
#include "Platform/Native/NativeLocales.h"
#include "Platform/Native/NativeMainBundle.h"
#include "Platform/Native/NativeNetworkInterfaces.h"
#include "Platform/Native/NativeProcess.h"
#include "Platform/Native/NativeURLSession.h"
#include "Platform/Native/NativeUserDefaults.h"
#include "Platform/View/TextMeasurer.h"
#include "Platform/View/UIApplication.h"

namespace korvane {

struct NativePlatform::Services {
    NativeDevice device;
    NoScreen screen;
    NativeFonts fonts;
    FixedAdvances textMeasurer;
    NativeLocales locales;
    NativeTimeZone timeZone;
    NoLocation location;
    NoAdvertising advertising;
    NativeUserDefaults defaults{NativeUserDefaults::defaultFile()};
    NativeMainBundle bundle;
    NativeNetworkInterfaces interfaces;
    NativeProcessInfo process;
    NativeIntegrityChecks integrity;
    NativeDispatch dispatch;
    std::shared_ptr<CurlEngine> network = std::make_shared<CurlEngine>();
    std::string authorities;
};

NativePlatform::NativePlatform() : services_(std::make_unique<Services>()) {}

/// The threads end while the platform is still whole, since their work may ask for it.
NativePlatform::~NativePlatform() {
    services_->network->stop();
    services_->dispatch.end();
}

UIDevice& NativePlatform::device() {
    return services_->device;
}

UIScreen& NativePlatform::mainScreen() {
    return services_->screen;
}

UIFontServices& NativePlatform::fonts() {
    return services_->fonts;
}

TextMeasurer& NativePlatform::textMeasurer() {
    return services_->textMeasurer;
}

LocaleServices& NativePlatform::locales() {
    return services_->locales;
}

TimeZone& NativePlatform::timeZone() {
    return services_->timeZone;
}

CLLocationManager& NativePlatform::locationManager() {
    return services_->location;
}

ASIdentifierManager& NativePlatform::identifierManager() {
    return services_->advertising;
}

NSUserDefaults& NativePlatform::userDefaults() {
    return services_->defaults;
}

NSBundle& NativePlatform::mainBundle() {
    return services_->bundle;
}

NetworkInterfaces& NativePlatform::networkInterfaces() {
    return services_->interfaces;
}

NSProcessInfo& NativePlatform::processInfo() {
    return services_->process;
}

IntegrityChecks& NativePlatform::integrityChecks() {
    return services_->integrity;
}

Dispatch& NativePlatform::dispatch() {
    return services_->dispatch;
}

std::shared_ptr<URLSession> NativePlatform::makeURLSession(const URLSessionConfiguration& configuration) {
    URLSessionConfiguration own = configuration;
    own.additionalCertificateAuthorities += services_->authorities;
    return std::make_shared<NativeURLSession>(services_->dispatch, services_->network, own);
}

void NativePlatform::runMain() {
    services_->dispatch.runMain();
}

void NativePlatform::runMainUntil(const std::function<bool()>& isDone) {
    services_->dispatch.runMainUntil(isDone);
}

void NativePlatform::stopMain() {
    services_->dispatch.stopMain();
}

void NativePlatform::turn(UIDeviceOrientation orientation, CGSize screen) {
    services_->device.setOrientation(orientation);
    services_->screen.setBounds({{0, 0}, screen});
    application().deviceDidRotate();
}

void NativePlatform::addCertificateAuthorities(const std::string& pem) {
    services_->authorities += "\n" + pem;
}

} // namespace korvane
