#pragma once

#include "Platform/Native/NativeDevice.h"
#include "Platform/UIScreen.h"

#include <atomic>
#include <mutex>

namespace korvane {

/// The item that shows the library's screens is the screen, and how it lies is how the device
/// is held. Any thread.
class QtScreen final : public UIScreen {
public:
    [[nodiscard]] CGRect bounds() const override {
        const std::scoped_lock lock(mutex_);
        return bounds_;
    }
    void setSize(CGSize size) {
        const std::scoped_lock lock(mutex_);
        bounds_ = {{0, 0}, size};
    }

private:
    mutable std::mutex mutex_;
    CGRect bounds_;
};

/// The machine, held as the screen lies. Any thread.
class QtDevice final : public NativeDevice {
public:
    explicit QtDevice(const QtScreen& screen) : screen_(screen) {}

    /// From its shorter side: tablets begin at 600 points. Without a screen, nothing is known.
    [[nodiscard]] UIUserInterfaceIdiom userInterfaceIdiom() const override;

private:
    const QtScreen& screen_;
};

} // namespace korvane
