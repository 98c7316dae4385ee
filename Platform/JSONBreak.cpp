#include "Platform/JSONBreak.h"

#include "Platform/JSON.h"

namespace korvane {

namespace {

/// Reads a text and keeps nothing of it but where it breaks. Only this reader tells where; the platform's
/// reader tells whether.
class Watch final : public nlohmann::json_sax<JSON> {
public:
    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, const string_t&) override { return true; }
    bool string(string_t&) override { return true; }
    bool binary(binary_t&) override { return true; }
    bool key(string_t&) override { return true; }
    bool start_object(std::size_t) override { return enter(); }
    bool start_array(std::size_t) override { return enter(); }
    bool end_object() override { return leave(); }
    bool end_array() override { return leave(); }

    bool parse_error(std::size_t position, const std::string&,
                     const nlohmann::detail::exception& error) override {
        const bool isNumber = dynamic_cast<const JSON::out_of_range*>(&error) != nullptr;
        found_ = {position == 0 ? 0 : position - 1,
                  isNumber ? "This number is too large." : "This is not JSON."};
        return false;
    }

    [[nodiscard]] bool isTooDeep() const noexcept { return depth_ > JSONSerialization::kDepthLimit; }
    [[nodiscard]] const JSONBreak& found() const noexcept { return found_; }

private:
    bool enter() {
        ++depth_;
        return !isTooDeep();
    }
    bool leave() {
        --depth_;
        return true;
    }

    int depth_ = 0;
    JSONBreak found_{0, "This is not JSON that can be read here."};
};

/// Where the level beyond the limit is entered, in a text that is JSON up to there.
std::size_t positionTooDeep(std::string_view text) {
    int depth = 0;
    bool isInString = false;
    for (std::size_t position = 0; position < text.size(); ++position) {
        const char character = text[position];
        if (character == '"') isInString = !isInString;
        if (isInString && character == '\\') ++position;
        if (isInString) continue;
        if (character == '{' || character == '[') ++depth;
        if (character == '}' || character == ']') --depth;
        if (depth > JSONSerialization::kDepthLimit) return position;
    }
    return text.size();
}

} // namespace

JSONBreak findJSONBreak(std::string_view text) {
    if (text.starts_with(kByteOrderMark)) return {0, "It begins with a byte order mark."};
    Watch watch;
    JSON::sax_parse(text, &watch);
    if (!watch.isTooDeep()) return watch.found();
    return {positionTooDeep(text),
            "This nests deeper than " + std::to_string(JSONSerialization::kDepthLimit) + " levels."};
}

std::string complaintAboutLine(std::string_view line) {
    const std::string complaint = "The line is not one JSON object.";
    if (JSONSerialization::jsonObject(line)) return complaint;
    const JSONBreak at = findJSONBreak(line);
    return complaint + " Byte " + std::to_string(at.position + 1) + ": " + at.reason;
}

} // namespace korvane
