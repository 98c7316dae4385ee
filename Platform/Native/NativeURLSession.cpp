#include "Platform/Native/NativeURLSession.h"

#include "Platform/Native/CurlEngine.h"
#include "Platform/Native/CurlTransfer.h"
#include "Platform/Native/RequestRules.h"

#include <atomic>
#include <fstream>
#include <iterator>
#include <utility>

namespace korvane {

namespace {

/// libcurl takes one list of authorities, so an addition has to repeat the system's.
std::string authoritiesWith(const std::string& additional) {
    if (additional.empty()) return {};
    const char* const file = curl_version_info(CURLVERSION_NOW)->cainfo;
    std::ifstream system(file ? file : "", std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(system), {}) + "\n" + additional;
}

/// The engine's thread owns the transfer; whoever ends the task first owns the completion.
class NativeDataTask final : public URLSessionDataTask,
                             public CurlJob,
                             public std::enable_shared_from_this<NativeDataTask> {
public:
    NativeDataTask(std::shared_ptr<const NativeURLSession::Common> common, URLRequest request,
                   URLSession::Completion completion)
        : common_(std::move(common)), request_(std::move(request)), completion_(std::move(completion)) {}

    void resume() override {
        if (isResumed_.exchange(true) || hasEnded_) return;
        if (auto reason = refusal(request_)) return complete({std::nullopt, std::move(reason)});
        common_->engine->start(shared_from_this());
    }

    void cancel() override {
        if (hasEnded_) return;
        complete({std::nullopt, "cancelled"});
        if (isResumed_) common_->engine->abandon(shared_from_this());
    }

    CURL* begin() override {
        if (hasEnded_) return nullptr;
        transfer_.emplace(request_, common_->configuration, common_->authorities);
        return transfer_->handle();
    }

    void end(CURLcode code) override {
        TransferOutcome outcome = transfer_->outcome(code);
        if (outcome.body && common_->watcher) common_->watcher(request_, transfer_->status(), *outcome.body);
        complete(std::move(outcome));
    }

    void release() override { transfer_.reset(); }

    void drop() override { complete({std::nullopt, "The network is not there any more."}); }

private:
    void complete(TransferOutcome outcome) {
        if (hasEnded_.exchange(true)) return;
        const auto item = std::make_shared<DispatchWorkItem>(
            [completion = std::exchange(completion_, nullptr), outcome = std::move(outcome)]() mutable {
                completion(std::move(outcome.body), std::move(outcome.error));
            });
        common_->engine->call([item] { item->perform(); });
    }

    const std::shared_ptr<const NativeURLSession::Common> common_;
    const URLRequest request_;
    URLSession::Completion completion_;
    std::atomic<bool> isResumed_{false};
    std::atomic<bool> hasEnded_{false};
    std::optional<CurlTransfer> transfer_;
};

} // namespace

NativeURLSession::NativeURLSession(std::shared_ptr<CurlEngine> engine,
                                   const URLSessionConfiguration& configuration, AnswerWatcher watcher)
    : common_(std::make_shared<const Common>(
          Common{configuration, authoritiesWith(configuration.additionalCertificateAuthorities),
                 std::move(engine), std::move(watcher)})) {}

std::shared_ptr<URLSessionDataTask> NativeURLSession::dataTask(URLRequest request, Completion completion) {
    return std::make_shared<NativeDataTask>(common_, std::move(request), std::move(completion));
}

} // namespace korvane
