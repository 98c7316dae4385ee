#include "keyboard/CustomToolBar.h"

#include "keyboard/KeyboardStyles.h"

namespace korvane {

std::shared_ptr<CustomToolBar> CustomToolBar::make() {
    auto toolBar = std::make_shared<CustomToolBar>(Private{});
    toolBar->reload();
    return toolBar;
}

void CustomToolBar::reload() {
    if (buttonClose_) buttonClose_->removeFromSuperview();
    buttonClose_ = std::make_shared<UIButton>();
    if (const auto image = keyboardImage("velka_sdk_kb_ShevronDown"))
        buttonClose_->setImage(image->withRenderingMode(UIImageRenderingMode::alwaysTemplate),
                               ControlState::normal);
    buttonClose_->setBackgroundColor(UIColor::clear());
    buttonClose_->setTintColor(UIColor::label());
    buttonClose_->setAccessibilityLabel("Close");
    buttonClose_->addTarget(ControlEvent::touchUpInside, weakly(this, &CustomToolBar::closeKeyboard));
    addSubview(buttonClose_);
}

/// The button is as high as the bar, so that it is easily hit.
void CustomToolBar::layoutSubviews() {
    constexpr double kWider = 10;
    constexpr double kFromEdge = 5;
    if (!buttonClose_) return;
    const CGSize size = bounds().size;
    const double width = buttonClose_->intrinsicContentSize().width + kWider;
    buttonClose_->setFrame({{size.width - kFromEdge - width, 0}, {width, size.height}});
}

void CustomToolBar::closeKeyboard() {
    if (const auto listener = delegate_.lock()) listener->customToolBarCloseButtonPressed(*this);
}

} // namespace korvane
