#include "Platform/JSON.h"

#include "Platform/Security/Secret.h"
#include "Platform/Text.h"

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace korvane {

namespace {

/// Finds the members of an object by name while it is built: a short object is searched, a long one has an
/// index. That is a tree and no hash table: names are a stranger's, who would choose those that collide.
class MemberIndex {
public:
    explicit MemberIndex(JSON::object_t& object) : object_(object) {}

    /// @param name  outlives the index.
    void set(std::string_view name, JSON value) {
        const std::size_t position = positionOf(name);
        if (position < object_.size())
            (object_.begin() + std::ptrdiff_t(position))->second = std::move(value);
        else
            object_.emplace_back(std::string(name), std::move(value));
    }

private:
    static constexpr std::size_t kSearched = 16;

    std::size_t positionOf(std::string_view name) {
        if (object_.size() > kSearched) return positions_.try_emplace(name, object_.size()).first->second;
        const auto found = std::find(names_.begin(), names_.begin() + std::ptrdiff_t(object_.size()), name);
        const auto position = static_cast<std::size_t>(found - names_.begin());
        if (position < object_.size()) return position;
        if (position < kSearched) names_[position] = name;
        if (position == kSearched) {
            for (std::size_t index = 0; index < kSearched; ++index)
                positions_.emplace(names_[index], index);
            positions_.emplace(name, position);
        }
        return position;
    }

    JSON::object_t& object_;
    std::array<std::string_view, kSearched> names_;
    std::map<std::string_view, std::size_t> positions_;
};

/// Turns what simdjson has read into a value, level by level.
class Conversion {
public:
    /// @param depth  the levels around what is converted.
    explicit Conversion(int depth = 0) : depth_(depth) {}

    JSON convert(const simdjson::dom::element& element) {
        using simdjson::dom::element_type;
        switch (element.type()) {
        case element_type::OBJECT: return nested(simdjson::dom::object(element));
        case element_type::ARRAY: return nested(simdjson::dom::array(element));
        case element_type::STRING: return JSON(std::string(std::string_view(element)));
        case element_type::INT64: return JSON(std::int64_t(element));
        case element_type::UINT64: return JSON(std::uint64_t(element));
        case element_type::DOUBLE: return JSON(double(element));
        case element_type::BOOL: return JSON(bool(element));
        case element_type::NULL_VALUE: return {};
        }
        return {};
    }

    [[nodiscard]] bool isTooDeep() const noexcept { return isTooDeep_; }

private:
    template <class Container>
    JSON nested(const Container& container) {
        isTooDeep_ = isTooDeep_ || depth_ == JSONSerialization::kDepthLimit;
        if (isTooDeep_) return {};
        ++depth_;
        JSON result = members(container);
        --depth_;
        return result;
    }

    JSON members(const simdjson::dom::object& container) {
        JSON::object_t object;
        object.reserve(container.size());
        MemberIndex index(object);
        for (const auto& [name, value] : container)
            index.set(name, convert(value));
        return JSON(std::move(object));
    }

    JSON members(const simdjson::dom::array& container) {
        JSON::array_t array;
        array.reserve(container.size());
        for (const simdjson::dom::element& element : container)
            array.push_back(convert(element));
        return JSON(std::move(array));
    }

    int depth_;
    bool isTooDeep_ = false;
};

/// The members of an object in their order, repeats included.
using Members = std::vector<std::pair<std::string, JSON>>;

/// Whether a number is an integer that neither 64-bit type holds.
bool isBeyond64Bits(std::string_view number) {
    const char* const end = number.data() + number.size();
    std::int64_t negative = 0;
    std::uint64_t positive = 0;
    const std::from_chars_result read = number.front() == '-' ? std::from_chars(number.data(), end, negative)
                                                              : std::from_chars(number.data(), end, positive);
    return read.ec == std::errc::result_out_of_range && read.ptr == end;
}

/// The text with an exponent of 0 behind each integer beyond 64 bits. Those are valid JSON, but simdjson
/// reads them only where they are written as doubles.
SecretString withBigIntegersAsDoubles(std::string_view text) {
    std::string result;
    result.reserve(text.size() + text.size() / 8); // two octets for twenty, so that no copy is left by growth
    bool isInText = false;
    for (std::size_t length = 0; !text.empty(); text.remove_prefix(length)) {
        const char first = text.front();
        const bool isNumber = !isInText && (first == '-' || (first >= '0' && first <= '9'));
        if (isNumber) {
            length = std::min(text.find_first_not_of("+-.0123456789Ee"), text.size());
        } else {
            length = isInText && first == '\\' ? std::min<std::size_t>(2, text.size()) : 1;
            isInText = isInText != (first == '"');
        }
        result += text.substr(0, length);
        if (isNumber && isBeyond64Bits(text.substr(0, length))) result += "e0";
    }
    return SecretString(std::move(result));
}

/// One reader per thread: its buffers are reused, and what was read is cleansed out of them after each text.
class Reader {
public:
    std::optional<JSON> read(std::string_view text) {
        simdjson::dom::element root;
        std::optional<JSON> result;
        if (parse(text, root) == simdjson::SUCCESS) result = convert(root);
        cleanse();
        return result;
    }

    /// Gives the members of the top-level object, those that repeat a name included.
    std::optional<Members> readMembers(std::string_view text, JSONTopLevel& top) {
        simdjson::dom::element root;
        const bool isRead = parse(text, root) == simdjson::SUCCESS;
        const bool isOther = isRead && !root.is_object();
        std::optional<Members> members;
        if (isRead && !isOther) members = convertMembers(simdjson::dom::object(root));
        cleanse();
        const JSONTopLevel withoutMembers = isOther ? JSONTopLevel::otherValue : JSONTopLevel::malformed;
        top = members ? JSONTopLevel::object : withoutMembers;
        return members;
    }

private:
    /// simdjson does not count an empty container as a level; so it gets room to spare, and
    /// the conversion counts.
    static constexpr std::size_t kNesting = JSONSerialization::kDepthLimit + 2;

    simdjson::error_code parse(std::string_view text, simdjson::dom::element& root) {
        const simdjson::error_code error = parseAsItIs(text, root);
        return error == simdjson::NUMBER_ERROR ? parseAsItIs(withBigIntegersAsDoubles(text), root) : error;
    }

    simdjson::error_code parseAsItIs(std::string_view text, simdjson::dom::element& root) {
        length_ = text.size();
        input_.resize(std::max(input_.size(), length_ + simdjson::SIMDJSON_PADDING));
        // Of one type, the octets are moved in one go.
        const ByteView octets = asBytes(text);
        std::copy(octets.begin(), octets.end(), input_.begin());
        if (parser_.capacity() < length_ && parser_.allocate(length_, kNesting) != simdjson::SUCCESS)
            return simdjson::MEMALLOC;
        return parser_.parse(input_.data(), length_, false).get(root);
    }

    static std::optional<JSON> convert(const simdjson::dom::element& root) {
        Conversion conversion;
        JSON value = conversion.convert(root);
        return conversion.isTooDeep() ? std::nullopt : std::optional(std::move(value));
    }

    static std::optional<Members> convertMembers(const simdjson::dom::object& object) {
        constexpr int kInsideTopLevel = 1;
        Conversion conversion(kInsideTopLevel);
        Members members;
        members.reserve(object.size());
        for (const auto& [name, value] : object)
            members.emplace_back(name, conversion.convert(value));
        return conversion.isTooDeep() ? std::nullopt : std::optional(std::move(members));
    }

    void cleanse() {
        korvane::cleanse(input_.data(), length_);
        // Beside each string stand its length and a terminator: at most five octets for three of the text.
        if (parser_.doc.string_buf) korvane::cleanse(parser_.doc.string_buf.get(), 5 * length_ / 3);
    }

    std::vector<std::uint8_t> input_;
    std::size_t length_ = 0;
    simdjson::dom::parser parser_;
};

/// Reads with the thread's own reader, or, where the text is long, with one that does not stay.
template <class Reading>
auto withReader(std::string_view text, Reading reading) {
    constexpr std::size_t kKeptSize = std::size_t{1} << 20U;
    if (text.size() > kKeptSize) {
        Reader reader;
        return reading(reader);
    }
    thread_local Reader reader;
    return reading(reader);
}

bool isWritable(const JSON& value) {
    if (value.is_string()) return isUtf8(value.get_ref<const std::string&>());
    if (value.is_number_float()) return std::isfinite(value.get<double>());
    if (value.is_binary() || value.is_discarded()) return false;
    if (value.is_object()) {
        const auto& members = value.get_ref<const JSON::object_t&>();
        return std::all_of(members.begin(), members.end(), [](const auto& member) {
            return isUtf8(member.first) && isWritable(member.second);
        });
    }
    return !value.is_array() || std::all_of(value.begin(), value.end(), isWritable);
}

void cleanseStrings(JSON& value) {
    if (value.is_string()) korvane::cleanse(value.get_ref<std::string&>());
    if (value.is_structured()) std::for_each(value.begin(), value.end(), cleanseStrings);
}

/// What stands behind the backslash for a character that has a short form (RFC 8259 section 7), or 0.
constexpr std::array<char, 256> kShortForms = [] {
    std::array<char, 256> forms{};
    constexpr std::string_view kCharacters = "\"\\\b\f\n\r\t";
    constexpr std::string_view kForms = "\"\\bfnrt";
    for (std::size_t index = 0; index < kForms.size(); ++index)
        forms[static_cast<unsigned char>(kCharacters[index])] = kForms[index];
    return forms;
}();

bool isEscaped(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20 || kShortForms[code] != 0;
}

/// Neither escaped nor part of a longer sequence, of which one would have to see whether it is whole.
bool isPlain(char character) {
    return !isEscaped(character) && static_cast<unsigned char>(character) < 0x80;
}

/// What is not escaped, mostly all of it, goes in one piece.
void appendEscaped(std::string& json, std::string_view text) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    for (;;) {
        const auto plain =
            static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isEscaped) - text.begin());
        json += text.substr(0, plain);
        if (plain == text.size()) return;
        const auto code = static_cast<unsigned char>(text[plain]);
        if (const char form = kShortForms[code]; form != 0) {
            json += '\\';
            json += form;
        } else {
            json += "\\u00";
            json += kDigits[code >> 4U];
            json += kDigits[code & 0x0FU];
        }
        text.remove_prefix(plain + 1);
    }
}

