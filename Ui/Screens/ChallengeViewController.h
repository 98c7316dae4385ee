#pragma once

#include "Platform/View/UIViewController.h"
#include "Ui/Customisation/UiCustomization.h"
#include "Ui/Customisation/UiCustomizationConstraints.h"
#include "Ui/Screens/ChallengeActions.h"
#include "Ui/Screens/ChallengeButton.h"
#include "Ui/Screens/PreventScreenRecording.h"
#include "Ui/Screens/ProgressDialog.h"

#include <memory>
#include <string>

namespace korvane {

/// What every challenge screen has: the bar with its cancel button, the spinner, and the application's look
/// of these. Main queue only.
class ChallengeViewController : public UIViewController {
public:
    /// Gives the screen the application's look; called once, when the view is loaded. Overrides
    /// call this one first.
    virtual void applyCustomization(const std::shared_ptr<const UiCustomization>& customization);

    void viewDidLoad() override;
    void viewWillAppear(UIAnimated animated) override;
    void viewDidDisappear(UIAnimated animated) override;
    void viewDidLayoutSubviews() override;

    /// Covers the screen below its bar with the application's spinner, or else with the library's own.
    void showSpinner();
    void hideSpinner();
    /// The cancel button's action. It holds the main queue until the ACS has answered.
    void interruptChallenge();

    void applyCustomizationToToolBar(const ToolbarCustomization& customization);
    void applyCustomizationBackground(const BackgroundCustomization& customization);
    /// @param named  tells in the log which control it is.
    void applyCustomization(ChallengeButton& to, const ButtonCustomization& from, const std::string& named);

    /// Changes the constants of the constraints that `superview` holds for `view`: of an edge the one that
    /// binds it to the neighbour on that side, or to the superview or its safe area where there is no
    /// neighbour. What has no constraint stays as it is.
    static void applyConstraints(UIView& superview, const UIView& view, const UIView* topView,
                                 const UIView* bottomView, const UIView* leftView, const UIView* rightView,
                                 const UiConstraints& constraints);

    /// An image of one colour.
    [[nodiscard]] static UIImagePtr imageColor(CGSize size, const UIColor& color) {
        return UIImage::filled(size, color);
    }

    /// The one that is running, or null.
    std::shared_ptr<ProgressDialog> spinner;
    std::shared_ptr<const UiCustomizationConstraints> customConstraints;
    /// The look that was applied last, or null.
    std::shared_ptr<const UiCustomization> customConfig;
    /// The strip above the bar, behind what the system shows there.
    std::shared_ptr<UIView> vTopArea;
    UIOutlet<UIView> screen{*this, "screen"};
    UIOutlet<UINavigationBar> toolBar{*this, "toolBar"};
    PreventScreenRecording prevention{*this};

protected:
    /// The transaction that this screen belongs to, by way of the stack that it is on; or null.
    [[nodiscard]] std::shared_ptr<ChallengeActions> transaction() const;
    /// The bar's right end, or null.
    [[nodiscard]] std::shared_ptr<ChallengeButton> cancelButton() const;

private:
    [[nodiscard]] CGRect topAreaFrame() const;
};

/// The title of a button, untouched and pressed.
void setTitles(UIButton& button, const std::string& title);

} // namespace korvane
