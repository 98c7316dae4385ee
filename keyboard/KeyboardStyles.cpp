#include "keyboard/KeyboardStyles.h"

#include "Platform/Bundle.h"

namespace korvane {

std::optional<UIColor> keyboardColor(const std::string& name) {
    return UIColor::named(name, *Bundle::resources());
}

UIImagePtr keyboardImage(const std::string& name) {
    return UIImage::named(name, *Bundle::resources());
}

} // namespace korvane
