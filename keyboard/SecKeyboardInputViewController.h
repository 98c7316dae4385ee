#pragma once

#include "Platform/View/UIInputViewController.h"
#include "Platform/View/UITextField.h"
#include "keyboard/CustomKeyboard.h"
#include "keyboard/CustomToolBar.h"

#include <memory>
#include <optional>
#include <string>

namespace korvane {

/// Hears that the keyboard was closed by its button.
class SecKeyboardInputDelegate {
public:
    virtual ~SecKeyboardInputDelegate() = default;

    virtual void keyboardDonePressed() = 0;
};

/// Puts the keyboard under a text field in place of the system's, with a bar on top, and hands on to the
/// field what is typed. Main queue only.
class SecKeyboardInputViewController : public UIInputViewController,
                                       public CustomKeyboardDelegate,
                                       public CustomToolBarDelegate {
public:
    /// Null until the view is loaded, here and below.
    [[nodiscard]] const std::shared_ptr<CustomKeyboard>& customKeyboard() const noexcept {
        return customKeyboard_;
    }
    [[nodiscard]] const std::shared_ptr<CustomToolBar>& customToolBar() const noexcept {
        return customToolBar_;
    }
    /// Black, behind everything: it shows below the keys, where the system has its own sign.
    [[nodiscard]] const std::shared_ptr<UIView>& blackView() const noexcept { return blackView_; }
    /// Holds bar and keys.
    [[nodiscard]] const std::shared_ptr<UIView>& viewKeyboard() const noexcept { return viewKeyboard_; }
    /// The field that is served, or null.
    [[nodiscard]] std::shared_ptr<UITextField> textField() const { return textField_.lock(); }
    /// The page that editing begins with, unless the field's keyboard type asks for the pad; no value for
    /// letters.
    [[nodiscard]] const std::optional<CustomKeyboardLayoutState>& firstPage() const noexcept {
        return firstPage_;
    }
    void setFirstPage(std::optional<CustomKeyboardLayoutState> page) { firstPage_ = page; }
    void setDelegate(std::weak_ptr<SecKeyboardInputDelegate> delegate) { delegate_ = std::move(delegate); }

    /// Begins to serve a field: the page that its keyboard type asks for, one capital letter first, and this
    /// controller's view as its input view.
    void set(const std::shared_ptr<UITextField>& textField);

    void loadView() override;
    void viewDidLoad() override;
    /// Makes bar and keys; once.
    void setupKeyboard();

    void customKeyboardKeyButtonPressed(CustomKeyboard& keyboard, const std::string& key) override;
    void customKeyboardSpaceButtonPressed(CustomKeyboard& keyboard) override;
    void customKeyboardBackspaceButtonPressed(CustomKeyboard& keyboard) override;
    void customKeyboardReturnButtonPressed(CustomKeyboard& keyboard) override;
    void customToolBarCloseButtonPressed(CustomToolBar& toolBar) override;

private:
    [[nodiscard]] CustomKeyboardLayoutState firstState() const;
    void placeViews();

    std::optional<CustomKeyboardLayoutState> firstPage_;
    std::shared_ptr<CustomKeyboard> customKeyboard_;
    std::shared_ptr<CustomToolBar> customToolBar_;
    std::shared_ptr<UIView> blackView_;
    std::shared_ptr<UIView> viewKeyboard_;
    std::weak_ptr<SecKeyboardInputDelegate> delegate_;
    std::weak_ptr<UITextField> textField_;
};

} // namespace korvane