void appendQuoted(std::string& json, std::string_view text) {
    json += '"';
    if (std::all_of(text.begin(), text.end(), isPlain))
        json += text;
    else if (isUtf8(text))
        appendEscaped(json, text);
    else
        appendEscaped(json, repairedUtf8(text));
    json += '"';
}

void appendValue(std::string& json, const JSON& value) {
    const auto separate = [&json](char opening) {
        if (json.back() != opening) json += ',';
    };
    if (value.is_string()) return appendQuoted(json, value.get_ref<const std::string&>());
    if (!value.is_structured()) {
        json += value.dump();
        return;
    }
    json += value.is_object() ? '{' : '[';
    if (value.is_object()) {
        for (const auto& [name, member] : value.get_ref<const JSON::object_t&>()) {
            separate('{');
            appendQuoted(json, name);
            json += ':';
            appendValue(json, member);
        }
    } else {
        for (const JSON& element : value) {
            separate('[');
            appendValue(json, element);
        }
    }
    json += value.is_object() ? '}' : ']';
}

} // namespace

std::optional<JSON> JSONSerialization::jsonObject(std::string_view text) {
    return withReader(text, [text](Reader& reader) { return reader.read(text); });
}

JSONTopLevel JSONSerialization::forEachMember(std::string_view text,
                                              const std::function<void(std::string_view, JSON&&)>& member) {
    JSONTopLevel top{};
    auto members = withReader(text, [&](Reader& reader) { return reader.readMembers(text, top); });
    if (members)
        for (auto& [name, value] : *members)
            member(name, std::move(value));
    return top;
}

