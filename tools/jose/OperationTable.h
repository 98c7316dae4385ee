#pragma once

#include "Input/Arguments.h"
#include "Platform/JSON.h"

#include <span>
#include <string>
#include <string_view>

namespace korvane::jose {

/// One operation of batch mode.
struct Operation {
    std::string_view name;
    /// All members of its lines, "op" included.
    std::span<const input::Member> members;
    JSON (*perform)(const input::Arguments& arguments);
};

/// Finds the operation that a line asks for and does it.
/// @return the members of the answer.
/// @throws InputError unknownOp, missingMember, wrongType, and what the operation throws.
[[nodiscard]] JSON performLine(const JSON& line);

/// The operations with their members, optional ones in brackets: one line each.
[[nodiscard]] std::string operationHelp();

} // namespace korvane::jose
