#include "Platform/Native/NativePlatform.h"

#include "Platform/Native/NativeAbsences.h"
#include "Platform/Native/NativeDevice.h"
#include "Platform/Native/NativeFonts.h"
#include "Platform/Native/NativeLocales.h"
#include "Platform/Native/NativeNetworkInterfaces.h"
#include "Platform/Native/NativeProcess.h"
#include "Platform/Native/NativeUserDefaults.h"

namespace korvane {

struct NativePlatform::Services {
    NativeDevice device;
    NoScreen screen;
    NativeFonts fonts;
    NativeLocales locales;
    NativeTimeZone timeZone;
    NoLocation location;
    NoAdvertising advertising;
    NativeUserDefaults defaults{NativeUserDefaults::defaultFile()};
    PlainBundle bundle;
    NativeNetworkInterfaces interfaces;
    NativeProcessInfo process;
    NativeIntegrityChecks integrity;
};

NativePlatform::NativePlatform() : services_(std::make_unique<Services>()) {}

NativePlatform::~NativePlatform() = default;

UIDevice& NativePlatform::device() {
    return services_->device;
}

UIScreen& NativePlatform::mainScreen() {
    return services_->screen;
}

UIFontServices& NativePlatform::fonts() {
    return services_->fonts;
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

} // namespace korvane
