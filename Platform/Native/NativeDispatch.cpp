#include "Platform/Native/NativeDispatch.h"

#include "Platform/Native/NativeQueues.h"

#include <utility>

namespace korvane {

NativeDispatch::NativeDispatch() : NativeDispatch(std::make_unique<NativeMainLoop>()) {}

NativeDispatch::NativeDispatch(std::unique_ptr<MainLoop> main)
    : loops_(std::make_shared<NativeLoops>(std::move(main))),
      main_(std::make_shared<NativeMainQueue>(loops_)), global_(std::make_shared<NativeGlobalQueue>(loops_)) {
}

NativeDispatch::~NativeDispatch() {
    end();
}

std::shared_ptr<DispatchQueue> NativeDispatch::makeSerialQueue(std::string) {
    return std::make_shared<NativeSerialQueue>(loops_);
}

std::shared_ptr<DispatchSemaphore> NativeDispatch::makeSemaphore(int value) {
    return std::make_shared<NativeSemaphore>(value);
}

Seconds NativeDispatch::now() const {
    return std::chrono::steady_clock::now().time_since_epoch();
}

std::chrono::system_clock::time_point NativeDispatch::date() const {
    return std::chrono::system_clock::now();
}

void NativeDispatch::runMain() {
    runMainUntil([this] { return std::exchange(isStopAsked_, false); });
}

void NativeDispatch::runMainUntil(const std::function<bool()>& isDone) {
    loops_->main->enter();
    while (!isDone())
        loops_->main->runOne();
}

void NativeDispatch::stopMain() {
    loops_->main->post([this] { isStopAsked_ = true; });
}

void NativeDispatch::end() {
    if (std::exchange(hasEnded_, true)) return;
    loops_->isEnding = true;
    loops_->timers.stop();
    loops_->main->enter();
    std::size_t ended = 0;
    const std::size_t threads =
        loops_->workers.stop([this, &ended] { loops_->main->post([&ended] { ++ended; }); });
    while (ended < threads)
        loops_->main->runOne();
    loops_->workers.join();
}

} // namespace korvane
