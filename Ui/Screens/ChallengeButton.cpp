#include "Ui/Screens/ChallengeButton.h"

#include "Ui/Screens/Later.h"

namespace korvane {

namespace {

constexpr Seconds kPress{0.2};
constexpr double kTitleInset = 5;
/// The size, in points, under which a title takes two lines rather than shrink, and the room around these.
constexpr double kLeastSize = 13;
constexpr double kAround = 12;
/// The width that a missing image is given.
constexpr double kNoImageWidth = 15;

} // namespace

void ChallengeButton::awakeFromNib() {
    UIButton::awakeFromNib();
    titleLabel()->setAdjustsFontSizeToFitWidth(true);
    setTitleEdgeInsets({0, kTitleInset, 0, kTitleInset});
    if (contentHorizontalAlignment() == UIControlContentHorizontalAlignment::center)
        titleLabel()->setTextAlignment(NSTextAlignment::center);
    customBackgroundColor = backgroundColor();
    customTextColor = titleColor(ControlState::normal);
}

void ChallengeButton::setHighlighted(bool isHighlighted) {
    const bool isChange = isHighlighted != this->isHighlighted();
    UIButton::setHighlighted(isHighlighted);
    if (!isChange || isPressed) return;
    isPressed = true;
    applyLook();
    onMainQueueAfter(kPress, [weak = weakFrom(this)] {
        const auto button = weak.lock();
        if (!button) return;
        button->applyLook();
        button->isPressed = false;
    });
}

int ChallengeButton::linesFor(double width) const {
    const double wanted = titleLabel()->fittingSize(kUnbounded).width;
    const double size = titleLabel()->shownFont().pointSize();
    return wanted > 0 && size * titleRoom(width) / wanted < kLeastSize ? 2 : 1;
}

double ChallengeButton::heightForTitle(double width) const {
    if (width <= 0 || linesFor(width) == 1) return 0;
    return measuredText(currentTitle(), titleLabel()->shownFont(), titleRoom(width), 2).height + kAround;
}

void ChallengeButton::layoutSubviews() {
    titleLabel()->setNumberOfLines(linesFor(bounds().size.width));
    UIButton::layoutSubviews();
}

std::optional<UIColor> ChallengeButton::pressedTint() const {
    const bool isOwn = customHighlitedColor || customHighlitedTextColor;
    return isOwn ? std::nullopt : UIButton::pressedTint();
}

void ChallengeButton::applyLook() {
    const bool isLit = isHighlighted();
    setBackgroundColor(isLit && customHighlitedColor ? customHighlitedColor : customBackgroundColor);
    const auto& textColor = isLit && customHighlitedTextColor ? customHighlitedTextColor : customTextColor;
    setTitleColor(textColor, ControlState::normal);
    if (textColor) titleLabel()->setTextColor(*textColor);
}

UIEdgeInsets ShowInfoButtonButton::imageInsetsAtRight(double fromRight) const {
    const double width = imageView() ? imageView()->frame().size.height : kNoImageWidth;
    return {0, bounds().size.width - width - fromRight, 0, 0};
}

void ShowInfoButtonButton::applyCustomInsets() {
    // What is placed here is measured by how it lies now.
    layoutIfNeeded();
    const double titleShift = leftTitleInset.value_or(0);
    if (leftImageInset && !rightImageInset)
        setImageEdgeInsets({0, titleLabel()->frame().size.width + *leftImageInset + titleShift, 0, 0});
    else
        setImageEdgeInsets(imageInsetsAtRight(rightImageInset.value_or(0)));
    if (!leftImageInset) return;
    UIEdgeInsets title = titleEdgeInsets();
    title.left = titleShift - (imageView() ? imageView()->frame().size.width : 0);
    setTitleEdgeInsets(title);
}

} // namespace korvane
