#pragma once

#include "Platform/Native/NativeDevice.h"
#include "Platform/UIScreen.h"

namespace korvane {

/// The machine, held as the screen lies. Any thread.
class QtDevice final : public NativeDevice {
public:
    explicit QtDevice(const UIScreen& screen) : screen_(screen) {}

    /// From its shorter side: tablets begin at 600 points. Without a screen, nothing is known.
    [[nodiscard]] UIUserInterfaceIdiom userInterfaceIdiom() const override;

private:
    const UIScreen& screen_;
};

} // namespace korvane
