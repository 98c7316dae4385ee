#include "tests/support/simulated/SimulatedNetwork.h"

#include <algorithm>
#include <utility>

namespace korvane {

class SimulatedNetwork::Task final : public URLSessionDataTask, public std::enable_shared_from_this<Task> {
public:
    Task(SimulatedNetwork& network, std::shared_ptr<DispatchQueue> queue, Seconds limit, URLRequest request,
         URLSession::Completion completion)
        : network_(network), queue_(std::move(queue)), limit_(limit), request_(std::move(request)),
          completion_(std::move(completion)) {}

    void resume() override {
        if (exchange_ || !completion_) return;
        exchange_ = &network_.exchanges_.emplace_back(SimulatedExchange{request_});
        ScriptedAnswer coming = network_.answer(request_);
        if (!coming.delay || *coming.delay > limit_)
            coming = {std::nullopt, "The request timed out.", limit_};
        const Seconds delay = *coming.delay;
        const auto arrival =
            std::make_shared<DispatchWorkItem>([self = shared_from_this(), coming = std::move(coming)] {
                self->exchange_->hasEnded = true;
                std::exchange(self->completion_, nullptr)(coming.body, coming.error);
            });
        arrival_ = arrival;
        queue_->asyncAfter(delay, arrival);
    }

    /// An answer that waits in the queue counts as not there yet.
    void cancel() override {
        const auto self = shared_from_this();
        if (!completion_) return;
        if (exchange_) {
            exchange_->hasEnded = exchange_->isCancelled = true;
            if (const auto arrival = arrival_.lock()) arrival->cancel();
        }
        queue_->async(
            [completion = std::exchange(completion_, nullptr)] { completion(std::nullopt, "cancelled"); });
    }

private:
    SimulatedNetwork& network_;
    std::shared_ptr<DispatchQueue> queue_;
    Seconds limit_;
    URLRequest request_;
    URLSession::Completion completion_;
    SimulatedExchange* exchange_ = nullptr;
    std::weak_ptr<DispatchWorkItem> arrival_;
};

class SimulatedNetwork::Session final : public URLSession {
public:
    Session(SimulatedNetwork& network, Seconds limit)
        : network_(network), queue_(network.dispatch_.makeSerialQueue("URLSession")), limit_(limit) {}

    [[nodiscard]] std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request,
                                                               Completion completion) override {
        return std::make_shared<Task>(network_, queue_, limit_, std::move(request), std::move(completion));
    }

private:
    SimulatedNetwork& network_;
    std::shared_ptr<DispatchQueue> queue_;
    Seconds limit_;
};

std::shared_ptr<URLSession> SimulatedNetwork::makeSession(const URLSessionConfiguration& configuration) {
    sessions_.push_back(configuration);
    return std::make_shared<Session>(*this, configuration.timeoutIntervalForResource);
}

std::size_t SimulatedNetwork::runningCount() const {
    return static_cast<std::size_t>(std::count_if(exchanges_.begin(), exchanges_.end(),
                                                  [](const auto& exchange) { return !exchange.hasEnded; }));
}

} // namespace korvane
