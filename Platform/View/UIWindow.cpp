#include "Platform/View/UIWindow.h"

#include "Platform/Platform.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UIGestureRecognizer.h"
#include "Platform/View/UIViewController.h"

#include <algorithm>
#include <array>

namespace korvane {

namespace {

/// How long an input view takes to come.
constexpr Seconds kInputTransition{0.2};
constexpr std::uint64_t kAssistiveFinger = 0;

/// From the top; the visit changes no tree.
template <class Visit>
void visitTree(UIView& view, const Visit& visit) {
    visit(view);
    for (const auto& child : view.subviews())
        visitTree(*child, visit);
}

} // namespace

UIWindow::UIWindow() : UIWindow(Platform::current().mainScreen().bounds()) {}

UIWindow::UIWindow(const CGRect& frame) : UIView(frame), sizeOfContent_(frame.size) {
    setMultipleTouchEnabled(true);
}

UIWindow::~UIWindow() = default;

void UIWindow::setRootViewController(std::shared_ptr<UIViewController> controller) {
    if (controller == root_) return;
    const auto old = std::exchange(root_, std::move(controller));
    if (old) {
        old->finishTransition();
        auto shown = old;
        while (shown->presented_)
            shown = shown->presented_;
        shown->beginAppearanceTransition(false, UIAnimated::no);
        old->dropPresented();
        old->leaveTree();
        shown->endAppearanceTransition();
    }
    if (isVisible_) becomeVisible();
}

void UIWindow::makeKeyAndVisible() {
    UIApplication::shared().makeKey(std::static_pointer_cast<UIWindow>(shared_from_this()));
    isVisible_ = true;
    setNeedsDisplay();
    becomeVisible();
}

/// Lets the root controller appear, where it has not.
void UIWindow::becomeVisible() {
    const auto root = root_;
    if (!root || root->isAppearing() || root->presented_) return;
    root->beginAppearanceTransition(true, UIAnimated::no);
    insertSubview(root->view(), 0);
    setNeedsLayout();
    layoutIfNeeded();
    root->endAppearanceTransition();
}

/// Drops everything without a word to it.
void UIWindow::clear() {
    isVisible_ = false;
    frameRequest_ = nullptr;
    touches_.clear();
    const auto root = std::exchange(root_, nullptr);
    if (root) root->dropPresented();
    while (!subviews().empty())
        subviews().back()->removeFromSuperview();
    input_.reset();
}

void UIWindow::setSafeAreaInsets(const UIEdgeInsets& insets) {
    if (!assign(safeArea_, insets, UIViewChange::layout)) return;
    visitTree(*this, [](UIView& view) { view.setNeedsLayout(); });
}

void UIWindow::setTraits(const UITraitCollection& traits) {
    if (traits == traits_) return;
    const UITraitCollection previous = std::exchange(traits_, traits);
    spreadTraits(previous);
}

void UIWindow::treeNeedsLayout() {
    if (!isVisible_ || std::exchange(hasLayoutRequest_, true)) return;
    Platform::current().dispatch().mainQueue().async([weak = weak_from_this()] {
        const auto window = std::static_pointer_cast<UIWindow>(weak.lock());
        if (!window) return;
        window->hasLayoutRequest_ = false;
        window->layoutIfNeeded();
    });
}

void UIWindow::treeDidChange() {
    if (!frameRequest_ || std::exchange(hasFrameRequest_, true)) return;
    const auto request = frameRequest_;
    request();
}

/// What content would like can follow the screen, as a keyboard's height does, and not its own width alone.
void UIWindow::layoutSubviews() {
    const CGSize before = std::exchange(sizeOfContent_, bounds().size);
    if (!(before == sizeOfContent_)) invalidateTree();
    UIView::layoutSubviews();
    for (const auto& view : subviews())
        if (view->viewController() && view != input_) view->setFrame({{0, 0}, bounds().size});
    layOutInput();
}

CGRect UIWindow::inputFrame() const {
    if (!input_) return {};
    const double height = input_->frame().size.height;
    return {{0, bounds().size.height - height}, {bounds().size.width, height}};
}

void UIWindow::layOutInput() {
    if (!input_) return;
    constexpr double kPortraitHeight = 260;
    constexpr double kLandscapeHeight = 206;
    const CGSize own = bounds().size;
    const double usual = (own.height > own.width ? kPortraitHeight : kLandscapeHeight) + safeArea_.bottom;
    const double wanted = input_->fittingSize(own.width).height;
    const double height = isInputSized_ && wanted > 0 ? wanted : usual;
    input_->setFrame({{0, own.height - height}, {own.width, height}});
    bringSubviewToFront(input_);
}

/// Replaces what is shown at the foot; a keyboard's controller appears and disappears with its view.
void UIWindow::showInput(const std::shared_ptr<UIView>& input) {
    const auto old = std::exchange(input_, input);
    if (old && old != input) {
        const auto controller = old->viewController();
        if (controller) controller->beginAppearanceTransition(false, UIAnimated::yes);
        cancelTouches(old.get());
        old->removeFromSuperview();
        if (!isInputSized_) old->setFrame({});
        if (controller) controller->endAppearanceTransition();
    }
    if (!input) return;
    const auto controller = input->viewController();
    if (old != input) isInputSized_ = input->bounds().size.height > 0;
    if (controller) controller->beginAppearanceTransition(true, UIAnimated::yes);
    UIView::animate(kInputTransition, [&] { addSubview(input); });
    layoutIfNeeded();
    if (controller) controller->endAppearanceTransition();
}

std::shared_ptr<UITouch> UIWindow::touch(const TouchPoint& point) {
    const auto known = std::ranges::find(touches_, point.identifier, &UITouch::identifier);
    if (point.phase != UITouchPhase::began) {
        if (known == touches_.end()) return nullptr;
        const auto found = *known;
        found->phase_ = point.phase;
        found->location_ = point.location;
        if (point.phase != UITouchPhase::moved) touches_.erase(known);
        return found;
    }
    if (known != touches_.end()) cancel({*known});
    const auto view = hitTest(point.location);
    if (view && point.identifier != kAssistiveFinger) focus_.didTouch(view);
    const auto isOnView = [&view](const auto& other) { return other->view() == view; };
    if (!view || (!view->isMultipleTouchEnabled() && std::ranges::any_of(touches_, isOnView))) return nullptr;
    auto fresh = std::make_shared<UITouch>(point.identifier, point.location, view);
    touches_.push_back(fresh);
    return fresh;
}

void UIWindow::sendTouches(const std::vector<TouchPoint>& points) {
    const auto self = shared_from_this();
    std::array<UITouches, 4> byPhase;
    for (const TouchPoint& point : points)
        if (auto news = touch(point))
            byPhase[static_cast<std::size_t>(point.phase)].push_back(std::move(news));
    for (std::size_t phase = 0; phase < byPhase.size(); ++phase)
        hear(static_cast<UITouchPhase>(phase), byPhase[phase]);
}

void UIWindow::cancelTouches(const UIView* onView) {
    UITouches lost;
    std::ranges::copy_if(touches_, std::back_inserter(lost), [onView](const auto& touch) {
        const auto view = touch->view();
        return !onView || (view && view->isDescendant(*onView));
    });
    cancel(lost);
}

void UIWindow::cancel(const UITouches& touches) {
    const auto self = shared_from_this();
    for (const auto& lost : touches) {
        std::erase(touches_, lost);
        lost->phase_ = UITouchPhase::cancelled;
    }
    hear(UITouchPhase::cancelled, touches);
    for (const auto& lost : touches)
        lost->isTaken_ = true;
}

/// Recognisers see the fingers first, and can take them from the views. What they do comes last: it may move
/// the views away under the fingers.
void UIWindow::hear(UITouchPhase phase, const UITouches& touches) {
    UITouches rest;
    const auto isFree = [](const auto& touch) { return !touch->isTaken_; };
    std::ranges::copy_if(touches, std::back_inserter(rest), isFree);
    const Recognizers recognized = recognize(touches);
    const auto taken = std::stable_partition(rest.begin(), rest.end(), isFree);
    const UITouches lost(taken, rest.end());
    rest.erase(taken, rest.end());
    deliver(phase, rest);
    deliver(UITouchPhase::cancelled, lost);
    for (const auto& recognizer : recognized)
        recognizer->perform();
}

/// Shows fingers to the recognisers of the views that they are on, the innermost first.
/// @return those that have what they wait for.
UIWindow::Recognizers UIWindow::recognize(const UITouches& touches) {
    Recognizers recognized;
    for (const auto& news : touches)
        for (auto view = news->view(); view; view = view->superview())
            for (const auto& recognizer : view->gestureRecognizers()) {
                if (!recognizer->receives(*news) || !recognizer->recognizes(*news, *view)) continue;
                recognized.push_back(recognizer);
                if (recognizer->cancelsTouchesInView()) news->isTaken_ = true;
            }
    return recognized;
}

/// Tells each touched view of all its fingers at once, in the order of the first ones.
void UIWindow::deliver(UITouchPhase phase, const UITouches& touches) {
    UITouches rest = touches;
    while (!rest.empty()) {
        const auto view = rest.front()->view();
        UITouches own;
        std::ranges::copy_if(rest, std::back_inserter(own),
                             [&](const auto& one) { return one->view() == view; });
        std::erase_if(rest, [&](const auto& one) { return one->view() == view; });
        if (!view) continue;
        switch (phase) {
        case UITouchPhase::began: view->touchesBegan(own); break;
        case UITouchPhase::moved: view->touchesMoved(own); break;
        case UITouchPhase::ended: view->touchesEnded(own); break;
        case UITouchPhase::cancelled: view->touchesCancelled(own); break;
        }
    }
}

/// Whether a finger in a view's middle would be the view's: what takes touches for it lies around it.
bool UIWindow::reaches(const UIView& view) {
    const auto hit = hitTest(view.middleInWindow());
    return hit && (hit->isDescendant(view) || view.isDescendant(*hit));
}

void UIWindow::press(UIView& view) {
    const auto pressed = view.shared_from_this();
    view.scrollIntoSight();
    if (!reaches(view)) endEditing();
    layoutIfNeeded();
    if (!reaches(view)) return;
    const CGPoint middle = view.middleInWindow();
    sendTouch({kAssistiveFinger, UITouchPhase::began, middle});
    sendTouch({kAssistiveFinger, UITouchPhase::ended, middle});
}

} // namespace korvane
