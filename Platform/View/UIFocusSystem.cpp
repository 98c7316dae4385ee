#include "Platform/View/UIFocusSystem.h"

#include "Platform/Security/Secret.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UIControl.h"
#include "Platform/View/UIScrollView.h"
#include "Platform/View/UITextField.h"
#include "Platform/View/UIWindow.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>

namespace korvane {

namespace {

using Views = std::vector<std::shared_ptr<UIView>>;

/// What one arrow scrolls, in points, and what stays in sight of a page that is turned.
constexpr double kLine = 60;
constexpr double kPageOverlap = 40;

CGRect placeOf(const UIView& view) {
    return view.convertTo(nullptr, view.bounds());
}

double middleY(const CGRect& place) {
    return place.origin.y + place.size.height / 2;
}

double middleX(const CGRect& place) {
    return place.origin.x + place.size.width / 2;
}

bool isStop(const UIView& view) {
    const CGSize size = view.bounds().size;
    return view.canBecomeFocused() && size.width > 0 && size.height > 0;
}

/// In rows from the top down, and in each as its text is read: in a row is what has its middle beside the
/// first one.
void sortByPlace(Views& views) {
    const auto top = [](const auto& view) { return placeOf(*view).origin.y; };
    const auto start = [](const auto& view) {
        const CGRect place = placeOf(*view);
        return view->isRightToLeft() ? -CGRectGetMaxX(place) : place.origin.x;
    };
    std::ranges::stable_sort(views, {}, top);
    for (auto row = views.begin(); row != views.end();) {
        const double bottom = CGRectGetMaxY(placeOf(**row));
        const auto end = std::find_if(row, views.end(),
                                      [&](const auto& view) { return middleY(placeOf(*view)) >= bottom; });
        const auto next = end == row ? std::next(row) : end;
        std::ranges::stable_sort(row, next, {}, start);
        row = next;
    }
}

/// Goes through what is shown and not covered, from the top of the tree down to what the visitor takes.
template <class Take>
void visitShown(const std::shared_ptr<UIView>& view, const Take& take) {
    if (!view->isShown() || take(view)) return;
    const auto& inner = view->subviews();
    const auto modal = std::find_if(inner.rbegin(), inner.rend(), [](const auto& one) {
        return one->accessibilityViewIsModal() && one->isShown();
    });
    for (auto one = modal == inner.rend() ? inner.begin() : std::prev(modal.base()); one != inner.end();
         ++one)
        visitShown(*one, take);
}

Views membersOf(const UIView& group) {
    Views members;
    const auto take = [&members](const auto& view) {
        if (!isStop(*view)) return false;
        members.push_back(view);
        return true;
    };
    for (const auto& view : group.subviews())
        visitShown(view, take);
    sortByPlace(members);
    return members;
}

std::shared_ptr<UIView> groupAround(const UIView& view) {
    for (auto around = view.superview(); around; around = around->superview())
        if (around->isFocusGroup()) return around;
    return nullptr;
}

/// Where Tab enters a group: at what is chosen, or at the first view.
std::shared_ptr<UIView> entryOf(const std::shared_ptr<UIView>& stop) {
    if (!stop->isFocusGroup()) return stop;
    const Views members = membersOf(*stop);
    const auto chosen = std::ranges::find_if(members, [](const auto& view) {
        const auto* control = dynamic_cast<const UIControl*>(view.get());
        return control && control->isSelected();
    });
    return chosen == members.end() ? members.front() : *chosen;
}

/// How far one place lies from another in a direction, across before along; no value for one that does not.
std::optional<std::tuple<double, double>> distance(const CGRect& from, const CGRect& to,
                                                   UIKeyboardKey towards) {
    const double down = middleY(to) - middleY(from);
    const double right = middleX(to) - middleX(from);
    const bool isUpright = towards == UIKeyboardKey::up || towards == UIKeyboardKey::down;
    const bool isForward = towards == UIKeyboardKey::down || towards == UIKeyboardKey::right;
    const double along = (isForward ? 1 : -1) * (isUpright ? down : right);
    const double room = (isUpright ? from.size.height : from.size.width) / 2;
    if (along < room) return std::nullopt;
    if (!isUpright && std::abs(down) >= from.size.height / 2) return std::nullopt;
    return std::tuple(along, std::abs(isUpright ? right : down));
}

std::shared_ptr<UIView> nearest(const Views& among, const UIView& from, UIKeyboardKey towards) {
    std::shared_ptr<UIView> nearest;
    std::optional<std::tuple<double, double>> least;
    for (const auto& view : among) {
        const auto way = distance(placeOf(from), placeOf(*view), towards);
        if (!way || (least && *least <= *way)) continue;
        least = way;
        nearest = view;
    }
    return nearest;
}

} // namespace

std::shared_ptr<UIView> UIFocusSystem::focusedView() const {
    auto view = focused_.lock();
    return view && canBeFocused(*view) ? view : nullptr;
}

bool UIFocusSystem::canBeFocused(const UIView& view) const {
    if (!isStop(view)) return false;
    const UIView* around = &view;
    while (around->isShown() && around != &window_) {
        const auto superview = around->superview();
        if (!superview) return false;
        around = superview.get();
    }
    return around == &window_;
}

std::shared_ptr<UITextField> UIFocusSystem::fieldTypedInto() const {
    auto field = std::dynamic_pointer_cast<UITextField>(UIApplication::shared().firstResponder());
    return field && field->window().get() == &window_ ? field : nullptr;
}

UIFocusSystem::Views UIFocusSystem::stops() const {
    Views bars, rest, input;
    const auto take = [](Views& to) {
        return [&to](const std::shared_ptr<UIView>& view) {
            const bool isTaken = view->isFocusGroup() ? !membersOf(*view).empty() : isStop(*view);
            if (isTaken) to.push_back(view);
            return isTaken;
        };
    };
    const auto takeScreen = [&](const std::shared_ptr<UIView>& view) {
        if (view->kind() != UIViewKind::navigationBar) return take(rest)(view);
        for (const auto& inner : view->subviews())
            visitShown(inner, take(bars));
        return true;
    };
    const auto& screens = window_.subviews();
    const auto isScreen = [this](const auto& view) {
        return view->viewController() && view != window_.input_;
    };
    const auto top = std::find_if(screens.rbegin(), screens.rend(), isScreen);
    for (auto one = top == screens.rend() ? screens.begin() : std::prev(top.base()); one != screens.end();
         ++one)
        *one == window_.input_ ? visitShown(*one, take(input)) : visitShown(*one, takeScreen);
    for (Views* const part : {&bars, &rest, &input})
        sortByPlace(*part);
    const auto field = std::ranges::find(rest, std::static_pointer_cast<UIView>(fieldTypedInto()));
    rest.insert(field == rest.end() ? field : std::next(field), input.begin(), input.end());
    bars.insert(bars.end(), rest.begin(), rest.end());
    return bars;
}

void UIFocusSystem::set(const std::shared_ptr<UIView>& view, bool isShown) {
    focused_ = view;
    isShown_ = isShown;
    if (view) {
        const auto group = groupAround(*view);
        lastStop_ = group ? group : view;
    }
    window_.setNeedsDisplay();
}

bool UIFocusSystem::focus(const std::shared_ptr<UIView>& view) {
    if (!view || !canBeFocused(*view)) return false;
    set(view, true);
    if (const auto field = std::dynamic_pointer_cast<UITextField>(view))
        field->becomeFirstResponder();
    else if (!window_.input_ || !view->isDescendant(*window_.input_))
        window_.endEditing();
    window_.layoutIfNeeded();
    view->scrollIntoSight();
    window_.layoutIfNeeded();
    return true;
}

void UIFocusSystem::moveOn(int step) {
    window_.layoutIfNeeded();
    const Views all = stops();
    if (all.empty()) return;
    const auto count = static_cast<std::ptrdiff_t>(all.size());
    const auto found = std::ranges::find(all, lastStop_.lock());
    std::ptrdiff_t next = step > 0 ? 0 : count - 1;
    isMovingBack_ = step < 0;
    if (found != all.end()) next = (found - all.begin() + step + count) % count;
    focus(entryOf(all[static_cast<std::size_t>(next)]));
}

/// A list has views for what is in sight alone: at its edge it is scrolled first.
void UIFocusSystem::moveWithin(UIView& group, UIKeyboardKey towards) {
    window_.layoutIfNeeded();
    const auto from = focusedView();
    auto to = nearest(membersOf(group), *from, towards);
    auto* const scrolled = dynamic_cast<UIScrollView*>(&group);
    const bool isUpright = towards == UIKeyboardKey::up || towards == UIKeyboardKey::down;
    if (!to && isUpright && scrolled && scrolled->canScroll()) {
        const double height = from->bounds().size.height;
        scrolled->scrollBy(towards == UIKeyboardKey::down ? height : -height);
        window_.layoutIfNeeded();
        to = nearest(membersOf(group), *from, towards);
    }
    focus(to);
}

/// Of what the focus is in; without one, of the first thing on the screen that scrolls.
void UIFocusSystem::scroll(UIKeyboardKey towards) {
    const Views all = stops();
    auto inner = focusedView();
    if (!inner && !all.empty()) inner = all.back();
    for (; inner; inner = inner->superview()) {
        auto* const scrolled = dynamic_cast<UIScrollView*>(inner.get());
        if (!scrolled || !scrolled->canScroll()) continue;
        const bool isPage = towards == UIKeyboardKey::pageUp || towards == UIKeyboardKey::pageDown;
        const bool isUp = towards == UIKeyboardKey::pageUp || towards == UIKeyboardKey::up;
        const double way = isPage ? scrolled->bounds().size.height - kPageOverlap : kLine;
        scrolled->scrollBy(isUp ? -way : way);
        return;
    }
}

/// A field takes blanks while it is typed into, and Enter for the end of its text.
void UIFocusSystem::activate(UIKeyboardKey key) {
    const auto view = focusedView();
    if (!view || view->kind() == UIViewKind::webView) return; // a page takes its keys itself
    const auto field = std::dynamic_pointer_cast<UITextField>(view);
    if (!field) {
        window_.press(*view);
        return;
    }
    if (key == UIKeyboardKey::space) {
        field->isFirstResponder() ? field->insertText(" ") : static_cast<void>(focus(field));
        return;
    }
    if (const auto asked = field->delegate()) asked->textFieldShouldReturn(*field);
}

bool UIFocusSystem::press(UIKeyboardKey key) {
    const auto self = window_.shared_from_this();
    switch (key) {
    case UIKeyboardKey::tab: moveOn(1); return true;
    case UIKeyboardKey::backTab: moveOn(-1); return true;
    case UIKeyboardKey::space:
    case UIKeyboardKey::enter: activate(key); return true;
    case UIKeyboardKey::escape: window_.endEditing(); return true;
    case UIKeyboardKey::up:
    case UIKeyboardKey::down:
    case UIKeyboardKey::left:
    case UIKeyboardKey::right: {
        const auto view = focusedView();
        const auto group = view ? groupAround(*view) : nullptr;
        if (group)
            moveWithin(*group, key);
        else if (key == UIKeyboardKey::up || key == UIKeyboardKey::down)
            scroll(key);
        return true;
    }
    case UIKeyboardKey::pageUp:
    case UIKeyboardKey::pageDown: scroll(key); return true;
    case UIKeyboardKey::backspace: break;
    }
    const auto field = fieldTypedInto();
    if (field) field->deleteBackward();
    return field != nullptr;
}

bool UIFocusSystem::type(const std::string& text) {
    auto field = fieldTypedInto();
    if (!field) {
        field = std::dynamic_pointer_cast<UITextField>(focusedView());
        if (!field || !focus(field)) return false;
    }
    field->insertText(text);
    return true;
}

bool UIFocusSystem::paste(const std::string& text) {
    constexpr const char* kBlanks = " \t\r\n\v\f";
    const std::size_t start = text.find_first_not_of(kBlanks);
    std::string inner =
        start == std::string::npos ? "" : text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
    const bool isTaken = type(inner);
    cleanse(inner);
    return isTaken;
}

// What happens to views.

/// A finger takes the focus away, but for one that types.
void UIFocusSystem::didTouch(const std::shared_ptr<UIView>& view) {
    isShown_ = false;
    window_.setNeedsDisplay();
    if (window_.input_ && view->isDescendant(*window_.input_)) return;
    focused_ = fieldTypedInto();
    for (auto around = view; around; around = around->superview())
        if (around->isFocusGroup() || (around->canBecomeFocused() && !groupAround(*around))) {
            lastStop_ = around;
            return;
        }
}

void UIFocusSystem::didBeginTyping(const std::shared_ptr<UIView>& view) {
    typedInto_ = view;
    if (focusedView() != view) set(view, isShown_);
}

/// The focus goes from an input view that leaves back to the field that it served.
void UIFocusSystem::willLeave(const UIView& tree) {
    const auto view = focused_.lock();
    if (!view || !view->isDescendant(tree)) return;
    const auto field = typedInto_.lock();
    if (field && field->inputView().get() == &tree)
        set(field, isShown_);
    else
        focused_.reset();
}

} // namespace korvane
