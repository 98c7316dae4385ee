#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// A mutable JSON value whose objects keep the order of their members.
using JSON = nlohmann::ordered_json;

/// What stands at the top of a JSON text.
enum class JSONTopLevel { malformed, otherValue, object };

/// The platform's JSON reader and writer (RFC 8259). Any thread.
struct JSONSerialization {
    /// Nesting beyond this many levels counts as malformed.
    static constexpr int kDepthLimit = 256;

    /// Reads one JSON text. Of members with one name the last wins, as RFC 7515 section 4 has it for headers.
    /// @return no value for anything but one valid UTF-8 JSON text, or for nesting beyond `kDepthLimit`.
    [[nodiscard]] static std::optional<JSON> jsonObject(std::string_view text);

    /// Reads one JSON text whose top level is an object and hands its members over in their order, those that
    /// repeat a name included. Inside a member's value the last of repeated names wins.
    static JSONTopLevel forEachMember(std::string_view text,
                                      const std::function<void(std::string_view name, JSON&& value)>& member);

    /// True for an object or array that the writer can write: finite numbers, valid UTF-8, no binary values.
    [[nodiscard]] static bool isValidJSONObject(const JSON& value);

    /// Writes without white space, in the order of the members.
    /// @return no value when `value` is not a valid JSON object.
    [[nodiscard]] static std::optional<std::string> data(const JSON& value);
};

/// Writes one JSON object member by member, in the order of the calls. Texts that are not UTF-8 are repaired.
class JSONObjectWriter {
public:
    /// @param expectedLength  room to make ahead; a text of that length is written without a copy.
    explicit JSONObjectWriter(std::size_t expectedLength = 256);

    void addString(std::string_view name, std::string_view value);
    void addBoolean(std::string_view name, bool value);
    /// @param json  a value that is JSON text already.
    void addJSON(std::string_view name, std::string_view json);

    [[nodiscard]] std::string finish() &&;

private:
    void addName(std::string_view name);

    std::string json_;
};

[[nodiscard]] bool isUtf8(std::string_view text);

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
