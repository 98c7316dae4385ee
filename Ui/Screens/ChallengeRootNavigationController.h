#pragma once

#include "Platform/View/UINavigationController.h"
#include "Platform/View/UITextField.h"
#include "Ui/Screens/ChallengeActions.h"

#include <memory>

namespace korvane {

/// The container of all screens of one challenge, through which they find their transaction. It keeps the
/// transaction alive until it is dismissed. Main queue only.
class ChallengeRootNavigationController final : public UINavigationController {
public:
    using UINavigationController::UINavigationController;

    /// Covers the whole screen, without a bar of its own.
    void viewDidLoad() override;

    std::shared_ptr<UITextField> secureField;
    std::shared_ptr<ChallengeActions> transaction;
};

} // namespace korvane
