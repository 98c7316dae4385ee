#include "Sdk/Messages/Validator.h"

#include "Platform/Text.h"
#include "Sdk/Messages/MessageValues.h"
#include "Sdk/Messages/UiUtils.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <span>
#include <vector>

namespace korvane {

namespace {

using Names = std::vector<std::string>;
using OptionalText = std::optional<std::string>;

/// The response and what is known of it.
struct Judged {
    const ValidationContainer& container;
    const CRes& cres;
    std::optional<UiType> uiType;
    bool isFinal;

    [[nodiscard]] bool isOneOf(std::initializer_list<UiType> types) const {
        return uiType && std::find(types.begin(), types.end(), *uiType) != types.end();
    }
};

/// One rule: adds the names that it finds at fault.
using Rule = void (*)(const Judged&, Names&);

bool isMissing(const OptionalText& text) {
    return !text || text->empty();
}

bool isPresentAndEmpty(const OptionalText& text) {
    return text && text->empty();
}

Names findings(const Judged& judged, std::span<const Rule> rules) {
    Names names;
    for (const Rule rule : rules)
        rule(judged, names);
    return names;
}

std::optional<KorvaneError> errorOf(ProtocolErrorCode code, const Names& names) {
    if (names.empty()) return std::nullopt;
    return KorvaneError::withDetails(code, joined(names));
}

/// A required text that is empty.
template <std::string CRes::*Field>
void requireText(const Judged& judged, Names& names, const char* name) {
    if ((judged.cres.*Field).empty()) names.emplace_back(name);
}

/// Of a screen that needs its button, its label and some texts: without the label, the label alone is told.
void requireScreenTexts(Names& names, const OptionalText& button, const char* buttonName,
                        std::initializer_list<std::pair<const char*, const OptionalText*>> texts) {
    if (isMissing(button)) {
        names.emplace_back(buttonName);
        return;
    }
    for (const auto& [name, text] : texts)
        if (isMissing(*text)) names.emplace_back(name);
}

constexpr std::array kRequiredAlways{
    Rule([](const Judged& j, Names& n) {
        requireText<&CRes::threeDSServerTransID>(j, n, "threeDSServerTransID");
    }),
    Rule([](const Judged& j, Names& n) { requireText<&CRes::acsTransID>(j, n, "acsTransID"); }),
    Rule([](const Judged& j, Names& n) { requireText<&CRes::sdkTransID>(j, n, "sdkTransID"); }),
    Rule([](const Judged& j, Names& n) { requireText<&CRes::acsCounterAtoS>(j, n, "acsCounterAtoS"); }),
    Rule([](const Judged& j, Names& n) {
        requireText<&CRes::challengeCompletionInd>(j, n, "challengeCompletionInd");
    }),
    Rule([](const Judged& j, Names& n) { requireText<&CRes::messageVersion>(j, n, "messageVersion"); }),
};

constexpr std::array kRequiredOfFinal{
    Rule([](const Judged& j, Names& n) {
        if (isMissing(j.cres.transStatus)) n.emplace_back("transStatus");
    }),
};

constexpr std::array kRequiredOfScreens{
    Rule([](const Judged& j, Names& n) {
        if (j.container.initCRes && !j.cres.acsUiType) n.emplace_back("acsUiType");
    }),
    Rule([](const Judged& j, Names& n) {
        if (isPresentAndEmpty(j.cres.acsUiType)) n.emplace_back("acsUiType");
    }),
    Rule([](const Judged& j, Names& n) {
        if (!j.cres.acsUiType && !j.cres.transStatus) n.insert(n.end(), {"acsUiType", "transStatus"});
    }),
    Rule([](const Judged& j, Names& n) {
        if (isPresentAndEmpty(j.cres.transStatus)) n.emplace_back("transStatus");
    }),
    Rule([](const Judged& j, Names& n) {
        if (j.isOneOf({UiType::HTML_OTHER}) && isMissing(j.cres.acsHTML)) n.emplace_back("acsHTML");
    }),
    Rule([](const Judged& j, Names& n) {
        if (j.isOneOf({UiType::HTML_OTHER}) && isPresentAndEmpty(j.cres.acsHTMLRefresh))
            n.emplace_back("acsHTMLRefresh");
    }),
    Rule([](const Judged& j, Names& n) {
        if (j.isOneOf({UiType::OOB}))
            requireScreenTexts(n, j.cres.oobContinueLabel, "oobContinueLabel",
                               {{"challengeInfoHeader", &j.cres.challengeInfoHeader},
                                {"challengeInfoText", &j.cres.challengeInfoText}});
    }),
    Rule([](const Judged& j, Names& n) {
        if (j.isOneOf({UiType::TEXT, UiType::SINGLE_SELECT, UiType::MULTI_SELECT}))
            requireScreenTexts(n, j.cres.submitAuthenticationLabel, "submitAuthenticationLabel",
                               {{"challengeInfoHeader", &j.cres.challengeInfoHeader},
                                {"challengeInfoLabel", &j.cres.challengeInfoLabel},
                                {"challengeInfoText", &j.cres.challengeInfoText}});
    }),
    Rule([](const Judged& j, Names& n) {
        const bool isEmpty = !j.cres.challengeSelectInfo || j.cres.challengeSelectInfo->empty();
        if (j.isOneOf({UiType::SINGLE_SELECT, UiType::MULTI_SELECT}) && isEmpty)
            n.emplace_back("challengeSelectInfo");
    }),
};

constexpr std::size_t kLongestHtml = 100000;
constexpr std::size_t kLongestExtensionData = 8059;
constexpr std::size_t kLongestExtensionText = 64;
constexpr std::size_t kMostExtensions = 10;

/// A text of 1 to `Longest` characters.
template <OptionalText CRes::*Field, std::size_t Longest>
void limitText(const Judged& judged, Names& names, const char* name) {
    const OptionalText& text = judged.cres.*Field;
    if (text && (text->empty() || characterCount(*text) > Longest)) names.emplace_back(name);
}

template <OptionalText CRes::*Field>
void limitHtml(const Judged& judged, Names& names, const char* name) {
    const OptionalText& text = judged.cres.*Field;
    if (text && (!validateBase64url(*text) || characterCount(*text) > kLongestHtml)) names.emplace_back(name);
}

/// 8-4-4-4-12 hexadecimal digits of either case (RFC 4122 section 3).
bool isCanonicalUUID(std::string_view text) {
    constexpr std::string_view kShape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
    return text.size() == kShape.size() &&
           std::equal(text.begin(), text.end(), kShape.begin(), [kDigits](char character, char place) {
               return place == '-' ? character == '-' : kDigits.find(character) != std::string_view::npos;
           });
}

void limitExtensions(const Judged& judged, Names& names) {
    if (!judged.cres.messageExtension) return;
    std::set<std::string> found;
    for (const MessageExtensionAttribute& extension : *judged.cres.messageExtension) {
        if (characterCount(jsonOf(extension.data)) > kLongestExtensionData)
            found.insert("messageExtension.data");
        if (characterCount(extension.id) > kLongestExtensionText) found.insert("messageExtension.id");
        if (characterCount(extension.name) > kLongestExtensionText) found.insert("messageExtension.name");
    }
    if (!found.empty()) names.push_back(joined({found.begin(), found.end()}));
}

void refuseStatusAtFirst(const Judged& judged, Names& names) {
    if (judged.container.initCRes && judged.cres.transStatus) names.emplace_back("transStatus");
}

void checkVersion(const Judged& judged, Names& names) {
    if (judged.cres.messageVersion != judged.container.messageVersion) names.emplace_back("messageVersion");
}

void checkServerTransaction(const Judged& judged, Names& names) {
    if (!isCanonicalUUID(judged.cres.threeDSServerTransID)) names.emplace_back("threeDSServerTransID");
}

void checkAcsTransaction(const Judged& judged, Names& names) {
    if (!isCanonicalUUID(judged.cres.acsTransID)) names.emplace_back("acsTransID");
}

void checkCompletion(const Judged& judged, Names& names) {
    if (!fromRawValue<YesNoSelector>(judged.cres.challengeCompletionInd))
        names.emplace_back("challengeCompletionInd");
}

constexpr std::array<Rule, 6> kValuesOfFinal{refuseStatusAtFirst,    limitExtensions,     checkVersion,
                                             checkServerTransaction, checkAcsTransaction, checkCompletion};

constexpr std::array kValuesOfScreens{
    Rule([](const Judged& j, Names& n) { limitHtml<&CRes::acsHTMLRefresh>(j, n, "acsHTMLRefresh"); }),
    Rule([](const Judged& j, Names& n) {
        if (j.cres.acsUiType && !j.uiType) n.emplace_back("acsUiType");
    }),
    Rule([](const Judged& j, Names& n) {
        limitText<&CRes::challengeInfoHeader, 45>(j, n, "challengeInfoHeader");
    }),
    Rule([](const Judged& j, Names& n) { limitText<&CRes::oobAppURL, 256>(j, n, "oobAppURL"); }),
    Rule([](const Judged& j, Names& n) { limitText<&CRes::oobAppLabel, 256>(j, n, "oobAppLabel"); }),
    Rule([](const Judged& j, Names& n) {
        limitText<&CRes::resendInformationLabel, 45>(j, n, "resendInformationLabel");
    }),
    Rule([](const Judged& j, Names& n) { limitHtml<&CRes::acsHTML>(j, n, "acsHTML"); }),
    Rule([](const Judged& j, Names& n) { limitText<&CRes::oobContinueLabel, 45>(j, n, "oobContinueLabel"); }),
    Rule([](const Judged& j, Names& n) {
        limitText<&CRes::submitAuthenticationLabel, 45>(j, n, "submitAuthenticationLabel");
    }),
    Rule([](const Judged& j, Names& n) {
        limitText<&CRes::whitelistingInfoText, 64>(j, n, "whitelistingInfoText");
    }),
    Rule([](const Judged& j, Names& n) {
        if (j.cres.messageExtension && j.cres.messageExtension->size() > kMostExtensions)
            n.emplace_back("messageExtension");
    }),
    Rule(refuseStatusAtFirst),
    Rule(limitExtensions),
    Rule(checkVersion),
    Rule(checkServerTransaction),
    Rule(checkAcsTransaction),
    Rule([](const Judged& j, Names& n) {
        const OptionalText& indicator = j.cres.challengeInfoTextIndicator;
        if (indicator && !fromRawValue<YesNoSelector>(*indicator))
            n.emplace_back("challengeInfoTextIndicator");
    }),
    Rule(checkCompletion),
};

/// A signed decimal number of the machine's word, with either sign or none.
std::optional<std::int64_t> signedDecimal(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    std::int64_t number = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    return fault == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// A counter that is no number is no finding: the rule is passed over.
std::optional<KorvaneError> judgeCounter(const Judged& judged) {
    const auto number = signedDecimal(judged.cres.acsCounterAtoS);
    if (!number || *number == judged.container.counter) return std::nullopt;
    KorvaneError error = KorvaneError::withDetails(ProtocolErrorCode::notDecrypted, "acsCounterAtoS");
    error.description = "acsCounterAtoS do not match with sdkCounterStoA.";
    return error;
}

std::optional<KorvaneError> judgeRequiredFields(const Judged& judged) {
    Names names = findings(judged, kRequiredAlways);
    const std::span<const Rule> rest =
        judged.isFinal ? std::span<const Rule>(kRequiredOfFinal) : std::span<const Rule>(kRequiredOfScreens);
    const Names further = findings(judged, rest);
    names.insert(names.end(), further.begin(), further.end());
    return errorOf(ProtocolErrorCode::elementMissing, names);
}

std::optional<KorvaneError> judgeTransaction(const Judged& judged) {
    const ChallengeParameters& expected = judged.container.challengeParameters;
    const bool isOurs = expected.tdsServerTransactionId == judged.cres.threeDSServerTransID &&
                        expected.acsTransactionId == judged.cres.acsTransID &&
                        judged.container.sdkTransactionID == judged.cres.sdkTransID;
    return isOurs ? std::nullopt
                  : std::optional(KorvaneError::getErrorByCode(ProtocolErrorCode::transactionUnknown));
}

std::optional<KorvaneError> judgeValues(const Judged& judged) {
    return errorOf(ProtocolErrorCode::elementInvalid,
                   judged.isFinal ? findings(judged, kValuesOfFinal) : findings(judged, kValuesOfScreens));
}

std::optional<KorvaneError> judgeExtensions(const Judged& judged) {
    Names ids;
    if (judged.cres.messageExtension)
        for (const MessageExtensionAttribute& extension : *judged.cres.messageExtension)
            if (extension.criticalityIndicator) ids.push_back(extension.id);
    return errorOf(ProtocolErrorCode::criticalExtension, ids);
}

} // namespace

std::optional<KorvaneError> Validator::validateCRes(const ValidationContainer& container) {
    const CRes& cres = container.cRes;
    const Judged judged{container, cres,
                        cres.acsUiType ? fromRawValue<UiType>(*cres.acsUiType) : std::nullopt,
                        fromRawValue<YesNoSelector>(cres.challengeCompletionInd) == YesNoSelector::Y};
    constexpr std::array kStages{judgeCounter, judgeRequiredFields, judgeTransaction, judgeValues,
                                 judgeExtensions};
    for (const auto stage : kStages)
        if (auto error = stage(judged)) return error;
    return std::nullopt;
}

} // namespace korvane
