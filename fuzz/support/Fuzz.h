#pragma once

#include "Platform/Bytes.h"
#include "Platform/Failure.h"

#include <optional>
#include <string>
#include <string_view>

namespace korvane::fuzzing {

/// What each target defines: takes one input through the code under test and through `require`.
void run(ByteView input);

/// Ends the process where a property does not hold, so that the fuzzer keeps the input.
inline void require(bool holds, std::string_view property) {
    if (!holds) fatalError(property);
}

/// The result of an operation, or no value where it fails as its contract allows. Anything else that is
/// thrown ends the process.
template <class... Allowed, class Operation>
auto attempt(Operation operation) -> std::optional<decltype(operation())> {
    try {
        return operation();
    } catch (const Failure& failure) {
        if (!(... || (dynamic_cast<const Allowed*>(&failure) != nullptr))) throw;
        return std::nullopt;
    }
}

/// The compact text that an input stands for. One that begins with a brace holds the parts in clear, one a
/// line, so that mutations reach what is inside the encoding; any other is the text itself.
[[nodiscard]] std::string compactText(ByteView input);

/// Whether each part of a compact text is what an encoder writes for its bytes.
[[nodiscard]] bool isCanonical(std::string_view compactText);

/// The bytes with one bit turned; which one depends on `seed`.
[[nodiscard]] Bytes withTurnedBit(Bytes bytes, std::size_t seed);

} // namespace korvane::fuzzing
