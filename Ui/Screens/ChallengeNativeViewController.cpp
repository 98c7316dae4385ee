#include "Ui/Screens/ChallengeNativeViewController.h"

#include "Ui/Screens/Later.h"

#include <algorithm>
#include <cmath>

namespace korvane {

namespace {

constexpr Seconds kMeasuringDelay{0.2};
constexpr Seconds kSectionAnimation{0.3};
constexpr double kWarningWidth = 45;
/// Between a logo and the edge of its plate.
constexpr double kPlateInset = 5;
/// Below the fitted challenge text, and once more where no label follows it.
constexpr double kTextMargin = 20;
/// Between the bar, or the screen's foot, and what has been scrolled into sight.
constexpr double kClearance = 8;

std::optional<YesNoSelector> entryOf(bool isAskedFor, bool isYes) {
    if (!isAskedFor) return std::nullopt;
    return isYes ? YesNoSelector::Y : YesNoSelector::N;
}

} // namespace

// Lifecycle.

void ChallengeNativeViewController::viewDidLoad() {
    ChallengeViewController::viewDidLoad();
    scrollView = std::dynamic_pointer_cast<UIScrollView>(view());
    if (scrollView) scrollView->setScrollDelegate(weakFrom(this));
    challengeInfoLabel->setAdjustsFontSizeToFitWidth(true);
    challengeInfoHeader->setAdjustsFontSizeToFitWidth(true);
    noteStoryboard();
    connect(*whyInfoButton.get(), &ChallengeNativeViewController::inverseWhyInfoDisplaying);
    connect(*extInfoButton.get(), &ChallengeNativeViewController::inverseExtInfoDisplaying);
    whitelistingInfo->addTarget(ControlEvent::touchUpInside, [weak = weakFrom(this)](UIControl& sender) {
        if (const auto self = weak.lock())
            self->whitelistingChecked(static_cast<ChallengeSelectButton&>(sender));
    });
}

void ChallengeNativeViewController::noteStoryboard() {
    whitelistingRoom_ = whitelistingInfoHeightConstraint->constant();
    bankLogoRoom_ = {bankLogoWidthConstraint->constant(), bankLogoHeightConstraint->constant()};
    psLogoRoom_ = psLogoWidthConstraint->constant();
    headerGap_ = headerTopConstraint->constant();
    for (const UiObject object : chain())
        if (const auto button = std::dynamic_pointer_cast<ChallengeButton>(control(object)))
            for (const auto& constraint : view()->constraints())
                if (constraint->firstItem() == button &&
                    constraint->firstAttribute() == NSLayoutAttribute::height)
                    fittedButtons_.push_back({object, button, constraint, constraint->constant()});
}

void ChallengeNativeViewController::viewWillAppear(UIAnimated animated) {
    ChallengeViewController::viewWillAppear(animated);
    for (const auto* button : {&whyInfoButton, &extInfoButton}) {
        (*button)->setImage(arrowDown.get(), ControlState::normal);
        (*button)->setOpen(false);
    }
    whitelistingInfo->setImage(uncheckedWhitelistingCheckBox.get(), ControlState::normal);
    whyInfoHeightConstraint->setConstant(0);
    extInfoHeightConstraint->setConstant(0);
}

void ChallengeNativeViewController::viewDidAppear(UIAnimated animated) {
    ChallengeViewController::viewDidAppear(animated);
    isWhitelistingInfo = whitelistingInfo->isHidden();
    noteAnswer();
    onMainQueueAfter(kMeasuringDelay, [weak = weakFrom(this)] {
        if (const auto self = weak.lock()) self->calculatedContentSize(false);
    });
}

void ChallengeNativeViewController::viewDidLayoutSubviews() {
    applyCustomConstraints();
    for (const auto* text : {&whyInfo, &extInfo}) {
        (*text)->setContentInset({});
        (*text)->setTextContainerInset({});
        (*text)->setLineFragmentPadding(0);
    }
    fitLogos();
    fitButtons();
    fitHeights();
    whyInfoButton->applyCustomInsets();
    extInfoButton->applyCustomInsets();
    if (scrollView) {
        scrollView->setContentSize({scrollView->contentSize().width, CGRectGetMaxY(extInfo->frame())});
        const double underBar = CGRectGetMaxY(toolBar->frame()) - scrollView->contentOffset().y;
        const double atFoot = scrollView->safeAreaInsets().bottom;
        scrollView->setCoveredInset({underBar + kClearance, 0, atFoot + kClearance, 0});
        scrollView->setContentInset({0, 0, atFoot, 0}); // the last line comes out from under the system's
    }
    ChallengeViewController::viewDidLayoutSubviews();
}

/// The ground of the logos is another one.
void ChallengeNativeViewController::traitCollectionDidChange(const UITraitCollection& previous) {
    ChallengeViewController::traitCollectionDidChange(previous);
    view()->setNeedsLayout();
}

bool ChallengeNativeViewController::hasDarkGround() {
    const auto ground = view()->backgroundColor().value_or(UIColor::systemBackground());
    const RGBA& shade = ground.resolved(view()->traitCollection().userInterfaceStyle);
    return 0.21 * shade.red + 0.72 * shade.green + 0.07 * shade.blue < 0.5;
}

/// Without any logo their row goes, and the gap below it.
void ChallengeNativeViewController::fitLogos() {
    fitLogo(UiObject::bankLogo, *bankLogo.get(), *bankLogoWidthConstraint.get(), bankLogoRoom_.width);
    fitLogo(UiObject::psLogo, *psLogo.get(), *psLogoWidthConstraint.get(), psLogoRoom_);
    const bool isEmpty = !bankLogo->image() && !psLogo->image();
    setHeight(UiObject::bankLogo, *bankLogoHeightConstraint.get(), isEmpty ? 0 : bankLogoRoom_.height);
    if (!customConstraints || !customConstraints->getConstraints(UiObject::challengeInfoHeader).top)
        headerTopConstraint->setConstant(isEmpty ? 0 : headerGap_);
}

/// A logo is as wide as it is drawn, so that it stands on the margin. Logos are made for white: on a dark ground
/// they get a plate.
void ChallengeNativeViewController::fitLogo(UiObject object, UIImageView& logo, NSLayoutConstraint& width,
                                            double widest) {
    const auto& image = logo.image();
    const bool hasPlate = image && hasDarkGround();
    const double inset = hasPlate ? kPlateInset : 0;
    logo.setContentInset(inset);
    logo.setBackgroundColor(hasPlate ? std::optional(UIColor::white()) : std::nullopt);
    if (customConstraints && customConstraints->getConstraints(object).width) return;
    const CGSize natural = image ? image->size() : CGSize{};
    const double height = bankLogoRoom_.height - 2 * inset;
    const bool isKnown = natural.width > 0 && natural.height > 0;
    const double drawn = isKnown ? natural.width * height / natural.height : 0;
    width.setConstant(std::min(widest, std::ceil(drawn) + 2 * inset));
}

void ChallengeNativeViewController::fitButtons() {
    for (const FittedButton& row : fittedButtons_)
        setHeight(row.object, *row.height,
                  std::max(row.least, row.button->heightForTitle(row.button->bounds().size.width)));
}

void ChallengeNativeViewController::fitHeights() {
    const auto needed = [](const UIView& view) { return view.fittingSize(view.bounds().size.width).height; };
    if (isChallengeTextFitted_)
        setHeight(UiObject::challengeInfoText, *challengeInfoHeightConstraint.get(),
                  needed(*challengeInfoText.get()) + challengeTextMargin());
    if (!whitelistingInfo->isHidden())
        setHeight(UiObject::whitelistingInfo, *whitelistingInfoHeightConstraint.get(),
                  std::max(whitelistingRoom_, needed(*whitelistingInfo.get())));
    if (!isAppearing()) return;
    if (whyInfoHeightConstraint->constant() > 0)
        setHeight(UiObject::whyInfo, *whyInfoHeightConstraint.get(), needed(*whyInfo.get()));
    if (extInfoHeightConstraint->constant() > 0)
        setHeight(UiObject::extInfo, *extInfoHeightConstraint.get(), needed(*extInfo.get()));
}

void ChallengeNativeViewController::setHeight(UiObject of, NSLayoutConstraint& constraint,
                                              double height) const {
    if (customConstraints && customConstraints->getConstraints(of).height) return;
    constraint.setConstant(height);
}

double ChallengeNativeViewController::challengeTextMargin() const {
    return challengeInfoLabel->isHidden() ? 2 * kTextMargin : kTextMargin;
}

void ChallengeNativeViewController::fitChallengeText() {
    view()->layoutIfNeeded();
    isChallengeTextFitted_ = true;
    const auto text = challengeInfoText.get();
    const CGRect frame = text->frame();
    const CGSize fitting = text->sizeThatFits({frame.size.width, kUnbounded});
    text->setFrame({frame.origin, {std::max(fitting.width, frame.size.width), fitting.height + kTextMargin}});
    setHeight(UiObject::challengeInfoText, *challengeInfoHeightConstraint.get(),
              fitting.height + challengeTextMargin());
}

void ChallengeNativeViewController::scrollViewDidScroll(UIScrollView& ofContent) {
    toolBarTopConstraint->setConstant(std::max(0.0, ofContent.contentOffset().y));
}

// The sections.

void ChallengeNativeViewController::inverseWhyInfoDisplaying() {
    inverseDisplaying({whyInfo, whyInfoButton, whyInfoHeightConstraint});
}

void ChallengeNativeViewController::inverseExtInfoDisplaying() {
    inverseDisplaying({extInfo, extInfoButton, extInfoHeightConstraint});
}

void ChallengeNativeViewController::inverseDisplaying(const Section& section) {
    const bool isOpen = section.text->frame().size.height > 0;
    const double height = section.text->contentSize().height;
    section.button->setOpen(!isOpen);
    section.button->setImage(isOpen ? arrowDown.get() : arrowUp.get(), ControlState::normal);
    calculatedContentSize(true, isOpen ? -height : height);
    section.height->setConstant(isOpen ? 0 : height);
    UIView::animate(kSectionAnimation, [this] { view()->layoutIfNeeded(); });
}

void ChallengeNativeViewController::calculatedContentSize(bool doOffset, double deltaHeight) {
    const auto content = std::dynamic_pointer_cast<UIScrollView>(view());
    if (!content) return;
    const double contentHeight = CGRectGetMaxY(extInfo->frame()) + deltaHeight;
    const double over = contentHeight - content->bounds().size.height;
    if (doOffset && over > 0 && deltaHeight > 0) content->setContentOffset({0, over}, UIAnimated::yes);
    UIView::animate(kSectionAnimation, [&content, contentHeight] {
        content->setContentSize({content->contentSize().width, contentHeight});
    });
}

// Warning and whitelisting.

void ChallengeNativeViewController::showWarning() {
    warningWidthConstraint->setConstant(kWarningWidth);
}

void ChallengeNativeViewController::whitelistingChecked(ChallengeSelectButton& sender) {
    sender.setChecked(!sender.isChecked());
    sender.setImage(sender.isChecked() ? checkedWhitelistingCheckBox.get()
                                       : uncheckedWhitelistingCheckBox.get(),
                    ControlState::normal);
    noteAnswer();
}

void ChallengeNativeViewController::noteAnswer() {
    answer_->isAskedFor = !isWhitelistingInfo;
    answer_->isYes = whitelistingInfo->isChecked();
}

std::optional<YesNoSelector> ChallengeNativeViewController::getWhitelistingDataEntry() const {
    return entryOf(!isWhitelistingInfo, whitelistingInfo->isChecked());
}

std::function<std::optional<YesNoSelector>()>
ChallengeNativeViewController::latestWhitelistingDataEntry() const {
    return [answer = answer_] { return entryOf(answer->isAskedFor, answer->isYes); };
}

// Constraints of the application's.

std::shared_ptr<UIView> ChallengeNativeViewController::control(UiObject object) const {
    switch (object) {
    case UiObject::bankLogo: return bankLogo.get();
    case UiObject::psLogo: return psLogo.get();
    case UiObject::challengeInfoHeader: return challengeInfoHeader.get();
    case UiObject::challengeInfoLabel: return challengeInfoLabel.get();
    case UiObject::challengeInfoText: return challengeInfoText.get();
    case UiObject::whitelistingInfo: return whitelistingInfo.get();
    case UiObject::whyInfoButton: return whyInfoButton.get();
    case UiObject::whyInfo: return whyInfo.get();
    case UiObject::extInfoButton: return extInfoButton.get();
    case UiObject::extInfo: return extInfo.get();
    case UiObject::warningImage: return warningImage.get();
    case UiObject::otp:
    case UiObject::submitButton:
    case UiObject::resendButton:
    case UiObject::continueButton:
    case UiObject::tableView:
    case UiObject::nextButton: return nullptr;
    }
    return nullptr;
}

} // namespace korvane
