#include "bench/LoopPlatform.h"

#include "Platform/Failure.h"

#include <algorithm>
#include <map>
#include <utility>

namespace korvane::bench {

namespace {

class Count final : public DispatchSemaphore {
public:
    explicit Count(int value) : value_(value) {}

    void signal() override { ++value_; }
    [[nodiscard]] DispatchTimeoutResult wait(Seconds) override {
        if (value_ == 0) fatalError("Whoever waits on this platform waits for ever.");
        --value_;
        return DispatchTimeoutResult::success;
    }

private:
    int value_;
};

} // namespace

class LoopPlatform::Loop final : public Dispatch {
public:
    [[nodiscard]] DispatchQueue& mainQueue() override { return *main_; }
    [[nodiscard]] DispatchQueue& globalQueue() override { return *global_; }
    [[nodiscard]] std::shared_ptr<DispatchQueue> makeSerialQueue(std::string) override {
        return std::make_shared<Queue>(*this);
    }
    [[nodiscard]] std::shared_ptr<DispatchSemaphore> makeSemaphore(int value) override {
        return std::make_shared<Count>(value);
    }
    [[nodiscard]] Seconds now() const override { return now_; }
    [[nodiscard]] std::chrono::system_clock::time_point date() const override { return {}; }

    void runFor(Seconds span) {
        const Seconds end = now_ + span;
        while (!items_.empty() && items_.begin()->first <= end) {
            now_ = items_.begin()->first;
            const Due due = items_.extract(items_.begin()).mapped();
            current_ = due.queue;
            due.item->perform();
        }
        current_ = main_.get();
        now_ = end;
    }

private:
    using Item = std::shared_ptr<DispatchWorkItem>;

    class Queue final : public DispatchQueue {
    public:
        explicit Queue(Loop& loop) : loop_(loop) {}

        void sync(const Work& work) override {
            const auto* const before = std::exchange(loop_.current_, this);
            work();
            loop_.current_ = before;
        }
        [[nodiscard]] bool isCurrent() const override { return loop_.current_ == this; }

    protected:
        void enqueue(Item item) override { enqueueAfter(Seconds{0}, std::move(item)); }
        void enqueueAfter(Seconds delay, Item item) override {
            loop_.items_.emplace(loop_.now_ + std::max(delay, Seconds{0}), Due{this, std::move(item)});
        }

    private:
        Loop& loop_;
    };
    struct Due {
        const Queue* queue;
        Item item;
    };

    Seconds now_{0};
    std::multimap<Seconds, Due> items_;
    std::shared_ptr<Queue> main_ = std::make_shared<Queue>(*this);
    std::shared_ptr<Queue> global_ = std::make_shared<Queue>(*this);
    const Queue* current_ = main_.get();
};

namespace {

using Answer = std::function<Bytes(const URLRequest&)>;

class AnsweredTask final : public URLSessionDataTask {
public:
    AnsweredTask(const Answer& answer, URLRequest request, URLSession::Completion completion)
        : answer_(answer), request_(std::move(request)), completion_(std::move(completion)) {}

    void resume() override { completion_(answer_(request_), std::nullopt); }
    void cancel() override {}

private:
    const Answer& answer_;
    URLRequest request_;
    URLSession::Completion completion_;
};

class AnsweredSession final : public URLSession {
public:
    explicit AnsweredSession(const Answer& answer) : answer_(answer) {}

    [[nodiscard]] std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request,
                                                               Completion completion) override {
        return std::make_shared<AnsweredTask>(answer_, std::move(request), std::move(completion));
    }

private:
    const Answer& answer_;
};

} // namespace

LoopPlatform::LoopPlatform()
    : loop_(std::make_unique<Loop>()), installation_(*this, servicesWith(*loop_, *this, *this)) {}

LoopPlatform::~LoopPlatform() = default;

std::shared_ptr<URLSession> LoopPlatform::makeSession(const URLSessionConfiguration&) {
    return std::make_shared<AnsweredSession>(answer);
}

void LoopPlatform::runFor(Seconds span) {
    loop_->runFor(span);
}

} // namespace korvane::bench
