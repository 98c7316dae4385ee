#include "Ui/Screens/ChallengeViewController.h"

#include "Platform/View/UIApplication.h"
#include "Platform/View/UIWindow.h"
#include "Ui/Screens/ChallengeRootNavigationController.h"
#include "Ui/Screens/FontRule.h"
#include "Ui/Screens/ProgressView.h"

namespace korvane {

namespace {

/// The opacity of the library's own spinner.
constexpr double kSpinnerAlpha = 0.8;

/// Of a button whose look says anything about its font: the system's unless it names one that there is, in
/// the button's own weight unless it has one.
UIFont buttonFont(const FontValues& values, const UIFont& own, const std::string& subject) {
    const double weight = values.weight ? *values.weight / kFontWeightScale : own.weight();
    const auto font = customFont(values, std::nullopt, subject);
    return font.value_or(UIFont::systemFont(customFontSize(values))).withWeight(weight);
}

/// The colour of the buttons that go on is the one that an application's look stands out by.
std::optional<UIColor> accentOf(const UiCustomization& customization) {
    using enum ButtonType;
    for (const ButtonType type : {SUBMIT, NEXT, CONTINUE})
        if (const auto look = customization.getButtonCustomization(type); look && look->backgroundColor)
            return look->backgroundColor;
    return std::nullopt;
}

} // namespace

void setTitles(UIButton& button, const std::string& title) {
    button.setTitle(title, ControlState::normal);
    button.setTitle(title, ControlState::highlighted);
}

// Lifecycle.

void ChallengeViewController::viewDidLoad() {
    UIViewController::viewDidLoad();
    prevention.setPreventScreenCapture(true);
    view()->setFocusColor(view()->tintColor());
    vTopArea = std::make_shared<UIView>(topAreaFrame());
    vTopArea->setBackgroundColor(toolBar->barTintColor());
    toolBar->addSubview(vTopArea);
    if (const auto cancel = cancelButton())
        cancel->addTarget(ControlEvent::touchUpInside,
                          weakly(this, &ChallengeViewController::interruptChallenge));
}

void ChallengeViewController::viewWillAppear(UIAnimated animated) {
    UIViewController::viewWillAppear(animated);
    prevention.setPreventScreenRecording(true);
}

void ChallengeViewController::viewDidDisappear(UIAnimated animated) {
    UIViewController::viewDidDisappear(animated);
    prevention.setPreventScreenRecording(false);
}

void ChallengeViewController::viewDidLayoutSubviews() {
    UIViewController::viewDidLayoutSubviews();
    vTopArea->setFrame(topAreaFrame());
    if (const auto own = std::dynamic_pointer_cast<ProgressView>(spinner)) own->follow();
}

CGRect ChallengeViewController::topAreaFrame() const {
    const auto window = UIApplication::shared().keyWindow();
    if (!window) return {};
    const double height = window->safeAreaInsets().top;
    return {{0, -height}, {window->frame().size.width, height}};
}

// Actions.

std::shared_ptr<ChallengeActions> ChallengeViewController::transaction() const {
    const auto root = std::dynamic_pointer_cast<ChallengeRootNavigationController>(navigationController());
    return root ? root->transaction : nullptr;
}

void ChallengeViewController::interruptChallenge() {
    if (const auto actions = transaction()) actions->cancelChallenge();
}

void ChallengeViewController::showSpinner() {
    hideSpinner();
    const auto self = std::static_pointer_cast<UIViewController>(shared_from_this());
    const auto actions = transaction();
    const auto producer = actions ? actions->spinnerProducer() : nullptr;
    if (producer) spinner = producer->getSpinner(self);
    if (!spinner) spinner = ProgressView::make(kSpinnerAlpha, self);
    spinner->start();
}

void ChallengeViewController::hideSpinner() {
    if (const auto running = std::exchange(spinner, nullptr)) running->stop();
}

// Look.

void ChallengeViewController::applyCustomization(
    const std::shared_ptr<const UiCustomization>& customization) {
    customConfig = customization;
    if (const auto& bar = customization->getToolbarCusomization()) applyCustomizationToToolBar(*bar);
    const auto cancelLook = customization->getButtonCustomization(ButtonType::CANCEL);
    const auto cancel = cancelButton();
    if (cancelLook && cancel) applyCustomization(*cancel, *cancelLook, "cancel");
    if (const auto& background = customization->getBackgroundCustomization())
        applyCustomizationBackground(*background);
    if (const auto accent = accentOf(*customization)) {
        view()->setFocusColor(accent);
        view()->setTintColor(accent);
    }
}

std::shared_ptr<ChallengeButton> ChallengeViewController::cancelButton() const {
    const auto item = toolBar->topItem();
    const auto end = item ? item->rightBarButtonItem() : nullptr;
    return end ? std::dynamic_pointer_cast<ChallengeButton>(end->customView()) : nullptr;
}

void ChallengeViewController::applyCustomizationToToolBar(const ToolbarCustomization& customization) {
    UITitleTextAttributes attributes{std::nullopt, customization.textColor};
    if (customization.textFontName) {
        const FontValues values = customization.textFont();
        attributes.font =
            customFont(values, std::nullopt, "title").value_or(UIFont::systemFont(customFontSize(values)));
    }
    toolBar->setTitleTextAttributes(attributes);
    if (customization.backgroundColor) {
        toolBar->setTranslucent(false);
        toolBar->setBarTintColor(customization.backgroundColor);
        vTopArea->setBackgroundColor(customization.backgroundColor);
    }
    const auto item = toolBar->topItem();
    if (customization.headerText && item) item->setTitle(*customization.headerText);
    const auto cancel = cancelButton();
    if (customization.buttonText && cancel) setTitles(*cancel, *customization.buttonText);
}

void ChallengeViewController::applyCustomizationBackground(const BackgroundCustomization& customization) {
    if (customization.backgroundColor) view()->setBackgroundColor(customization.backgroundColor);
}

void ChallengeViewController::applyCustomization(ChallengeButton& to, const ButtonCustomization& from,
                                                 const std::string& named) {
    const FontValues values = from.textFont();
    if (values != FontValues{})
        to.titleLabel()->setFont(buttonFont(values, to.titleLabel()->font(), named + " button"));

    if (from.textColor) {
        to.setTitleColor(from.textColor, ControlState::normal);
        to.customTextColor = from.textColor;
    }
    if (from.backgroundColor) {
        to.setBackgroundColor(from.backgroundColor);
        to.customBackgroundColor = from.backgroundColor;
    }
    if (from.highlitedColor) to.customHighlitedColor = from.highlitedColor;
    if (from.highlitedTextColor) to.customHighlitedTextColor = from.highlitedTextColor;
    if (from.cornerRadius) to.setCornerRadius(*from.cornerRadius);
    if (from.borderWidth) to.setBorderWidth(*from.borderWidth);
    if (from.borderColor) to.layer().setBorderColor(from.borderColor);

    auto* section = dynamic_cast<ShowInfoButtonButton*>(&to);
    if (!section) return;
    if (from.textColor) section->setTintColor(from.textColor);
    if (from.rightImageInset) section->rightImageInset = from.rightImageInset;
    if (from.leftImageInset) section->leftImageInset = from.leftImageInset;
    if (from.leftTitleInset) section->leftTitleInset = from.leftTitleInset;
}

} // namespace korvane
