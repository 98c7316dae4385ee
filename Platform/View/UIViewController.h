#pragma once

#include "Platform/Export.h"
#include "Platform/View/UINavigationBar.h"
#include "Platform/View/UIOutlet.h"
#include "Platform/View/UIView.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace korvane {

class UINavigationController;

enum class UIModalPresentationStyle { automatic, fullScreen, overFullScreen };

/// One screen: a view that is made when it is first asked for, and what happens to it. Main queue only.
///
/// The order of what happens: `loadView`, `viewDidLoad`; on each appearance `viewWillAppear`, then the layout
/// with `viewWillLayoutSubviews` and `viewDidLayoutSubviews`, then `viewDidAppear`; at the end
/// `viewWillDisappear`, `viewDidDisappear`. Of two controllers that change places the leaving one is told
/// first that it will; that it did, it is told first within a container, and last where one is presented or
/// dismissed. An animated change tells the second half, and runs its completion, from the main
/// queue (see `UIApplication`); a change that begins before ends the earlier one first.
class KORVANE_EXPORT UIViewController : public UIResponder, public UIOutletOwner {
public:
    using Completion = std::function<void()>;

    UIViewController();
    ~UIViewController() override;

    // The view.

    /// Makes and loads the view first where that has not happened.
    [[nodiscard]] const std::shared_ptr<UIView>& view();
    [[nodiscard]] bool isViewLoaded() const noexcept { return view_ != nullptr; }
    void setView(std::shared_ptr<UIView> view);
    /// For the storyboard: makes the view when it is loaded, in place of an empty one.
    void setViewLoader(std::function<void(UIViewController&)> loader) { viewLoader_ = std::move(loader); }

    virtual void loadView();
    virtual void viewDidLoad() {}
    virtual void viewWillAppear(UIAnimated /*animated*/) {}
    virtual void viewDidAppear(UIAnimated /*animated*/) {}
    virtual void viewWillDisappear(UIAnimated /*animated*/) {}
    virtual void viewDidDisappear(UIAnimated /*animated*/) {}
    virtual void viewWillLayoutSubviews() {}
    virtual void viewDidLayoutSubviews() {}
    virtual void traitCollectionDidChange(const UITraitCollection& /*previous*/) {}
    /// Whether the controller is on the screen, or on its way there.
    [[nodiscard]] bool isAppearing() const noexcept;
    /// Whether it is on the screen, and has been told so.
    [[nodiscard]] bool hasAppeared() const noexcept { return appearance_ == Appearance::appeared; }

    [[nodiscard]] const std::string& title() const noexcept { return navigationItem_->title(); }
    void setTitle(std::string title) { navigationItem_->setTitle(std::move(title)); }
    [[nodiscard]] const std::shared_ptr<UINavigationItem>& navigationItem() const noexcept {
        return navigationItem_;
    }
    [[nodiscard]] virtual bool prefersStatusBarHidden() const { return false; }
    [[nodiscard]] UITraitCollection traitCollection() const;

    // Containers.

    [[nodiscard]] std::shared_ptr<UIViewController> parent() const;
    [[nodiscard]] const std::vector<std::shared_ptr<UIViewController>>& children() const noexcept {
        return children_;
    }
    void addChild(std::shared_ptr<UIViewController> child);
    void removeFromParent();
    /// The nearest navigation controller around this one, or null.
    [[nodiscard]] std::shared_ptr<UINavigationController> navigationController() const;

    // Presentation.

    [[nodiscard]] UIModalPresentationStyle modalPresentationStyle() const noexcept { return style_; }
    void setModalPresentationStyle(UIModalPresentationStyle style) { style_ = style; }
    /// Shows a controller over the outermost container of this one, which it holds until it is dismissed.
    /// While that container presents another one nothing happens, and a line of the log says so.
    /// @param completion  runs from the main queue when the controller has appeared.
    void present(std::shared_ptr<UIViewController> controller, UIAnimated animated,
                 Completion completion = {});
    /// Ends the presentation that this controller made, or else the one that shows it, and those above.
    /// @param completion  runs from the main queue when that has happened, or if there was none.
    void dismiss(UIAnimated animated, Completion completion = {});
    /// Presented by this controller or by a container around it, or null.
    [[nodiscard]] std::shared_ptr<UIViewController> presentedViewController() const;
    /// Presents this controller or a container around it, or null.
    [[nodiscard]] std::shared_ptr<UIViewController> presentingViewController() const;

    [[nodiscard]] std::shared_ptr<UIResponder> next() const override;

    /// One half of an appearance or a disappearance: for containers and windows.
    void beginAppearanceTransition(bool isAppearing, UIAnimated animated);
    void endAppearanceTransition();

protected:
    /// The child whose appearance follows this container's; null for one that shows none.
    [[nodiscard]] virtual std::shared_ptr<UIViewController> childForAppearance() const { return nullptr; }
    /// Where a container shows its children's views.
    [[nodiscard]] virtual CGRect childFrame() const;
    /// Replaces what a container shows, in the platform's order. Either may be null.
    void exchangeChild(const std::shared_ptr<UIViewController>& old,
                       const std::shared_ptr<UIViewController>& next, UIAnimated animated,
                       Completion completion);
    /// Replaces the children. One that is shown keeps its parent until it has been exchanged.
    void setChildren(std::vector<std::shared_ptr<UIViewController>> children);
    /// A layout pass has placed what has constraints.
    virtual void layOutChildren();
    /// Ends the change that is under way, if any.
    void finishTransition();

private:
    friend class UIApplication;
    friend class UIView;
    friend class UIWindow;

    enum class Appearance { disappeared, appearing, appeared, disappearing };

    void attachChild(UIViewController& child);
    void endExchange(const std::shared_ptr<UIViewController>& old,
                     const std::shared_ptr<UIViewController>& next);
    void runTransition(UIAnimated animated, Completion secondHalf, Completion completion);
    /// Makes changes that are seen little by little if the change of screens is.
    static void change(UIAnimated animated, const std::function<void()>& changes);
    void endDismissal(const std::shared_ptr<UIViewController>& top);
    /// Takes the view out of its tree, and fingers that are on it from it.
    void leaveTree();
    void dropPresented();
    [[nodiscard]] std::shared_ptr<UIViewController> outermost() const;
    [[nodiscard]] std::shared_ptr<UIViewController> self() const;

    std::shared_ptr<UIView> view_;
    std::function<void(UIViewController&)> viewLoader_;
    std::shared_ptr<UINavigationItem> navigationItem_;
    UIViewController* parent_ = nullptr; // cleared by the parent
    std::vector<std::shared_ptr<UIViewController>> children_;
    std::shared_ptr<UIViewController> leaving_; // shown still, but no child any more
    CGRect childRoom_;                          // as of the last layout
    std::shared_ptr<UIViewController> presented_;
    std::weak_ptr<UIViewController> presenting_;
    UIModalPresentationStyle style_ = UIModalPresentationStyle::automatic;
    Appearance appearance_ = Appearance::disappeared;
    UIAnimated isAnimated_ = UIAnimated::no;
    std::weak_ptr<Completion> transition_; // the second half of the change under way, which the queue holds
};

} // namespace korvane
