#include "Platform/Platform.h"

#include "Platform/Failure.h"
#include "Platform/NotificationCenter.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UIWindow.h"

#include <atomic>

namespace korvane {

namespace {

std::atomic<Platform*> installed{nullptr};

} // namespace

struct Platform::Interface {
    NotificationCenter notificationCenter;
    UIApplication application;
};

Platform::Platform() : interface_(std::make_unique<Interface>()) {}

Platform::~Platform() = default;

NotificationCenter& Platform::notificationCenter() noexcept {
    return interface_->notificationCenter;
}

UIApplication& Platform::application() noexcept {
    return interface_->application;
}

Platform& Platform::current() {
    Platform* platform = installed.load(std::memory_order_acquire);
    if (!platform) fatalError("No platform is installed: make a HeadlessPlatform, or another one, first.");
    return *platform;
}

bool Platform::isInstalled() noexcept {
    return installed.load(std::memory_order_acquire) != nullptr;
}

const PlatformServices& Platform::services() const {
    if (!services_) fatalError("A platform has its services only while it is installed.");
    return *services_;
}

Platform::Installation::Installation(Platform& platform, const PlatformServices& services)
    : platform_(platform), services_(services) {
    platform_.services_ = &services_;
    Platform* none = nullptr;
    if (!installed.compare_exchange_strong(none, &platform, std::memory_order_acq_rel))
        fatalError("A process has one platform at a time.");
}

Platform::Installation::~Installation() {
    platform_.application().end();
    installed.store(nullptr, std::memory_order_release);
    platform_.services_ = nullptr;
}

} // namespace korvane
