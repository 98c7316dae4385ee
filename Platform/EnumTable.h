#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string_view>
#include <type_traits>

namespace korvane {

/// What `rawValue` says of a number that is no case of its enumeration. No case has the empty text.
inline constexpr std::string_view kNoRawValue;

/// An enumeration whose cases stand for texts. Beside it stands its `rawValue`, which tells the text of a
/// case: one `switch` with every case and no `default`, and `kNoRawValue` behind it. A case without a text
/// does not compile, since the compiler is told to refuse a switch that forgets one (`-Werror=switch`).
template <class Enumeration>
concept HasRawValues = std::is_enum_v<Enumeration> && requires(Enumeration value) {
    { rawValue(value) } -> std::same_as<std::string_view>;
};

/// The cases of an enumeration, which are numbered from 0 without a gap, and their texts. Row i is case i,
/// and the last row is the last case: the rows are made by asking `rawValue` for one number after the other.
template <HasRawValues Enumeration>
class EnumTable {
    static constexpr std::size_t kMostCases = 256;

    static constexpr auto countCases = [] {
        std::size_t count = 0;
        while (rawValue(static_cast<Enumeration>(count)) != kNoRawValue)
            ++count;
        return count;
    };

public:
    struct Row {
        Enumeration value;
        std::string_view text;
    };

    static constexpr std::size_t size = countCases();

    static constexpr std::array<Row, size> rows = [] {
        std::array<Row, size> made{};
        for (std::size_t index = 0; index < size; ++index) {
            const auto value = static_cast<Enumeration>(index);
            made[index] = {value, rawValue(value)};
        }
        return made;
    }();

private:
    static constexpr bool hasNoCaseBehind = [] {
        for (std::size_t index = size; index < kMostCases; ++index)
            if (rawValue(static_cast<Enumeration>(index)) != kNoRawValue) return false;
        return true;
    }();
    static_assert(hasNoCaseBehind,
                  "The cases are numbered from 0 without a gap, and none has the empty text.");

    static constexpr bool isOneToOne = [] {
        for (const Row& row : rows)
            for (const Row& other : rows)
                if (row.value != other.value && row.text == other.text) return false;
        return true;
    }();
    static_assert(isOneToOne, "Two cases have the same text.");
};

/// The case of a text, or no value.
template <HasRawValues Enumeration>
[[nodiscard]] constexpr std::optional<Enumeration> fromRawValue(std::string_view text) {
    for (const auto& row : EnumTable<Enumeration>::rows)
        if (row.text == text) return row.value;
    return std::nullopt;
}

/// Whether a table of further facts has one row for each case of an enumeration, in their order: what the
/// function that takes a row by its case's number relies on.
template <class Rows, class Row, HasRawValues Enumeration>
[[nodiscard]] constexpr bool hasRowsOfAllCases(const Rows& rows, Enumeration Row::*key) {
    if (std::size(rows) != EnumTable<Enumeration>::size) return false;
    for (std::size_t index = 0; index < std::size(rows); ++index)
        if (rows[index].*key != static_cast<Enumeration>(index)) return false;
    return true;
}

} // namespace korvane
