#include "tools/acs/ScenarioAdvice.h"

#include "Sdk/Messages/MessageValues.h"
#include "Sdk/Transaction/TransactionStatus.h"
#include "tools/acs/ScreenCheck.h"

#include <algorithm>
#include <array>

namespace korvane::acs {

using tools::MessagePlace;

namespace {

using Keys = std::vector<std::string>;

Keys optionsOf(const CRes& screen) {
    Keys keys;
    for (const StringTable& choice : screen.challengeSelectInfo.value_or(std::vector<StringTable>()))
        for (const auto& [key, label] : choice)
            keys.push_back(key);
    return keys;
}

/// Whether a text is a list of keys, each at most once; in any order, since clients differ in that.
bool isListOf(std::string_view text, const Keys& keys) {
    for (std::size_t index = 0; index < keys.size(); ++index) {
        const std::string& key = keys[index];
        if (text == key) return true;
        if (!text.starts_with(key + ",")) continue;
        Keys others = keys;
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(index));
        if (isListOf(text.substr(key.size() + 1), others)) return true;
    }
    return false;
}

/// A text, or nothing of use where the value is none.
std::string textOf(const JSON& value) {
    return value.is_string() ? value.get<std::string>() : std::string();
}

bool canEnter(UiType type, const CRes& screen, const JSON& value) {
    const std::string text = textOf(value);
    const Keys keys = optionsOf(screen);
    switch (type) {
    case UiType::TEXT: return !text.empty();
    case UiType::SINGLE_SELECT: return std::find(keys.begin(), keys.end(), text) != keys.end();
    case UiType::MULTI_SELECT: return isListOf(text, keys);
    case UiType::OOB:
    case UiType::HTML_OTHER: return false;
    }
    return false;
}

bool canEnterNothing(UiType type, const CRes& /*screen*/, const JSON& value) {
    return type == UiType::MULTI_SELECT && value == rawValue(YesNoSelector::Y);
}

bool canSendForm(UiType type, const CRes& /*screen*/, const JSON& /*value*/) {
    return type == UiType::HTML_OTHER;
}

bool canGoOn(UiType type, const CRes& /*screen*/, const JSON& value) {
    return type == UiType::OOB && value == true;
}

bool canTrust(UiType type, const CRes& screen, const JSON& value) {
    return type != UiType::HTML_OTHER && screen.whitelistingInfoText &&
           fromRawValue<YesNoSelector>(textOf(value));
}

/// A member of the CReq, and whether a screen of a kind can make it have a value.
struct AnswerRow {
    std::string_view name;
    bool (*canGive)(UiType type, const CRes& screen, const JSON& value);
};

constexpr std::array<AnswerRow, 5> kAnswers{{
    {"challengeDataEntry", canEnter},
    {"challengeNoEntry", canEnterNothing},
    {"challengeHTMLDataEntry", canSendForm},
    {"oobContinue", canGoOn},
    {"whitelistingDataEntry", canTrust},
}};

/// The screen as it is shown first, and as it is after a wrong answer.
using Variants = std::array<CRes, 2>;

bool canGive(const AnswerRow& row, const Variants& variants, const JSON& value) {
    return std::any_of(variants.begin(), variants.end(), [&](const CRes& screen) {
        const auto type = fromRawValue<UiType>(screen.acsUiType.value_or(std::string()));
        // The kind that is unknown has a warning of its own.
        return !type || row.canGive(*type, screen, value);
    });
}

void adviseOnAnswers(const CheckedText& text, const CheckedValue& accepts, const Variants& variants) {
    for (const AnswerRow& row : kAnswers)
        accepts.readIfPresent(row.name, [&](const CheckedValue& member) {
            for (const CheckedValue& value : member.elements())
                if (!text.hasFaultAt(value.path()) && !canGive(row, variants, value.json()))
                    value.warn("is no answer that this screen can give.");
        });
}

} // namespace

void adviseOnStep(CheckedText& text, const CheckedValue& value, const Step& step, MessagePlace place) {
    const std::string screenPath = memberPath(value.path(), "screen");
    JSON again = step.screen;
    again.update(step.retry);
    const Variants variants{tools::decodeChecked(text, screenPath, messageOf(step.screen)),
                            tools::decodeChecked(text, screenPath, messageOf(again))};
    const std::size_t before = text.remarks().size();
    tools::judgeMessage(text, Remark::Kind::warning, screenPath, variants[0], place);
    const bool isScreenGood = text.remarks().size() == before;
    if (isScreenGood && !step.retry.empty())
        tools::judgeMessage(text, Remark::Kind::warning, memberPath(value.path(), "retry"), variants[1],
                            MessagePlace::anywhere);
    value.readIfPresent("accepts",
                        [&](const CheckedValue& accepts) { adviseOnAnswers(text, accepts, variants); });
    const bool passesAlways = step.accepts.empty() && step.passesFrom == 1;
    const auto retry = value.memberIfPresent("retry");
    if (retry && (passesAlways || step.attempts == 1))
        retry->warn(passesAlways ? "is never shown: without \"accepts\" every answer passes."
                                 : "is never shown: \"attempts\" is 1.");
}

void adviseOnStatus(const CheckedValue& status) {
    if (!fromRawValue<TransactionStatus>(status.string()))
        status.warn("is no status that the library knows; it ends the challenge with a runtime error.");
}

} // namespace korvane::acs
