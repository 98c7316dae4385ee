#include "Platform/Native/CurlEngine.h"

#include "Platform/Failure.h"

#include <algorithm>
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
    tell({Action::start, std::move(job)});
}

void CurlEngine::abandon(std::shared_ptr<CurlJob> job) {
    tell({Action::abandon, std::move(job)});
}

void CurlEngine::tell(Command command) {
    const std::lock_guard lock(mutex_);
    if (isStopped_) return;
    commands_.push_back(std::move(command));
    if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
    curl_multi_wakeup(multi_.get());
}

void CurlEngine::stop() {
    {
        const std::lock_guard lock(mutex_);
        isStopped_ = true;
        curl_multi_wakeup(multi_.get());
    }
    if (thread_.joinable()) thread_.join();
    std::vector<Command> dropped;
    const std::lock_guard lock(mutex_);
    dropped.swap(commands_);
}

void CurlEngine::run() {
    while (obey()) {
        int running = 0;
        curl_multi_perform(multi_.get(), &running);
        collectEnded();
        curl_multi_poll(multi_.get(), nullptr, 0, kLongestPollMilliseconds, nullptr);
    }
    while (!running_.empty())
        remove(running_.begin()->first);
}

/// @return false once the engine is to stop.
bool CurlEngine::obey() {
    std::vector<Command> commands;
    {
        const std::lock_guard lock(mutex_);
        if (isStopped_) return false;
        commands.swap(commands_);
    }
    for (const auto& [action, job] : commands) {
        if (action == Action::start) {
            add(job);
            continue;
        }
        const auto found = std::find_if(running_.begin(), running_.end(),
                                        [&job = job](const auto& entry) { return entry.second == job; });
        if (found != running_.end()) remove(found->first);
    }
    return true;
}

void CurlEngine::add(const std::shared_ptr<CurlJob>& job) {
    CURL* const handle = job->begin();
    if (!handle) return;
    running_.emplace(handle, job);
    curl_multi_add_handle(multi_.get(), handle);
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
