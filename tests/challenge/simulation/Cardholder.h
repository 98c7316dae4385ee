#pragma once

#include "Platform/View/UIApplication.h"
#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "tests/challenge/SimulatedApplication.h"
#include "tests/challenge/simulation/Model.h"

namespace korvane::simulation {

/// Looks at the screen from time to time, compares it with the model's, and does something to it, which the
/// model is told. Lives until the simulation has ended; main queue only.
class Cardholder {
public:
    /// What is wrong, and what is done, in words.
    using Say = std::function<void(const std::string& text)>;

    Cardholder(const Plan& plan, SimulatedApplication& application, Model& model, Say complain, Say tell)
        : plan_(plan), application_(application), model_(model), complain_(std::move(complain)),
          tell_(std::move(tell)) {}

    void lookLater() {
        Time pause = chance_.between(0.2, 3);
        if (plan_.temper == Temper::absent && chance_.percent(15)) pause += chance_.between(20, 320);
        due_ = now() + pause;
        application_.platform.dispatch().mainQueue().asyncAfter(
            Seconds(pause), std::make_shared<DispatchWorkItem>([this] { look(); }));
    }

    /// How many objects that were seen on the screen are still there.
    [[nodiscard]] std::size_t seenAlive() const {
        return static_cast<std::size_t>(
            std::ranges::count_if(seen_, [](const auto& one) { return !one.expired(); }));
    }

private:
    using Text = ChallengeTextNativeViewController;
    using Single = ChallengeSingleSelectNativeViewController;
    using Multi = ChallengeMultiSelectNativeViewController;
    using Oob = ChallengeOobNativeViewController;
    using Page = ChallengeWebViewController;

    static constexpr const char* kCancel = "cancel";

    // What is seen.

    [[nodiscard]] Time now() const { return std::chrono::round<Time>(application_.platform.now()); }

    template <class... Screens>
    static bool isAny(const UIViewController& controller) {
        return ((dynamic_cast<const Screens*>(&controller) != nullptr) || ...);
    }

    [[nodiscard]] std::string shown() const {
        const auto screen = application_.top<ChallengeViewController>();
        if (!screen) return "nothing";
        const auto text = std::dynamic_pointer_cast<Text>(screen);
        const char* uiType = text                     ? "01"
                             : isAny<Single>(*screen) ? "02"
                             : isAny<Multi>(*screen)  ? "03"
                             : isAny<Oob>(*screen)    ? "04"
                                                      : "05";
        const bool isLandscape = isAny<
            LandscapeChallengeTextNativeViewController, LandscapeChallengeSingleSelectNativeViewController,
            LandscapeChallengeMultiSelectNativeViewController, LandscapeChallengeOobNativeViewController>(
            *screen);
        return Model::textOfScreen(uiType, isLandscape, application_.root()->viewControllers().size(),
                                   text ? text->otp->text() : "",
                                   screen->view()->viewWithTag(ExternalProgressDialog::kTag) != nullptr);
    }

    /// @return whether the screen is the model's.
    [[nodiscard]] bool compare() const {
        const std::string actual = shown();
        const std::string expected = model_.shown();
        if (actual != expected) complain_("the screen shows " + actual + " instead of " + expected);
        if (model_.isMainHeld()) complain_("the main queue is free while an exchange should hold it");
        return actual == expected;
    }

    // When.

    /// A look that had to wait for the main queue is no look: the finger would have been lost.
    void look() {
        constexpr int kMostLooks = 60;
        /// By then a challenge has its first screen, or will not have one.
        constexpr Time kLatestScreen = seconds(40);
        if (++looks_ > kMostLooks) return;
        if (now() == due_) {
            model_.runTo(now());
            if (!model_.isBlurred() && compare()) act();
        }
        const bool isOver = emptyLooks_ > 0 && (!seen_.empty() || now() > kLatestScreen);
        if (!isOver) lookLater();
    }

    /// Nobody presses a button before the screen has been read.
    void act() {
        constexpr Time kReading = seconds(0.5);
        const auto screen = application_.top<ChallengeViewController>();
        emptyLooks_ = screen ? 0 : emptyLooks_ + 1;
        if (!screen) return;
        if (known_.lock() != screen) {
            known_ = screen;
            knownSince_ = now();
            seen_.emplace_back(screen);
            seen_.emplace_back(application_.root());
            return;
        }
        const bool isPatient = plan_.temper == Temper::patient || plan_.temper == Temper::absent;
        if (now() - knownSince_ >= kReading && (!isPatient || model_.isQuiet())) actOn(*screen);
    }

    // Deeds.

    void actOn(ChallengeViewController& screen) {
        if (chance_.percent(plan_.temper == Temper::cancelling ? 25 : 3)) return cancel(screen);
        if (chance_.percent(8)) return leaveAndReturn();
        if (auto* page = dynamic_cast<Page*>(&screen)) return actOnPage(*page);
        actOnNative(dynamic_cast<ChallengeNativeViewController&>(screen));
    }

    void actOnNative(ChallengeNativeViewController& screen) {
        if (!screen.whitelistingInfo->isHidden() && chance_.percent(model_.hasSpinner() ? 60 : 20))
            return press(*screen.whitelistingInfo.get(), screen, "the box", [this] { model_.tick(); });
        if (auto* text = dynamic_cast<Text*>(&screen)) return actOnText(*text);
        if (auto* list = dynamic_cast<ChallengeSelectNativeViewController*>(&screen)) return actOnList(*list);
        auto& away = dynamic_cast<Oob&>(screen);
        press(*away.continueButton.get(), screen, "continue", [this] { model_.goOn(); });
    }

