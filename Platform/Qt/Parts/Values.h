#pragma once

#include "Platform/Qt/Fonts.h"
#include "Platform/View/Geometry.h"
#include "Platform/View/UIColor.h"
#include "Platform/View/UIViewTypes.h"

#include <QColor>
#include <QRectF>

namespace korvane {

// The tree's values as Qt's.

[[nodiscard]] inline QRectF asRect(const CGRect& rect) {
    return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

[[nodiscard]] inline QColor asColor(const UIColor& color, UIUserInterfaceStyle style) {
    const RGBA& shade = color.resolved(style);
    return QColor::fromRgbF(static_cast<float>(shade.red), static_cast<float>(shade.green),
                            static_cast<float>(shade.blue), static_cast<float>(shade.alpha));
}

[[nodiscard]] inline int milliseconds(Seconds span) {
    return static_cast<int>(span.count() * 1000);
}

} // namespace korvane
