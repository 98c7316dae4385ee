#include "tests/Platform/Hosted/OwnHost.h"

#include "Platform/Native/CurlTransfer.h"

#include <curl/curl.h>

#include <fstream>
#include <iterator>

namespace korvane {

namespace {

using Flag = std::shared_ptr<std::atomic<bool>>;

int hasGivenUp(void* flag, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return *static_cast<std::atomic<bool>*>(flag) ? 1 : 0;
}

/// libcurl takes one list of authorities.
std::string authorities(const std::string& additional) {
    if (additional.empty()) return {};
    std::ifstream system(curl_version_info(CURLVERSION_NOW)->cainfo, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(system), {}) + "\n" + additional;
}

/// One exchange, without following redirects.
HostAnswer exchange(const HostRequest& asked, const Flag& givenUp) {
    URLRequest request{*URL::make(asked.url), asked.method, asked.headers, asked.body};
    request.timeoutInterval = asked.patience;
    const std::string trusted = authorities(asked.authorities);
    CurlTransfer transfer(request, {}, trusted);
    CURL* const easy = transfer.handle();
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, &hasGivenUp);
    curl_easy_setopt(easy, CURLOPT_XFERINFODATA, givenUp.get());
    auto outcome = transfer.outcome(curl_easy_perform(easy));
    if (outcome.error) return {.error = *outcome.error};
    long status = 0;
    const char* location = nullptr;
    curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
    curl_easy_getinfo(easy, CURLINFO_REDIRECT_URL, &location);
    return {static_cast<int>(status),
            location ? std::optional<std::string>(location) : std::nullopt,
            std::move(*outcome.body),
            {}};
}

} // namespace

OwnHost::~OwnHost() {
    for (std::thread& thread : exchanges_)
        thread.join();
}

Host OwnHost::functions() {
    return {.wakeMain = [this] { ++wakes; },
            .values =
                [this](HostValue value) {
                    const auto found = values.find(value);
                    return found == values.end() ? std::vector<std::string>() : found->second;
                },
            .send = [this](const HostRequest& request) { send(request); },
            .cancel =
                [this](std::uint64_t number) {
                    const std::lock_guard lock(mutex_);
                    if (const auto found = givenUp_.find(number); found != givenUp_.end())
                        *found->second = true;
                },
            .load = [this](const std::string& key) -> std::optional<std::string> {
                const std::lock_guard lock(mutex_);
                const auto found = store_.find(key);
                return found == store_.end() ? std::nullopt : std::optional(found->second);
            },
            .save =
                [this](const std::string& key, const std::string& text) {
                    const std::lock_guard lock(mutex_);
                    if (isKeeping) store_.insert_or_assign(key, text);
                    return isKeeping.load();
                }};
}

void OwnHost::send(const HostRequest& request) {
    const auto givenUp = std::make_shared<std::atomic<bool>>(false);
    const std::lock_guard lock(mutex_);
    givenUp_.emplace(request.number, givenUp);
    exchanges_.emplace_back([platform = platform_, request, givenUp] {
        HostAnswer answer = exchange(request, givenUp);
        if (!*givenUp) static_cast<void>(platform->complete(request.number, std::move(answer)));
    });
}

} // namespace korvane
