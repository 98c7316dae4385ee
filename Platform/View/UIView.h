#pragma once

#include "Platform/Export.h"
#include "Platform/View/CALayer.h"
#include "Platform/View/Geometry.h"
#include "Platform/View/NSLayoutConstraint.h"
#include "Platform/View/UIColor.h"
#include "Platform/View/UIResponder.h"
#include "Platform/View/UITraitCollection.h"
#include "Platform/View/UIViewTypes.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvane {

class LayoutPlan;
class UIGestureRecognizer;
class UIViewController;
class UIWindow;

/// A rectangle of the screen with its subviews: state and geometry; drawing is a renderer's. Main queue only,
/// except that a view may be made, and filled before it joins a tree, on any thread.
///
/// Every setter is of one kind: with the value that it has already, nothing happens; otherwise the value is
/// stored, and the tree is marked for what the change asks of it (`UIViewChange`).
class KORVANE_EXPORT UIView : public UIResponder {
public:
    UIView();
    explicit UIView(const CGRect& frame);
    ~UIView() override;

    /// What a renderer has to draw.
    [[nodiscard]] virtual UIViewKind kind() const noexcept { return UIViewKind::view; }

    // Look.

    [[nodiscard]] const std::optional<UIColor>& backgroundColor() const noexcept { return backgroundColor_; }
    void setBackgroundColor(std::optional<UIColor> color);
    /// The own tint, else the nearest one above, else `UIColor::systemBlue()`.
    [[nodiscard]] UIColor tintColor() const;
    void setTintColor(std::optional<UIColor> color);
    [[nodiscard]] double alpha() const noexcept { return alpha_; }
    void setAlpha(double alpha) { assign(alpha_, alpha, UIViewChange::paint); }
    [[nodiscard]] bool isHidden() const noexcept { return isHidden_; }
    void setHidden(bool isHidden);
    /// Whether anything of the view can be seen, as far as that is its own affair: neither hidden nor
    /// transparent (alpha below 0.01).
    [[nodiscard]] bool isShown() const noexcept { return !isHidden_ && alpha_ >= kTransparent; }
    [[nodiscard]] bool clipsToBounds() const noexcept { return clipsToBounds_; }
    void setClipsToBounds(bool clips) { assign(clipsToBounds_, clips, UIViewChange::paint); }
    [[nodiscard]] UIViewContentMode contentMode() const noexcept { return contentMode_; }
    void setContentMode(UIViewContentMode mode) { assign(contentMode_, mode, UIViewChange::paint); }
    [[nodiscard]] CALayer& layer() noexcept { return layer_; }
    [[nodiscard]] const CALayer& layer() const noexcept { return layer_; }
    /// Leaves the view out of pictures of the screen, or lets it in again.
    void hideFromCapture(bool hide);

    // Geometry, in points.

    /// The rectangle in the superview's coordinates.
    [[nodiscard]] CGRect frame() const noexcept { return {origin_, bounds_.size}; }
    void setFrame(const CGRect& frame);
    /// The rectangle in the own coordinates; its origin moves what the subviews are seen through.
    [[nodiscard]] const CGRect& bounds() const noexcept { return bounds_; }
    void setBounds(const CGRect& bounds);
    [[nodiscard]] CGPoint center() const noexcept;
    /// From the own coordinates to another view's, or to the window's with null. The views are of one tree.
    [[nodiscard]] CGPoint convertTo(const UIView* view, CGPoint point) const;
    [[nodiscard]] CGRect convertTo(const UIView* view, const CGRect& rect) const;
    /// Where a finger would touch the view, in the window's coordinates.
    [[nodiscard]] CGPoint middleInWindow() const;
    /// How far what the system covers of the window reaches into this view.
    [[nodiscard]] virtual UIEdgeInsets safeAreaInsets() const;

    // The tree.

