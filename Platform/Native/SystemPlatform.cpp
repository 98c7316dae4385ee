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

namespace {

/// Sessions over one engine, which all trust the same further authorities.
class NativeURLSessionMaker final : public URLSessionMaker {
public:
    [[nodiscard]] std::shared_ptr<URLSession>
    makeSession(const URLSessionConfiguration& configuration) override {
        URLSessionConfiguration own = configuration;
        own.additionalCertificateAuthorities += authorities_;
        return std::make_shared<NativeURLSession>(engine_, own, watcher_);
    }
    void addCertificateAuthorities(const std::string& pem) { authorities_ += "\n" + pem; }
    void watchAnswers(AnswerWatcher watcher) { watcher_ = std::move(watcher); }
    void stop() { engine_->stop(); }

private:
    std::shared_ptr<CurlEngine> engine_ = std::make_shared<CurlEngine>();
    std::string authorities_;
    AnswerWatcher watcher_;
};

} // namespace

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
    NativeURLSessionMaker urlSessions;
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
            .urlSessions = services_->urlSessions};
}

void SystemPlatform::endNetwork() {
    services_->urlSessions.stop();
}

void SystemPlatform::addCertificateAuthorities(const std::string& pem) {
    services_->urlSessions.addCertificateAuthorities(pem);
}

void SystemPlatform::watchAnswers(AnswerWatcher watcher) {
    services_->urlSessions.watchAnswers(std::move(watcher));
}

} // namespace korvane
