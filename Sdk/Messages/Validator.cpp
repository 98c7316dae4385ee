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

template <class Value>
constexpr const CRes::Field& rowOf(Value CRes::*member) {
    return *std::ranges::find(CRes::fields(), CRes::Field::Member(member), &CRes::Field::member);
}

template <class Value>
void tell(Names& names, Value CRes::*member) {
    names.emplace_back(rowOf(member).name);
}

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

template <std::string CRes::*Member>
void requireText(const Judged& judged, Names& names) {
    if ((judged.cres.*Member).empty()) tell(names, Member);
}

void requireStatus(const Judged& judged, Names& names) {
    if (isMissing(judged.cres.transStatus)) tell(names, &CRes::transStatus);
}

void requireTypeAtFirst(const Judged& judged, Names& names) {
    if (judged.container.initCRes && !judged.cres.acsUiType) tell(names, &CRes::acsUiType);
}

template <OptionalText CRes::*Member>
void refuseEmpty(const Judged& judged, Names& names) {
    if (isPresentAndEmpty(judged.cres.*Member)) tell(names, Member);
}

void requireTypeOrStatus(const Judged& judged, Names& names) {
    if (judged.cres.acsUiType || judged.cres.transStatus) return;
    tell(names, &CRes::acsUiType);
    tell(names, &CRes::transStatus);
}

void requireHtml(const Judged& judged, Names& names) {
    if (judged.isOneOf({UiType::HTML_OTHER}) && isMissing(judged.cres.acsHTML)) tell(names, &CRes::acsHTML);
}

void refuseEmptyRefresh(const Judged& judged, Names& names) {
    if (judged.isOneOf({UiType::HTML_OTHER})) refuseEmpty<&CRes::acsHTMLRefresh>(judged, names);
}

/// Of a screen that needs its button, its label and some texts: without the label, the label alone is told.
void requireTexts(const CRes& cres, Names& names, OptionalText CRes::*button,
                  std::initializer_list<OptionalText CRes::*> texts) {
    if (isMissing(cres.*button)) return tell(names, button);
    for (const auto text : texts)
        if (isMissing(cres.*text)) tell(names, text);
}

void requireOobTexts(const Judged& judged, Names& names) {
    if (judged.isOneOf({UiType::OOB}))
        requireTexts(judged.cres, names, &CRes::oobContinueLabel,
                     {&CRes::challengeInfoHeader, &CRes::challengeInfoText});
}

void requireEntryTexts(const Judged& judged, Names& names) {
    if (judged.isOneOf({UiType::TEXT, UiType::SINGLE_SELECT, UiType::MULTI_SELECT}))
        requireTexts(judged.cres, names, &CRes::submitAuthenticationLabel,
                     {&CRes::challengeInfoHeader, &CRes::challengeInfoLabel, &CRes::challengeInfoText});
}

void requireChoices(const Judged& judged, Names& names) {
    const auto& choices = judged.cres.challengeSelectInfo;
    if (judged.isOneOf({UiType::SINGLE_SELECT, UiType::MULTI_SELECT}) && (!choices || choices->empty()))
        tell(names, &CRes::challengeSelectInfo);
}

constexpr std::array<Rule, 6> kRequiredAlways{
    requireText<&CRes::threeDSServerTransID>,
    requireText<&CRes::acsTransID>,
    requireText<&CRes::sdkTransID>,
    requireText<&CRes::acsCounterAtoS>,
    requireText<&CRes::challengeCompletionInd>,
    requireText<&CRes::messageVersion>,
};

constexpr std::array<Rule, 1> kRequiredOfFinal{requireStatus};

constexpr std::array<Rule, 9> kRequiredOfScreens{
    requireTypeAtFirst,  refuseEmpty<&CRes::acsUiType>,
    requireTypeOrStatus, refuseEmpty<&CRes::transStatus>,
    requireHtml,         refuseEmptyRefresh,
    requireOobTexts,     requireEntryTexts,
    requireChoices,
};

constexpr std::size_t kLongestExtensionData = 8059;
constexpr std::size_t kLongestExtensionText = 64;
constexpr std::size_t kMostExtensions = 10;

/// A text of one character to the most that its field may have.
template <OptionalText CRes::*Member>
void limitText(const Judged& judged, Names& names) {
    constexpr std::size_t kLongest = rowOf(Member).longest.value();
    const OptionalText& text = judged.cres.*Member;
    if (text && (text->empty() || characterCount(*text) > kLongest)) tell(names, Member);
}

template <OptionalText CRes::*Member>
void limitHtml(const Judged& judged, Names& names) {
    constexpr std::size_t kLongest = rowOf(Member).longest.value();
    const OptionalText& text = judged.cres.*Member;
    if (text && (!validateBase64url(*text) || characterCount(*text) > kLongest)) tell(names, Member);
}

void checkType(const Judged& judged, Names& names) {
    if (judged.cres.acsUiType && !judged.uiType) tell(names, &CRes::acsUiType);
}

void limitExtensionCount(const Judged& judged, Names& names) {
    const auto& extensions = judged.cres.messageExtension;
    if (extensions && extensions->size() > kMostExtensions) tell(names, &CRes::messageExtension);
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
    if (judged.container.initCRes && judged.cres.transStatus) tell(names, &CRes::transStatus);
}

void checkVersion(const Judged& judged, Names& names) {
    if (judged.cres.messageVersion != judged.container.messageVersion) tell(names, &CRes::messageVersion);
}

template <std::string CRes::*Member>
void checkUUID(const Judged& judged, Names& names) {
    if (!isCanonicalUUID(judged.cres.*Member)) tell(names, Member);
}

void checkCompletion(const Judged& judged, Names& names) {
    if (!fromRawValue<YesNoSelector>(judged.cres.challengeCompletionInd))
        tell(names, &CRes::challengeCompletionInd);
}

void checkTextIndicator(const Judged& judged, Names& names) {
    const OptionalText& indicator = judged.cres.challengeInfoTextIndicator;
    if (indicator && !fromRawValue<YesNoSelector>(*indicator)) tell(names, &CRes::challengeInfoTextIndicator);
}

constexpr std::array<Rule, 6> kValuesOfFinal{
    refuseStatusAtFirst,          limitExtensions, checkVersion, checkUUID<&CRes::threeDSServerTransID>,
    checkUUID<&CRes::acsTransID>, checkCompletion,
};

constexpr std::array<Rule, 18> kValuesOfScreens{
    limitHtml<&CRes::acsHTMLRefresh>,
    checkType,
    limitText<&CRes::challengeInfoHeader>,
    limitText<&CRes::oobAppURL>,
    limitText<&CRes::oobAppLabel>,
    limitText<&CRes::resendInformationLabel>,
    limitHtml<&CRes::acsHTML>,
    limitText<&CRes::oobContinueLabel>,
    limitText<&CRes::submitAuthenticationLabel>,
    limitText<&CRes::whitelistingInfoText>,
    limitExtensionCount,
    refuseStatusAtFirst,
    limitExtensions,
    checkVersion,
    checkUUID<&CRes::threeDSServerTransID>,
    checkUUID<&CRes::acsTransID>,
    checkTextIndicator,
    checkCompletion,
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
    return KorvaneError{static_cast<int>(ProtocolErrorCode::notDecrypted),
                        "acsCounterAtoS do not match with sdkCounterStoA.", "acsCounterAtoS"};
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
