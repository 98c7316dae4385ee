#include "Platform/Native/CurlEngine.h"

#include "Platform/Failure.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace korvane {

namespace {

/// libcurl's own timers and `curl_multi_wakeup` end a wait earlier.
constexpr int kLongestPollMilliseconds = 60'000;

/// Idle and busy connections that are kept open.
constexpr long kMostConnections = 64;

bool startLibcurl() {
    static const bool isStarted = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return isStarted;
}

} // namespace

CurlEngine::CurlEngine() : multi_(startLibcurl() ? curl_multi_init() : nullptr) {
    if (!multi_) fatalError("libcurl does not start.");
    curl_multi_setopt(multi_.get(), CURLMOPT_MAXCONNECTS, kMostConnections);
}

CurlEngine::~CurlEngine() {
    stop();
}

void CurlEngine::start(std::shared_ptr<CurlJob> job) {
    if (!tell([this, job] { add(job); })) job->drop();
}

/// An engine that has stopped has no transfer to stop.
void CurlEngine::abandon(std::shared_ptr<CurlJob> job) {
    static_cast<void>(tell([this, job = std::move(job)] { cancel(job); }));
}

void CurlEngine::call(std::function<void()> work) {
    if (!tell(work)) work();
}

/// @return false if the engine's thread has ended, or cannot be made.
bool CurlEngine::tell(Command command) {
    const std::lock_guard lock(mutex_);
    if (isStopped_ || !hasThread()) return false;
    commands_.push_back(std::move(command));
    curl_multi_wakeup(multi_.get());
    return true;
}

bool CurlEngine::hasThread() {
    try {
        if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

void CurlEngine::stop() {
    {
        const std::lock_guard lock(mutex_);
        isStopped_ = true;
        curl_multi_wakeup(multi_.get());
    }
    if (thread_.joinable()) thread_.join();
}

void CurlEngine::run() {
    while (obey()) {
        int running = 0;
        curl_multi_perform(multi_.get(), &running);
        collectEnded();
        curl_multi_poll(multi_.get(), nullptr, 0, kLongestPollMilliseconds, nullptr);
    }
    while (!running_.empty()) {
        const auto [handle, job] = *running_.begin();
        job->drop();
        remove(handle);
    }
}

/// @return false once the engine is to stop; there is nothing left to obey then.
bool CurlEngine::obey() {
    std::vector<Command> commands;
    bool isStopped = false;
    {
        const std::lock_guard lock(mutex_);
        commands.swap(commands_);
        isStopped = isStopped_;
    }
    for (const Command& command : commands)
        command();
    return !isStopped;
}

void CurlEngine::add(const std::shared_ptr<CurlJob>& job) {
    CURL* const handle = job->begin();
    if (!handle) return;
    running_.emplace(handle, job);
    curl_multi_add_handle(multi_.get(), handle);
}

void CurlEngine::cancel(const std::shared_ptr<CurlJob>& job) {
    const auto found = std::find_if(running_.begin(), running_.end(),
                                    [&job](const auto& entry) { return entry.second == job; });
    if (found != running_.end()) remove(found->first);
}

void CurlEngine::remove(CURL* handle) {
    curl_multi_remove_handle(multi_.get(), handle);
    const auto job = running_.extract(handle).mapped();
    job->release();
}

void CurlEngine::collectEnded() {
    int left = 0;
    while (CURLMsg* const message = curl_multi_info_read(multi_.get(), &left)) {
        if (message->msg != CURLMSG_DONE) continue;
        CURL* const handle = message->easy_handle;
        const CURLcode code = message->data.result;
        running_.at(handle)->end(code);
        remove(handle);
    }
}

} // namespace korvane
