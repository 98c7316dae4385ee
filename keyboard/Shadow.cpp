#include "keyboard/Shadow.h"

#include "Platform/View/UIView.h"

namespace korvane {

void applyShadow(const Shadow& shadow, CALayer& layer) {
    layer.setShadowColor(shadow.color);
    layer.setShadowRadius(shadow.radius);
    layer.setShadowOpacity(static_cast<double>(shadow.opacity));
    layer.setShadowOffset(shadow.offset);
    layer.setShadowPath(shadow.path);
}

void applyShadow(const Shadow& shadow, UIView& view) {
    applyShadow(shadow, view.layer());
}

} // namespace korvane
