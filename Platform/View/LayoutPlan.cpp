#include "Platform/View/LayoutPlan.h"

#include <algorithm>
#include <cmath>

namespace korvane {

namespace {

std::string described(const UIView& view) {
    const std::string& name = view.accessibilityIdentifier();
    return name.empty() ? "a view" : "the view \"" + name + "\"";
}

} // namespace

LayoutPlan::LayoutPlan(UIView& holder) : holder_(holder), views_{&holder, &holder, &holder} {
    const Equations equations = collect();
    const std::size_t variables = views_.size() * kSlots;
    isPlaced_.assign(views_.size(), false);
    rules_.resize(variables);
    visits_.assign(variables, Visit::none);
    values_.assign(variables, 0);
    for (std::size_t item = kFirstSubview; item < views_.size(); ++item) {
        chooseRules(equations, item, kHorizontal);
        chooseRules(equations, item, kVertical);
    }
    for (std::size_t target = kFirstSubview * kSlots; target < variables; ++target)
        order(target);
}

/// The index of an item, which gets one when it is first met.
std::size_t LayoutPlan::indexOf(const NSObject* item) {
    if (item == &holder_) return kHolder;
    if (const auto* guide = dynamic_cast<const UILayoutGuide*>(item); guide && guide->owner() == &holder_) {
        if (guide->kind() == UILayoutGuideKind::readable) return kReadable;
        usesSafeArea_ = true;
        return kSafeArea;
    }
    const auto child =
        std::ranges::find_if(holder_.subviews(), [item](const auto& view) { return view.get() == item; });
    if (child == holder_.subviews().end())
        throw Fault{"A constraint of " + described(holder_) + " concerns what is not in it."};
    const auto known = std::find(views_.begin() + kFirstSubview, views_.end(), child->get());
    if (known == views_.end()) {
        views_.push_back(child->get());
        return views_.size() - 1;
    }
    return static_cast<std::size_t>(known - views_.begin());
}

std::size_t LayoutPlan::variable(const NSObject* item, NSLayoutAttribute attribute) {
    const auto slot =
        static_cast<std::size_t>(static_cast<int>(attribute) - static_cast<int>(NSLayoutAttribute::top));
    if (slot >= kSlots)
        throw Fault{"A constraint of " + described(holder_) + " has an item without an attribute."};
    return indexOf(item) * kSlots + slot;
}

/// Of two constraints for one edge the later one counts.
LayoutPlan::Equations LayoutPlan::collect() {
    Equations equations;
    for (const auto& constraint : holder_.constraints()) {
        if (!constraint->isActive()) continue;
        const std::size_t target = variable(constraint->firstItem().get(), constraint->firstAttribute());
        if (target < kFirstSubview * kSlots)
            throw Fault{"A constraint of " + described(holder_) + " would move the view itself."};
        if (const auto second = constraint->secondItem())
            static_cast<void>(variable(second.get(), constraint->secondAttribute()));
        equations.resize(views_.size() * kSlots);
        equations[target] = constraint.get();
    }
    return equations;
}

void LayoutPlan::chooseRules(const Equations& equations, std::size_t item, const Axis& axis) {
    const std::size_t first = item * kSlots;
    const auto given = [&](std::size_t slot) { return equations[first + slot]; };
    const auto set = [&](std::size_t slot, Rule otherwise) {
        Step& step = rules_[first + slot];
        step = {given(slot) ? Rule::equation : otherwise, first + slot, kNone, given(slot)};
        if (!given(slot)) return;
        isPlaced_[item] = true;
        if (const auto second = given(slot)->secondItem())
            step.source = variable(second.get(), given(slot)->secondAttribute());
    };
    const bool hasStart = given(axis.start);
    const bool hasEnd = given(axis.end);
    const bool isHeld = hasStart || hasEnd;
    const Rule fitting = &axis == &kHorizontal ? Rule::fittingWidth : Rule::fittingHeight;
    const Rule length = hasStart && hasEnd ? Rule::lengthFromEnds : isHeld ? fitting : Rule::present;

    set(axis.start, hasEnd ? Rule::startFromEnd : Rule::present);
    set(axis.end, Rule::endFromStart);
    set(axis.length, length);
    // The far edge gives way where all three are told.
    if (hasStart && hasEnd && given(axis.length))
        rules_[first + axis.end] = {Rule::endFromStart, first + axis.end, kNone, nullptr};
}

std::vector<std::size_t> LayoutPlan::needs(const Step& step) const {
    const std::size_t slot = step.target % kSlots;
    const std::size_t first = step.target - slot;
    const Axis& axis = axisOf(slot);
    switch (step.rule) {
    case Rule::equation: {
        std::vector<std::size_t> all;
        if (step.source != kNone) all.push_back(step.source);
        if (isGap(step)) all.push_back(first + kVertical.length);
        return all;
    }
    case Rule::endFromStart: return {first + axis.start, first + axis.length};
    case Rule::startFromEnd: return {first + axis.end, first + axis.length};
    case Rule::lengthFromEnds: return {first + axis.start, first + axis.end};
    case Rule::fittingHeight: return {first + kHorizontal.length};
    case Rule::fittingWidth:
    case Rule::present: return {};
    }
    return {};
}

/// Puts a variable's step behind those that it needs.
void LayoutPlan::order(std::size_t target) {
    if (target < kFirstSubview * kSlots || visits_[target] == Visit::done) return;
    if (visits_[target] == Visit::underWay)
        throw Fault{"The constraints of " + described(holder_) + " go round in a circle at " +
                    described(*views_[target / kSlots]) + "."};
    visits_[target] = Visit::underWay;
    for (const std::size_t needed : needs(rules_[target]))
        order(needed);
    visits_[target] = Visit::done;
    steps_.push_back(rules_[target]);
}

/// Where the holder's subviews lie in it: from its content's corner, also when it is scrolled.
void LayoutPlan::readHolder() {
    const CGSize size = holder_.bounds().size;
    const UIEdgeInsets safe = usesSafeArea_ ? holder_.safeAreaInsets() : UIEdgeInsets{};
    const auto write = [this](std::size_t item, double top, double bottom, double leading, double trailing) {
        const std::array<double, kSlots> all{top,         bottom, leading, trailing, trailing - leading,
                                             bottom - top};
        std::ranges::copy(all, values_.begin() + static_cast<std::ptrdiff_t>(item * kSlots));
    };
    write(kHolder, 0, size.height, 0, size.width);
    const bool isMirrored = holder_.isRightToLeft();
    const double before = isMirrored ? safe.right : safe.left;
    const double behind = isMirrored ? safe.left : safe.right;
    write(kSafeArea, safe.top, size.height - safe.bottom, before, size.width - behind);
    const double margin = std::max(0.0, std::floor((size.width - holder_.readableWidth()) / 2));
    write(kReadable, 0, size.height, margin, size.width - margin);
}

/// Whether a step places a view below another one, and gives way with a view that collapses.
bool LayoutPlan::isGap(const Step& step) const {
    return step.target % kSlots == kVertical.start && step.source != kNone &&
           step.source / kSlots >= kFirstSubview && views_[step.target / kSlots]->collapses();
}

double LayoutPlan::equationValue(const Step& step) const {
    const UIView& view = *views_[step.target / kSlots];
    const std::size_t slot = step.target % kSlots;
    if (slot == kVertical.length && view.collapses() && view.isHidden()) return 0;
    const double from = step.source == kNone ? 0 : values_[step.source];
    const bool isGone = isGap(step) && values_[step.target - slot + kVertical.length] <= 0;
    return isGone ? from : from + step.constraint->constant();
}

double LayoutPlan::value(const Step& step) const {
    const std::size_t slot = step.target % kSlots;
    const std::size_t first = step.target - slot;
    const Axis& axis = axisOf(slot);
    const UIView& view = *views_[step.target / kSlots];
    const auto own = [&](std::size_t other) { return values_[first + other]; };
    switch (step.rule) {
    case Rule::equation: return equationValue(step);
    case Rule::endFromStart: return own(axis.start) + own(axis.length);
    case Rule::startFromEnd: return own(axis.end) - own(axis.length);
    case Rule::lengthFromEnds: return own(axis.end) - own(axis.start);
    case Rule::fittingWidth: return view.fittingSize(kUnbounded).width;
    case Rule::fittingHeight:
        return view.collapses() && view.isHidden() ? 0 : view.fittingSize(own(kHorizontal.length)).height;
    case Rule::present: break;
    }
    const CGRect frame = view.frame();
    if (slot == kHorizontal.start) return frame.origin.x;
    if (slot == kVertical.start) return frame.origin.y;
    return slot == kHorizontal.length ? frame.size.width : frame.size.height;
}

void LayoutPlan::run() {
    readHolder();
    for (const Step& step : steps_)
        values_[step.target] = value(step);
    const bool isMirrored = holder_.isRightToLeft();
    for (std::size_t item = kFirstSubview; item < views_.size(); ++item) {
        if (!isPlaced_[item]) continue;
        const double* const at = values_.data() + item * kSlots;
        const CGSize size{std::max(0.0, at[kHorizontal.length]), std::max(0.0, at[kVertical.length])};
        const double leading = at[kHorizontal.start];
        const double left = isMirrored ? holder_.bounds().size.width - leading - size.width : leading;
        views_[item]->setFrame({{left, at[kVertical.start]}, size});
    }
}

} // namespace korvane
