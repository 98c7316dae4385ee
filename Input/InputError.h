#pragma once

#include "Platform/Failure.h"

#include <string>

namespace korvane::input {

/// What can be wrong with a line of input before the library has been asked anything. All cases
/// carry a description.
enum class InputErrorCase {
    notJSON,
    lineTooLong,
    unknownOp,
    unknownMember,
    missingMember,
    wrongType,
    outOfRange,
    notBase64,
    unknownAlgorithm,
    wrongKey,
};

[[nodiscard]] constexpr std::string_view rawValue(InputErrorCase value) {
    using enum InputErrorCase;
    switch (value) {
    case notJSON: return "notJSON";
    case lineTooLong: return "lineTooLong";
    case unknownOp: return "unknownOp";
    case unknownMember: return "unknownMember";
    case missingMember: return "missingMember";
    case wrongType: return "wrongType";
    case outOfRange: return "outOfRange";
    case notBase64: return "notBase64";
    case unknownAlgorithm: return "unknownAlgorithm";
    case wrongKey: return "wrongKey";
    }
    return kNoRawValue;
}

} // namespace korvane::input

namespace korvane {

template <>
struct FailureTraits<input::InputErrorCase> {
    static constexpr std::string_view domain = "InputError";
    using Value = FailureValue;
};

} // namespace korvane

namespace korvane::input {

using InputError = TypedFailure<InputErrorCase>;

/// The failure of one member, whose name starts the description.
[[nodiscard]] inline InputError memberError(InputErrorCase kind, std::string_view member,
                                            std::string_view what) {
    return InputError(kind, Description{"\"" + std::string(member) + "\" " + std::string(what)});
}

} // namespace korvane::input
