#include "Platform/JSONDecoding.h"

#include <algorithm>

namespace korvane {

namespace {

using enum DecodingErrorCase;

} // namespace

const std::string& JSONField::string() const {
    return require(value_->is_string(), "a string").get_ref<const std::string&>();
}

bool JSONField::boolean() const {
    return require(value_->is_boolean(), "a boolean").get<bool>();
}

StringTable JSONField::stringTable() const {
    StringTable table;
    for (const auto& [name, value] : require(value_->is_object(), "an object").items())
        table.insert_or_assign(name, JSONField(value, name, 0, *this).string());
    return table;
}

std::vector<JSONField> JSONField::elements() const {
    const JSON& array = require(value_->is_array(), "an array");
    std::vector<JSONField> fields;
    fields.reserve(array.size());
    for (std::size_t index = 0; index < array.size(); ++index)
        fields.push_back(JSONField(array[index], {}, index, *this));
    return fields;
}

JSONField JSONField::member(std::string_view name) const {
    const JSON* value = find(name);
    static const JSON kNothing;
    const JSONField field(value ? *value : kNothing, name, 0, *this);
    if (!value) throw DecodingError(keyNotFound, "\"" + std::string(name) + "\" is missing.", field.path());
    return field;
}

std::optional<JSONField> JSONField::memberIfPresent(std::string_view name) const {
    const JSON* value = find(name);
    if (!value || value->is_null()) return std::nullopt;
    return JSONField(*value, name, 0, *this);
}

const JSON& JSONField::require(bool isOfType, std::string_view type) const {
    if (isOfType) return *value_;
    const bool isNamed = parent_ ? !isElement() : !name_.empty();
    const std::string subject = isNamed ? "\"" + std::string(name_) + "\"" : "A value";
    if (isNull()) throw DecodingError(valueNotFound, subject + " is null.", path());
    throw DecodingError(typeMismatch, subject + " is not " + std::string(type) + ".", path());
}

const JSON* JSONField::find(std::string_view name) const {
    const JSON& object = require(value_->is_object(), "an object");
    const auto member = object.find(name);
    return member == object.end() ? nullptr : &*member;
}

std::vector<std::string> JSONField::path() const {
    std::vector<std::string> names;
    for (const JSONField* field = this; field; field = field->parent_) {
        const bool isRoot = !field->parent_ && field->name_.empty();
        if (isRoot) break;
        names.push_back(field->isElement() ? "Index " + std::to_string(field->index_)
                                           : std::string(field->name_));
    }
    std::reverse(names.begin(), names.end());
    return names;
}

JSON decodeObject(std::string_view text) {
    std::optional<JSON> value = JSONSerialization::jsonObject(text);
    if (!value) throw DecodingError(dataCorrupted, "The data is not valid JSON.");
    if (!value->is_object()) throw DecodingError(typeMismatch, "The top level is not a JSON object.");
    return std::move(*value);
}

const std::string& decodeString(const JSON& object, std::string_view name) {
    const JSONField root(object);
    return root.member(name).string();
}

std::string jsonOf(const StringTable& table) {
    JSONObjectWriter writer;
    for (const auto& [name, value] : table)
        writer.addString(name, value);
    return std::move(writer).finish();
}

} // namespace korvane
