#pragma once

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

namespace korvane {

/// The row of a table whose `rawValue` is `text`, or null. The tables hold a dozen rows at most.
template <class Table>
[[nodiscard]] constexpr auto rowOfRawValue(const Table& table, std::string_view text)
    -> decltype(&*std::begin(table)) {
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [text](const auto& row) { return row.rawValue == text; });
    return found == std::end(table) ? nullptr : &*found;
}

} // namespace korvane
