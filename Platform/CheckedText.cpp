#include "Platform/CheckedText.h"

#include "Platform/FaultyText.h"
#include "Platform/JSONBreak.h"

#include <algorithm>
#include <cmath>

namespace korvane {

namespace {

std::string listOf(std::span<const std::string_view> names) {
    std::string list;
    for (const std::string_view name : names)
        list += (list.empty() ? "" : ", ") + std::string(name);
    return list;
}

std::string textOf(const Bounds& bounds) {
    return " from " + std::to_string(bounds.least) + " to " + std::to_string(bounds.most) + ".";
}

/// JSON tells no whole numbers from others: 14.0 is as whole as 14.
bool isWhole(const JSON& value) {
    if (!value.is_number_float()) return value.is_number();
    const auto number = value.get<double>();
    return std::trunc(number) == number;
}

/// Some editors begin a file with a byte order mark (RFC 8259 section 8.1).
std::string_view withoutMark(std::string_view text) {
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    return text;
}

std::string placeOf(const std::string& name, std::size_t line) {
    return name + ":" + std::to_string(line) + ": ";
}

} // namespace

CheckedText::CheckedText(std::string_view text, std::string name)
    : name_(std::move(name)), root_(parse(withoutMark(text), name_)), lines_(withoutMark(text)) {
    for (const auto& [path, line] : lines_.repeated())
        remarks_.push_back(
            {line, Remark::Kind::fault, path, placeOf(name_, line) + path + ": stands twice."});
}

JSON CheckedText::parse(std::string_view text, const std::string& name) {
    if (auto value = JSONSerialization::jsonObject(text)) return std::move(*value);
    const JSONBreak at = findJSONBreak(text);
    throw FaultyText(placeOf(name, lineAt(text, at.position)) + at.reason);
}

CheckedValue CheckedText::root() {
    return {*this, root_, {}};
}

void CheckedText::add(Remark::Kind kind, std::string_view path, std::string_view what) {
    const std::size_t line = lines_.lineOf(path);
    std::string text = placeOf(name_, line);
    if (kind == Remark::Kind::warning) text += "warning: ";
    if (!path.empty()) text += std::string(path) + ": ";
    text += what;
    const bool isNew = std::none_of(remarks_.begin(), remarks_.end(),
                                    [&text](const Remark& remark) { return remark.text == text; });
    if (isNew) remarks_.push_back({line, kind, std::string(path), std::move(text)});
}

void CheckedText::attempt(const std::function<void()>& part) const {
    try {
        part();
    } catch (const UselessValue&) {
        return;
    }
}

std::vector<Remark> CheckedText::remarks() const {
    std::vector<Remark> sorted = remarks_;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const Remark& left, const Remark& right) { return left.line < right.line; });
    return sorted;
}

bool CheckedText::hasFault() const {
    return std::any_of(remarks_.begin(), remarks_.end(),
                       [](const Remark& remark) { return remark.kind == Remark::Kind::fault; });
}

bool CheckedText::hasFaultAt(std::string_view path) const {
    return std::any_of(remarks_.begin(), remarks_.end(), [path](const Remark& remark) {
        return remark.kind == Remark::Kind::fault && remark.path == path;
    });
}

void CheckedText::requireNoFault() const {
    std::string faults;
    for (const Remark& remark : remarks())
        if (remark.kind == Remark::Kind::fault) faults += (faults.empty() ? "" : "\n") + remark.text;
    if (!faults.empty()) throw FaultyText(faults);
}

void CheckedValue::fail(std::string_view what) const {
    fault(what);
    throw UselessValue();
}

const std::string& CheckedValue::string() const {
    if (!value_.is_string()) fail("must be a string.");
    return value_.get_ref<const std::string&>();
}

std::size_t CheckedValue::count(std::size_t largest) const {
    if (!isWhole(value_) || value_ < 1 || value_ > largest)
        fail("must be a whole number from 1 to " + std::to_string(largest) + ".");
    return value_.get<std::size_t>();
}

double CheckedValue::amount(double largest) const {
    if (!value_.is_number() || value_ <= 0 || value_ > largest)
        fail("must be a number above 0 and at most " + std::to_string(static_cast<int>(largest)) + ".");
    return value_.get<double>();
}

double CheckedValue::number(const Bounds& bounds) const {
    if (!value_.is_number() || value_ < bounds.least || value_ > bounds.most)
        fail("must be a number" + textOf(bounds));
    return value_.get<double>();
}

int CheckedValue::wholeNumber(const Bounds& bounds) const {
    if (!isWhole(value_) || value_ < bounds.least || value_ > bounds.most)
        fail("must be a whole number" + textOf(bounds));
    return value_.get<int>();
}

bool CheckedValue::boolean() const {
    if (!value_.is_boolean()) fail("must be true or false.");
    return value_.get<bool>();
}

const JSON& CheckedValue::object() const {
    if (!value_.is_object()) fail("must be an object.");
    return value_;
}

std::vector<CheckedValue> CheckedValue::elements() const {
    if (!value_.is_array()) fail("must be a list.");
    std::vector<CheckedValue> values;
    for (const JSON& element : value_)
        values.emplace_back(text_, element, elementPath(path_, values.size()));
    return values;
}

std::vector<CheckedValue> CheckedValue::members() const {
    std::vector<CheckedValue> values;
    for (const auto& [name, value] : object().items())
        values.emplace_back(text_, value, memberPath(path_, name));
    return values;
}

CheckedValue CheckedValue::member(std::string_view name) const {
    if (auto value = memberIfPresent(name)) return std::move(*value);
    fail("lacks the member \"" + std::string(name) + "\".");
}

std::optional<CheckedValue> CheckedValue::memberIfPresent(std::string_view name) const {
    const auto found = object().find(name);
    if (found == value_.end()) return std::nullopt;
    return CheckedValue(text_, *found, memberPath(path_, name));
}

void CheckedValue::readIfPresent(std::string_view name,
                                 const std::function<void(const CheckedValue&)>& read) const {
    if (const auto value = memberIfPresent(name)) text_.attempt([&] { read(*value); });
}

void CheckedValue::requireKnown(std::span<const std::string_view> names) const {
    std::string known = "; known are " + listOf(names);
    for (const auto& [name, value] : object().items()) {
        if (std::find(names.begin(), names.end(), name) != names.end()) continue;
        text_.add(Remark::Kind::fault, memberPath(path_, name), "is not known here" + known + ".");
        known.clear();
    }
}

} // namespace korvane
