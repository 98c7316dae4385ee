#pragma once

#include "Platform/JSON.h"
#include "tools/acs/JSONLines.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvane::acs {

/// The text of a scenario with its place: turns what is wrong with a member into an error that names file,
/// line and member.
class ScenarioText {
public:
    /// @throws UsageError for text that is not JSON, with the line where it breaks, and
    /// for a repeated member.
    ScenarioText(std::string_view text, std::string name);

    [[nodiscard]] const JSON& root() const noexcept { return root_; }

    /// @throws UsageError always.
    [[noreturn]] void fail(std::string_view path, std::string_view what) const;

private:
    [[noreturn]] void fail(std::size_t line, std::string_view path, std::string_view what) const;
    static JSON parse(std::string_view text, const ScenarioText& self);

    std::string name_;
    JSON root_;
    JSONLines lines_;
};

/// One value of a scenario on its way into a record. Borrows text and value.
class ScenarioValue {
public:
    ScenarioValue(const ScenarioText& text, const JSON& value, std::string path)
        : text_(text), value_(value), path_(std::move(path)) {}

    [[nodiscard]] const JSON& json() const noexcept { return value_; }
    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[noreturn]] void fail(std::string_view what) const { text_.fail(path_, what); }

    /// @throws UsageError for another type, in these and all below.
    [[nodiscard]] const std::string& string() const;
    /// A whole number from 1 to `largest`.
    [[nodiscard]] std::size_t count(std::size_t largest) const;
    /// A number above 0 and at most `largest`.
    [[nodiscard]] double amount(double largest) const;
    [[nodiscard]] const JSON& object() const;
    [[nodiscard]] std::vector<ScenarioValue> elements() const;
    [[nodiscard]] std::vector<ScenarioValue> members() const;

    /// @throws UsageError where it is absent.
    [[nodiscard]] ScenarioValue member(std::string_view name) const;
    [[nodiscard]] std::optional<ScenarioValue> memberIfPresent(std::string_view name) const;

    /// @throws UsageError for the first member that is not among the names.
    void requireKnown(std::span<const std::string_view> names) const;

private:
    const ScenarioText& text_;
    const JSON& value_;
    std::string path_;
};

} // namespace korvane::acs
