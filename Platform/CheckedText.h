#pragma once

#include "Platform/JSON.h"
#include "Platform/JSONLines.h"

#include <cstddef>
#include <exception>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// Something to be said of a member of a file.
struct Remark {
    enum class Kind {
        fault,  ///< the file cannot be used
        warning ///< it can, and surely is not what was meant
    };

    std::size_t line;
    Kind kind;
    std::string path;
    /// `FILE:LINE: MEMBER: what is wrong`.
    std::string text;
};

class CheckedValue;

/// A JSON file that a person wrote, on its way into a record: gathers all that is wrong with its members, so
/// that one run tells of everything.
class CheckedText {
public:
    /// @param text  may begin with a byte order mark.
    /// @param name  stands for the file in remarks.
    /// @throws FaultyText for text that is not JSON, with the line where it breaks.
    CheckedText(std::string_view text, std::string name);

    [[nodiscard]] CheckedValue root();

    /// Once, however often it is said.
    void add(Remark::Kind kind, std::string_view path, std::string_view what);

    /// Reads a part. What makes a value of no use ends the part, and has been gathered by then.
    void attempt(const std::function<void()>& part) const;

    /// By line.
    [[nodiscard]] std::vector<Remark> remarks() const;
    [[nodiscard]] bool hasFault() const;
    /// Whether a fault of just this member has been gathered.
    [[nodiscard]] bool hasFaultAt(std::string_view path) const;

    /// @throws FaultyText with the faults, a line each, if there are any.
    void requireNoFault() const;

private:
    static JSON parse(std::string_view text, const std::string& name);

    std::string name_;
    JSON root_;
    JSONLines lines_;
    std::vector<Remark> remarks_;
};

/// A value that is of no use; its fault has been gathered. Caught by `CheckedText::attempt`.
class UselessValue : public std::exception {};

/// What a number may be, both ends included. They are whole.
struct Bounds {
    int least;
    int most;
};

/// One value of such a file. Borrows text and value.
class CheckedValue {
public:
    CheckedValue(CheckedText& text, const JSON& value, std::string path)
        : text_(text), value_(value), path_(std::move(path)) {}

    [[nodiscard]] const JSON& json() const noexcept { return value_; }
    [[nodiscard]] const std::string& path() const noexcept { return path_; }

    void fault(std::string_view what) const { text_.add(Remark::Kind::fault, path_, what); }
    void warn(std::string_view what) const { text_.add(Remark::Kind::warning, path_, what); }
    [[noreturn]] void fail(std::string_view what) const;

    /// @throws UselessValue for another type, in these and all below.
    [[nodiscard]] const std::string& string() const;
    /// A whole number from 1 to `largest`.
    [[nodiscard]] std::size_t count(std::size_t largest) const;
    /// A number above 0 and at most `largest`.
    [[nodiscard]] double amount(double largest) const;
    [[nodiscard]] double number(const Bounds& bounds) const;
    [[nodiscard]] int wholeNumber(const Bounds& bounds) const;
    [[nodiscard]] bool boolean() const;
    [[nodiscard]] const JSON& object() const;
    [[nodiscard]] std::vector<CheckedValue> elements() const;
    [[nodiscard]] std::vector<CheckedValue> members() const;

    /// @throws UselessValue where it is absent.
    [[nodiscard]] CheckedValue member(std::string_view name) const;
    [[nodiscard]] std::optional<CheckedValue> memberIfPresent(std::string_view name) const;

    /// Reads a member, if there is one, as a part of its own.
    void readIfPresent(std::string_view name, const std::function<void(const CheckedValue&)>& read) const;

    /// Gathers every member that is not among the names, and tells them with the first.
    void requireKnown(std::span<const std::string_view> names) const;

private:
    CheckedText& text_;
    const JSON& value_;
    std::string path_;
};

} // namespace korvane
