#include "tools/acs/ScenarioReader.h"

#include "tools/common/JSONBreak.h"
#include "tools/common/UsageError.h"

#include <algorithm>

namespace korvane::acs {

using tools::UsageError;

namespace {

std::string listOf(std::span<const std::string_view> names) {
    std::string list;
    for (const std::string_view name : names)
        list += (list.empty() ? "" : ", ") + std::string(name);
    return list;
}

} // namespace

ScenarioText::ScenarioText(std::string_view text, std::string name)
    : name_(std::move(name)), root_(parse(text, *this)), lines_(text) {
    if (lines_.repeated()) fail(*lines_.repeated(), "stands twice.");
}

JSON ScenarioText::parse(std::string_view text, const ScenarioText& self) {
    if (auto value = JSONSerialization::jsonObject(text)) return std::move(*value);
    const tools::JSONBreak at = tools::findJSONBreak(text);
    self.fail(lineAt(text, at.position), {}, at.reason);
}

void ScenarioText::fail(std::string_view path, std::string_view what) const {
    fail(lines_.lineOf(path), path, what);
}

void ScenarioText::fail(std::size_t line, std::string_view path, std::string_view what) const {
    const std::string member = path.empty() ? "" : std::string(path) + ": ";
    throw UsageError(name_ + ":" + std::to_string(line) + ": " + member + std::string(what));
}

const std::string& ScenarioValue::string() const {
    if (!value_.is_string()) fail("must be a string.");
    return value_.get_ref<const std::string&>();
}

std::size_t ScenarioValue::count(std::size_t largest) const {
    if (!value_.is_number_integer() || value_ < 1 || value_ > largest)
        fail("must be a whole number from 1 to " + std::to_string(largest) + ".");
    return value_.get<std::size_t>();
}

double ScenarioValue::amount(double largest) const {
    if (!value_.is_number() || value_ <= 0 || value_ > largest)
        fail("must be a number above 0 and at most " + std::to_string(static_cast<int>(largest)) + ".");
    return value_.get<double>();
}

const JSON& ScenarioValue::object() const {
    if (!value_.is_object()) fail("must be an object.");
    return value_;
}

std::vector<ScenarioValue> ScenarioValue::elements() const {
    if (!value_.is_array()) fail("must be a list.");
    std::vector<ScenarioValue> values;
    for (const JSON& element : value_)
        values.emplace_back(text_, element, elementPath(path_, values.size()));
    return values;
}

std::vector<ScenarioValue> ScenarioValue::members() const {
    std::vector<ScenarioValue> values;
    for (const auto& [name, value] : object().items())
        values.emplace_back(text_, value, memberPath(path_, name));
    return values;
}

ScenarioValue ScenarioValue::member(std::string_view name) const {
    if (auto value = memberIfPresent(name)) return std::move(*value);
    fail("lacks the member \"" + std::string(name) + "\".");
}

std::optional<ScenarioValue> ScenarioValue::memberIfPresent(std::string_view name) const {
    const auto found = object().find(name);
    if (found == value_.end()) return std::nullopt;
    return ScenarioValue(text_, *found, memberPath(path_, name));
}

void ScenarioValue::requireKnown(std::span<const std::string_view> names) const {
    for (const auto& [name, value] : object().items())
        if (std::find(names.begin(), names.end(), name) == names.end())
            text_.fail(memberPath(path_, name), "is not known here; known are " + listOf(names) + ".");
}

} // namespace korvane::acs
