#pragma once

#include "Platform/View/UIViewController.h"

namespace korvane {

/// A stack of controllers of which the top one is shown. Main queue only.
class UINavigationController : public UIViewController {
public:
    UINavigationController();
    explicit UINavigationController(std::shared_ptr<UIViewController> rootViewController);

    /// From the root to the top.
    [[nodiscard]] const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const noexcept {
        return children();
    }
    [[nodiscard]] std::shared_ptr<UIViewController> topViewController() const;
    /// What is presented over the stack, else its top.
    [[nodiscard]] std::shared_ptr<UIViewController> visibleViewController() const;

    /// A controller that is on the stack already is not pushed again.
    void pushViewController(std::shared_ptr<UIViewController> controller, UIAnimated animated,
                            Completion completion = {});
    /// @return the controller that was popped; null if there is the root alone.
    std::shared_ptr<UIViewController> popViewController(UIAnimated animated, Completion completion = {});
    /// Replaces the stack; what stays at the top is not told anything.
    void setViewControllers(std::vector<std::shared_ptr<UIViewController>> controllers, UIAnimated animated,
                            Completion completion = {});

    /// Shows the top controller's `navigationItem()`.
    [[nodiscard]] const std::shared_ptr<UINavigationBar>& navigationBar() const noexcept { return bar_; }
    void setNavigationBarHidden(bool isHidden, UIAnimated animated);

    void loadView() override;
    [[nodiscard]] bool prefersStatusBarHidden() const override;

protected:
    [[nodiscard]] std::shared_ptr<UIViewController> childForAppearance() const override {
        return topViewController();
    }
    [[nodiscard]] CGRect childFrame() const override;
    void layOutChildren() override;

private:
    void showItem();

    std::shared_ptr<UINavigationBar> bar_;
};

/// Several controllers of which the selected one is shown. Main queue only.
class UITabBarController : public UIViewController {
public:
    [[nodiscard]] const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const noexcept {
        return children();
    }
    /// Selects the first one.
    void setViewControllers(std::vector<std::shared_ptr<UIViewController>> controllers);
    /// Null without controllers.
    [[nodiscard]] std::shared_ptr<UIViewController> selectedViewController() const {
        return selected_.lock();
    }

protected:
    [[nodiscard]] std::shared_ptr<UIViewController> childForAppearance() const override {
        return selectedViewController();
    }

private:
    std::weak_ptr<UIViewController> selected_;
};

} // namespace korvane
