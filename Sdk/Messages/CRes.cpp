#include "Sdk/Messages/CRes.h"

#include "Platform/Logger.h"
#include "Platform/Text.h"

#include <array>

namespace korvane {

namespace {

/// Reads one value into its field.
void read(const JSONField& field, std::string& target) {
    target = field.string();
}

void read(const JSONField& field, std::vector<StringTable>& target) {
    for (const JSONField& element : field.elements())
        target.push_back(element.stringTable());
}

void read(const JSONField& field, std::vector<MessageExtensionAttribute>& target) {
    for (const JSONField& element : field.elements())
        target.push_back(MessageExtensionAttribute::decode(element));
}

void read(const JSONField& field, ImageUrls& target) {
    target = ImageUrls::decode(field);
}

template <class Value>
void read(const JSONField& field, std::optional<Value>& target) {
    if (!field.isNull()) read(field, target.emplace());
}

constexpr std::size_t sizeOf(const CRes::Field& field) {
    return std::visit([]<class Value>(Value CRes::*) { return sizeof(Value); }, field.member);
}

/// Whether the rows are those of the record: no name and no member stands in two of them, and
/// their members fill it.
constexpr bool haveAllFields = [] {
    std::size_t size = 0;
    for (const CRes::Field& field : CRes::fields()) {
        size += sizeOf(field);
        for (const CRes::Field& other : CRes::fields())
            if (&other != &field && (other.name == field.name || other.member == field.member)) return false;
    }
    return size == sizeof(CRes);
}();
static_assert(haveAllFields);

/// The values of the record's fields as they came, with the number of times that each name came.
struct Gathered {
    Gathered() = default;
    Gathered(const Gathered&) = delete;
    Gathered& operator=(const Gathered&) = delete;
    /// An opened message does not stay in memory.
    ~Gathered() {
        for (JSON& value : values)
            const SecretJSON gone(std::move(value));
    }

    std::array<JSON, CRes::fields().size()> values;
    std::array<int, CRes::fields().size()> counts{};

    void add(std::string_view name, JSON&& value) {
        for (std::size_t index = 0; index < CRes::fields().size(); ++index)
            if (CRes::fields()[index].name == name && ++counts[index] == 1) {
                values[index] = std::move(value);
                return;
            }
        const SecretJSON unused(std::move(value));
    }

    [[nodiscard]] std::vector<std::string> repeatedNames() const {
        std::vector<std::string> names;
        for (std::size_t index = 0; index < CRes::fields().size(); ++index)
            if (counts[index] > 1) names.emplace_back(CRes::fields()[index].name);
        return names;
    }
};

void gather(std::string_view json, Gathered& gathered) {
    const JSONTopLevel top = JSONSerialization::forEachMember(
        json, [&gathered](std::string_view name, JSON&& value) { gathered.add(name, std::move(value)); });
    if (top == JSONTopLevel::malformed)
        throw DecodingError(DecodingErrorCase::dataCorrupted, "The data is not valid JSON.");
    if (top == JSONTopLevel::otherValue)
        throw DecodingError(DecodingErrorCase::typeMismatch, "The top level is not a JSON object.");
}

} // namespace

ImageUrls ImageUrls::decode(const JSONField& field) {
    ImageUrls urls;
    urls.medium = field.member("medium").string();
    urls.high = field.member("high").string();
    urls.extraHigh = field.member("extraHigh").string();
    return urls;
}

std::string ImageUrls::json() const {
    JSONObjectWriter writer;
    writer.addString("medium", medium);
    writer.addString("high", high);
    writer.addString("extraHigh", extraHigh);
    return std::move(writer).finish();
}

CRes CRes::decode(std::string_view json) {
    Gathered gathered;
    gather(json, gathered);
    const std::string repeated = joined(gathered.repeatedNames());
    if (!repeated.empty()) {
        KORVANE_LOG("init(from:)", "Duplicate key: " + repeated);
        throw ParsingError(ParsingErrorCase::duplicateKeyException, Description{repeated});
    }
    CRes cres;
    for (std::size_t index = 0; index < fields().size(); ++index) {
        const Field& field = fields()[index];
        if (gathered.counts[index] > 0) {
            const JSONField value(gathered.values[index], field.name);
            std::visit([&](auto member) { read(value, cres.*member); }, field.member);
        } else if (field.isRequired()) {
            throw DecodingError(DecodingErrorCase::keyNotFound,
                                "\"" + std::string(field.name) + "\" is missing.", {std::string(field.name)});
        }
    }
    return cres;
}

} // namespace korvane
