#pragma once

#include "Platform/View/UIScrollView.h"
#include "Platform/View/UITextField.h"
#include "Platform/View/UITextView.h"
#include "Ui/Screens/ChallengeSelectButton.h"
#include "Ui/Screens/ChallengeViewController.h"
#include "Ui/Screens/ResourceImage.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace korvane {

/// The body that the screens have in common which the library draws itself: logos, header, texts, the two
/// sections that open and close, the question of whitelisting and the warning. Main queue only.
///
/// The screen's view is what scrolls; the bar stays at its top. A screen lives for one response of the ACS.
class ChallengeNativeViewController : public ChallengeViewController, public UIScrollViewDelegate {
public:
    void viewDidLoad() override;
    /// Every appearance begins with closed sections.
    void viewWillAppear(UIAnimated animated) override;
    void viewDidAppear(UIAnimated animated) override;
    void viewDidLayoutSubviews() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    void scrollViewDidScroll(UIScrollView& scrollView) override;

    void applyCustomization(const std::shared_ptr<const UiCustomization>& customization) override;
    /// Of the header, by the heading's values.
    void applyCustomization(const LabelCustomization& customization);
    /// The look of one control. A font that does not exist leaves the control's font, and a line of the log
    /// tells so with `named`.
    void applyCustomization(UILabel& to, const LabelCustomization& from, const std::string& named);
    void applyCustomization(UIButton& to, const CustTextCustomization& from, const std::string& named);
    void applyCustomization(UITextField& to, const TextBoxCustomization& from, const std::string& named);
    void applyCustomization(UITextView& to, const CustTextCustomization& from, const std::string& named);
    using ChallengeViewController::applyCustomization;

    /// Makes room for the warning's image.
    void showWarning();
    void whitelistingChecked(ChallengeSelectButton& sender);
    void inverseWhyInfoDisplaying();
    void inverseExtInfoDisplaying();
    /// Lets the screen scroll as far as its last section reaches once that has grown by `deltaHeight` points,
    /// and with `doOffset` scrolls to there if it grows beyond the screen.
    void calculatedContentSize(bool doOffset, double deltaHeight = 0);
    /// The cardholder's answer; no value where the screen does not ask, which it knows once it has appeared.
    [[nodiscard]] std::optional<YesNoSelector> getWhitelistingDataEntry() const;
    /// Gives the challenge text the height that it needs at its width, and keeps it so from then on.
    void fitChallengeText();

