#pragma once

#include "Platform/EnumTable.h"

#include <array>
#include <optional>
#include <string_view>

namespace korvane {

/// Capitals for one letter, none, or until they are switched off.
enum class CustomKeyboardShiftState : int { Once = 0, Off = 1, On = 2 };

/// Which page of keys is shown.
class CustomKeyboardLayoutState {
public:
    [[nodiscard]] static constexpr CustomKeyboardLayoutState Letters(CustomKeyboardShiftState shiftState) {
        return CustomKeyboardLayoutState(static_cast<int>(shiftState));
    }
    [[nodiscard]] static constexpr CustomKeyboardLayoutState Numbers() {
        return CustomKeyboardLayoutState(3);
    }
    [[nodiscard]] static constexpr CustomKeyboardLayoutState Symbols() {
        return CustomKeyboardLayoutState(4);
    }
    [[nodiscard]] static constexpr CustomKeyboardLayoutState NumberPad() {
        return CustomKeyboardLayoutState(5);
    }

    /// Whether the page has the letters, in whichever case: the same key lies at the same
    /// place of all of them.
    [[nodiscard]] constexpr bool isLetters() const { return number_ < Numbers().number_; }

    /// One number for the state: letters by their shift state from 0 to 2, then numbers, symbols, number pad;
    /// 6 for no state.
    [[nodiscard]] static constexpr int compactForm(const std::optional<CustomKeyboardLayoutState>& state) {
        return state ? state->number_ : 6;
    }

    friend constexpr bool operator==(const CustomKeyboardLayoutState&,
                                     const CustomKeyboardLayoutState&) = default;

private:
    explicit constexpr CustomKeyboardLayoutState(int number) : number_(number) {}

    int number_;
};

/// What a key does beside typing; the text is the key's identifier.
enum class CustomKeyboardIdentifier {
    Space,
    Backspace,
    Globe,
    Return,
    Numbers,
    Letters,
    Symbols,
    ShiftOff,
    ShiftOn,
    ShiftOnce
};

[[nodiscard]] constexpr std::string_view rawValue(CustomKeyboardIdentifier value) {
    using enum CustomKeyboardIdentifier;
    switch (value) {
    case Space: return "Space";
    case Backspace: return "Backspace";
    case Globe: return "Globe";
    case Return: return "Return";
    case Numbers: return "Numbers";
    case Letters: return "Letters";
    case Symbols: return "Symbols";
    case ShiftOff: return "ShiftOff";
    case ShiftOn: return "ShiftOn";
    case ShiftOnce: return "ShiftOnce";
    }
    return kNoRawValue;
}

} // namespace korvane
