#include "Platform/Qt/QtDevice.h"

#include <algorithm>

namespace korvane {

UIUserInterfaceIdiom QtDevice::userInterfaceIdiom() const {
    constexpr double kSmallestTablet = 600;
    const CGSize size = screen_.bounds().size;
    const double shorter = std::min(size.width, size.height);
    if (shorter <= 0) return UIUserInterfaceIdiom::unspecified;
    return shorter < kSmallestTablet ? UIUserInterfaceIdiom::phone : UIUserInterfaceIdiom::pad;
}

} // namespace korvane
