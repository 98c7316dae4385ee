#include "tools/acs/Scenario.h"

#include "Crypt/DataExtensions.h"
#include "Sdk/Messages/CRes.h"
#include "tools/common/CheckedText.h"
#include "tools/common/InputFile.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace korvane::acs {

using tools::CheckedText;
using tools::CheckedValue;
using tools::elementPath;
using tools::memberPath;
using tools::Remark;

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

/// What every CRes has, the ACS sets itself; the rest is a screen's.
std::vector<std::string_view> screenMembers() {
    std::vector<std::string_view> names;
    for (const CRes::Field& field : CRes::fields())
        if (!field.isRequired()) names.push_back(field.name);
    return names;
}

constexpr std::array<SignatureAlgorithm, 3> kSignatures{SignatureAlgorithm::PS256, SignatureAlgorithm::RS256,
                                                        SignatureAlgorithm::ES256};

constexpr std::size_t kMostAttempts = 1000;
constexpr double kMostSeconds = 600;

/// The index that a step of a decoder's path names; a member may bear a name of that kind too.
std::optional<std::size_t> indexOf(std::string_view key) {
    constexpr std::string_view kIndex = "Index ";
    if (!key.starts_with(kIndex)) return std::nullopt;
    std::size_t index = 0;
    const auto [end, error] = std::from_chars(key.data() + kIndex.size(), key.data() + key.size(), index);
    const bool isNumber = error == std::errc() && end == key.data() + key.size();
    return isNumber ? std::optional(index) : std::nullopt;
}

/// "Index 0" of a decoder's path is "[0]" here.
std::string scenarioPath(std::string path, const std::vector<std::string>& codingPath) {
    for (const std::string& key : codingPath) {
        const auto index = indexOf(key);
        path = index ? elementPath(path, *index) : memberPath(path, key);
    }
    return path;
}

/// Reads the members of a CRes as the library will, so that a slip in a screen shows here
/// and not in a challenge.
JSON readScreen(CheckedText& text, const CheckedValue& value) {
    value.requireKnown(screenMembers());
    JSON message = value.json();
    for (const CRes::Field& field : CRes::fields())
        if (field.isRequired()) message[std::string(field.name)] = "";
    try {
        static_cast<void>(CRes::decode(message.dump()));
    } catch (const DecodingError& error) {
        text.add(Remark::Kind::fault, scenarioPath(value.path(), error.codingPath()), error.description());
    }
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

Step readStep(CheckedText& text, const CheckedValue& value) {
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
    return step;
}

Ending readEnding(CheckedText& text, const CheckedValue& value, Ending ending) {
    value.requireKnown(kEndingMembers);
    value.readIfPresent("transStatus",
                        [&](const CheckedValue& status) { ending.transStatus = status.string(); });
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
            text.attempt([&] { scenario.steps.push_back(readStep(text, step)); });
    });
    root.readIfPresent("success", [&](const CheckedValue& value) {
        scenario.success = readEnding(text, value, scenario.success);
    });
    root.readIfPresent("failure", [&](const CheckedValue& value) {
        scenario.failure = readEnding(text, value, scenario.failure);
    });
    return scenario;
}

} // namespace

Scenario readScenario(std::string_view content, const std::string& name) {
    CheckedText text(content, name);
    Scenario scenario;
    text.attempt([&] { scenario = readScenario(text); });
    text.requireNoFault();
    return scenario;
}

Scenario loadScenario(const std::string& file) {
    return readScenario(tools::readInputFile(file), file);
}

} // namespace korvane::acs
