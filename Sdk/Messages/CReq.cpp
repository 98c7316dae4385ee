#include "Sdk/Messages/CReq.h"

namespace korvane {

namespace {

/// The fields with their names, in the order in which they are written and read.
template <class Request, class Visit>
void forEachField(Request& request, Visit visit) {
    visit("threeDSRequestorAppURL", request.threeDSRequestorAppURL);
    visit("threeDSServerTransID", request.threeDSServerTransID);
    visit("acsTransID", request.acsTransID);
    visit("challengeCancel", request.challengeCancel);
    visit("challengeDataEntry", request.challengeDataEntry);
    visit("challengeHTMLDataEntry", request.challengeHTMLDataEntry);
    visit("challengeNoEntry", request.challengeNoEntry);
    visit("challengeWindowSize", request.challengeWindowSize);
    visit("messageExtension", request.messageExtension);
    visit("messageType", request.messageType);
    visit("messageVersion", request.messageVersion);
    visit("oobContinue", request.oobContinue);
    visit("resendChallenge", request.resendChallenge);
    visit("sdkTransID", request.sdkTransID);
    visit("sdkCounterStoA", request.sdkCounterStoA);
    visit("whitelistingDataEntry", request.whitelistingDataEntry);
}

void add(JSONObjectWriter& writer, std::string_view name, const std::string& text) {
    writer.addString(name, text);
}

void add(JSONObjectWriter& writer, std::string_view name, bool flag) {
    writer.addBoolean(name, flag);
}

void add(JSONObjectWriter& writer, std::string_view name,
         const std::vector<MessageExtensionAttribute>& extensions) {
    writer.addJSON(name, jsonOf(extensions));
}

template <HasRawValues Enumeration>
void add(JSONObjectWriter& writer, std::string_view name, Enumeration value) {
    writer.addString(name, rawValue(value));
}

template <class Value>
void add(JSONObjectWriter& writer, std::string_view name, const std::optional<Value>& value) {
    if (value) add(writer, name, *value);
}

/// Room enough to write the request without a buffer left behind: a character takes six at most.
std::size_t longestLength(const CReq& cReq) {
    constexpr std::size_t kNamesAndValuesOfOurs = 1024;
    constexpr std::size_t kLongestEscape = 6;
    std::size_t length = 0;
    for (const auto* text : {&cReq.challengeDataEntry, &cReq.challengeHTMLDataEntry})
        length += *text ? (*text)->text().size() : 0;
    length += cReq.threeDSRequestorAppURL.value_or("").size() + cReq.threeDSServerTransID.size() +
              cReq.acsTransID.size();
    return kNamesAndValuesOfOurs + kLongestEscape * length;
}

void read(const JSONField& field, std::string& text) {
    text = field.string();
}

void read(const JSONField& field, SecretString& text) {
    text = SecretString(field.string());
}

void read(const JSONField& field, bool& flag) {
    flag = field.boolean();
}

void read(const JSONField& field, std::vector<MessageExtensionAttribute>& extensions) {
    for (const JSONField& element : field.elements())
        extensions.push_back(MessageExtensionAttribute::decode(element));
}

template <class Value>
void take(const JSONField& object, std::string_view name, Value& value) {
    read(object.member(name), value);
}

template <class Value>
void take(const JSONField& object, std::string_view name, std::optional<Value>& value) {
    if (const auto field = object.memberIfPresent(name)) read(*field, value.emplace());
}

template <HasRawValues Enumeration>
void take(const JSONField& object, std::string_view name, std::optional<Enumeration>& value) {
    const auto field = object.memberIfPresent(name);
    if (!field) return;
    value = fromRawValue<Enumeration>(field->string());
    if (!value)
        throw DecodingError(DecodingErrorCase::dataCorrupted,
                            "\"" + std::string(name) + "\" has an unknown value.", {std::string(name)});
}

} // namespace

SecretString CReq::jsonString() const {
    JSONObjectWriter writer(longestLength(*this));
    forEachField(*this, [&writer](std::string_view name, const auto& value) { add(writer, name, value); });
    return std::move(writer).finish();
}

CReq CReq::decode(ByteView json) {
    const JSON value = decodeObject(asText(json));
    const JSONField object(value);
    CReq creq;
    forEachField(creq, [&object](std::string_view name, auto& field) { take(object, name, field); });
    return creq;
}

std::string counterText(int sdkToAcsCounter) {
    return "00" + std::to_string(sdkToAcsCounter);
}

} // namespace korvane
