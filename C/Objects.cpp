#include "C/Objects.h"

#include "Platform/Bundle.h"
#include "Platform/Logger.h"

#include <condition_variable>
#include <mutex>

namespace korvane::c {

namespace {

/// The platform that calls find, and how many of them are there.
struct Visitors {
    std::mutex mutex;
    std::condition_variable left;
    HostedPlatform* platform = nullptr;
    int others = 0;
    /// On the main thread, one within the other.
    int ofMain = 0;
};

Visitors& visitors() {
    static Visitors all;
    return all;
}

} // namespace

PlatformObject::PlatformObject(Host host) {
    if (Platform::isInstalled()) throw CallError(KORVANE_BAD_STATE, "The process has a platform already.");
    platform_.emplace(std::move(host));
    const std::lock_guard lock(visitors().mutex);
    visitors().platform = &*platform_;
}

PlatformObject::~PlatformObject() = default;

void PlatformObject::requireMayGo(std::size_t others) const {
    if (!platform_->dispatch().mainQueue().isCurrent())
        throw CallError(KORVANE_BAD_THREAD, "The platform ends on the main thread only.");
    if (others > 0) throw CallError(KORVANE_BAD_STATE, "The platform is still needed by other handles.");
    const std::lock_guard lock(visitors().mutex);
    if (visitors().ofMain > 0)
        throw CallError(KORVANE_BAD_STATE, "The platform does not end within a callback.");
}

void PlatformObject::go(std::shared_ptr<Object>&& /*self*/) {
    Visitors& all = visitors();
    {
        std::unique_lock lock(all.mutex);
        all.platform = nullptr;
        all.left.wait(lock, [&] { return all.others == 0; });
    }
    platform_.reset();
    Logger::shared().setDebug(nullptr);
}

Visit::Visit() {
    Visitors& all = visitors();
    const std::lock_guard lock(all.mutex);
    platform_ = all.platform;
    if (!platform_) throw CallError(KORVANE_BAD_STATE, "There is no platform.");
    isMain_ = platform_->dispatch().mainQueue().isCurrent();
    ++(isMain_ ? all.ofMain : all.others);
}

Visit::~Visit() {
    Visitors& all = visitors();
    const std::lock_guard lock(all.mutex);
    --(isMain_ ? all.ofMain : all.others);
    all.left.notify_all();
}

void Visit::requireMain() const {
    if (!isMain_) throw CallError(KORVANE_BAD_THREAD, "This is for the main thread only.");
}

void Visit::requireOutermost() const {
    requireMain();
    const std::lock_guard lock(visitors().mutex);
    if (visitors().ofMain > 1) throw CallError(KORVANE_BAD_STATE, "This is not for callbacks.");
}

void requireReadyForChallenge(const Visit& visit, std::int64_t minutes) {
    constexpr std::int64_t kMostMinutes = 1'000'000;
    if (minutes < 0 || minutes > kMostMinutes)
        throw CallError(KORVANE_BAD_ARGUMENT, "minutes are 0 to 1000000.");
    if (Bundle::hasResources()) return;
    throw CallError(KORVANE_NO_RESOURCES, "Korvane.framework/KorvaneResources.bundle is not in " +
                                              visit.platform().mainBundle().privateFrameworksPath() + ".");
}

} // namespace korvane::c
