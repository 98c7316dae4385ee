#pragma once

#include "Platform/View/UIView.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace korvane {

/// The constraints of one view in the order in which they can be solved, each once. It lives until they
/// change: constants, texts and frames may change without it. Main queue only.
class LayoutPlan {
public:
    /// Constraints that have no order, or concern a view that is not there.
    struct Fault {
        std::string text;
    };

    /// @throws Fault
    explicit LayoutPlan(UIView& holder);

    /// Sets the frames of the subviews that have constraints.
    void run();

private:
    enum class Rule : std::uint8_t {
        equation,       ///< of a constraint
        endFromStart,   ///< start + length
        startFromEnd,   ///< end - length
        lengthFromEnds, ///< end - start
        fittingWidth,   ///< what the content would like
        fittingHeight,  ///< the same, at the width by now
        present         ///< what the frame has now
    };

    /// How one edge or length comes about.
    struct Step {
        Rule rule = Rule::present;
        std::size_t target = 0;
        std::size_t source = 0; // of an equation; `kNone` for the constant alone
        const NSLayoutConstraint* constraint = nullptr;
    };

    static constexpr std::size_t kNone = ~std::size_t{0};
    /// Top, bottom, leading, trailing, width, height.
    static constexpr std::size_t kSlots = 6;
    /// The holder and its guides stand before the subviews.
    static constexpr std::size_t kHolder = 0;
    static constexpr std::size_t kSafeArea = 1;
    static constexpr std::size_t kReadable = 2;
    static constexpr std::size_t kFirstSubview = 3;

    struct Axis {
        std::size_t start;
        std::size_t end;
        std::size_t length;
    };
    static constexpr Axis kHorizontal{2, 3, 4};
    static constexpr Axis kVertical{0, 1, 5};
    [[nodiscard]] static const Axis& axisOf(std::size_t slot) {
        return slot == kVertical.start || slot == kVertical.end || slot == kVertical.length ? kVertical
                                                                                            : kHorizontal;
    }

    /// The constraints of all edges and lengths.
    using Equations = std::vector<const NSLayoutConstraint*>;
    enum class Visit : std::uint8_t { none, underWay, done };

    [[nodiscard]] std::size_t indexOf(const NSObject* item);
    [[nodiscard]] std::size_t variable(const NSObject* item, NSLayoutAttribute attribute);
    [[nodiscard]] Equations collect();
    void chooseRules(const Equations& equations, std::size_t item, const Axis& axis);
    void order(std::size_t target);
    [[nodiscard]] std::vector<std::size_t> needs(const Step& step) const;
    [[nodiscard]] bool isGap(const Step& step) const;
    [[nodiscard]] double value(const Step& step) const;
    [[nodiscard]] double equationValue(const Step& step) const;
    void readHolder();

    UIView& holder_;
    std::vector<UIView*> views_; // by index; the first three stand for the holder
    std::vector<bool> isPlaced_; // has constraints of its own
    bool usesSafeArea_ = false;
    std::vector<Step> rules_; // by variable
    std::vector<Visit> visits_;
    std::vector<Step> steps_; // in order
    std::vector<double> values_;
};

} // namespace korvane
