#pragma once

#include "Platform/Export.h"

#include <memory>

namespace korvane {

class UIView;
class UIViewController;

/// Shows that something is under way. Any thread; what is shown changes on the main queue.
class KORVANE_EXPORT ProgressDialog {
public:
    virtual ~ProgressDialog() = default;

    virtual void start() = 0;
    virtual void stop() = 0;
};

/// A view of the application's that takes the place of the library's own spinner.
class KORVANE_EXPORT ExternalProgressDialog : public ProgressDialog {
public:
    /// Tells the spinner's view apart below its controller's.
    static constexpr int kTag = 3456;

    /// The controller whose view is to be covered; null for none.
    [[nodiscard]] virtual std::shared_ptr<UIViewController> hudedController() const = 0;
    /// The view that covers it.
    [[nodiscard]] virtual std::shared_ptr<UIView> view() = 0;
    virtual void internalStartAnimating() = 0;
    virtual void internalStopAnimating() = 0;

    /// Tags the view, puts it over the controller's on the main queue, and runs `internalStartAnimating()`.
    void start() override;
    /// Runs `internalStopAnimating()` and takes the view away on the main queue.
    void stop() override;
};

/// Makes the application's spinners.
class KORVANE_EXPORT SpinnerProducerProtocol {
public:
    virtual ~SpinnerProducerProtocol() = default;

    /// @param hudedController  the screen that is to be covered.
    [[nodiscard]] virtual std::shared_ptr<ExternalProgressDialog>
    getSpinner(std::shared_ptr<UIViewController> hudedController) = 0;
};

} // namespace korvane