    [[nodiscard]] std::shared_ptr<UIView> superview() const;
    /// In the order of drawing: the last one is on top.
    [[nodiscard]] const std::vector<std::shared_ptr<UIView>>& subviews() const noexcept { return subviews_; }
    [[nodiscard]] std::shared_ptr<UIWindow> window() const;
    [[nodiscard]] bool isDescendant(const UIView& ofView) const;
    /// Puts a view on top of the others, or at an index (past the end: on top); it leaves its place before.
    void addSubview(std::shared_ptr<UIView> view);
    void insertSubview(std::shared_ptr<UIView> view, std::size_t atIndex);
    void bringSubviewToFront(const std::shared_ptr<UIView>& view);
    /// Constraints of the superview with this view go too.
    void removeFromSuperview();
    /// Free for the users of the view; 0 at first.
    [[nodiscard]] int tag() const noexcept { return tag_; }
    void setTag(int tag) { tag_ = tag; }
    /// This view or the first one below with that tag, depth first; or null.
    [[nodiscard]] std::shared_ptr<UIView> viewWithTag(int tag) const;
    /// The controller whose view this is, or null.
    [[nodiscard]] std::shared_ptr<UIViewController> viewController() const;
    /// A view of the same frame that stands for what this one shows now.
    [[nodiscard]] std::shared_ptr<UIView> snapshotView() const;

    // Layout.

    [[nodiscard]] const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints() const noexcept {
        return constraints_;
    }
    void addConstraint(std::shared_ptr<NSLayoutConstraint> constraint);
    void removeConstraint(const std::shared_ptr<NSLayoutConstraint>& constraint);
    /// The item that stands for this view without what the system covers of it.
    [[nodiscard]] std::shared_ptr<UILayoutGuide> safeAreaLayoutGuide();
    /// The item that stands for this view, in its middle no wider than the widest that it is told.
    [[nodiscard]] std::shared_ptr<UILayoutGuide> readableContentGuide();
    [[nodiscard]] double readableWidth() const noexcept { return readableWidth_; }
    void setReadableWidth(double widest) { assign(readableWidth_, widest, UIViewChange::layout); }
    /// Whether the view gives up its height and the gap above it when it is hidden, and that gap when it has
    /// no height.
    [[nodiscard]] bool collapses() const noexcept { return collapses_; }
    void setCollapses(bool collapses) { assign(collapses_, collapses, UIViewChange::layout); }
    /// Whether leading is right and trailing left in this view: as it is told, else as what it lies in.
    [[nodiscard]] bool isRightToLeft() const;
    void setRightToLeft(bool isRightToLeft);
    /// Asks for a pass over this view's subviews: at the next `layoutIfNeeded()`, or by itself before the
    /// window is drawn again.
    void setNeedsLayout();
    /// Lays out whatever of this tree asked for it, from this view down, until nothing asks any more.
    void layoutIfNeeded();
    /// Places the subviews: by the constraints that this view holds. Overrides place what has none.
    virtual void layoutSubviews();
    /// The size that the content would like within `size`; a plain view likes the size that it has.
    [[nodiscard]] virtual CGSize sizeThatFits(CGSize size) const;
    /// `sizeThatFits` for a width and any height, remembered until the content changes.
    [[nodiscard]] CGSize fittingSize(double width) const;
    [[nodiscard]] CGSize intrinsicContentSize() const { return fittingSize(kUnbounded); }
    /// The content would like another size than before.
    void invalidateIntrinsicContentSize();
    /// All content in this tree would: the screen has another size, or text has. Trees that are not shown
    /// find out when they are.
    void invalidateTree();

    // Touches.

