#pragma once

#include "Platform/Failure.h"
#include "Platform/JSON.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// Why a record could not be decoded from JSON.
enum class DecodingErrorCase { typeMismatch, valueNotFound, keyNotFound, dataCorrupted };

[[nodiscard]] constexpr std::string_view rawValue(DecodingErrorCase value) {
    using enum DecodingErrorCase;
    switch (value) {
    case typeMismatch: return "typeMismatch";
    case valueNotFound: return "valueNotFound";
    case keyNotFound: return "keyNotFound";
    case dataCorrupted: return "dataCorrupted";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<DecodingErrorCase> {
    static constexpr std::string_view domain = "DecodingError";
    using Value = FailureValue;
};

/// A failure to decode, with the path to the field at fault: names of members, and "Index 0" for places in
/// lists, outermost first, the field itself last. The path is empty where the text is no JSON at all.
class DecodingError : public TypedFailure<DecodingErrorCase> {
public:
    DecodingError(DecodingErrorCase kind, std::string text, std::vector<std::string> codingPath = {})
        : TypedFailure(kind, Description{std::move(text)}), codingPath_(std::move(codingPath)) {}

    [[nodiscard]] const std::vector<std::string>& codingPath() const noexcept { return codingPath_; }

private:
    std::vector<std::string> codingPath_;
};

/// A map of texts, as records of messages hold it.
using StringTable = std::map<std::string, std::string>;

/// As JSON text, members in the order of their names.
[[nodiscard]] std::string jsonOf(const StringTable& table);

/// One value of a JSON text on its way into a record. Borrows the value and its parent field,
/// which both outlive it.
class JSONField {
public:
    explicit JSONField(const JSON& value) : value_(&value) {}
    /// A value that stands alone, under a name that failures tell.
    JSONField(const JSON& value, std::string_view name) : value_(&value), name_(name) {}

    [[nodiscard]] const JSON& value() const { return *value_; }
    [[nodiscard]] bool isNull() const { return value_->is_null(); }

    /// @throws DecodingError typeMismatch or valueNotFound (null) in these four.
    [[nodiscard]] const std::string& string() const;
    [[nodiscard]] bool boolean() const;
    [[nodiscard]] StringTable stringTable() const;
    [[nodiscard]] std::vector<JSONField> elements() const;

    /// A member of this object.
    /// @throws DecodingError keyNotFound where it is missing, typeMismatch where this is no object.
    [[nodiscard]] JSONField member(std::string_view name) const;

    /// A member of this object, or no value where it is missing or null.
    /// @throws DecodingError typeMismatch where this is no object.
    [[nodiscard]] std::optional<JSONField> memberIfPresent(std::string_view name) const;

private:
    JSONField(const JSON& value, std::string_view name, std::size_t index, const JSONField& parent)
        : value_(&value), name_(name), index_(index), parent_(&parent) {}

    /// Whether this stands in a list, and so has a place and no name.
    [[nodiscard]] bool isElement() const { return parent_ && parent_->value_->is_array(); }
    const JSON& require(bool isOfType, std::string_view type) const;
    [[nodiscard]] const JSON* find(std::string_view name) const;
    [[nodiscard]] std::vector<std::string> path() const;

    const JSON* value_;
    std::string_view name_;
    std::size_t index_ = 0;
    const JSONField* parent_ = nullptr;
};

/// Decodes one JSON text whose top level is an object.
/// @throws DecodingError dataCorrupted for text that is not JSON, typeMismatch for another top level.
[[nodiscard]] JSON decodeObject(std::string_view text);

/// The string member `name` of `object`.
/// @throws DecodingError keyNotFound, valueNotFound (null) or typeMismatch, naming the member.
[[nodiscard]] const std::string& decodeString(const JSON& object, std::string_view name);

} // namespace korvane
