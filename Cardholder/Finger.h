#pragma once

#include "Platform/View/UITableView.h"
#include "Platform/View/UIWindow.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"

#include <memory>
#include <stdexcept>
#include <string>

namespace korvane::cardholder {

/// Why a screen does not take an action, in words for a person.
class Refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One finger on a window. Main queue only.
class Finger {
public:
    explicit Finger(std::shared_ptr<UIWindow> window) : window_(std::move(window)) {}

    /// Scrolls a view into sight and taps its middle.
    /// @throws Refusal if something else lies there.
    void tap(UIView& view);

    /// Scrolls to a row of a table.
    /// @return the row's cell.
    [[nodiscard]] std::shared_ptr<UITableViewCell> reach(UITableView& table, IndexPath row);

    /// Types into the screen's field by the keys of its keyboard, which it opens first. Characters that no
    /// page has are inserted.
    void type(const std::string& text, ChallengeTextNativeViewController& screen);

    /// Presses the keyboard's own button to close it, if it is open.
    void closeKeyboard(ChallengeTextNativeViewController& screen);

private:
    void touch(CGPoint place);
    [[nodiscard]] bool pressKeyFor(const std::string& character, CustomKeyboard& keyboard);
    void pressKey(const KeyboardButton& key);

    std::shared_ptr<UIWindow> window_;
};

} // namespace korvane::cardholder
