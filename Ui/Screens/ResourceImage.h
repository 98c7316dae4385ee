#pragma once

#include "Platform/View/UIImage.h"

#include <string>

namespace korvane {

/// An image of the library's resources that is read when it is first asked for, unless it was replaced
/// before. Main queue only.
class ResourceImage {
public:
    explicit ResourceImage(std::string name) : name_(std::move(name)) {}

    [[nodiscard]] const UIImagePtr& get();
    /// Null shows nothing.
    void set(UIImagePtr image);

private:
    std::string name_;
    UIImagePtr image_;
    bool isSet_ = false;
};

} // namespace korvane
