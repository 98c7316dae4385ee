#pragma once

#include "Platform/Qt/KorvaneWindow.h"
#include "Sdk/Transaction/ScreenStack.h"
#include "tools/screen/Options.h"
#include "tools/screen/Script.h"

#include <QImage>

#include <functional>
#include <memory>
#include <string>

namespace korvane::screen {

/// A window as the device's screen, on which one challenge screen stands. Main queue only.
class Stage {
public:
    Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage();

    [[nodiscard]] KorvaneWindow& window() noexcept { return window_; }

    void set(const Setting& setting);

    /// Shows a screen in place of the one that stands, as the device is held.
    /// @throws NotDone for what no screen can be made of.
    void show(const Script& script);

    void clear();

    /// Opens the keyboard of a screen that stands.
    /// @return whether the screen has a field.
    bool openKeyboard();

    /// A screen as the device is held and set, once nothing moves any more and a bank's page has loaded.
    /// @throws NotDone as `show`, and if that takes more than ten seconds; UsageError for a keyboard on a screen
    /// without a field.
    [[nodiscard]] QImage draw(const Script& script, const Setting& setting);

private:
    /// Waits until nothing is due any more: no job, no layout, no movement.
    void settle();
    [[nodiscard]] QImage picture();
    [[nodiscard]] QImage steadyPicture();

    KorvaneWindow window_;
    std::shared_ptr<ScreenStack> stack_;
};

} // namespace korvane::screen
