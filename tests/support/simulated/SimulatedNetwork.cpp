#include "tests/support/simulated/SimulatedNetwork.h"

#include "Platform/LetterCase.h"

#include <algorithm>
#include <utility>

namespace korvane {

namespace {

bool isHttp(const URL& url) {
    const std::string text = lowercased(url.absoluteString());
    return text.starts_with("http://") || text.starts_with("https://");
}

} // namespace

struct SimulatedNetwork::Session final : URLSession, std::enable_shared_from_this<Session> {
    Session(SimulatedNetwork& itsNetwork, Seconds itsLimit) : network(itsNetwork), limit(itsLimit) {}

    [[nodiscard]] std::shared_ptr<URLSessionDataTask> dataTask(URLRequest, Completion) override;

    SimulatedNetwork& network;
    const Seconds limit;
    const std::shared_ptr<DispatchQueue> queue = network.dispatch_.makeSerialQueue("URLSession");
};

class SimulatedNetwork::Task final : public URLSessionDataTask, public std::enable_shared_from_this<Task> {
public:
    Task(std::shared_ptr<Session> session, URLRequest request, URLSession::Completion completion)
        : session_(std::move(session)), request_(std::move(request)), completion_(std::move(completion)) {}

    void resume() override {
        if (exchange_ || !completion_) return;
        exchange_ = &session_->network.exchanges_.emplace_back(SimulatedExchange{request_});
        ScriptedAnswer coming{std::nullopt, "unsupported URL"};
        if (isHttp(request_.url)) coming = session_->network.answer(request_);
        if (!coming.delay || *coming.delay > session_->limit)
            coming = {std::nullopt, "The request timed out.", session_->limit};
        const auto arrival = std::make_shared<DispatchWorkItem>([self = shared_from_this(), coming] {
            self->exchange_->hasEnded = true;
            std::exchange(self->completion_, nullptr)(coming.body, coming.error);
        });
        arrival_ = arrival;
        session_->queue->asyncAfter(*coming.delay, arrival);
    }

    /// An answer that waits in the queue counts as not there yet.
    void cancel() override {
        if (!completion_) return;
        const auto self = shared_from_this();
        if (exchange_) exchange_->hasEnded = exchange_->isCancelled = true;
        if (const auto arrival = arrival_.lock()) arrival->cancel();
        session_->queue->async(
            [completion = std::exchange(completion_, nullptr)] { completion(std::nullopt, "cancelled"); });
    }

private:
    const std::shared_ptr<Session> session_;
    URLRequest request_;
    URLSession::Completion completion_;
    SimulatedExchange* exchange_ = nullptr;
    std::weak_ptr<DispatchWorkItem> arrival_;
};

std::shared_ptr<URLSessionDataTask> SimulatedNetwork::Session::dataTask(URLRequest request,
                                                                        Completion completion) {
    return std::make_shared<Task>(shared_from_this(), std::move(request), std::move(completion));
}

std::shared_ptr<URLSession> SimulatedNetwork::makeSession(const URLSessionConfiguration& configuration) {
    sessions_.push_back(configuration);
    return std::make_shared<Session>(*this, configuration.timeoutIntervalForResource);
}

std::size_t SimulatedNetwork::runningCount() const {
    return static_cast<std::size_t>(std::ranges::count(exchanges_, false, &SimulatedExchange::hasEnded));
}

} // namespace korvane
