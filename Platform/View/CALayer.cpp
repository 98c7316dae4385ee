#include "Platform/View/CALayer.h"

#include "Platform/View/UIView.h"

namespace korvane {

void CALayer::setValue(double value, const std::string& forKey) {
    const auto [entry, isNew] = values_.try_emplace(forKey, value);
    if (!isNew) {
        assign(entry->second, value);
        return;
    }
    markPaint();
}

std::optional<double> CALayer::value(const std::string& forKey) const {
    const auto found = values_.find(forKey);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void CALayer::markPaint() {
    view_.setNeedsDisplay();
}

} // namespace korvane
