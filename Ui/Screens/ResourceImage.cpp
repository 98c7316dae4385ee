#include "Ui/Screens/ResourceImage.h"

#include "Platform/Bundle.h"

namespace korvane {

const UIImagePtr& ResourceImage::get() {
    if (isSet_) return image_;
    const auto found = UIImage::named(name_, *Bundle::resources());
    set(found && mode_ == UIImageRenderingMode::alwaysTemplate ? found->withRenderingMode(mode_) : found);
    return image_;
}

void ResourceImage::set(UIImagePtr image) {
    image_ = std::move(image);
    isSet_ = true;
}

} // namespace korvane
