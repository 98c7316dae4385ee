#pragma once

#include "examples/checkout/Cardholder.h"
#include "examples/checkout/Shop.h"

#include <span>
#include <string>
#include <vector>

namespace korvane::checkout {

enum class Hold { upright, lying };

/// One payment that is played.
struct Play {
    const char* name;
    const char* kind;
    const char* card;
    const char* theme;
    Hold hold;
    /// The expected `Outcome::ending`.
    const char* ending;
    /// What the cardholder does between paying and the result.
    void (*act)(Cardholder&);
};

[[nodiscard]] std::span<const Play> allPlays();

} // namespace korvane::checkout