    [[nodiscard]] bool isUserInteractionEnabled() const noexcept { return isUserInteractionEnabled_; }
    void setUserInteractionEnabled(bool isEnabled) {
        assign(isUserInteractionEnabled_, isEnabled, UIViewChange::paint);
    }
    /// Whether the view takes a second finger while one is on it.
    [[nodiscard]] bool isMultipleTouchEnabled() const noexcept { return isMultipleTouchEnabled_; }
    void setMultipleTouchEnabled(bool isEnabled) { isMultipleTouchEnabled_ = isEnabled; }
    /// The topmost view under a point of the own coordinates, or null. Views that are not shown and those
    /// that take no touches are left out, with everything in them.
    [[nodiscard]] virtual std::shared_ptr<UIView> hitTest(CGPoint point);
    [[nodiscard]] virtual bool pointInside(CGPoint point) const {
        return CGRectContainsPoint(bounds_, point);
    }
    /// Scrolls what the view lies in as little as shows it, or a rectangle of it, at once.
    void scrollIntoSight() const { scrollIntoSight(bounds_); }
    void scrollIntoSight(const CGRect& part) const;
    void addGestureRecognizer(std::shared_ptr<UIGestureRecognizer> recognizer);
    [[nodiscard]] const std::vector<std::shared_ptr<UIGestureRecognizer>>&
    gestureRecognizers() const noexcept {
        return gestureRecognizers_;
    }
    /// The first responder in this tree gives its place up.
    void endEditing();
    /// The superview, or this view's controller first.
    [[nodiscard]] std::shared_ptr<UIResponder> next() const override;

    // Focus (`UIFocusSystem`).

    /// Whether keys can act on the view, where it is shown.
    [[nodiscard]] virtual bool canBecomeFocused() const { return false; }
    /// Whether what lies in the view counts as one for Tab, and arrows move within.
    [[nodiscard]] virtual bool isFocusGroup() const { return false; }
    /// The colour that shows the focus: the own one, else the nearest one above, else `tintColor()`.
    [[nodiscard]] UIColor focusColor() const;
    void setFocusColor(std::optional<UIColor> color);

    // Accessibility.

    /// Whether siblings that lie below the view are out of reach for keys while it is shown.
    [[nodiscard]] bool accessibilityViewIsModal() const noexcept { return isModal_; }
    void setAccessibilityViewIsModal(bool isModal) { assign(isModal_, isModal, UIViewChange::paint); }
    /// Whether assistive technology is told of the view: it has a role and there is something of it to see. Texts
    /// and images are also named, or else there is nothing to tell.
    [[nodiscard]] virtual bool isAccessibilityElement() const;
    [[nodiscard]] UIAccessibilityRole accessibilityRole() const;
    void setAccessibilityRole(UIAccessibilityRole role);
    /// What is read out: the set label, else the view's own text.
    [[nodiscard]] std::string accessibilityLabel() const;
    void setAccessibilityLabel(std::string label);
    [[nodiscard]] virtual UIAccessibilityState accessibilityState() const { return {}; }
    /// Tells views apart for programs; never read out.
    [[nodiscard]] const std::string& accessibilityIdentifier() const noexcept { return identifier_; }
    void setAccessibilityIdentifier(std::string identifier);

    // Animations.

    /// Runs `animations` at once; a renderer shows what they change little by little. `completion`
    /// runs later, from the main queue: after the time, where animations are played
    /// (`UIApplication`), else at once.
    static void animate(Seconds duration, const std::function<void()>& animations,
                        std::function<void()> completion = {}) {
        animate(UIViewAnimation{duration}, animations, std::move(completion));
    }
    static void animate(UIViewAnimation animation, const std::function<void()>& animations,
                        std::function<void()> completion = {});

    // What a renderer reads.

    /// Grows with every change of this view, across all views: whatever is above what was read last is new.
    [[nodiscard]] std::uint64_t revision() const noexcept { return revision_; }
    /// The greatest revision in this tree.
    [[nodiscard]] std::uint64_t treeRevision() const noexcept { return treeRevision_; }
    /// How to play the latest change; no value for one that is shown at once.
    [[nodiscard]] const std::optional<UIViewAnimation>& animation() const noexcept { return animation_; }
    void setNeedsDisplay();
    /// Views that take turns as subviews of this one, each laid out for its turn: a renderer can make what it
    /// draws of them ahead, and keep it while they are away.
    [[nodiscard]] virtual std::vector<std::shared_ptr<UIView>> alternates() const { return {}; }

