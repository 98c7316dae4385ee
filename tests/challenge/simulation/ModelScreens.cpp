#include "tests/challenge/simulation/Model.h"

#include <algorithm>
#include <utility>

namespace korvane::simulation {

namespace {

constexpr Time kSpinnerTime = seconds(1);
constexpr Time kTransition = seconds(0.35);
constexpr std::array kOptionKeys{"phone", "mail", "letter"};

/// A screen that cannot be made, by the case of the failure.
std::string noScreen(const char* during, int failure) {
    return std::string(during) + "The operation couldn\u2019t be completed. (Korvane.SdkError error " +
           std::to_string(failure) + ".)";
}

constexpr int kSwitchOfKinds = 1;
constexpr int kUndecodablePage = 5;

} // namespace

// Screens.

void Model::presentFirst(const PlannedScreen& screen) {
    startsWithPage_ = screen.isPage();
    if (screen.isUndecodable)
        return startFailed(noScreen("Got error on challenge VC init from CRes: ", kUndecodablePage));
    latest_ = std::make_shared<Step>(Step{screen, {}});
    lastWay_ = wayHeld().value_or(lastWay_);
    stack_ = {*faceFor(screen.isPage() ? Way::portrait : lastWay_)};
    presented_ = std::make_shared<Root>(Root{hold()});
    root_ = presented_;
    listens_ = true;
    isUpdating_ = false;
}

void Model::show(const PlannedScreen& screen) {
    constexpr const char* kDuring = "Can not create challenge VC: ";
    if (startsWithPage_ && !screen.isPage()) return fail(noScreen(kDuring, kSwitchOfKinds));
    if (screen.isUndecodable) return fail(noScreen(kDuring, kUndecodablePage));
    latest_ = std::make_shared<Step>(Step{screen, {}});
    if (startsWithPage_) {
        // The page changes in its place.
        if (!hasRoot()) return fail("Can not get top challenge HTML view controller.");
        hideSpinner();
        return;
    }
    lastWay_ = wayHeld().value_or(lastWay_);
    const auto face = faceFor(lastWay_);
    if (!face) return fail("Can not get challenge VC from ViewControllerContainer.");
    onMain([this, self = hold(), face] {
        hideSpinner();
        if (hasRoot()) changeStack(*face);
    });
}

void Model::changeStack(const Standing& to) {
    leaving_ = stack_.back();
    stack_ = {to};
    changing_ = root_.lock();
    const auto token = change_ = std::make_shared<int>(0);
    const auto end = [this, token] {
        if (change_ == token) endChange();
    };
    if (!plan_.playsAnimations) return onMain(end);
    after(kTransition, [this, end] { onMain(end); });
}

/// A page has one face, whatever the device's.
std::optional<Model::Standing> Model::faceFor(Way way) const {
    if (!latest_ || (latest_->screen.isPage() && way == Way::landscape)) return std::nullopt;
    return Standing{latest_, way};
}

std::optional<Model::Way> Model::wayHeld() const {
    switch (held_) {
    case UIDeviceOrientation::portrait: return Way::portrait;
    case UIDeviceOrientation::landscapeLeft:
    case UIDeviceOrientation::landscapeRight: return Way::landscape;
    case UIDeviceOrientation::portraitUpsideDown:
    case UIDeviceOrientation::faceUp:
    case UIDeviceOrientation::faceDown:
    case UIDeviceOrientation::unknown: break;
    }
    return std::nullopt;
}

void Model::turned() {
    if (life_.expired() || !listens_ || isUpdating_) return;
    const auto way = wayHeld();
    if (!way || *way == lastWay_) return;
    lastWay_ = *way;
    if (latest_->screen.isPage()) return;
    onMain([this, self = hold()] { swapWay(); });
}

bool Model::holds(const Standing& face) const {
    return hasRoot() && (std::ranges::find(stack_, face) != stack_.end() || leaving_ == face);
}

/// What is remembered of the stack is not changed by a new screen: a swap may find nothing to do.
void Model::swapWay() {
    if (!hasRoot()) return;
    const auto face = faceFor(lastWay_);
    if (holdsBoth_) {
        copyText(stack_.back(), face);
        if (stack_.size() > 1) {
            endChange();
            stack_.pop_back();
        }
        holdsBoth_ = false;
        return;
    }
    if (!face || stack_.back() == *face) return;
    copyText(stack_.back(), face);
    endChange();
    stack_.push_back(*face);
    holdsBoth_ = true;
}

void Model::copyText(const Standing& from, const std::optional<Standing>& to) const {
    if (to && from.step->screen.uiType == "01" && to->step->screen.uiType == "01")
        to->face().text = from.face().text;
}

void Model::hideSpinner() {
    if (hasRoot()) top().hasSpinner = false;
}

std::optional<Model::Shown> Model::shown() const {
    if (!presented_) return std::nullopt;
    const Standing& standing = stack_.back();
    const PlannedScreen& screen = standing.step->screen;
    const Face& face = standing.face();
    return Shown{screen.uiType, standing.way == Way::landscape, stack_.size(), face.text, face.hasSpinner};
}

// Endings.

void Model::complete(const std::string& ending, bool isError) {
    hideSpinner();
    onMain([this, self = hold(), ending, isError] {
        cancelChallengeTimer();
        if (!hasRoot() || isEnded()) return;
        ended_ = root_;
        dismiss([this, self, ending, isError] {
            if (isError) listens_ = false;
            tell(ending);
        });
    });
}

void Model::fail(const std::string& text) {
    complete("runtimeError(-1, " + text + ")", true);
}

/// A second one ends the first.
void Model::dismiss(Work then) {
    if (isDismissing_) endDismissal();
    if (!presented_) {
        if (then) onMain(std::move(then));
        return;
    }
    endChange();
    isDismissing_ = true;
    afterDismissal_ = std::move(then);
    const auto token = dismissal_ = std::make_shared<int>(0);
    const auto end = [this, token] {
        if (dismissal_ == token) endDismissal();
    };
    if (!plan_.playsAnimations) return onMain(end);
    after(kTransition, [this, end] { onMain(end); });
}

/// By the application, at once.
void Model::takeAway() {
    if (!presented_) return;
    if (!isDismissing_) endChange();
    endDismissal();
}

void Model::endDismissal() {
    isDismissing_ = false;
    dismissal_.reset();
    if (const Work then = std::exchange(afterDismissal_, nullptr)) onMain(then);
    presented_.reset();
}

void Model::tell(const std::string& ending) {
    record_.push_back({now_, "application: " + ending});
}

// The cardholder.

void Model::choose(std::size_t option) {
    auto& chosen = top().isChosen;
    if (stack_.back().step->screen.uiType == "03") {
        chosen[option] = !chosen[option];
        return;
    }
    chosen.fill(false);
    chosen[option] = true;
}

/// The answer about whitelisting is the one that the screen has when something is sent. A page has its own,
/// and a wish for another code goes without it.
void Model::sendLater(Thread thread, const CReq& fields) {
    ++running_;
    const Standing from = stack_.back();
    const PlannedScreen& screen = from.step->screen;
    const bool answers = screen.asksForWhitelisting && !screen.isPage() && !fields.resendChallenge;
    const auto send = [this, self = hold(), thread, fields, from, answers] {
        CReq sent = fields;
        if (answers) sent.whitelistingDataEntry = from.face().isTicked ? YesNoSelector::Y : YesNoSelector::N;
        act(self, thread, sent, false);
    };
    after(kSpinnerTime, [this, thread, send] {
        if (thread == Thread::global) return send();
        onMain(send);
    });
}

void Model::submit() {
    if (top().text.empty()) return;
    top().hasSpinner = true;
    CReq fields;
    fields.challengeDataEntry = top().text;
    sendLater(Thread::main, fields);
}

void Model::resend() {
    top().hasSpinner = true;
    CReq fields;
    fields.resendChallenge = YesNoSelector::Y;
    sendLater(Thread::main, fields);
}

/// With nothing chosen a list of one choice spins and sends nothing.
void Model::next() {
    top().hasSpinner = true;
    std::string keys;
    for (std::size_t option = 0; option < kOptionKeys.size(); ++option)
        if (top().isChosen[option]) keys += (keys.empty() ? "" : ",") + std::string(kOptionKeys[option]);
    CReq fields;
    if (keys.empty()) {
        if (stack_.back().step->screen.uiType == "02") return;
        fields.challengeNoEntry = YesNoSelector::Y;
    } else {
        fields.challengeDataEntry = keys;
    }
    sendLater(Thread::global, fields);
}

void Model::goOn() {
    top().hasSpinner = true;
    CReq fields;
    fields.oobContinue = true;
    sendLater(Thread::global, fields);
}

void Model::cancel() {
    ++running_;
    CReq fields;
    fields.challengeCancel = ChallengeCancelationInd::CARDHOLDER_SELECTED_CANCEL;
    act(hold(), Thread::main, fields, true);
}

void Model::post(const std::optional<std::string>& data) {
    top().hasSpinner = true;
    if (data) {
        CReq fields;
        fields.challengeHTMLDataEntry = *data;
        return sendLater(Thread::global, fields);
    }
    ++running_;
    const Standing page = stack_.back();
    after(kSpinnerTime, [this, self = hold(), page] {
        onMain([this, page] {
            --running_;
            if (!holds(page)) return;
            page.face().hasSpinner = false;
            listens_ = false;
            ended_ = root_;
            tell("runtimeError(-1, Html form made incorrect call.)");
            // The time of the challenge goes on, and may be told.
            ++allowedEndings_;
            dismiss({});
        });
    });
}

} // namespace korvane::simulation
