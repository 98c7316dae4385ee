#include <korvane/ThreeDS2Service.h>
#include <korvane/platform/NativeDispatch.h>
#include <korvane/platform/SystemPlatform.h>
#include <korvane/platform/TextMeasurer.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

using namespace korvane;

namespace {

/// The loop that an application has anyway.
class OwnLoop final : public MainLoop {
public:
    void post(std::function<void()> job) override {
        const std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(job));
        hasJobs_.notify_one();
    }
    void runOne() override {
        std::unique_lock lock(mutex_);
        hasJobs_.wait(lock, [this] { return !jobs_.empty(); });
        const auto job = std::move(jobs_.front());
        jobs_.pop_front();
        lock.unlock();
        job();
    }
    [[nodiscard]] bool isCurrent() const override { return std::this_thread::get_id() == thread_; }

private:
    const std::thread::id thread_ = std::this_thread::get_id();
    std::mutex mutex_;
    std::condition_variable hasJobs_;
    std::deque<std::function<void()>> jobs_;
};

struct Machine final : UIDevice, UIScreen, UIFontServices, TextMeasurer {
    [[nodiscard]] std::string systemName() const override { return "Own"; }
    [[nodiscard]] std::string systemVersion() const override { return "1"; }
    [[nodiscard]] std::string name() const override { return "machine"; }
    [[nodiscard]] std::optional<std::string> identifierForVendor() const override { return std::nullopt; }
    [[nodiscard]] UIUserInterfaceIdiom userInterfaceIdiom() const override {
        return UIUserInterfaceIdiom::pad;
    }
    [[nodiscard]] UIDeviceOrientation orientation() const override { return UIDeviceOrientation::portrait; }
    [[nodiscard]] CGRect bounds() const override { return {{0, 0}, {768, 1024}}; }
    [[nodiscard]] std::vector<std::string> familyNames() const override { return {}; }
    [[nodiscard]] std::vector<std::string> fontNamesForFamilyName(const std::string&) const override {
        return {};
    }
    [[nodiscard]] double systemFontSize() const override { return 14; }
    [[nodiscard]] double labelFontSize() const override { return 17; }
    [[nodiscard]] double buttonFontSize() const override { return 18; }
    [[nodiscard]] double smallSystemFontSize() const override { return 12; }
    [[nodiscard]] std::string systemFontDescription(double) const override { return "none"; }
    [[nodiscard]] CGSize size(std::string_view text, const UIFont&, double width, int) const override {
        return {std::min(10.0 * static_cast<double>(text.size()), width), 20};
    }
};

class OwnPlatform final : public SystemPlatform {
public:
    explicit OwnPlatform(std::unique_ptr<MainLoop> loop)
        : dispatch_(std::move(loop)),
          installation_(*this, servicesWith({machine_, machine_, machine_, machine_, dispatch_})) {}
    ~OwnPlatform() override {
        endNetwork();
        dispatch_.end();
    }

private:
    Machine machine_;
    NativeDispatch dispatch_;
    Installation installation_;
};

} // namespace

/// Work goes from the main queue to a thread and back, and the library initialises itself on the machine.
int main() {
    auto made = std::make_unique<OwnLoop>();
    OwnLoop& loop = *made;
    OwnPlatform platform(std::move(made));
    DispatchQueue& main = platform.dispatch().mainQueue();
    bool isBack = false, isRight = true;
    main.async([&] {
        platform.dispatch().globalQueue().async([&] {
            isRight = !main.isCurrent();
            main.sync([&] { isBack = isRight = isRight && main.isCurrent() && loop.isCurrent(); });
        });
    });
    for (int jobs = 0; jobs < 2; ++jobs)
        loop.runOne();
    ThreeDS2Service().initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{"en-GB"});
    return isBack ? 0 : 1;
}
