#include "tools/challenge/play/Plan.h"

#include "Cardholder/Actions.h"
#include "Cardholder/ScreenText.h"
#include "Input/InputError.h"
#include "Platform/CheckedText.h"
#include "tools/common/InputFile.h"

#include <algorithm>
#include <array>

namespace korvane::challenge {

namespace {

constexpr std::array<std::string_view, 3> kPlanMembers{"description", "steps", "ending"};

/// The events that end a challenge, with the members that can be expected of each.
struct EndingRow {
    std::string_view event;
    std::vector<std::string_view> members;
};

const std::array<EndingRow, 5>& endings() {
    static const std::array<EndingRow, 5> rows{{
        {"completed", {"event", "transactionStatus"}},
        {"cancelled", {"event"}},
        {"timedout", {"event"}},
        {"protocolError", {"event", "errorCode", "errorDescription", "errorDetails"}},
        {"runtimeError", {"event", "errorCode", "errorMessage"}},
    }};
    return rows;
}

void checkEnding(const CheckedValue& ending) {
    const CheckedValue event = ending.member("event");
    const auto& rows = endings();
    const auto* row = std::find_if(rows.begin(), rows.end(), [&event](const EndingRow& candidate) {
        return candidate.event == event.string();
    });
    if (row == rows.end())
        event.fail("names no ending; there are completed, cancelled, timedout, protocolError, runtimeError.");
    ending.requireKnown(row->members);
}

PlannedStep readStep(const CheckedValue& value) {
    PlannedStep step;
    value.readIfPresent("screen", [&step](const CheckedValue& screen) {
        screen.requireKnown(cardholder::kScreenMembers);
        step.screen = screen.json();
    });
    step.action = value.object();
    step.action.erase("screen");
    try {
        cardholder::requireAction(step.action);
    } catch (const input::InputError& error) {
        value.fault(error.description());
    }
    return step;
}

std::string shown(const JSON& object, const std::string& name) {
    const auto found = object.find(name);
    return found == object.end() || found->is_null() ? "nothing" : found->dump();
}

} // namespace

Plan loadPlan(const std::string& file) {
    CheckedText text(tools::readInputFile(file), file);
    const CheckedValue root = text.root();
    Plan plan;
    text.attempt([&] {
        root.requireKnown(kPlanMembers);
        root.readIfPresent("description",
                           [&plan](const CheckedValue& value) { plan.description = value.string(); });
        root.readIfPresent("steps", [&](const CheckedValue& steps) {
            for (const CheckedValue& step : steps.elements())
                text.attempt([&] { plan.steps.push_back(readStep(step)); });
        });
        const CheckedValue ending = root.member("ending");
        checkEnding(ending);
        plan.ending = ending.json();
    });
    text.requireNoFault();
    return plan;
}

std::vector<std::string> differences(const JSON& expected, const JSON& got) {
    std::vector<std::string> all;
    for (const auto& [name, value] : expected.items()) {
        const std::string wanted = shown(expected, name);
        const std::string found = shown(got, name);
        if (wanted != found) all.push_back(name + ": expected " + wanted + ", got " + found);
    }
    return all;
}

std::string planHelp() {
    std::string members;
    for (std::size_t index = 0; index < cardholder::kScreenMembers.size(); ++index) {
        const std::string_view separator = index % 9 == 0 ? "\n  " : " ";
        members +=
            (index == 0 ? "" : ",") + std::string(separator) + std::string(cardholder::kScreenMembers[index]);
    }
    return "A plan is a JSON object:\n"
           "  description  for people\n"
           "  steps        list of actions as above, each with the \"screen\" that it is for: the members\n"
           "               of the screen event that are to be as given, null where one must be absent\n"
           "  ending       the event that ends the challenge, with the members that are compared\n"
           "as in {\"steps\":[{\"screen\":{\"uiType\":\"01\"},\"action\":\"submit\",\"data\":\"1234\"}],\n"
           "\"ending\":{\"event\":\"completed\",\"transactionStatus\":\"Y\"}}. Members of a screen:" +
           members + "\n";
}

} // namespace korvane::challenge
