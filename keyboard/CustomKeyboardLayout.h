#pragma once

#include "keyboard/KeyboardLayout.h"

#include <memory>

namespace korvane {

/// The six finished pages of keys. Making one makes them all. Main queue only.
class CustomKeyboardLayout {
public:
    CustomKeyboardLayout();

    [[nodiscard]] const std::shared_ptr<KeyboardLayout>& uppercase() const noexcept { return uppercase_; }
    /// Capitals that stay.
    [[nodiscard]] const std::shared_ptr<KeyboardLayout>& uppercaseToggled() const noexcept {
        return uppercaseToggled_;
    }
    [[nodiscard]] const std::shared_ptr<KeyboardLayout>& lowercase() const noexcept { return lowercase_; }
    [[nodiscard]] const std::shared_ptr<KeyboardLayout>& numbers() const noexcept { return numbers_; }
    [[nodiscard]] const std::shared_ptr<KeyboardLayout>& symbols() const noexcept { return symbols_; }
    [[nodiscard]] const std::shared_ptr<KeyboardLayout>& numberPad() const noexcept { return numberPad_; }

private:
    std::shared_ptr<KeyboardLayout> uppercase_;
    std::shared_ptr<KeyboardLayout> uppercaseToggled_;
    std::shared_ptr<KeyboardLayout> lowercase_;
    std::shared_ptr<KeyboardLayout> numbers_;
    std::shared_ptr<KeyboardLayout> symbols_;
    std::shared_ptr<KeyboardLayout> numberPad_;
};

} // namespace korvane
