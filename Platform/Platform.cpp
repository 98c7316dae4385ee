#include "Platform/Platform.h"

#include "Platform/Failure.h"

#include <atomic>

namespace korvane {

namespace {

std::atomic<Platform*> installed{nullptr};

} // namespace

Platform& Platform::current() {
    Platform* platform = installed.load(std::memory_order_acquire);
    if (!platform) fatalError("No platform is installed: make a NativePlatform, or another one, first.");
    return *platform;
}

Platform::Installation::Installation(Platform& platform) {
    Platform* none = nullptr;
    if (!installed.compare_exchange_strong(none, &platform, std::memory_order_acq_rel))
        fatalError("A process has one platform at a time.");
}

Platform::Installation::~Installation() {
    installed.store(nullptr, std::memory_order_release);
}

} // namespace korvane
