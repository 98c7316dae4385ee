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

/// In steps of a point, which is how finely a renderer draws.
double UILabel::scaleForLines() const {
    const UIFont font = shownFont();
    const double width = bounds().size.width;
    const double least = font.pointSize() * std::min(minimumScaleFactor_, 1.0);
    double size = font.pointSize();
    const auto isCut = [&] {
        const UIFont tried = font.withSize(size);
        return measuredText(text(), tried, width, numberOfLines_ + 1).height >
               measuredText(text(), tried, width, numberOfLines_).height;
    };
    while (size - 1 >= least && isCut())
        --size;
    return size / font.pointSize();
}

double UILabel::scaleFactor() const {
    if (adjustsFontSizeToFitWidth_ && numberOfLines_ > 1) return scaleForLines();
    const double wanted = intrinsicContentSize().width;
    if (!adjustsFontSizeToFitWidth_ || numberOfLines_ != 1 || wanted <= bounds().size.width) return 1;
    return std::clamp(bounds().size.width / wanted, std::min(minimumScaleFactor_, 1.0), 1.0);
}

} // namespace korvane
