#pragma once

#include "Platform/Bytes.h"
#include "Platform/Failure.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// A mutable JSON value whose objects keep the order of their members.
using JSON = nlohmann::ordered_json;

/// How the writer lays out an object.
enum class JSONWriting { memberOrder, sortedKeys };

/// The platform's JSON reader and writer (RFC 8259). Any thread.
struct JSONSerialization {
    /// Nesting beyond this many levels counts as malformed.
    static constexpr int kDepthLimit = 256;

    /// Reads one JSON text. Of members with one name the last wins, as RFC 7515 section 4 has it for headers.
    /// @return no value for anything but one valid UTF-8 JSON text, or for nesting beyond `kDepthLimit`.
    [[nodiscard]] static std::optional<JSON> jsonObject(std::string_view text);

    /// True for an object or array that the writer can write: finite numbers, valid UTF-8, no binary values.
    [[nodiscard]] static bool isValidJSONObject(const JSON& value);

    /// Writes without white space.
    /// @return no value when `value` is not a valid JSON object.
    [[nodiscard]] static std::optional<std::string> data(const JSON& value,
                                                         JSONWriting writing = JSONWriting::memberOrder);
};

/// Appends `text` to `json` as a quoted and escaped JSON string. The text must be UTF-8 (`isUtf8`).
void appendJSONString(std::string& json, std::string_view text);

[[nodiscard]] bool isUtf8(std::string_view text);

/// Why a record could not be decoded from JSON.
enum class DecodingErrorCase { typeMismatch, valueNotFound, keyNotFound, dataCorrupted };

template <>
struct FailureTraits<DecodingErrorCase> {
    static constexpr std::string_view domain = "DecodingError";
    static constexpr std::array<std::string_view, 4> cases{"typeMismatch", "valueNotFound", "keyNotFound",
                                                           "dataCorrupted"};
    using Value = FailureValue;
};

using DecodingError = TypedFailure<DecodingErrorCase>;

/// Decodes one JSON text whose top level is an object.
/// @throws DecodingError dataCorrupted for text that is not JSON, typeMismatch for another top level.
[[nodiscard]] JSON decodeObject(std::string_view text);

/// The string member `name` of `object`.
/// @throws DecodingError keyNotFound, valueNotFound (null) or typeMismatch, naming the member.
[[nodiscard]] const std::string& decodeString(const JSON& object, std::string_view name);

/// As `decodeString`, but null and absence give no value.
[[nodiscard]] const std::string* decodeStringIfPresent(const JSON& object, std::string_view name);

/// Holds a JSON value with secrets in it and cleanses its strings at the end.
class SecretJSON {
public:
    explicit SecretJSON(JSON value) : value_(std::move(value)) {}
    SecretJSON(const SecretJSON&) = delete;
    SecretJSON& operator=(const SecretJSON&) = delete;
    ~SecretJSON();

    [[nodiscard]] const JSON& operator*() const noexcept { return value_; }
    [[nodiscard]] const JSON* operator->() const noexcept { return &value_; }

private:
    JSON value_;
};

} // namespace korvane
