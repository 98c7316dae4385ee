#include "tests/challenge/simulation/Cardholder.h"

#include "Platform/View/UIApplication.h"
#include "Ui/Screens/ChallengeOobNativeViewController.h"

#include <algorithm>

namespace korvane::simulation {

namespace {

constexpr int kMostLooks = 60;
/// Nobody presses a button before the screen has been read.
constexpr Time kReading = seconds(0.5);
/// By then a challenge has its first screen, or will not have one.
constexpr Time kLatestScreen = seconds(40);

constexpr const char* kCancel = "cancel";

template <class... Screens>
bool isAny(const UIViewController& controller) {
    return ((dynamic_cast<const Screens*>(&controller) != nullptr) || ...);
}

std::string uiTypeOf(const UIViewController& controller) {
    if (isAny<ChallengeTextNativeViewController>(controller)) return "01";
    if (isAny<ChallengeSingleSelectNativeViewController>(controller)) return "02";
    if (isAny<ChallengeMultiSelectNativeViewController>(controller)) return "03";
    if (isAny<ChallengeOobNativeViewController>(controller)) return "04";
    return isAny<ChallengeWebViewController>(controller) ? "05" : "none";
}

bool isLandscape(const UIViewController& controller) {
    return isAny<
        LandscapeChallengeTextNativeViewController, LandscapeChallengeSingleSelectNativeViewController,
        LandscapeChallengeMultiSelectNativeViewController, LandscapeChallengeOobNativeViewController>(
        controller);
}

std::string describe(const std::optional<Model::Shown>& shown) {
    if (!shown) return "nothing";
    return "screen " + shown->uiType + (shown->isLandscape ? " lying" : " upright") + ", depth " +
           std::to_string(shown->depth) + ", typed \"" + shown->typed + "\"" +
           (shown->hasSpinner ? ", spinner" : "");
}

} // namespace

Cardholder::Cardholder(const Plan& plan, SimulatedPlatform& platform, Model& model, UIWindow& window)
    : plan_(plan), platform_(platform), model_(model), window_(window), fingers_(window),
      chance_(~plan.seed) {}

// What is seen.

Time Cardholder::now() const {
    return std::chrono::round<Time>(platform_.now());
}

std::shared_ptr<ChallengeRootNavigationController> Cardholder::root() const {
    return std::dynamic_pointer_cast<ChallengeRootNavigationController>(
        window_.rootViewController()->presentedViewController());
}

std::shared_ptr<ChallengeViewController> Cardholder::top() const {
    const auto stack = root();
    return stack ? std::dynamic_pointer_cast<ChallengeViewController>(stack->topViewController()) : nullptr;
}

std::optional<Model::Shown> Cardholder::shown() const {
    const auto stack = root();
    const auto screen = top();
    if (!screen) return std::nullopt;
    const auto text = std::dynamic_pointer_cast<ChallengeTextNativeViewController>(screen);
    return Model::Shown{uiTypeOf(*screen), isLandscape(*screen), stack->viewControllers().size(),
                        text ? text->otp->text() : "", screen->spinner != nullptr};
}

std::size_t Cardholder::seenAlive() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(seen_, [](const auto& one) { return !one.expired(); }));
}

void Cardholder::compare() {
    const auto actual = shown();
    const auto expected = model_.shown();
    if (actual != expected)
        complain("the screen shows " + describe(actual) + " instead of " + describe(expected));
    if (actual && actual->depth > 2)
        complain("the stack holds " + std::to_string(actual->depth) + " screens");
    if (model_.isMainHeld()) complain("the main queue is free while an exchange should hold it");
}

// When.

void Cardholder::lookLater(Time atLeast) {
    Time pause = atLeast + chance_.between(0.2, 3);
    if (plan_.temper == Temper::absent && chance_.percent(15)) pause += chance_.between(20, 320);
    due_ = now() + pause;
    platform_.dispatch().mainQueue().asyncAfter(Seconds(pause),
                                                std::make_shared<DispatchWorkItem>([this] { look(); }));
}

