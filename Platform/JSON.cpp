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

/// One reader per thread: its buffers are reused, and what was read is cleansed out of them after each text.
class Reader {
public:
    std::optional<JSON> read(std::string_view text) {
        simdjson::dom::element root;
        const simdjson::error_code error = parse(text, root);
        std::optional<JSON> result;
        if (error == simdjson::SUCCESS) result = convert(root);
        if (error == simdjson::NUMBER_ERROR) result = readBigNumbers(text);
        cleanse(text.size());
        return result;
    }

    /// Gives the members of the top-level object, those that repeat a name included.
    std::optional<Members> readMembers(std::string_view text, JSONTopLevel& top) {
        simdjson::dom::element root;
        const simdjson::error_code error = parse(text, root);
        std::optional<Members> members;
        bool isOther = error == simdjson::SUCCESS && !root.is_object();
        if (error == simdjson::SUCCESS && !isOther) members = convertMembers(simdjson::dom::object(root));
        if (error == simdjson::NUMBER_ERROR) members = readBigNumberMembers(text, isOther);
        cleanse(text.size());
        const JSONTopLevel withoutMembers = isOther ? JSONTopLevel::otherValue : JSONTopLevel::malformed;
        top = members ? JSONTopLevel::object : withoutMembers;
        return members;
    }

private:
    /// simdjson does not count an empty container as a level; so it gets room to spare, and the conversion
    /// counts.
    static constexpr std::size_t kNesting = JSONSerialization::kDepthLimit + 2;

    simdjson::error_code parse(std::string_view text, simdjson::dom::element& root) {
        input_.resize(std::max(input_.size(), text.size() + simdjson::SIMDJSON_PADDING));
        // Of one type, the octets are moved in one go.
        const ByteView octets = asBytes(text);
        std::copy(octets.begin(), octets.end(), input_.begin());
        if (parser_.capacity() < text.size() && parser_.allocate(text.size(), kNesting) != simdjson::SUCCESS)
            return simdjson::MEMALLOC;
        return parser_.parse(input_.data(), text.size(), false).get(root);
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

    /// simdjson refuses integers beyond 64 bits, which are valid JSON: those texts go through the slower
    /// reader, whose time grows with the square of the length. No message of the protocol has such a number
    /// at all.
    static std::optional<JSON>
    readBigNumbers(std::string_view text,
                   const std::function<void(int, JSON::parse_event_t, JSON&)>& watch = {}) {
        constexpr std::size_t kLongest = 16384;
        if (text.size() > kLongest) return std::nullopt;
        bool isTooDeep = false;
        const auto callback = [&](int depth, JSON::parse_event_t event, JSON& value) {
            isTooDeep = isTooDeep || depth > JSONSerialization::kDepthLimit;
            if (watch) watch(depth, event, value);
            return true;
        };
        JSON value = JSON::parse(text, callback, false);
        if (value.is_discarded() || isTooDeep) return std::nullopt;
        return value;
    }

    static std::optional<Members> readBigNumberMembers(std::string_view text, bool& isOther) {
        using Event = JSON::parse_event_t;
        Members members;
        std::string name;
        const auto watch = [&](int depth, Event event, JSON& value) {
            if (depth != 1) return;
            if (event == Event::key) name = value.get<std::string>();
            if (event == Event::value || event == Event::object_end || event == Event::array_end)
                members.emplace_back(name, value);
        };
        const std::optional<JSON> whole = readBigNumbers(text, watch);
        isOther = whole && !whole->is_object();
        return whole && !isOther ? std::optional(std::move(members)) : std::nullopt;
    }

    void cleanse(std::size_t length) {
        korvane::cleanse(input_.data(), length);
        // Beside each string stand its length and a terminator: at most five octets for three of the text.
        if (parser_.doc.string_buf) korvane::cleanse(parser_.doc.string_buf.get(), 5 * length / 3);
    }

    std::vector<std::uint8_t> input_;
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

void appendEscaped(std::string& json, std::string_view text) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') json += '\\';
        if (code >= 0x20) {
            json += character;
            continue;
        }
        json += "\\u00";
        json += kDigits[code >> 4U];
        json += kDigits[code & 0x0FU];
    }
}

void appendQuoted(std::string& json, std::string_view text) {
    json += '"';
    if (isUtf8(text))
        appendEscaped(json, text);
    else
        appendEscaped(json, repairedUtf8(text));
    json += '"';
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

std::optional<std::string> JSONSerialization::data(const JSON& value, JSONWriting writing) {
    if (!isValidJSONObject(value)) return std::nullopt;
    if (writing == JSONWriting::sortedKeys) return nlohmann::json(value).dump();
    return value.dump();
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
