#include "Platform/View/UIApplication.h"
#include "tests/contract/Filling.h"
#include "tests/support/SimulatedPlatform.h"

namespace korvane {

namespace {

class SimulatedFilling final : public FillingOf<SimulatedPlatform> {
public:
    SimulatedFilling() {
        platform_->network().answer = [](const URLRequest& request) {
            const bool isSilent = request.url.absoluteString().ends_with("/silence");
            return ScriptedAnswer{
                toBytes("nothing"), {}, isSilent ? std::nullopt : std::optional(Seconds{0})};
        };
    }

    [[nodiscard]] const char* absence(Part part) const override {
        switch (part) {
        case Part::mainThread: return "Threads take turns with the work of a simulation.";
        case Part::afterlife: return "What a simulation made ends with it.";
        case Part::network: return "The network of a simulation is a script.";
        case Part::renderer: return "A simulation draws nothing.";
        }
        return nullptr;
    }
    [[nodiscard]] bool runUntil(const std::function<bool()>& holds) override {
        return platform_->runUntil(holds);
    }
    void setScreen(CGSize size) override {
        using enum UIDeviceOrientation;
        platform_->script().bounds.size = size;
        platform_->script().orientation = size.width > size.height ? landscapeLeft : portrait;
        platform_->application().deviceDidRotate();
    }
};

} // namespace

std::vector<NamedFilling> fillings() {
    return {{"Simulated", []() -> std::unique_ptr<Filling> { return std::make_unique<SimulatedFilling>(); }}};
}

} // namespace korvane