/// A look that had to wait for the main queue is no look: the finger would have been lost.
void Cardholder::look() {
    if (++looks_ > kMostLooks) return;
    if (now() == due_) {
        model_.runTo(now());
        if (!model_.isBlurred()) {
            compare();
            act();
        }
    }
    const bool isOver = emptyLooks_ > 0 && (!seen_.empty() || now() > kLatestScreen);
    if (!isOver) lookLater(Time{0});
}

void Cardholder::act() {
    const auto screen = top();
    if (!screen) {
        ++emptyLooks_;
        return;
    }
    emptyLooks_ = 0;
    if (known_.lock() != screen) {
        known_ = screen;
        knownSince_ = now();
        seen_.emplace_back(screen);
        seen_.emplace_back(root());
        return;
    }
    if (now() - knownSince_ < kReading || (isPatient() && !model_.isQuiet())) return;
    actOn(*screen);
}

bool Cardholder::isPatient() const {
    return plan_.temper == Temper::patient || plan_.temper == Temper::absent;
}

// Deeds.

void Cardholder::actOn(ChallengeViewController& screen) {
    if (chance_.percent(plan_.temper == Temper::cancelling ? 25 : 3)) return cancel(screen);
    if (chance_.percent(4)) return leaveAndReturn();
    if (auto* page = dynamic_cast<ChallengeWebViewController*>(&screen)) return actOnPage(*page);
    actOnNative(dynamic_cast<ChallengeNativeViewController&>(screen));
}

void Cardholder::actOnNative(ChallengeNativeViewController& screen) {
    if (!screen.whyInfoButton->isHidden() && chance_.percent(15)) return openSection(screen);
    if (!screen.whitelistingInfo->isHidden() && chance_.percent(20))
        return press(*screen.whitelistingInfo.get(), screen, "the box", [this] { model_.tick(); });
    if (auto* text = dynamic_cast<ChallengeTextNativeViewController*>(&screen)) return actOnText(*text);
    if (auto* list = dynamic_cast<ChallengeSelectNativeViewController*>(&screen)) return actOnList(*list);
    if (chance_.percent(20)) return leaveAndReturn();
    auto& away = dynamic_cast<ChallengeOobNativeViewController&>(screen);
    press(*away.continueButton.get(), screen, "continue", [this] { model_.goOn(); });
}

void Cardholder::actOnText(ChallengeTextNativeViewController& screen) {
    if (!screen.resendButton->isHidden() && chance_.percent(12))
        return press(*screen.resendButton.get(), screen, "resend", [this] { model_.resend(); });
    if (chance_.percent(screen.otp->text().empty() ? 75 : 15)) return typeOn(screen);
    press(*screen.submitButton.get(), screen, "submit", [this] { model_.submit(); });
}

void Cardholder::actOnList(ChallengeSelectNativeViewController& screen) {
    if (!chance_.percent(65))
        return press(*screen.nextButton.get(), screen, "next", [this] { model_.next(); });
    window_.layoutIfNeeded();
    const auto rows = screen.tableView->visibleCells();
    if (rows.size() != 3) return complain("the list shows " + std::to_string(rows.size()) + " rows of 3");
    const std::size_t row = chance_.below(rows.size());
    const auto button = std::static_pointer_cast<ChallengeTableViewCell>(rows[row])->button();
    press(*button, screen, "option " + std::to_string(row), [this, row] { model_.choose(row); });
}

void Cardholder::typeOn(ChallengeTextNativeViewController& screen) {
    const std::size_t count = 1 + chance_.below(6);
    std::string text = screen.otp->text();
    if (plan_.typesOnKeys && !model_.shown()->hasSpinner) {
        text += fingers_.typeKeys(screen, chance_, count);
    } else {
        text.clear();
        for (std::size_t digit = 0; digit < count; ++digit)
            text += static_cast<char>('0' + chance_.below(10));
        screen.otp->setText(text);
    }
    tell("cardholder: types, and has \"" + text + "\"");
    model_.type(text);
}

