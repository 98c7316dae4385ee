#pragma once

#include "Platform/Platform.h"
#include "Platform/View/UIWindow.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace korvane {

/// What a filling may do without.
enum class Part {
    mainThread, ///< the main queue's work runs on the thread that made the platform
    afterlife,  ///< objects outlive their platform
    network,    ///< requests reach the servers of this machine
    renderer    ///< the window is drawn, and fingers touch it
};

/// A window that is drawn, as one who sits before it has it.
class Glass {
public:
    virtual ~Glass() = default;

    /// The window that is shown, with a root controller.
    [[nodiscard]] virtual UIWindow& window() = 0;
    /// The colour of a place of the window, after all changes so far: 0xRRGGBB.
    [[nodiscard]] virtual unsigned colourAt(CGPoint place) = 0;
    /// All texts that are drawn for a view, one after the other.
    [[nodiscard]] virtual std::string textOf(const UIView& view) = 0;
    /// A finger's news as the machine has it. Cancelled: the machine takes all fingers away.
    virtual void touch(const UIWindow::TouchPoint& point) = 0;
};

/// A filling of the seam in the hands of the contract. It has a platform from the beginning.
class Filling {
public:
    virtual ~Filling() = default;

    [[nodiscard]] virtual Platform& platform() = 0;
    /// Why the filling has no such part; null where it has it.
    [[nodiscard]] virtual const char* absence(Part) const { return nullptr; }
    /// Runs the main queue's work on this thread until something holds, which such work makes true.
    /// @return whether it does, within ten seconds.
    [[nodiscard]] virtual bool runUntil(const std::function<bool()>& condition) = 0;
    /// Ends the platform.
    virtual void end() = 0;
    /// The screen has another size, and the device is held accordingly.
    virtual void setScreen(CGSize size) = 0;
    /// Null without `Part::renderer`.
    [[nodiscard]] virtual Glass* glass() { return nullptr; }
};

/// A filling of which a platform is made as it is.
template <class SomePlatform>
class FillingOf : public Filling {
public:
    [[nodiscard]] Platform& platform() override { return *platform_; }
    void end() override { platform_.reset(); }

protected:
    std::optional<SomePlatform> platform_{std::in_place};
};

struct NamedFilling {
    const char* name;
    std::unique_ptr<Filling> (*make)();

    friend std::ostream& operator<<(std::ostream& out, const NamedFilling& one) { return out << one.name; }
};

/// Those that the contract is tried on: whoever links the suite defines them.
[[nodiscard]] std::vector<NamedFilling> fillings();

/// One case of the contract, with a filling of its own for a user of its own, on a machine whose requests to
/// itself go to it. A case that needs a part which the filling lacks is skipped, and says why.
class Contract : public testing::TestWithParam<NamedFilling> {
protected:
    explicit Contract(std::optional<Part> needed = {}) : needed_(needed) {
        ::setenv("XDG_CONFIG_HOME", home_.path().c_str(), 1);
        ::setenv("no_proxy", "*", 1);
        filling_ = GetParam().make();
    }

    void SetUp() override {
        if (const char* reason = needed_ ? filling_->absence(*needed_) : nullptr) GTEST_SKIP() << reason;
    }

    [[nodiscard]] Filling& filling() { return *filling_; }
    [[nodiscard]] Platform& platform() { return filling_->platform(); }
    [[nodiscard]] Dispatch& dispatch() { return platform().dispatch(); }
    [[nodiscard]] bool runUntil(const std::function<bool()>& holds) { return filling_->runUntil(holds); }

private:
    const std::optional<Part> needed_;
    const TemporaryFolder home_;
    std::unique_ptr<Filling> filling_;
};

/// A suite of the contract: its name, its fixture, and perhaps the part that it needs.
#define KORVANE_CONTRACT(suite, fixture, ...)                                                                \
    class suite : public fixture {                                                                           \
    protected:                                                                                               \
        suite() : fixture(__VA_ARGS__) {}                                                                    \
    };                                                                                                       \
    INSTANTIATE_TEST_SUITE_P(, suite, testing::ValuesIn(fillings()),                                         \
                             [](const auto& of) { return std::string(of.param.name); })

} // namespace korvane