bool JSONSerialization::isValidJSONObject(const JSON& value) {
    return value.is_structured() && isWritable(value);
}

std::optional<std::string> JSONSerialization::data(const JSON& value) {
    if (!isValidJSONObject(value)) return std::nullopt;
    std::string json;
    appendValue(json, value);
    return json;
}

JSONObjectWriter::JSONObjectWriter(std::size_t expectedLength) {
    json_.reserve(expectedLength);
    json_ += '{';
}

void JSONObjectWriter::addString(std::string_view name, std::string_view value) {
    addName(name);
    appendQuoted(json_, value);
}

void JSONObjectWriter::addBoolean(std::string_view name, bool value) {
    addJSON(name, value ? "true" : "false");
}

void JSONObjectWriter::addJSON(std::string_view name, std::string_view json) {
    addName(name);
    json_ += json;
}

std::string JSONObjectWriter::finish() && {
    json_ += '}';
    return std::move(json_);
}

void JSONObjectWriter::addName(std::string_view name) {
    if (json_.size() > 1) json_ += ',';
    appendQuoted(json_, name);
    json_ += ':';
}

bool isUtf8(std::string_view text) {
    return simdjson::validate_utf8(text.data(), text.size());
}

SecretJSON::~SecretJSON() {
    cleanseStrings(value_);
}

} // namespace korvane
