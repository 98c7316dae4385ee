#pragma once

#include "Platform/CGGeometry.h"
#include "Platform/Export.h"

#include <memory>
#include <string>
#include <vector>

namespace korvane {

class UITextField;
class UIView;
class UIWindow;

/// Keys of a hardware keyboard that do something else than type.
enum class UIKeyboardKey {
    tab,
    backTab,
    space,
    enter,
    escape,
    up,
    down,
    left,
    right,
    pageUp,
    pageDown,
    backspace
};

/// Where the focus of one window lies, and what keys do there. Main queue only. It lives in its window.
///
/// **Order.** Tab goes through what can be focused on the topmost screen: bars first, then from the top down
/// and in each row as its text is read, and round again. The views of a group, as a list or the keys of a keyboard, count
/// as one; arrows move among them. What an input view holds comes right after the field that it serves. Behind
/// a modal view nothing is focused.
///
/// **Typing.** A text field that is focused is typed into, and its input view stays until the focus has left
/// both.
class KORVANE_EXPORT UIFocusSystem {
public:
    explicit UIFocusSystem(UIWindow& window) : window_(window) {}
    UIFocusSystem(const UIFocusSystem&) = delete;
    UIFocusSystem& operator=(const UIFocusSystem&) = delete;

    /// What keys act on; null for nothing.
    [[nodiscard]] std::shared_ptr<UIView> focusedView() const;
    /// Whether a renderer shows where the focus is: from when a key moved it until a finger comes down.
    [[nodiscard]] bool isShown() const noexcept { return isShown_; }

    /// Whether the focus was last moved towards the begin of the order: a page is then entered at its end.
    [[nodiscard]] bool isMovingBack() const noexcept { return isMovingBack_; }

    /// Moves the focus to a view, brings that into sight and shows it.
    /// @return false if the view cannot be focused now; nothing has changed then.
    bool focus(const std::shared_ptr<UIView>& view);

    /// Does what a key does here.
    /// @return false for a key that means nothing here, which others may use.
    bool press(UIKeyboardKey key);
    /// Types into the field that is focused, or is typed into already.
    /// @return false if there is none.
    bool type(const std::string& text);
    /// The same with what somebody copied elsewhere, without the blanks and line breaks around it.
    bool paste(const std::string& text);

private:
    friend class UIApplication;
    friend class UIView;
    friend class UIWindow;

    using Views = std::vector<std::shared_ptr<UIView>>;

    /// What Tab goes to, in its order: views, and groups as one.
    [[nodiscard]] Views stops() const;
    [[nodiscard]] bool canBeFocused(const UIView& view) const;
    [[nodiscard]] std::shared_ptr<UITextField> fieldTypedInto() const;
    void moveOn(int step);
    void moveWithin(UIView& group, UIKeyboardKey towards);
    void scroll(UIKeyboardKey towards);
    void activate(UIKeyboardKey key);
    void set(const std::shared_ptr<UIView>& view, bool isShown);

    // What happens to views.
    void didTouch(const std::shared_ptr<UIView>& view);
    void didBeginTyping(const std::shared_ptr<UIView>& view);
    void willLeave(const UIView& tree);

    UIWindow& window_;
    std::weak_ptr<UIView> focused_;
    std::weak_ptr<UIView> lastStop_;  // that the focus was on, or a finger
    std::weak_ptr<UIView> typedInto_; // last
    bool isShown_ = false;
    bool isMovingBack_ = false;
};

} // namespace korvane
