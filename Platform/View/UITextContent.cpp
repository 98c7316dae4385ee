#include "Platform/View/UITextContent.h"

#include "Platform/Platform.h"
#include "Platform/View/DrawnPart.h"
#include "Platform/View/TextMeasurer.h"
#include "Platform/View/UIApplication.h"

#include <algorithm>
#include <cmath>

namespace korvane {

UIFont inUsersSize(const UIFont& font) {
    return font.withSize(font.pointSize() * UIApplication::shared().textScale());
}

CGSize measuredText(const std::string& text, const UIFont& font, double maximumWidth, int maximumLines) {
    const CGSize size = Platform::current().textMeasurer().size(drawnPart(text), font,
                                                                std::max(0.0, maximumWidth), maximumLines);
    return {std::ceil(size.width), std::ceil(size.height)};
}

} // namespace korvane
