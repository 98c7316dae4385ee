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

/// A field of the record: its name, whether it must be there, and how it is read.
struct FieldRow {
    std::string_view name;
    bool isRequired;
    void (*read)(const JSONField&, CRes&);
};

template <class Value>
constexpr bool isOptional(std::optional<Value> CRes::*) {
    return true;
}

constexpr bool isOptional(std::string CRes::*) {
    return false;
}

template <auto Member>
constexpr FieldRow row(std::string_view name) {
    return {name, !isOptional(Member), [](const JSONField& field, CRes& cres) { read(field, cres.*Member); }};
}

/// In the order in which the fields are read, which decides what failure is told first.
constexpr std::array<FieldRow, 30> kFields{
    row<&CRes::threeDSServerTransID>("threeDSServerTransID"),
    row<&CRes::acsCounterAtoS>("acsCounterAtoS"),
    row<&CRes::acsTransID>("acsTransID"),
    row<&CRes::acsHTML>("acsHTML"),
    row<&CRes::acsHTMLRefresh>("acsHTMLRefresh"),
    row<&CRes::acsUiType>("acsUiType"),
    row<&CRes::challengeCompletionInd>("challengeCompletionInd"),
    row<&CRes::challengeInfoHeader>("challengeInfoHeader"),
    row<&CRes::challengeInfoLabel>("challengeInfoLabel"),
    row<&CRes::challengeInfoText>("challengeInfoText"),
    row<&CRes::challengeInfoTextIndicator>("challengeInfoTextIndicator"),
    row<&CRes::challengeSelectInfo>("challengeSelectInfo"),
    row<&CRes::expandInfoLabel>("expandInfoLabel"),
    row<&CRes::expandInfoText>("expandInfoText"),
    row<&CRes::issuerImage>("issuerImage"),
    row<&CRes::messageExtension>("messageExtension"),
    row<&CRes::messageType>("messageType"),
    row<&CRes::messageVersion>("messageVersion"),
    row<&CRes::oobAppURL>("oobAppURL"),
    row<&CRes::oobAppLabel>("oobAppLabel"),
    row<&CRes::oobContinueLabel>("oobContinueLabel"),
    row<&CRes::psImage>("psImage"),
    row<&CRes::resendInformationLabel>("resendInformationLabel"),
    row<&CRes::sdkTransID>("sdkTransID"),
    row<&CRes::submitAuthenticationLabel>("submitAuthenticationLabel"),
    row<&CRes::whitelistingInfoText>("whitelistingInfoText"),
    row<&CRes::whyInfoLabel>("whyInfoLabel"),
    row<&CRes::whyInfoText>("whyInfoText"),
    row<&CRes::transStatus>("transStatus"),
    row<&CRes::challengeAddInfo>("challengeAddInfo"),
};

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

    std::array<JSON, kFields.size()> values;
    std::array<int, kFields.size()> counts{};

    void add(std::string_view name, JSON&& value) {
        for (std::size_t index = 0; index < kFields.size(); ++index)
            if (kFields[index].name == name && ++counts[index] == 1) {
                values[index] = std::move(value);
                return;
            }
        const SecretJSON unused(std::move(value));
    }

    [[nodiscard]] std::vector<std::string> repeatedNames() const {
        std::vector<std::string> names;
        for (std::size_t index = 0; index < kFields.size(); ++index)
            if (counts[index] > 1) names.emplace_back(kFields[index].name);
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
    for (std::size_t index = 0; index < kFields.size(); ++index) {
        const FieldRow& row = kFields[index];
        if (gathered.counts[index] > 0)
            row.read(JSONField(gathered.values[index], row.name), cres);
        else if (row.isRequired)
            throw DecodingError(DecodingErrorCase::keyNotFound,
                                "\"" + std::string(row.name) + "\" is missing.", {std::string(row.name)});
    }
    return cres;
}

} // namespace korvane
