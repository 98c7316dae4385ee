#pragma once

#include "Platform/View/UIImage.h"

#include <string>

namespace korvane {

/// An image of the library's resources that is read when it is first asked for, unless it was replaced
/// before. Main queue only.
class ResourceImage {
public:
    /// @param mode  a template takes the tint of what shows it.
    explicit ResourceImage(std::string name, UIImageRenderingMode mode = UIImageRenderingMode::automatic)
        : name_(std::move(name)), mode_(mode) {}

    [[nodiscard]] const UIImagePtr& get();
    /// Null shows nothing.
    void set(UIImagePtr image);

private:
    std::string name_;
    UIImageRenderingMode mode_;
    UIImagePtr image_;
    bool isSet_ = false;
};

} // namespace korvane
