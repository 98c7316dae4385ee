#include "Sdk/Messages/CReq.h"

namespace korvane {

namespace {

template <class Enumeration>
void addIfPresent(JSONObjectWriter& writer, std::string_view name, const std::optional<Enumeration>& value) {
    if (value) writer.addString(name, rawValue(*value));
}

template <class Text>
void addTextIfPresent(JSONObjectWriter& writer, std::string_view name, const std::optional<Text>& value) {
    if (value) writer.addString(name, *value);
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

std::optional<std::string> stringIfPresent(const JSONField& object, std::string_view name) {
    const auto field = object.memberIfPresent(name);
    return field ? std::optional(field->string()) : std::nullopt;
}

template <class Enumeration>
std::optional<Enumeration> caseIfPresent(const JSONField& object, std::string_view name) {
    const auto text = stringIfPresent(object, name);
    if (!text) return std::nullopt;
    const auto value = fromRawValue<Enumeration>(*text);
    if (!value)
        throw DecodingError(DecodingErrorCase::dataCorrupted,
                            "\"" + std::string(name) + "\" has an unknown value.", {std::string(name)});
    return value;
}

std::optional<std::vector<MessageExtensionAttribute>> extensionsIfPresent(const JSONField& object) {
    const auto field = object.memberIfPresent("messageExtension");
    if (!field) return std::nullopt;
    std::vector<MessageExtensionAttribute> extensions;
    for (const JSONField& element : field->elements())
        extensions.push_back(MessageExtensionAttribute::decode(element));
    return extensions;
}

} // namespace

SecretString CReq::jsonString() const {
    JSONObjectWriter writer(longestLength(*this));
    addTextIfPresent(writer, "threeDSRequestorAppURL", threeDSRequestorAppURL);
    writer.addString("threeDSServerTransID", threeDSServerTransID);
    writer.addString("acsTransID", acsTransID);
    addIfPresent(writer, "challengeCancel", challengeCancel);
    addTextIfPresent(writer, "challengeDataEntry", challengeDataEntry);
    addTextIfPresent(writer, "challengeHTMLDataEntry", challengeHTMLDataEntry);
    addIfPresent(writer, "challengeNoEntry", challengeNoEntry);
    addIfPresent(writer, "challengeWindowSize", challengeWindowSize);
    if (messageExtension) writer.addJSON("messageExtension", jsonOf(*messageExtension));
    writer.addString("messageType", messageType);
    writer.addString("messageVersion", messageVersion);
    if (oobContinue) writer.addBoolean("oobContinue", *oobContinue);
    addIfPresent(writer, "resendChallenge", resendChallenge);
    writer.addString("sdkTransID", sdkTransID);
    writer.addString("sdkCounterStoA", sdkCounterStoA);
    addIfPresent(writer, "whitelistingDataEntry", whitelistingDataEntry);
    return std::move(writer).finish();
}

CReq CReq::decode(ByteView json) {
    const JSON value = decodeObject(asText(json));
    const JSONField object(value);
    CReq creq;
    creq.threeDSRequestorAppURL = stringIfPresent(object, "threeDSRequestorAppURL");
    creq.threeDSServerTransID = object.member("threeDSServerTransID").string();
    creq.acsTransID = object.member("acsTransID").string();
    creq.challengeCancel = caseIfPresent<ChallengeCancelationInd>(object, "challengeCancel");
    creq.challengeDataEntry = stringIfPresent(object, "challengeDataEntry");
    creq.challengeHTMLDataEntry = stringIfPresent(object, "challengeHTMLDataEntry");
    creq.challengeNoEntry = caseIfPresent<YesNoSelector>(object, "challengeNoEntry");
    creq.challengeWindowSize = caseIfPresent<ChallengeWindowSize>(object, "challengeWindowSize");
    creq.messageExtension = extensionsIfPresent(object);
    creq.messageType = object.member("messageType").string();
    creq.messageVersion = object.member("messageVersion").string();
    if (const auto field = object.memberIfPresent("oobContinue")) creq.oobContinue = field->boolean();
    creq.resendChallenge = caseIfPresent<YesNoSelector>(object, "resendChallenge");
    creq.sdkTransID = object.member("sdkTransID").string();
    creq.sdkCounterStoA = object.member("sdkCounterStoA").string();
    creq.whitelistingDataEntry = caseIfPresent<YesNoSelector>(object, "whitelistingDataEntry");
    return creq;
}

std::string counterText(int sdkToAcsCounter) {
    return "00" + std::to_string(sdkToAcsCounter);
}

} // namespace korvane
