#include "Ui/Screens/ChallengeViewController.h"
#include "Ui/Screens/Later.h"
#include "Ui/Screens/ProgressView.h"
#include "Ui/Screens/TopController.h"

namespace korvane {

namespace {

/// Lays a spinner over a controller's view. A challenge can be left all the while: its bar stays on top.
void cover(UIViewController& controller, const std::shared_ptr<UIView>& with) {
    with->setAccessibilityViewIsModal(true);
    controller.view()->addSubview(with);
    if (const auto* screen = dynamic_cast<const ChallengeViewController*>(&controller))
        controller.view()->bringSubviewToFront(screen->toolBar.get());
}

/// The spinner of a controller, by its tag.
void removeSpinner(const std::shared_ptr<UIViewController>& controller) {
    if (!controller) return;
    if (const auto spinner = controller->view()->viewWithTag(ExternalProgressDialog::kTag))
        spinner->removeFromSuperview();
}

} // namespace

void ExternalProgressDialog::start() {
    onMainQueue([spinner = view(), controller = hudedController()] {
        spinner->setTag(kTag);
        if (controller) cover(*controller, spinner);
    });
    internalStartAnimating();
}

void ExternalProgressDialog::stop() {
    internalStopAnimating();
    onMainQueue([controller = hudedController()] { removeSpinner(controller); });
}

std::shared_ptr<ProgressView> ProgressView::make(double alpha,
                                                 std::shared_ptr<UIViewController> hudedController) {
    auto spinner = std::make_shared<ProgressView>();
    spinner->setTag(ExternalProgressDialog::kTag);
    spinner->setBackgroundColor(UIColor::white().withAlphaComponent(alpha));
    // The veil is white in the dark as well: the plate sets the spinner off.
    spinner->setPlateColor(UIColor::systemBackground());
    spinner->setColor(UIColor::label());
    const auto controller = hudedController ? std::move(hudedController) : getTopController();
    spinner->hudedController_ = controller;
    if (!controller) return spinner;
    onMainQueue([spinner, controller] {
        spinner->follow();
        cover(*controller, spinner);
    });
    return spinner;
}

void ProgressView::follow() {
    if (const auto controller = hudedController_.lock()) setFrame(controller->view()->bounds());
}

void ProgressView::start() {
    onMainQueue([self = weakFrom(this)] {
        if (const auto spinner = self.lock()) spinner->startAnimating();
    });
}

void ProgressView::stop() {
    onMainQueue([self = std::static_pointer_cast<ProgressView>(shared_from_this())] {
        self->stopAnimating();
        removeSpinner(self->hudedController());
        self->hudedController_.reset();
    });
}

} // namespace korvane
