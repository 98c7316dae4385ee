#include "Ui/Screens/ChallengeRootNavigationController.h"

namespace korvane {

void ChallengeRootNavigationController::viewDidLoad() {
    UINavigationController::viewDidLoad();
    setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
    setNavigationBarHidden(true, UIAnimated::no);
}

} // namespace korvane