    /// The window's; the key window's while the view is in none.
    [[nodiscard]] UITraitCollection traitCollection() const;
    virtual void traitCollectionDidChange(const UITraitCollection& /*previous*/) {}

protected:
    /// The one way of setters.
    /// @return whether the value changed.
    template <class Value, class New>
    bool assign(Value& stored, New&& value, UIViewChange change) {
        if (stored == value) return false;
        stored = std::forward<New>(value);
        didChange(change);
        return true;
    }
    void didChange(UIViewChange change);

    /// The view has come into a window, or left it.
    virtual void didMoveToWindow() {}
    /// Asks for `placeDidChange()`; once, when the view is made.
    void watchPlace();
    /// The view, or one that it lies in, has another place or size, has been scrolled, or
    /// lies in another one now.
    virtual void placeDidChange() {}
    /// A subview's content would like another size.
    virtual void subviewContentDidChange() {}
    /// Something in this tree asks for layout, or has to be drawn anew: heard at the tree's root.
    virtual void treeNeedsLayout() {}
    virtual void treeDidChange() {}

    [[nodiscard]] virtual UIAccessibilityRole defaultAccessibilityRole() const {
        return UIAccessibilityRole::none;
    }
    [[nodiscard]] virtual std::string defaultAccessibilityLabel() const { return {}; }

    /// Tells this view and everything below of new traits.
    void spreadTraits(const UITraitCollection& previous);

private:
    friend class NSLayoutConstraint;
    friend class StoryboardScene;
    friend class UIViewController;

    static constexpr double kTransparent = 0.01;

    struct Fitting {
        double width = -1;
        CGSize size;
    };

    /// How often sizes have been invalidated for all views.
    [[nodiscard]] static std::atomic<std::uint64_t>& sizesEra();
    void forgetSizes(std::uint64_t era);
    void layoutTree();
    void layoutOnce();
    /// Orders the constraints, where that has not been done. @throws LayoutPlan::Fault
    void makePlan();
    void constraintsDidChange();
    void moveSubview(const UIView& view, std::size_t toIndex);
    void dropConstraints(const UIView& of);
    void spreadWindow();
    void spreadPlace();
    [[nodiscard]] const UIView& root() const;
    [[nodiscard]] CGPoint originInRoot() const;

    CGPoint origin_;
    CGRect bounds_;
    CALayer layer_{*this};
    std::optional<UIColor> backgroundColor_;
    std::optional<UIColor> tintColor_;
    std::optional<UIColor> focusColor_;
    double alpha_ = 1;
    UIViewContentMode contentMode_ = UIViewContentMode::scaleToFill;
    int tag_ = 0;
    bool isHidden_ = false;
    bool clipsToBounds_ = false;
    bool isUserInteractionEnabled_ = true;
    bool isModal_ = false;
    bool isMultipleTouchEnabled_ = false;
    bool needsLayout_ = true;
    bool treeNeedsLayout_ = true;
    bool isLayingOut_ = false;
    int placeWatchers_ = 0; // in this tree

    UIView* superview_ = nullptr;            // cleared by the superview
    UIViewController* controller_ = nullptr; // cleared by the controller
    std::vector<std::shared_ptr<UIView>> subviews_;
    std::vector<std::shared_ptr<NSLayoutConstraint>> constraints_;
    std::vector<std::shared_ptr<UIGestureRecognizer>> gestureRecognizers_;
    std::shared_ptr<UILayoutGuide> safeArea_;
    std::shared_ptr<UILayoutGuide> readable_;
    double readableWidth_ = kUnbounded;
    std::optional<bool> isRightToLeft_;
    bool collapses_ = false;
    std::unique_ptr<LayoutPlan> plan_;
    mutable std::array<Fitting, 2> fittings_; // for any width, and for the last one asked for
    std::uint64_t sizesEra_ = sizesEra();     // from which sizes are remembered

    std::optional<UIAccessibilityRole> role_;
    std::string label_;
    std::string identifier_;

    std::uint64_t revision_ = 0;
    std::uint64_t treeRevision_ = 0;
    std::optional<UIViewAnimation> animation_;
};

} // namespace korvane
