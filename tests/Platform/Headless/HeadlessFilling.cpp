#include "Platform/Headless/HeadlessPlatform.h"
#include "tests/contract/Filling.h"

namespace korvane {

namespace {

class HeadlessFilling final : public FillingOf<HeadlessPlatform> {
public:
    [[nodiscard]] const char* absence(Part part) const override {
        return part == Part::renderer ? "The headless filling draws nothing." : nullptr;
    }
    [[nodiscard]] bool runUntil(const std::function<bool()>& holds) override {
        const auto isLate = std::make_shared<bool>(false);
        const auto alarm = std::make_shared<DispatchWorkItem>([isLate] { *isLate = true; });
        platform_->dispatch().mainQueue().asyncAfter(Seconds{10}, alarm);
        platform_->runMainUntil([&] { return *isLate || holds(); });
        alarm->cancel();
        return !*isLate;
    }
    void setScreen(CGSize size) override {
        using enum UIDeviceOrientation;
        platform_->turn(size.width > size.height ? landscapeLeft : portrait, size);
    }
};

} // namespace

std::vector<NamedFilling> fillings() {
    return {{"Headless", []() -> std::unique_ptr<Filling> { return std::make_unique<HeadlessFilling>(); }}};
}

} // namespace korvane
