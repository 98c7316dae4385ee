#pragma once

#include "Platform/View/StoryboardValue.h"
#include "Platform/View/UIView.h"

#include <string>

namespace korvane {

/// Sets a property of a view by its name in a storyboard.
/// @return false if views of that class do not have it.
/// @throws StoryboardValue::Mismatch for a value that the property cannot have.
[[nodiscard]] bool setStoryboardProperty(UIView& view, const std::string& name, const StoryboardValue& value);

} // namespace korvane
