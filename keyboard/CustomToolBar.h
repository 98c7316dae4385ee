#pragma once

#include "Platform/View/UIButton.h"
#include "Platform/View/UIView.h"

#include <memory>

namespace korvane {

class CustomToolBar;

/// Hears of the bar's button. The operation may be left out.
class CustomToolBarDelegate {
public:
    virtual ~CustomToolBarDelegate() = default;

    virtual void customToolBarCloseButtonPressed(CustomToolBar& /*toolBar*/) {}
};

/// The bar on top of the keys: one button that closes the keyboard. Main queue only.
class CustomToolBar : public UIView {
    struct Private {};

public:
    [[nodiscard]] static std::shared_ptr<CustomToolBar> make();

    explicit CustomToolBar(Private /*token*/) {}

    [[nodiscard]] const std::shared_ptr<UIButton>& buttonClose() const noexcept { return buttonClose_; }
    void setDelegate(std::weak_ptr<CustomToolBarDelegate> delegate) { delegate_ = std::move(delegate); }

    /// Makes the button anew.
    void reload();
    void layoutSubviews() override;

private:
    void closeKeyboard();

    std::shared_ptr<UIButton> buttonClose_;
    std::weak_ptr<CustomToolBarDelegate> delegate_;
};

} // namespace korvane
