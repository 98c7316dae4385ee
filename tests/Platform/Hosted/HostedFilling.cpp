#include "tests/Platform/Hosted/OwnHost.h"
#include "tests/contract/Filling.h"

namespace korvane {

namespace {

class HostedFilling final : public Filling {
public:
    HostedFilling() { host_.serve(*platform_); }

    [[nodiscard]] Platform& platform() override { return *platform_; }
    [[nodiscard]] const char* absence(Part part) const override {
        return part == Part::renderer ? "The hosted filling draws nothing." : nullptr;
    }
    [[nodiscard]] bool runUntil(const std::function<bool()>& holds) override {
        const Seconds latest = platform_->dispatch().now() + Seconds{10};
        while (!holds())
            if (!platform_->runMain(latest - platform_->dispatch().now())) return false;
        return true;
    }
    void end() override { platform_.reset(); }
    void setScreen(CGSize size) override {
        using enum UIDeviceOrientation;
        platform_->turn(size.width > size.height ? landscapeLeft : portrait, size);
    }

private:
    OwnHost host_;
    std::optional<HostedPlatform> platform_{std::in_place, host_.functions()};
};

} // namespace

std::vector<NamedFilling> fillings() {
    return {{"Hosted", []() -> std::unique_ptr<Filling> { return std::make_unique<HostedFilling>(); }}};
}

} // namespace korvane
