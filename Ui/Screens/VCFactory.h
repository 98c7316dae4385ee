#pragma once

#include "Platform/View/UIImage.h"
#include "Platform/View/UIStoryboard.h"
#include "Sdk/Events/SdkError.h"
#include "Ui/Screens/ChallengeNativeViewController.h"
#include "Ui/Screens/ViewControllerContainer.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace korvane {

/// Makes the screens of a challenge out of its responses. It holds nothing of the challenge but its images
/// and the application's wishes. Main queue only.
class VCFactory {
public:
    /// Either image may be null. Without the storyboard, which the log tells then, every screen fails.
    VCFactory(UIImagePtr psImage, UIImagePtr bankImage,
              std::shared_ptr<const UiCustomization> uiCustomization);
    VCFactory(UIImagePtr psImage, UIImagePtr bankImage,
              std::shared_ptr<const UiCustomization> uiCustomization,
              std::shared_ptr<const UiCustomizationConstraints> uiCustomizationConstraints);

    /// The screens of one step, filled. Each failure is logged with the text that it carries.
    /// @throws SdkError InvalidAcsResponseException for a kind of screen that there is not, else
    /// as the builders below.
    [[nodiscard]] ViewControllerContainer getViewControllerContainer(const CRes& cRes) const;

    /// One for each kind of screen.
    /// @throws SdkError SDKRuntimeException, of the text screen InvalidInputException, for a scene that
    /// cannot be made; InvalidInputException for a look that cannot be applied.
    [[nodiscard]] ViewControllerContainer getNativeTextVC(const CRes& cRes) const;
    [[nodiscard]] ViewControllerContainer getNativeSingleSelectVC(const CRes& cRes) const;
    [[nodiscard]] ViewControllerContainer getNativeMultiSelectVC(const CRes& cRes) const;
    [[nodiscard]] ViewControllerContainer getNativeOobVC(const CRes& cRes) const;
    /// @throws SdkError also InvalidInputException without a page, SDKRuntimeException for one
    /// that cannot be decoded.
    [[nodiscard]] ViewControllerContainer getHtmlVC(const CRes& cRes) const;

    /// Fills what all screens share that the library draws itself.
    /// @throws SdkError as `applyCustomization`.
    void setCommonNativeVcParts(const CRes& cRes, ChallengeNativeViewController& nativeController) const;
    /// Gives a screen the application's look, if it has one.
    /// @throws SdkError InvalidInputException with the cause.
    void applyCustomization(ChallengeViewController& controller) const;

    /// The main screen when the factory was made.
    const CGRect rootSize;
    const std::shared_ptr<const UiCustomization> uiCustomization;
    const std::shared_ptr<const UiCustomizationConstraints> uiCustomizationConstraints;
    const UIImagePtr psImage;
    const UIImagePtr bankImage;

private:
    /// One scene: its identifier, and how its absence fails.
    struct Scene {
        const char* function;
        const char* identifier;
        SdkErrorCase kind;
        const char* failure;
    };

    template <class Screen>
    [[nodiscard]] std::shared_ptr<Screen> instantiate(const Scene& scene) const;
    [[nodiscard]] std::shared_ptr<UIViewController> instantiateAny(const Scene& scene) const;
    template <class Screen, class LandscapeScreen>
    [[nodiscard]] ViewControllerContainer
    makeTwins(const CRes& cRes, const Scene& portrait, const Scene& landscape,
              const std::function<void(Screen&)>& prepare, const std::function<void(Screen&)>& fill) const;
    /// The place for what an orientation asks of a filled screen; so far nothing.
    void recalculateContentSize(ChallengeNativeViewController& /*controller*/,
                                Orientation /*orientation*/) const {}
    void setChallengeText(const CRes& cRes, ChallengeNativeViewController& controller) const;
    [[nodiscard]] std::shared_ptr<CustTextCustomization> challengeTextLook() const;

    std::optional<UIStoryboard> storyboard_;
};

} // namespace korvane
