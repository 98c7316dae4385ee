#pragma once

#include "Platform/View/UIViewController.h"

#include <memory>

namespace korvane {

/// The controller that the user sees: downwards from the key window's root through what shows others.
/// @return null without a window or a root. Any thread; from another one than the main queue's
/// it waits for that one.
[[nodiscard]] std::shared_ptr<UIViewController> getTopController();

/// The same, downwards from a controller. Main queue only.
[[nodiscard]] std::shared_ptr<UIViewController>
getTopController(std::shared_ptr<UIViewController> controller);

} // namespace korvane
