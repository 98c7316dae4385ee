#pragma once

#include "Platform/View/UIViewController.h"

#include <memory>
#include <string>

namespace korvane {

/// The way from an input view to whatever is being typed into. Main queue only.
class UITextDocumentProxy {
public:
    virtual ~UITextDocumentProxy() = default;

    /// Each goes to the first responder at the time of the call, and nowhere if that takes no text.
    virtual void insertText(const std::string& text) = 0;
    virtual void deleteBackward() = 0;
    [[nodiscard]] virtual bool hasText() const = 0;
};

/// A keyboard: its view is made to be a field's input view. It appears and disappears with
/// that. Main queue only.
class UIInputViewController : public UIViewController {
public:
    UIInputViewController();

    /// An empty view without a size: the window gives it the usual height.
    void loadView() override;

    [[nodiscard]] UITextDocumentProxy& textDocumentProxy() noexcept { return *proxy_; }

private:
    std::unique_ptr<UITextDocumentProxy> proxy_;
};

} // namespace korvane
