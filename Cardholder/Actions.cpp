#include "Cardholder/Actions.h"

#include "Input/Arguments.h"
#include "Platform/View/UIApplication.h"
#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/ChallengeWebViewController.h"

#include <algorithm>
#include <map>
#include <set>
#include <span>

namespace korvane::cardholder {

using input::Arguments;
using input::InputError;
using input::InputErrorCase;
using input::Member;
using input::MemberType;
using input::Presence;

namespace {

/// The screen as one of a kind.
template <class Screen>
std::shared_ptr<Screen> screenAs(const Stage& stage) {
    auto screen = std::dynamic_pointer_cast<Screen>(stage.screen);
    if (!screen) throw Refusal("This screen has no such control.");
    return screen;
}

/// To be asked before anything is done.
void requireQuestionForAnswer(const Arguments& arguments, const ChallengeNativeViewController& screen) {
    if (arguments.booleanIfPresent("whitelisting") && screen.whitelistingInfo->isHidden())
        throw Refusal("This screen does not ask about whitelisting.");
}

/// Ticks or unticks the box, if the line says which.
void answerWhitelisting(const Arguments& arguments, ChallengeNativeViewController& screen, Finger& finger) {
    const auto wanted = arguments.booleanIfPresent("whitelisting");
    if (wanted && screen.whitelistingInfo->isChecked() != *wanted) finger.tap(*screen.whitelistingInfo.get());
}

Aftermath type(const Arguments& arguments, const Stage& stage) {
    const auto screen = screenAs<ChallengeTextNativeViewController>(stage);
    stage.finger.type(arguments.text("data"), *screen);
    return Aftermath::screen;
}

Aftermath submit(const Arguments& arguments, const Stage& stage) {
    const auto screen = screenAs<ChallengeTextNativeViewController>(stage);
    requireQuestionForAnswer(arguments, *screen);
    if (const auto data = arguments.textIfPresent("data")) stage.finger.type(*data, *screen);
    stage.finger.closeKeyboard(*screen);
    answerWhitelisting(arguments, *screen, stage.finger);
    stage.finger.tap(*screen->submitButton.get());
    return Aftermath::screen;
}

/// The rows of the options with these keys, of each the first.
std::set<std::size_t> rowsOf(const std::vector<std::string>& keys,
                             const ChallengeSelectNativeViewController& screen) {
    std::map<std::string, std::size_t> all;
    for (std::size_t row = 0; row < screen.optionCount(); ++row)
        all.emplace(screen.option(row).key, row);
    std::set<std::size_t> rows;
    for (const std::string& key : keys) {
        const auto found = all.find(key);
        if (found == all.end()) throw Refusal("This screen has no option with the key \"" + key + "\".");
        rows.insert(found->second);
    }
    return rows;
}

/// Chooses these options; where several can be chosen, no others.
void choose(const std::set<std::size_t>& rows, const ChallengeSelectNativeViewController& screen,
            Finger& finger) {
    const bool takesSeveral =
        dynamic_cast<const ChallengeMultiSelectNativeViewController*>(&screen) != nullptr;
    for (std::size_t row = 0; row < screen.optionCount(); ++row) {
        if (rows.contains(row) ? screen.isChosen(row) : !takesSeveral || !screen.isChosen(row)) continue;
        const auto cell = finger.reach(*screen.tableView.get(), {0, static_cast<int>(row)});
        finger.tap(*std::static_pointer_cast<ChallengeTableViewCell>(cell)->button());
    }
}

Aftermath select(const Arguments& arguments, const Stage& stage) {
    const auto screen = screenAs<ChallengeSelectNativeViewController>(stage);
    requireQuestionForAnswer(arguments, *screen);
    choose(rowsOf(arguments.texts("keys"), *screen), *screen, stage.finger);
    answerWhitelisting(arguments, *screen, stage.finger);
    stage.finger.tap(*screen->nextButton.get());
    return Aftermath::screen;
}

Aftermath resend(const Arguments& /*arguments*/, const Stage& stage) {
    const auto screen = screenAs<ChallengeTextNativeViewController>(stage);
    if (screen->resendButton->isHidden()) throw Refusal("This screen has no such control.");
    stage.finger.closeKeyboard(*screen);
    stage.finger.tap(*screen->resendButton.get());
    return Aftermath::screen;
}

Aftermath goOn(const Arguments& arguments, const Stage& stage) {
    const auto screen = screenAs<ChallengeOobNativeViewController>(stage);
    requireQuestionForAnswer(arguments, *screen);
    answerWhitelisting(arguments, *screen, stage.finger);
    stage.finger.tap(*screen->continueButton.get());
    return Aftermath::screen;
}

Aftermath cancel(const Arguments& /*arguments*/, const Stage& stage) {
    const auto item = stage.screen->toolBar->topItem();
    const auto end = item ? item->rightBarButtonItem() : nullptr;
    if (!end) throw Refusal("This screen has no such control.");
    stage.finger.tap(*end->customView());
    return Aftermath::ending;
}

Aftermath rotate(const Arguments& arguments, const Stage& stage) {
    const std::string& to = arguments.text("to");
    if (to != "PORTRAIT" && to != "LANDSCAPE")
        throw input::memberError(InputErrorCase::outOfRange, "to", "must be PORTRAIT or LANDSCAPE.");
    stage.turn(to == "PORTRAIT" ? UIDeviceOrientation::portrait : UIDeviceOrientation::landscapeLeft);
    return Aftermath::turn;
}

Aftermath leaveAndReturn(const Arguments& /*arguments*/, const Stage& /*stage*/) {
    UIApplication::shared().willResignActive();
    UIApplication::shared().didBecomeActive();
    return Aftermath::screen;
}

Aftermath navigate(const Arguments& arguments, const Stage& stage) {
    const auto screen = screenAs<ChallengeWebViewController>(stage);
    WKNavigationAction action;
    if (auto url = URL::make(arguments.text("url"))) {
        action.request = URLRequest{*url};
        action.request->httpMethod = arguments.textIfPresent("method").value_or("GET");
        if (const auto body = arguments.textIfPresent("body")) action.request->httpBody = toBytes(*body);
    }
    screen->challengeWebView->decidePolicy(action, [](WKNavigationActionPolicy) {});
    return Aftermath::screen;
}

constexpr Member kAction{"action"};
constexpr Member kWhitelisting{"whitelisting", MemberType::boolean, Presence::optional};

constexpr Member kTypeMembers[] = {kAction, {"data"}};
constexpr Member kSubmitMembers[] = {kAction, {"data", MemberType::text, Presence::optional}, kWhitelisting};
constexpr Member kSelectMembers[] = {kAction, {"keys", MemberType::list}, kWhitelisting};
constexpr Member kContinueMembers[] = {kAction, kWhitelisting};
constexpr Member kBareMembers[] = {kAction};
constexpr Member kRotateMembers[] = {kAction, {"to"}};
constexpr Member kNavigateMembers[] = {kAction,
                                       {"url"},
                                       {"method", MemberType::text, Presence::optional},
                                       {"body", MemberType::text, Presence::optional}};

struct ActionRow {
    std::string_view name;
    std::span<const Member> members;
    Aftermath (*perform)(const Arguments& arguments, const Stage& stage);
    std::string_view effect;
};

constexpr ActionRow kActions[] = {
    {"type", kTypeMembers, type, "types on the secure keyboard"},
    {"submit", kSubmitMembers, submit, "types, ticks and presses the submit button"},
    {"select", kSelectMembers, select, "chooses options, ticks and presses the button to go on"},
    {"resend", kBareMembers, resend, "asks for another code"},
    {"continue", kContinueMembers, goOn, "ticks and goes on after an approval elsewhere"},
    {"cancel", kBareMembers, cancel, "presses the cancel button"},
    {"rotate", kRotateMembers, rotate, "turns the device: PORTRAIT or LANDSCAPE"},
    {"leaveAndReturn", kBareMembers, leaveAndReturn, "goes to another application and comes back"},
    {"navigate", kNavigateMembers, navigate, "what a page does when its form is sent or a link followed"},
};

const ActionRow& rowOf(const JSON& line) {
    const auto name = line.find("action");
    if (name == line.end() || !name->is_string())
        throw input::memberError(InputErrorCase::missingMember, "action", "is missing or no string.");
    const auto* row = std::find_if(std::begin(kActions), std::end(kActions), [&](const ActionRow& candidate) {
        return candidate.name == name->get_ref<const std::string&>();
    });
    if (row == std::end(kActions))
        throw input::memberError(InputErrorCase::unknownOp, "action",
                                 "is not known: " + name->get<std::string>());
    return *row;
}

} // namespace

Aftermath performAction(const JSON& line, const Stage& stage) {
    const ActionRow& row = rowOf(line);
    return row.perform(Arguments(line, row.members), stage);
}

void requireAction(const JSON& line) {
    static_cast<void>(Arguments(line, rowOf(line).members));
}

std::string actionHelp() {
    std::string help;
    for (const ActionRow& row : kActions) {
        std::string text = "  " + std::string(row.name);
        for (const Member& member : row.members.subspan(1))
            text += member.presence == Presence::optional ? " [" + std::string(member.name) + "]"
                                                          : " " + std::string(member.name);
        text.resize(std::max<std::size_t>(text.size() + 2, 32), ' ');
        help += text + std::string(row.effect) + "\n";
    }
    return help;
}

} // namespace korvane::cardholder
