#pragma once

#include "Platform/Export.h"
#include "Platform/View/NSObject.h"
#include "Platform/View/UITouch.h"

#include <memory>
#include <string>
#include <string_view>

namespace korvane {

class UIView;

/// Whether a change of what is shown is animated.
enum class UIAnimated : bool { no, yes };

/// Receives touches, and text while it is the first responder. Main queue only.
class KORVANE_EXPORT UIResponder : public NSObject {
public:
    /// Posted with the keyboard's end frame when an input view comes and goes.
    static constexpr std::string_view keyboardWillShowNotification = "UIKeyboardWillShowNotification";
    static constexpr std::string_view keyboardWillHideNotification = "UIKeyboardWillHideNotification";

    /// Who hears of what this responder leaves alone; null at the end of the chain.
    [[nodiscard]] virtual std::shared_ptr<UIResponder> next() const { return nullptr; }

    /// Fingers on this responder. Unless overridden, `next()` hears of them.
    virtual void touchesBegan(const UITouches& touches);
    virtual void touchesMoved(const UITouches& touches);
    virtual void touchesEnded(const UITouches& touches);
    virtual void touchesCancelled(const UITouches& touches);

    [[nodiscard]] virtual bool canBecomeFirstResponder() { return false; }
    [[nodiscard]] bool isFirstResponder() const;

    /// Takes the first place from whoever has it, and shows this responder's input view.
    /// @return false if this one may not take it; nothing has changed then.
    virtual bool becomeFirstResponder();

    /// Gives the first place up, if this one has it, and hides the input view.
    void resignFirstResponder();

    /// What is shown at the foot of the window while this is the first responder.
    [[nodiscard]] virtual std::shared_ptr<UIView> inputView() const { return nullptr; }

protected:
    friend class UIApplication;

    /// The first place has been taken, or given up.
    virtual void didBecomeFirstResponder() {}
    virtual void didResignFirstResponder() {}
};

/// A responder that text can be typed into.
class KORVANE_EXPORT UIKeyInput {
public:
    virtual ~UIKeyInput() = default;

    [[nodiscard]] virtual bool hasText() const = 0;
    /// Puts text behind what is there.
    virtual void insertText(const std::string& text) = 0;
    /// Deletes the last user-perceived character.
    virtual void deleteBackward() = 0;
};

} // namespace korvane
