#include "tools/acs/Scenario.h"

#include "Crypt/DataExtensions.h"
#include "Sdk/Messages/CRes.h"
#include "tools/acs/ScenarioReader.h"
#include "tools/common/InputFile.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace korvane::acs {

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
JSON readScreen(const ScenarioText& text, const ScenarioValue& value) {
    value.requireKnown(screenMembers());
    JSON message = value.json();
    for (const CRes::Field& field : CRes::fields())
        if (field.isRequired()) message[std::string(field.name)] = "";
    try {
        static_cast<void>(CRes::decode(message.dump()));
    } catch (const DecodingError& error) {
        text.fail(scenarioPath(value.path(), error.codingPath()), error.description());
    }
    return value.json();
}

void checkParameter(const ScenarioValue& value, const FaultParameter& parameter) {
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

std::optional<Fault> readFault(const ScenarioValue& owner, Place place) {
    const auto value = owner.memberIfPresent("fault");
    if (!value) return std::nullopt;
    const ScenarioValue name = value->member("name");
    const FaultRow* row = findFault(name.string());
    if (!row || placeOf(*row) != place)
        name.fail("names no fault of this place; there are " + faultsOf(place) + ".");
    std::vector<std::string_view> known{"name"};
    for (const FaultParameter& parameter : row->parameters) {
        known.push_back(parameter.name);
        if (parameter.presence == FaultParameter::Presence::required ||
            value->memberIfPresent(parameter.name))
            checkParameter(value->member(parameter.name), parameter);
    }
    value->requireKnown(known);
    return Fault{row, value->json()};
}

JSON readAccepts(const ScenarioValue& value) {
    value.requireKnown(kAnswerMembers);
    for (const ScenarioValue& member : value.members()) {
        const bool isFlag = member.path().ends_with(".oobContinue");
        if (member.elements().empty()) member.fail("must list a value that passes.");
        for (const ScenarioValue& element : member.elements())
            if (isFlag ? !element.json().is_boolean() : !element.json().is_string())
                element.fail(isFlag ? "must be true or false." : "must be a string.");
    }
    return value.json();
}

Step readStep(const ScenarioText& text, const ScenarioValue& value) {
    value.requireKnown(kStepMembers);
    Step step;
    step.screen = readScreen(text, value.member("screen"));
    if (const auto retry = value.memberIfPresent("retry")) step.retry = readScreen(text, *retry);
    if (const auto accepts = value.memberIfPresent("accepts")) step.accepts = readAccepts(*accepts);
    if (const auto attempts = value.memberIfPresent("attempts"))
        step.attempts = attempts->count(kMostAttempts);
    if (const auto from = value.memberIfPresent("passesFrom")) step.passesFrom = from->count(step.attempts);
    step.fault = readFault(value, Place::step);
    return step;
}

Ending readEnding(const ScenarioValue& root, std::string_view name, Ending ending) {
    const auto value = root.memberIfPresent(name);
    if (!value) return ending;
    value->requireKnown(kEndingMembers);
    if (const auto status = value->memberIfPresent("transStatus")) ending.transStatus = status->string();
    ending.fault = readFault(*value, Place::step);
    return ending;
}

SignatureAlgorithm readSignature(const ScenarioValue& value) {
    const auto algorithm = fromRawValue<SignatureAlgorithm>(value.string());
    const bool isKnown =
        algorithm && std::find(kSignatures.begin(), kSignatures.end(), *algorithm) != kSignatures.end();
    if (!isKnown) value.fail("must be PS256, RS256 or ES256.");
    return *algorithm;
}

} // namespace

Scenario readScenario(std::string_view content, const std::string& name) {
    const ScenarioText text(content, name);
    const ScenarioValue root(text, text.root(), {});
    root.requireKnown(kScenarioMembers);
    Scenario scenario;
    if (const auto value = root.memberIfPresent("description")) scenario.description = value->string();
    if (const auto value = root.memberIfPresent("signature")) scenario.signature = readSignature(*value);
    if (const auto value = root.memberIfPresent("threeDSRequestorAppURL"))
        scenario.threeDSRequestorAppURL = value->string();
    if (const auto value = root.memberIfPresent("authentication")) {
        value->requireKnown(kAuthenticationMembers);
        scenario.authenticationFault = readFault(*value, Place::authentication);
    }
    for (const ScenarioValue& step : root.member("steps").elements())
        scenario.steps.push_back(readStep(text, step));
    scenario.success = readEnding(root, "success", scenario.success);
    scenario.failure = readEnding(root, "failure", scenario.failure);
    return scenario;
}

Scenario loadScenario(const std::string& file) {
    return readScenario(tools::readInputFile(file), file);
}

} // namespace korvane::acs