    std::shared_ptr<UIScrollView> scrollView;
    UIOutlet<UIImageView> bankLogo{*this, "bankLogo"};
    UIOutlet<UIImageView> psLogo{*this, "psLogo"};
    UIOutlet<UILabel> challengeInfoHeader{*this, "challengeInfoHeader"};
    UIOutlet<UILabel> challengeInfoLabel{*this, "challengeInfoLabel"};
    UIOutlet<UITextView> challengeInfoText{*this, "challengeInfoText"};
    UIOutlet<UITextView> whyInfo{*this, "whyInfo"};
    UIOutlet<NSLayoutConstraint> whyInfoHeightConstraint{*this, "whyInfoHeightConstraint"};
    UIOutlet<ShowInfoButtonButton> whyInfoButton{*this, "whyInfoButton"};
    UIOutlet<UITextView> extInfo{*this, "extInfo"};
    UIOutlet<NSLayoutConstraint> extInfoHeightConstraint{*this, "extInfoHeightConstraint"};
    UIOutlet<NSLayoutConstraint> warningWidthConstraint{*this, "warningWidthConstraint"};
    UIOutlet<NSLayoutConstraint> challengeInfoHeightConstraint{*this, "challengeInfoHeightConstraint"};
    UIOutlet<ShowInfoButtonButton> extInfoButton{*this, "extInfoButton"};
    UIOutlet<UIImageView> warningImage{*this, "warningImage"};
    UIOutlet<ChallengeSelectButton> whitelistingInfo{*this, "whitelistingInfo"};
    UIOutlet<NSLayoutConstraint> whitelistingInfoHeightConstraint{*this, "whitelistingInfoHeightConstraint"};
    /// Keeps the bar in its place while the screen scrolls.
    UIOutlet<NSLayoutConstraint> toolBarTopConstraint{*this, "toolBarTopConstraint"};
    UIOutlet<NSLayoutConstraint> bankLogoWidthConstraint{*this, "bankLogoWidthConstraint"};
    UIOutlet<NSLayoutConstraint> bankLogoHeightConstraint{*this, "bankLogoHeightConstraint"};
    UIOutlet<NSLayoutConstraint> psLogoWidthConstraint{*this, "psLogoWidthConstraint"};
    UIOutlet<NSLayoutConstraint> headerTopConstraint{*this, "headerTopConstraint"};
    /// True while the screen does not ask about whitelisting.
    bool isWhitelistingInfo = false;
    ResourceImage arrowDown{"ArrowDown", UIImageRenderingMode::alwaysTemplate};
    /// The same picture, until the application has another one.
    ResourceImage arrowUp{"ArrowDown", UIImageRenderingMode::alwaysTemplate};
    ResourceImage checkedWhitelistingCheckBox{"CheckedSquareCheckbox", UIImageRenderingMode::alwaysTemplate};
    ResourceImage uncheckedWhitelistingCheckBox{"UncheckedSquareCheckbox"};

protected:
    /// The controls below the challenge text from the top down, that text first: for each of them the one
    /// before and the one after are the neighbours of its constraints.
    [[nodiscard]] virtual std::span<const UiObject> chain() const = 0;
    /// The view of an object that the application can move; null for one that the screen does not have.
    [[nodiscard]] virtual std::shared_ptr<UIView> control(UiObject object) const;
    /// Widths and the size of text change while the screen is shown; what was fitted to them follows.
    virtual void fitHeights();
    /// Of something that the application does not give a height of its own.
    void setHeight(UiObject of, NSLayoutConstraint& constraint, double height) const;
    /// Tells the answer as it is by the time of the question, which may come from any thread and when the
    /// screen has gone: something is sent a while after its button was pressed.
    [[nodiscard]] std::function<std::optional<YesNoSelector>()> latestWhitelistingDataEntry() const;
    /// The look of a button, if the application gives it one.
    void customizeButton(ChallengeButton& button, ButtonType type, const std::string& named);
    /// Has a button perform a method of this screen.
    template <class Self>
    void connect(UIButton& button, void (Self::*action)()) {
        button.addTarget(ControlEvent::touchUpInside, weakly(static_cast<Self*>(this), action));
    }

private:
    /// What the answer about whitelisting follows from. Any thread.
    struct Answer {
        std::atomic<bool> isAskedFor{true};
        std::atomic<bool> isYes{false};
    };
    /// A button that is as high as its title needs.
    struct FittedButton {
        UiObject object;
        std::shared_ptr<ChallengeButton> button;
        std::shared_ptr<NSLayoutConstraint> height;
        double least;
    };
    /// A section that opens and closes.
    struct Section {
        const UIOutlet<UITextView>& text;
        const UIOutlet<ShowInfoButtonButton>& button;
        const UIOutlet<NSLayoutConstraint>& height;
    };

    void inverseDisplaying(const Section& section);
    void noteAnswer();
    void noteStoryboard();
    void applyCustomConstraints();
    [[nodiscard]] double challengeTextMargin() const;
    void fitLogos();
    void fitLogo(UiObject object, UIImageView& logo, NSLayoutConstraint& width, double widest);
    void fitButtons();
    [[nodiscard]] bool hasDarkGround();
    void customizeImages(const UiCustomization& customization);
    void customizeArrow(ResourceImage& arrow, const CustImageCustomization& look);
    void customizeTexts(const UiCustomization& customization);

    const std::shared_ptr<Answer> answer_ = std::make_shared<Answer>();
    bool isChallengeTextFitted_ = false;
    // What the storyboard says.
    double whitelistingRoom_ = 0;
    CGSize bankLogoRoom_;
    double psLogoRoom_ = 0;
    double headerGap_ = 0;
    std::vector<FittedButton> fittedButtons_;
};

} // namespace korvane
