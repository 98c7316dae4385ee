#include "Platform/Hosted/HostedNetwork.h"

#include "Platform/Native/RequestRules.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace korvane {

namespace {

using Clock = std::chrono::steady_clock;

constexpr Seconds kLongestLimit{30.0 * 24 * 3600};
constexpr const char* kNoNetwork = "The network is not there any more.";

/// What a task ends with.
struct Outcome {
    std::optional<Bytes> body;
    std::optional<std::string> error;
};

Outcome failure(std::string error) {
    return {std::nullopt, std::move(error)};
}

bool namesUser(std::string_view url) {
    const std::size_t scheme = url.find("//");
    if (scheme == std::string_view::npos) return false;
    const std::string_view rest = url.substr(scheme + 2);
    return rest.substr(0, rest.find_first_of("/?#")).find('@') != std::string_view::npos;
}

/// As `refusal`, and what libcurl refuses where it carries the request.
std::optional<std::string> hostedRefusal(const URLRequest& request) {
    if (namesUser(request.url.absoluteString())) return kUserRefusal;
    return refusal(request);
}

bool isRedirect(int status) {
    constexpr int kStatuses[] = {301, 302, 303, 307, 308};
    return std::ranges::find(kStatuses, status) != std::end(kStatuses);
}

Clock::time_point deadlineAfter(Seconds limit) {
    return Clock::now() +
           std::chrono::duration_cast<Clock::duration>(std::clamp(limit, Seconds{0}, kLongestLimit));
}

} // namespace

/// The tasks that the host carries, and the thread that tells their ends: no host's thread, which may hold
/// anything, and no thread of a queue, which may all be waiting for it. Any thread.
class HostedNetwork::Exchanges {
public:
    explicit Exchanges(const Host& host) : host_(host), thread_([this] { run(); }) {}
    ~Exchanges() { stop(); }

    /// Hands a task's request to the host, once or once more.
    void send(const std::shared_ptr<Task>& task);
    bool complete(std::uint64_t number, HostAnswer answer);
    /// Nobody waits for the task any more.
    void abandon(const std::shared_ptr<Task>& task);
    /// On the thread, after what it was told before; here where that has ended.
    void call(std::function<void()> work);
    void stop();

private:
    using Running = std::map<std::uint64_t, std::shared_ptr<Task>>;

    void run();
    [[nodiscard]] Running::iterator soonest();
    void cancel(std::uint64_t number) const {
        if (host_.cancel) host_.cancel(number);
    }

    const Host& host_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> calls_;
    Running running_;
    std::uint64_t lastNumber_ = 0;
    bool isStopped_ = false;
    std::thread thread_;
};

class HostedNetwork::Task final : public URLSessionDataTask, public std::enable_shared_from_this<Task> {
public:
    Task(std::shared_ptr<Exchanges> exchanges, const URLSessionConfiguration& configuration,
         URLRequest request, URLSession::Completion completion)
        : exchanges_(std::move(exchanges)), configuration_(configuration), request_(std::move(request)),
          completion_(std::move(completion)) {}

    void resume() override {
        if (isResumed_.exchange(true) || hasEnded_) return;
        if (auto reason = hostedRefusal(request_)) return end(failure(std::move(*reason)));
        deadline_ = deadlineAfter(configuration_.timeoutIntervalForResource);
        exchanges_->send(shared_from_this());
    }

    void cancel() override {
        if (hasEnded_) return;
        end(failure("cancelled"));
        exchanges_->abandon(shared_from_this());
    }

    void end(Outcome outcome) {
        if (hasEnded_.exchange(true)) return;
        exchanges_->call([completion = std::exchange(completion_, nullptr),
                          outcome = std::make_shared<Outcome>(std::move(outcome))] {
            completion(std::move(outcome->body), std::move(outcome->error));
        });
    }

    /// What the host answered: the task's end, or the way to the next server.
    void take(HostAnswer answer) {
        if (!answer.error.empty()) return end(failure(std::move(answer.error)));
        if (answer.body.size() > kMostResponseBytes) return end(failure(kBodyRefusal));
        if (!isRepeatable(request_) || !isRedirect(answer.status) || !answer.location)
            return end({std::move(answer.body), std::nullopt});
        if (auto reason = redirect(*answer.location)) return end(failure(std::move(*reason)));
        exchanges_->send(shared_from_this());
    }

    [[nodiscard]] HostRequest request(std::uint64_t number) const {
        return {number,
                request_.url.absoluteString(),
                request_.httpMethod,
                request_.httpHeaderFields,
                request_.httpBody,
                configuration_.additionalCertificateAuthorities,
                request_.timeoutInterval};
    }
    [[nodiscard]] Clock::time_point deadline() const noexcept { return deadline_; }
    [[nodiscard]] bool hasEnded() const noexcept { return hasEnded_; }

private:
    /// @return why the request does not go there.
    std::optional<std::string> redirect(const std::string& location) {
        auto url = URL::make(location);
        if (!url) return "The server redirects to what is no URL.";
        if (++redirects_ > kMostRedirects) return "The server redirects too often.";
        if (isOverTLS(request_.url.absoluteString()) && !isOverTLS(location))
            return "The server redirects to an open connection.";
        request_.url = std::move(*url);
        return hostedRefusal(request_);
    }

