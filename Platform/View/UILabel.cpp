#include "Platform/View/UILabel.h"

#include <algorithm>

namespace korvane {

CGSize UILabel::sizeThatFits(CGSize size) const {
    if (text().empty()) return {};
    if (numberOfLines_ != 1) return measuredText(text(), shownFont(), size.width, numberOfLines_);
    // One line is not broken but cut short.
    const CGSize line = measuredText(text(), shownFont(), kUnbounded, 1);
    return {std::min(line.width, size.width), line.height};
}

double UILabel::scaleFactor() const {
    const double wanted = intrinsicContentSize().width;
    if (!adjustsFontSizeToFitWidth_ || numberOfLines_ != 1 || wanted <= bounds().size.width) return 1;
    return std::clamp(bounds().size.width / wanted, std::min(minimumScaleFactor_, 1.0), 1.0);
}

} // namespace korvane
