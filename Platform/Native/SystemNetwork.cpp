#include "Platform/Native/SystemNetwork.h"

#include "Platform/Native/CurlEngine.h"
#include "Platform/Native/NativeURLSession.h"

#include <utility>

namespace korvane {

namespace {

/// Sessions over one engine, which all trust the same further authorities.
class CurlNetwork final : public SystemNetwork {
public:
    [[nodiscard]] std::shared_ptr<URLSession>
    makeSession(const URLSessionConfiguration& configuration) override {
        URLSessionConfiguration own = configuration;
        own.additionalCertificateAuthorities += authorities_;
        return std::make_shared<NativeURLSession>(engine_, own, watcher_);
    }
    void addCertificateAuthorities(const std::string& pem) override { authorities_ += "\n" + pem; }
    void watchAnswers(AnswerWatcher watcher) override { watcher_ = std::move(watcher); }
    void stop() override { engine_->stop(); }

private:
    std::shared_ptr<CurlEngine> engine_ = std::make_shared<CurlEngine>();
    std::string authorities_;
    AnswerWatcher watcher_;
};

} // namespace

std::unique_ptr<SystemNetwork> makeSystemNetwork() {
    return std::make_unique<CurlNetwork>();
}

} // namespace korvane
