#pragma once

#include "Platform/Failure.h"

#include <string>

namespace korvane::tools {

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

} // namespace korvane::tools

namespace korvane {

template <>
struct FailureTraits<tools::InputErrorCase> {
    static constexpr std::string_view domain = "InputError";
    static constexpr std::array<std::string_view, 10> cases{
        "notJSON",   "lineTooLong", "unknownOp", "unknownMember",    "missingMember",
        "wrongType", "outOfRange",  "notBase64", "unknownAlgorithm", "wrongKey"};
    using Value = FailureValue;
};

} // namespace korvane

namespace korvane::tools {

using InputError = TypedFailure<InputErrorCase>;

/// The failure of one member, whose name starts the description.
[[nodiscard]] inline InputError memberError(InputErrorCase kind, std::string_view member,
                                            std::string_view what) {
    return InputError(kind, Description{"\"" + std::string(member) + "\" " + std::string(what)});
}

} // namespace korvane::tools
