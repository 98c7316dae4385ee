#include "tools/acs/Scenario.h"

#include "Sdk/Messages/CRes.h"
#include "tools/acs/ScenarioAdvice.h"
#include "tools/acs/ScreenCheck.h"
#include "tools/common/CResCheck.h"

#include <algorithm>
#include <array>

namespace korvane::acs {

using tools::MessagePlace;

namespace {

constexpr std::array<std::string_view, 7> kScenarioMembers{
    "description", "signature", "threeDSRequestorAppURL", "authentication", "steps", "success", "failure"};
constexpr std::array<std::string_view, 6> kStepMembers{"screen",   "retry",      "accepts",
                                                       "attempts", "passesFrom", "fault"};
constexpr std::array<std::string_view, 2> kEndingMembers{"transStatus", "fault"};
constexpr std::array<std::string_view, 1> kAuthenticationMembers{"fault"};

/// Members of a CReq that the cardholder makes.
constexpr std::array<std::string_view, 5> kAnswerMembers{"challengeDataEntry", "challengeHTMLDataEntry",
                                                         "challengeNoEntry", "oobContinue",
                                                         "whitelistingDataEntry"};

constexpr std::array<SignatureAlgorithm, 3> kSignatures{SignatureAlgorithm::PS256, SignatureAlgorithm::RS256,
                                                        SignatureAlgorithm::ES256};

constexpr std::size_t kMostAttempts = 1000;
constexpr double kMostSeconds = 600;

JSON readScreen(CheckedText& text, const CheckedValue& value) {
    value.requireKnown(screenMembers());
    static_cast<void>(tools::decodeChecked(text, value.path(), messageOf(value.object())));
    return value.json();
}

void checkParameter(const CheckedValue& value, const FaultParameter& parameter) {
    switch (parameter.type) {
    case FaultParameter::Type::any: return;
    case FaultParameter::Type::text: static_cast<void>(value.string()); break;
    case FaultParameter::Type::seconds: static_cast<void>(value.amount(kMostSeconds)); return;
    case FaultParameter::Type::object: static_cast<void>(value.object()); return;
    }
    const auto isNamed = [&value](const CRes::Field& field) { return field.name == value.string(); };
    if (parameter.name == "member" && std::ranges::none_of(CRes::fields(), isNamed))
        value.fail("names no member of a CRes.");
}

std::string faultsOf(Place place) {
    std::string names;
    for (const FaultRow& row : allFaults())
        if (placeOf(row) == place) names += (names.empty() ? "" : ", ") + std::string(row.name);
    return names;
}

std::optional<Fault> readFault(CheckedText& text, const CheckedValue& owner, Place place) {
    const auto value = owner.memberIfPresent("fault");
    if (!value) return std::nullopt;
    const CheckedValue name = value->member("name");
    const FaultRow* row = findFault(name.string());
    if (!row || placeOf(*row) != place)
        name.fail("names no fault of this place; there are " + faultsOf(place) + ".");
    std::vector<std::string_view> known{"name"};
    for (const FaultParameter& parameter : row->parameters) {
        known.push_back(parameter.name);
        if (parameter.presence == FaultParameter::Presence::required ||
            value->memberIfPresent(parameter.name))
            text.attempt([&] { checkParameter(value->member(parameter.name), parameter); });
    }
    value->requireKnown(known);
    return Fault{row, value->json()};
}

void checkAnswer(const CheckedValue& member) {
    const bool isFlag = member.path().ends_with(".oobContinue");
    if (member.elements().empty()) member.fail("must list a value that passes.");
    for (const CheckedValue& element : member.elements())
        if (isFlag ? !element.json().is_boolean() : !element.json().is_string())
            element.fault(isFlag ? "must be true or false." : "must be a string.");
}

JSON readAccepts(const CheckedText& text, const CheckedValue& value) {
    value.requireKnown(kAnswerMembers);
    for (const CheckedValue& member : value.members())
        text.attempt([&] { checkAnswer(member); });
    return value.json();
}

Step readStep(CheckedText& text, const CheckedValue& value, MessagePlace place) {
    value.requireKnown(kStepMembers);
    Step step;
    text.attempt([&] { step.screen = readScreen(text, value.member("screen")); });
    value.readIfPresent("retry", [&](const CheckedValue& retry) { step.retry = readScreen(text, retry); });
    value.readIfPresent("accepts",
                        [&](const CheckedValue& accepts) { step.accepts = readAccepts(text, accepts); });
    value.readIfPresent("attempts",
                        [&](const CheckedValue& attempts) { step.attempts = attempts.count(kMostAttempts); });
    value.readIfPresent("passesFrom",
                        [&](const CheckedValue& from) { step.passesFrom = from.count(step.attempts); });
    text.attempt([&] { step.fault = readFault(text, value, Place::step); });
    adviseOnStep(text, value, step, place);
    return step;
}

Ending readEnding(CheckedText& text, const CheckedValue& value, Ending ending) {
    value.requireKnown(kEndingMembers);
    value.readIfPresent("transStatus", [&](const CheckedValue& status) {
        ending.transStatus = status.string();
        adviseOnStatus(status);
    });
    ending.fault = readFault(text, value, Place::step);
    return ending;
}

SignatureAlgorithm readSignature(const CheckedValue& value) {
    const auto algorithm = fromRawValue<SignatureAlgorithm>(value.string());
    const bool isKnown =
        algorithm && std::find(kSignatures.begin(), kSignatures.end(), *algorithm) != kSignatures.end();
    if (!isKnown) value.fail("must be PS256, RS256 or ES256.");
    return *algorithm;
}

} // namespace

Scenario readScenario(CheckedText& text) {
    const CheckedValue root = text.root();
    Scenario scenario;
    root.requireKnown(kScenarioMembers);
    root.readIfPresent("description",
                       [&](const CheckedValue& value) { scenario.description = value.string(); });
    root.readIfPresent("signature",
                       [&](const CheckedValue& value) { scenario.signature = readSignature(value); });
    root.readIfPresent("threeDSRequestorAppURL",
                       [&](const CheckedValue& value) { scenario.threeDSRequestorAppURL = value.string(); });
    root.readIfPresent("authentication", [&](const CheckedValue& value) {
        value.requireKnown(kAuthenticationMembers);
        scenario.authenticationFault = readFault(text, value, Place::authentication);
    });
    text.attempt([&] {
        for (const CheckedValue& step : root.member("steps").elements())
            text.attempt([&] {
                const bool isFirst = step.path() == elementPath("steps", 0);
                const MessagePlace place = isFirst ? MessagePlace::first : MessagePlace::anywhere;
                scenario.steps.push_back(readStep(text, step, place));
            });
    });
    root.readIfPresent("success", [&](const CheckedValue& value) {
        scenario.success = readEnding(text, value, scenario.success);
    });
    root.readIfPresent("failure", [&](const CheckedValue& value) {
        scenario.failure = readEnding(text, value, scenario.failure);
    });
    return scenario;
}

Scenario readScenario(std::string_view content, const std::string& name) {
    CheckedText text(content, name);
    Scenario scenario;
    text.attempt([&] { scenario = readScenario(text); });
    text.requireNoFault();
    return scenario;
}

} // namespace korvane::acs
