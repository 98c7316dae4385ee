#pragma once

#include "Platform/Bytes.h"
#include "Platform/EnumTable.h"
#include "Platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace korvane {

/// A text that a failure carries to explain itself, set apart from texts that are data of the failure.
struct Description {
    std::string text;
    friend bool operator==(const Description&, const Description&) = default;
};

/// The base of everything that is raised: a domain (the name of a closed family) and a case of that family.
class KORVANE_EXPORT Failure : public std::exception {
public:
    [[nodiscard]] virtual std::string_view domain() const noexcept = 0;

    /// The position of the case in its enumeration, from 0.
    [[nodiscard]] virtual int caseIndex() const noexcept = 0;

    /// The failure in its type's own words: the carried description where there is one, else
    /// `genericDescription()`.
    [[nodiscard]] virtual std::string localizedDescription() const;

    /// Names domain and case index and nothing that the failure carries.
    [[nodiscard]] std::string genericDescription() const;
};

/// The generic description of any exception: what a catch site may tell that does not know what it caught.
KORVANE_EXPORT [[nodiscard]] std::string genericDescription(const std::exception& error);

/// The exception's own words, for a catch site inside the layer that raised it.
KORVANE_EXPORT [[nodiscard]] std::string localizedDescription(const std::exception& error);

/// "Domain.case": what `what()` says.
KORVANE_EXPORT [[nodiscard]] std::string failureName(std::string_view domain, std::string_view name);

/// What a family of failures may carry, unless its `FailureTraits` name a type of their own.
using FailureValue = std::variant<std::monostate, Description, std::int64_t, std::string, Bytes>;

/// To be specialised beside each enumeration of failures, whose `rawValue` is the name of a
/// case: `domain`, `Value`.
template <class Case>
struct FailureTraits;

/// One raised failure of the family that the enumeration `Case` lists; the enumeration's
/// order is the case index.
template <HasRawValues Case>
class TypedFailure : public Failure {
public:
    static_assert(EnumTable<Case>::size > 0);

    using Traits = FailureTraits<Case>;
    using Value = typename Traits::Value;

    explicit TypedFailure(Case kind, Value value = {})
        : kind_(kind), value_(std::move(value)), name_(failureName(Traits::domain, rawValue(kind))) {}

    [[nodiscard]] Case kind() const noexcept { return kind_; }

    [[nodiscard]] const Value& value() const noexcept { return value_; }

    /// The carried description, or an empty text.
    [[nodiscard]] std::string description() const {
        if (const auto* carried = std::get_if<Description>(&value_)) return carried->text;
        return {};
    }

    [[nodiscard]] std::string_view domain() const noexcept override { return Traits::domain; }
    [[nodiscard]] int caseIndex() const noexcept override { return static_cast<int>(kind_); }

    [[nodiscard]] std::string localizedDescription() const override {
        if (const auto* carried = std::get_if<Description>(&value_)) return carried->text;
        return genericDescription();
    }

    /// Domain and case ("JOSEError.signatureInvalid"), never a carried value: those may be secrets.
    [[nodiscard]] const char* what() const noexcept override { return name_.c_str(); }

    friend bool operator==(const TypedFailure& left, const TypedFailure& right) {
        return left.kind_ == right.kind_ && left.value_ == right.value_;
    }

private:
    Case kind_;
    Value value_;
    std::string name_;
};

/// Ends the process on a programmer's fault: the text goes to stderr, then abort. Never
/// reached by foreign input.
KORVANE_EXPORT [[noreturn]] void fatalError(std::string_view text);

} // namespace korvane