    const std::shared_ptr<Exchanges> exchanges_;
    const URLSessionConfiguration configuration_;
    URLRequest request_;
    URLSession::Completion completion_;
    Clock::time_point deadline_;
    int redirects_ = 0;
    std::atomic<bool> isResumed_{false};
    std::atomic<bool> hasEnded_{false};
};

class HostedNetwork::Session final : public URLSession {
public:
    Session(std::shared_ptr<Exchanges> exchanges, URLSessionConfiguration configuration)
        : exchanges_(std::move(exchanges)), configuration_(std::move(configuration)) {}

    [[nodiscard]] std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request,
                                                               Completion completion) override {
        return std::make_shared<Task>(exchanges_, configuration_, std::move(request), std::move(completion));
    }

private:
    const std::shared_ptr<Exchanges> exchanges_;
    const URLSessionConfiguration configuration_;
};

void HostedNetwork::Exchanges::send(const std::shared_ptr<Task>& task) {
    std::uint64_t number = 0;
    {
        const std::lock_guard lock(mutex_);
        if (!isStopped_) {
            number = ++lastNumber_;
            running_.emplace(number, task);
        }
    }
    if (number == 0) return task->end(failure(kNoNetwork));
    changed_.notify_all();
    if (task->hasEnded()) return abandon(task); // cancelled since
    host_.send(task->request(number));
}

bool HostedNetwork::Exchanges::complete(std::uint64_t number, HostAnswer answer) {
    std::unique_lock lock(mutex_);
    const auto found = running_.find(number);
    if (found == running_.end()) return false;
    const auto task = running_.extract(found).mapped();
    lock.unlock();
    task->take(std::move(answer));
    return true;
}

void HostedNetwork::Exchanges::abandon(const std::shared_ptr<Task>& task) {
    std::unique_lock lock(mutex_);
    const auto found = std::ranges::find(running_, task, &Running::value_type::second);
    if (found == running_.end()) return;
    const std::uint64_t number = found->first;
    running_.erase(found);
    lock.unlock();
    cancel(number);
}

void HostedNetwork::Exchanges::call(std::function<void()> work) {
    {
        const std::lock_guard lock(mutex_);
        if (!isStopped_) {
            calls_.push_back(std::move(work));
            changed_.notify_all();
            return;
        }
    }
    work();
}

/// The tasks end here, while the thread is still there to tell it.
void HostedNetwork::Exchanges::stop() {
    Running left;
    {
        const std::lock_guard lock(mutex_);
        if (std::exchange(isStopped_, true)) return;
        left.swap(running_);
    }
    changed_.notify_all();
    thread_.join();
    for (const auto& [number, task] : left) {
        task->end(failure(kNoNetwork));
        cancel(number);
    }
}

HostedNetwork::Exchanges::Running::iterator HostedNetwork::Exchanges::soonest() {
    return std::ranges::min_element(running_, {}, [](const auto& entry) { return entry.second->deadline(); });
}

/// Calls come first, also after the stop: all that was told is passed on.
void HostedNetwork::Exchanges::run() {
    std::unique_lock lock(mutex_);
    while (true) {
        const auto next = soonest();
        if (!calls_.empty()) {
            const auto work = std::move(calls_.front());
            calls_.pop_front();
            lock.unlock();
            work();
            lock.lock();
        } else if (isStopped_) {
            return;
        } else if (next == running_.end()) {
            changed_.wait(lock);
        } else if (const auto deadline = next->second->deadline(); Clock::now() < deadline) {
            changed_.wait_until(lock, deadline);
        } else {
            const auto [number, task] = *next;
            running_.erase(next);
            lock.unlock();
            task->end(failure("The request took too long."));
            cancel(number);
            lock.lock();
        }
    }
}

HostedNetwork::HostedNetwork(const Host& host) : exchanges_(std::make_shared<Exchanges>(host)) {}

HostedNetwork::~HostedNetwork() {
    stop();
}

std::shared_ptr<URLSession> HostedNetwork::makeSession(const URLSessionConfiguration& configuration) {
    URLSessionConfiguration own = configuration;
    own.additionalCertificateAuthorities += authorities_;
    return std::make_shared<Session>(exchanges_, std::move(own));
}

bool HostedNetwork::complete(std::uint64_t number, HostAnswer answer) {
    return exchanges_->complete(number, std::move(answer));
}

void HostedNetwork::stop() {
    exchanges_->stop();
}

} // namespace korvane