    void actOnText(Text& screen) {
        if (chance_.percent(12))
            return press(*screen.resendButton.get(), screen, "resend", [this] { model_.resend(); });
        if (chance_.percent(screen.otp->text().empty() ? 75 : 15)) return typeOn(screen);
        press(*screen.submitButton.get(), screen, "submit", [this] { model_.submit(); });
    }

    void actOnList(ChallengeSelectNativeViewController& screen) {
        if (!chance_.percent(65))
            return press(*screen.nextButton.get(), screen, "next", [this] { model_.next(); });
        application_.window->layoutIfNeeded();
        const auto rows = screen.tableView->visibleCells();
        if (rows.size() != 3)
            return complain_("the list shows " + std::to_string(rows.size()) + " rows of 3");
        const std::size_t row = chance_.below(rows.size());
        const auto button = std::static_pointer_cast<ChallengeTableViewCell>(rows[row])->button();
        press(*button, screen, "option " + std::to_string(row), [this, row] { model_.choose(row); });
    }

    void typeOn(Text& screen) {
        std::string text(1 + chance_.below(6), '0');
        for (char& digit : text)
            digit = static_cast<char>('0' + chance_.below(10));
        screen.otp->setText(text);
        tell_("cardholder: types \"" + text + "\"");
        model_.type(text);
    }

    /// Presses a control; the model hears of each press that has an effect. What a spinner covers can be
    /// reached by assistive means alone, but for the bar, which it leaves free. Two presses can come before
    /// there is one.
    void press(UIControl& control, ChallengeViewController& on, const std::string& name,
               const std::function<void()>& effect) {
        const bool isCovered = model_.hasSpinner() && name != kCancel;
        const bool isAssisted = plan_.temper == Temper::assisted && chance_.percent(60);
        // A cancellation holds the main queue: a second touch would come after all that follows it.
        const bool isHasty = plan_.temper == Temper::hasty && name != kCancel;
        const int presses = isHasty && chance_.percent(30) ? 2 : 1;
        tell_("cardholder: presses " + name + (presses > 1 ? " twice" : "") +
              (isAssisted ? ", assisted" : "") + (isCovered ? ", under the spinner" : ""));
        for (int press = 0; press < presses; ++press) {
            if (isAssisted || !isCovered) effect();
            if (isAssisted)
                control.sendActions(ControlEvent::touchUpInside);
            else if (touch(control, on) == isCovered)
                complain_(name + (isCovered ? " can be touched under the spinner" : " cannot be touched"));
        }
    }

    void cancel(ChallengeViewController& screen) {
        const auto button = std::dynamic_pointer_cast<UIControl>(
            screen.toolBar->topItem()->rightBarButtonItem()->customView());
        press(*button, screen, kCancel, [this] { model_.cancel(); });
    }

    void leaveAndReturn() {
        tell_("cardholder: leaves and returns");
        UIApplication::shared().willResignActive();
        UIApplication::shared().didBecomeActive();
    }

    void actOnPage(Page& screen) {
        constexpr const char* kForm = "https://EMV3DS/challenge";
        /// The effect is what the page sends, or that of a call that is none of a form.
        const struct {
            const char* url;
            const char* method;
            const char* body;
            std::optional<std::string> effect;
        } ways[] = {
            {kForm, "POST", "code=1234&go=1", "code=1234&go=1"},
            {kForm, "POST", "", ""},
            {"https://emv3ds/challenge?code=1234", "GET", nullptr, "code=1234"},
            {kForm, "GET", nullptr, std::nullopt},
        };
        const std::size_t draw = chance_.below(40);
        const auto& way = ways[draw == 0 ? 3 : draw % 3];
        URLRequest request{*URL::make(way.url)};
        request.httpMethod = way.method;
        if (way.body) request.httpBody = toBytes(way.body);
        tell_(std::string("cardholder: on the page, ") + way.method + " " + way.url);
        model_.post(way.effect);
        screen.challengeWebView->decidePolicy({request}, [](WKNavigationActionPolicy) {});
    }

    // Fingers.

    /// Touches the middle of a control, or what lies over it there. What is out of sight is scrolled to
    /// halfway down the screen.
    /// @return whether the control had the touch.
    bool touch(UIView& view, ChallengeViewController& on) {
        application_.window->layoutIfNeeded();
        const auto scroll = std::dynamic_pointer_cast<UIScrollView>(on.view());
        if (scroll && !reaches(view) && view.isDescendant(*scroll)) {
            const double top = view.convertTo(scroll.get(), view.bounds()).origin.y;
            scroll->setContentOffset({0, std::max(0.0, top - scroll->bounds().size.height / 2)});
            application_.window->layoutIfNeeded();
        }
        const bool isReached = reaches(view);
        tap(view.middleInWindow());
        return isReached;
    }

    [[nodiscard]] bool reaches(const UIView& view) const {
        const auto hit = application_.window->hitTest(view.middleInWindow());
        return hit && hit->isDescendant(view);
    }

    void tap(CGPoint point) {
        ++finger_;
        application_.window->sendTouch({finger_, UITouchPhase::began, point});
        application_.window->sendTouch({finger_, UITouchPhase::ended, point});
    }

    const Plan& plan_;
    SimulatedApplication& application_;
    Model& model_;
    const Say complain_;
    const Say tell_;
    std::uint64_t finger_ = 0;
    Chance chance_{~plan_.seed};
    Time due_{0};
    int looks_ = 0;
    int emptyLooks_ = 0;
    std::weak_ptr<ChallengeViewController> known_;
    Time knownSince_{0};
    std::vector<std::weak_ptr<void>> seen_;
};

} // namespace korvane::simulation
