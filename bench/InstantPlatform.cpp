#include "bench/InstantPlatform.h"

#include "Platform/Failure.h"

namespace korvane::bench {

namespace {

class DroppingQueue final : public DispatchQueue {
public:
    void sync(const Work& work) override { work(); }
    [[nodiscard]] bool isCurrent() const override { return false; }

protected:
    void enqueue(std::shared_ptr<DispatchWorkItem>) override {}
    void enqueueAfter(Seconds, std::shared_ptr<DispatchWorkItem>) override {}
};

class Counter final : public DispatchSemaphore {
public:
    explicit Counter(int value) : value_(value) {}

    void signal() override { ++value_; }
    [[nodiscard]] DispatchTimeoutResult wait(Seconds) override {
        if (value_ == 0) fatalError("Nothing comes later on this platform.");
        --value_;
        return DispatchTimeoutResult::success;
    }

private:
    int value_;
};

class InstantDispatch final : public Dispatch {
public:
    [[nodiscard]] DispatchQueue& mainQueue() override { return queue_; }
    [[nodiscard]] DispatchQueue& globalQueue() override { return queue_; }
    [[nodiscard]] std::shared_ptr<DispatchQueue> makeSerialQueue(std::string) override {
        return std::make_shared<DroppingQueue>();
    }
    [[nodiscard]] std::shared_ptr<DispatchSemaphore> makeSemaphore(int value) override {
        return std::make_shared<Counter>(value);
    }
    [[nodiscard]] Seconds now() const override { return Seconds{0}; }
    [[nodiscard]] std::chrono::system_clock::time_point date() const override { return {}; }

private:
    DroppingQueue queue_;
};

class InstantTask final : public URLSessionDataTask {
public:
    InstantTask(Bytes answer, URLSession::Completion completion)
        : answer_(std::move(answer)), completion_(std::move(completion)) {}

    void resume() override { completion_(std::move(answer_), std::nullopt); }
    void cancel() override {}

private:
    Bytes answer_;
    URLSession::Completion completion_;
};

class InstantSession final : public URLSession {
public:
    explicit InstantSession(Bytes answer) : answer_(std::move(answer)) {}

    [[nodiscard]] std::shared_ptr<URLSessionDataTask> dataTask(URLRequest, Completion completion) override {
        return std::make_shared<InstantTask>(answer_, std::move(completion));
    }

private:
    const Bytes answer_;
};

} // namespace

InstantPlatform::InstantPlatform()
    : dispatch_(std::make_unique<InstantDispatch>()),
      installation_(*this, servicesWith(*dispatch_, *this, defaults_)) {
    script().identifierForVendor.reset();
}

std::shared_ptr<URLSession> InstantPlatform::makeSession(const URLSessionConfiguration&) {
    return std::make_shared<InstantSession>(answer);
}

} // namespace korvane::bench