/// What a spinner covers can be reached by assistive means alone, but for the bar, which it leaves free. Two
/// presses can come before there is one.
void Cardholder::press(UIControl& control, ChallengeViewController& on, const std::string& name,
                       const std::function<void()>& effect) {
    const bool isCovered = model_.shown()->hasSpinner && name != kCancel;
    const bool isAssisted = plan_.temper == Temper::assisted && chance_.percent(60);
    // A cancellation holds the main queue: a second touch would come after all that follows it.
    const bool isHasty = plan_.temper == Temper::hasty && name != kCancel;
    const int presses = isHasty && chance_.percent(30) ? 2 : 1;
    tell("cardholder: presses " + name + (presses > 1 ? " twice" : "") + (isAssisted ? ", assisted" : "") +
         (isCovered ? ", under the spinner" : ""));
    for (int press = 0; press < presses; ++press) {
        if (isAssisted) {
            effect();
            control.sendActions(ControlEvent::touchUpInside);
            continue;
        }
        if (!isCovered) effect();
        if (fingers_.touch(control, on) == isCovered)
            complain(name + (isCovered ? " can be touched under the spinner" : " cannot be touched"));
    }
}

void Cardholder::cancel(ChallengeViewController& screen) {
    const auto button =
        std::dynamic_pointer_cast<UIControl>(screen.toolBar->topItem()->rightBarButtonItem()->customView());
    press(*button, screen, kCancel, [this] { model_.cancel(); });
}

void Cardholder::leaveAndReturn() {
    tell("cardholder: leaves and returns");
    UIApplication::shared().willResignActive();
    UIApplication::shared().didBecomeActive();
}

/// Each press opens what is closed, and closes what is open.
void Cardholder::openSection(ChallengeNativeViewController& screen) {
    const bool isWhy = chance_.percent(50);
    auto& button = isWhy ? *screen.whyInfoButton.get() : *screen.extInfoButton.get();
    const auto& height = isWhy ? screen.whyInfoHeightConstraint : screen.extInfoHeightConstraint;
    bool isOpen = height->constant() > 0;
    press(button, screen, isWhy ? "the reason" : "the rest", [&isOpen] { isOpen = !isOpen; });
    if ((height->constant() > 0) != isOpen) complain("a section did not open or close");
}

void Cardholder::actOnPage(ChallengeWebViewController& screen) {
    constexpr const char* kForm = "https://EMV3DS/challenge";
    using Effect = std::optional<std::optional<std::string>>;
    const struct {
        const char* url;
        const char* method;
        std::optional<std::string> body;
        Effect effect;
    } ways[] = {
        {kForm, "POST", "code=1234&go=1", std::optional<std::string>("code=1234&go=1")},
        {kForm, "POST", "", std::optional<std::string>("")},
        {"https://emv3ds/challenge?code=1234", "GET", std::nullopt, std::optional<std::string>("code=1234")},
        {kForm, "GET", std::nullopt, std::optional<std::string>()},
        {kForm, "POST", "\xff\xfe", std::optional<std::string>()},
        {kForm, "PUT", "code=1", std::nullopt},
        {"http://emv3ds/challenge?code=1", "GET", std::nullopt, std::nullopt},
        {"https://bank.example/help", "GET", std::nullopt, std::nullopt},
    };
    const std::size_t draw = chance_.below(40);
    const auto& way = ways[draw < std::size(ways) ? draw : draw % 3];
    URLRequest request{*URL::make(way.url)};
    request.httpMethod = way.method;
    if (way.body) request.httpBody = toBytes(*way.body);
    tell(std::string("cardholder: on the page, ") + way.method + " " + way.url);
    post(screen, request, way.effect);
}

/// @param effect  absent for none; without a text for a call that is none of a form.
void Cardholder::post(ChallengeWebViewController& page, const URLRequest& request,
                      const std::optional<std::optional<std::string>>& effect) {
    if (effect) model_.post(*effect);
    int decisions = 0;
    page.challengeWebView->decidePolicy({request}, [&decisions](WKNavigationActionPolicy) { ++decisions; });
    if (decisions != 1) complain("the page decided " + std::to_string(decisions) + " times about one call");
}

} // namespace korvane::simulation
