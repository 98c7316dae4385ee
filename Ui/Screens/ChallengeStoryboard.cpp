#include "Ui/Screens/ChallengeStoryboard.h"

#include "Platform/Bundle.h"
#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/ChallengeWebViewController.h"

namespace korvane {

#define KORVANE_STORYBOARD_CLASS(Class) UIStoryboard::registerClass<Class>(#Class)

namespace {

bool registerClasses() {
    KORVANE_STORYBOARD_CLASS(ChallengeButton);
    KORVANE_STORYBOARD_CLASS(ChallengeSelectButton);
    KORVANE_STORYBOARD_CLASS(ShowInfoButtonButton);
    KORVANE_STORYBOARD_CLASS(ChallengeTableViewCell);
    KORVANE_STORYBOARD_CLASS(ChallengeTextNativeViewController);
    KORVANE_STORYBOARD_CLASS(LandscapeChallengeTextNativeViewController);
    KORVANE_STORYBOARD_CLASS(ChallengeSingleSelectNativeViewController);
    KORVANE_STORYBOARD_CLASS(LandscapeChallengeSingleSelectNativeViewController);
    KORVANE_STORYBOARD_CLASS(ChallengeMultiSelectNativeViewController);
    KORVANE_STORYBOARD_CLASS(LandscapeChallengeMultiSelectNativeViewController);
    KORVANE_STORYBOARD_CLASS(ChallengeOobNativeViewController);
    KORVANE_STORYBOARD_CLASS(LandscapeChallengeOobNativeViewController);
    KORVANE_STORYBOARD_CLASS(ChallengeWebViewController);
    return true;
}

} // namespace

#undef KORVANE_STORYBOARD_CLASS

UIStoryboard challengeStoryboard() {
    static const bool areRegistered = registerClasses();
    static_cast<void>(areRegistered);
    return {"ChallengeStoryboard", Bundle::resources()};
}

} // namespace korvane
