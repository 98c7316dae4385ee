#include "Ui/Screens/ResourceImage.h"

#include "Platform/Bundle.h"

namespace korvane {

const UIImagePtr& ResourceImage::get() {
    if (!isSet_) set(UIImage::named(name_, *Bundle::resources()));
    return image_;
}

void ResourceImage::set(UIImagePtr image) {
    image_ = std::move(image);
    isSet_ = true;
}

} // namespace korvane
