#include "Ui/Screens/TopController.h"

#include "Platform/Platform.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UINavigationController.h"
#include "Platform/View/UIWindow.h"

namespace korvane {

namespace {

/// What a controller shows in its own place, or null.
std::shared_ptr<UIViewController> shownBy(const UIViewController& controller) {
    if (const auto* stack = dynamic_cast<const UINavigationController*>(&controller))
        return stack->visibleViewController();
    if (const auto* tabs = dynamic_cast<const UITabBarController*>(&controller))
        if (auto selected = tabs->selectedViewController()) return selected;
    return controller.presentedViewController();
}

std::shared_ptr<UIViewController> keyWindowsTopController() {
    const auto window = UIApplication::shared().keyWindow();
    return window ? getTopController(window->rootViewController()) : nullptr;
}

} // namespace

std::shared_ptr<UIViewController> getTopController() {
    DispatchQueue& main = Platform::current().dispatch().mainQueue();
    if (main.isCurrent()) return keyWindowsTopController();
    std::shared_ptr<UIViewController> top;
    main.sync([&top] { top = keyWindowsTopController(); });
    return top;
}

std::shared_ptr<UIViewController> getTopController(std::shared_ptr<UIViewController> controller) {
    while (controller) {
        auto shown = shownBy(*controller);
        if (!shown) return controller;
        controller = std::move(shown);
    }
    return nullptr;
}

} // namespace korvane
