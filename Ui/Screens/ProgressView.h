#pragma once

#include "Platform/View/UIActivityIndicatorView.h"
#include "Ui/Screens/ProgressDialog.h"

#include <memory>

namespace korvane {

/// The library's own spinner, which covers the view of a controller.
class ProgressView final : public UIActivityIndicatorView, public ProgressDialog {
public:
    /// Comes over the controller's view on the main queue, in white of that opacity.
    /// @param hudedController  null for the top controller.
    [[nodiscard]] static std::shared_ptr<ProgressView>
    make(double alpha, std::shared_ptr<UIViewController> hudedController);

    void start() override;
    /// Goes for good: a stopped spinner covers nothing any more.
    void stop() override;

    /// Covers what the controller's view shows now, which turning and scrolling change.
    void follow();

    [[nodiscard]] std::shared_ptr<UIViewController> hudedController() const {
        return hudedController_.lock();
    }

private:
    std::weak_ptr<UIViewController> hudedController_;
};

} // namespace korvane
