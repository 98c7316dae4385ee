#pragma once

#include "tests/challenge/simulation/Plan.h"
#include "tests/challenge/simulation/Timeline.h"

#include <algorithm>
#include <array>
#include <memory>

namespace korvane::simulation {

/// What stands on the screen, and how it comes, turns and goes. Nothing is known here of exchanges.
class ModelScreens : public Timeline {
public:
    explicit ModelScreens(const Plan& plan) : plan_(plan), held_(plan.heldAtFirst) {
        for (const Turn& turn : plan.turns)
            after(turn.at, [this, &turn] {
                held_ = turn.to;
                onMain([this, at = now()] {
                    hasLateTurn_ = hasLateTurn_ || at != now();
                    turned();
                });
            });
        if (plan.dismissal) after(*plan.dismissal, [this] { onMain([this] { takeAway(); }); });
    }

    /// The top screen, as a text to compare.
    [[nodiscard]] std::string shown() const {
        if (!presented_) return "nothing";
        return textOfScreen(top().screen().uiType, top().way == Way::landscape, stack_.size(),
                            top().face().text, hasSpinner());
    }
    static std::string textOfScreen(const std::string& uiType, bool isLandscape, std::size_t depth,
                                    const std::string& typed, bool hasSpinner) {
        return "screen " + uiType + (isLandscape ? " lying" : " upright") + ", depth " +
               std::to_string(depth) + ", typed \"" + typed + "\"" + (hasSpinner ? ", spinner" : "");
    }
    [[nodiscard]] bool hasSpinner() const { return top().face().hasSpinner; }
    /// Whether the screens are on their way off and may have changed places: a turn that the main queue heard
    /// of late, and the answer that came meanwhile, are handled in any order.
    [[nodiscard]] bool isBlurred() const { return hasLateTurn_ && (isEnded() || isDismissing_); }

protected:
    /// Keeps the transaction alive.
    using Hold = std::shared_ptr<const int>;

    enum class Way { portrait, landscape };
    struct Face {
        std::string text;
        std::array<bool, 3> isChosen{};
        bool isTicked = false;
        bool hasSpinner = false;
    };
    struct Step {
        PlannedScreen screen;
        std::array<Face, 2> faces;
    };
    struct Standing {
        std::shared_ptr<Step> step;
        Way way = Way::portrait;

        [[nodiscard]] const PlannedScreen& screen() const { return step->screen; }
        [[nodiscard]] Face& face() const { return step->faces[static_cast<std::size_t>(way)]; }
        friend bool operator==(const Standing&, const Standing&) = default;
    };

    [[nodiscard]] Hold hold() const { return life_.lock(); }
    [[nodiscard]] bool hasRoot() const { return !root_.expired(); }
    [[nodiscard]] bool isEnded() const { return hasRoot() && ended_.lock() == root_.lock(); }
    [[nodiscard]] const Standing& top() const { return stack_.back(); }

    // Coming.

    void present(const PlannedScreen& screen) {
        remember(screen);
        stack_ = {*faceFor(screen.isPage() ? Way::portrait : lastWay_)};
        presented_ = std::make_shared<Hold>(hold());
        root_ = presented_;
        listens_ = true;
    }

    void remember(const PlannedScreen& screen) {
        latest_ = std::make_shared<Step>(Step{screen, {}});
        lastWay_ = wayHeld().value_or(lastWay_);
    }

    /// The face that the latest screen has for the device as it is held. A page has one, whatever that is.
    [[nodiscard]] std::optional<Standing> nextFace() const { return faceFor(lastWay_); }

    void changeStack(const Standing& to) {
        leaving_ = stack_.back();
        stack_ = {to};
        changing_ = root_.lock();
        afterTransition([this, change = ++changes_] {
            if (changes_ == change) endChange();
        });
    }

    void hideSpinner() {
        if (hasRoot()) top().face().hasSpinner = false;
    }

    /// Whether the container has the face, on its stack or on its way off that.
    [[nodiscard]] bool holds(const Standing& face) const {
        return hasRoot() && (std::ranges::find(stack_, face) != stack_.end() || leaving_ == face);
    }

    // Going.

    /// A second one ends the first.
    void dismiss(Work then) {
        if (isDismissing_) endDismissal();
        if (!presented_) {
            if (then) onMain(std::move(then));
            return;
        }
        endChange();
        isDismissing_ = true;
        afterDismissal_ = std::move(then);
        afterTransition([this, dismissal = ++dismissals_] {
            if (dismissals_ == dismissal) endDismissal();
        });
    }

    /// By the application, at once.
    void takeAway() {
        if (!presented_) return;
        if (!isDismissing_) endChange();
        endDismissal();
    }

    const Plan& plan_;
    // Who keeps the transaction: the application, the screens, and all work for it. The timers do not.
    Hold application_ = std::make_shared<const int>(0);
    std::weak_ptr<const int> life_ = application_;
    /// The container of the screens. It can be there still when they have gone: a change of its stack keeps
    /// it until it has been seen.
    std::weak_ptr<Hold> root_;
    std::weak_ptr<Hold> ended_;
    bool listens_ = false;
    bool isUpdating_ = true;

private:
    void afterTransition(Work work) {
        if (!plan_.playsAnimations) return onMain(std::move(work));
        after(seconds(0.35), [this, work = std::move(work)] { onMain(work); });
    }

    void endChange() {
        changing_.reset();
        leaving_.reset();
    }

    void endDismissal() {
        isDismissing_ = false;
        ++dismissals_;
        if (const Work then = std::exchange(afterDismissal_, nullptr)) onMain(then);
        presented_.reset();
    }

    // Turning.

    [[nodiscard]] std::optional<Way> wayHeld() const {
        using enum UIDeviceOrientation;
        if (held_ == portrait) return Way::portrait;
        if (held_ == landscapeLeft || held_ == landscapeRight) return Way::landscape;
        return std::nullopt;
    }

    [[nodiscard]] std::optional<Standing> faceFor(Way way) const {
        if (!latest_ || (latest_->screen.isPage() && way == Way::landscape)) return std::nullopt;
        return Standing{latest_, way};
    }

    void turned() {
        if (life_.expired() || !listens_ || isUpdating_) return;
        const auto way = wayHeld();
        if (!way || *way == lastWay_) return;
        lastWay_ = *way;
        if (!latest_->screen.isPage()) onMain([this, self = hold()] { swapWay(); });
    }

    /// What is remembered of the stack is not changed by a new screen: a swap may find nothing to do.
    void swapWay() {
        if (!hasRoot()) return;
        const auto face = faceFor(lastWay_);
        if (holdsBoth_) {
            copyText(top(), face);
            if (stack_.size() > 1) {
                endChange();
                stack_.pop_back();
            }
            holdsBoth_ = false;
        } else if (face && top() != *face) {
            copyText(top(), face);
            endChange();
            stack_.push_back(*face);
            holdsBoth_ = true;
        }
    }

    static void copyText(const Standing& from, const std::optional<Standing>& to) {
        if (to && from.screen().uiType == "01" && to->screen().uiType == "01")
            to->face().text = from.face().text;
    }

    std::vector<Standing> stack_;
    std::shared_ptr<Step> latest_;
    std::shared_ptr<Hold> presented_;
    std::shared_ptr<Hold> changing_;
    std::optional<Standing> leaving_;
    int changes_ = 0;
    int dismissals_ = 0;
    bool isDismissing_ = false;
    Work afterDismissal_;
    UIDeviceOrientation held_;
    Way lastWay_ = Way::portrait;
    bool holdsBoth_ = false;
    bool hasLateTurn_ = false;
};

} // namespace korvane::simulation
