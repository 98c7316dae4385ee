#pragma once

#include "Platform/Export.h"
#include "Platform/View/UIControl.h"
#include "Platform/View/UITextContent.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

namespace korvane {

class UITextField;

/// Keyboards by the platform's numbers.
enum class UIKeyboardType : int {
    defaultType = 0,
    asciiCapable = 1,
    numbersAndPunctuation = 2,
    url = 3,
    numberPad = 4,
    phonePad = 5,
    namePhonePad = 6,
    emailAddress = 7,
    decimalPad = 8,
    twitter = 9,
    webSearch = 10,
    asciiCapableNumberPad = 11
};

enum class UITextBorderStyle { none, line, bezel, roundedRect };

/// A text as a field shows it: on one line, with "\u21B5" in place of each line break, so that it is seen.
/// Whoever cleanses the text cleanses this too.
KORVANE_EXPORT [[nodiscard]] std::string onOneLine(std::string_view text);

class KORVANE_EXPORT UITextFieldDelegate {
public:
    virtual ~UITextFieldDelegate() = default;

    /// Asked before the field becomes the first responder; the place to give it an input view.
    virtual bool textFieldShouldBeginEditing(UITextField& /*textField*/) { return true; }
    /// Enter was pressed on a hardware keyboard: the text is complete.
    virtual void textFieldShouldReturn(UITextField& /*textField*/) {}
};

/// A line of text that can be typed. What was typed is cleansed from memory when other text takes its place
/// and when the field goes. Main queue only.
class KORVANE_EXPORT UITextField : public UITextContent<UIControl>, public UIKeyInput {
public:
    /// Posted when a field has become the first responder.
    static constexpr std::string_view textDidBeginEditingNotification =
        "UITextFieldTextDidBeginEditingNotification";

    using UITextContent::UITextContent;
    ~UITextField() override;

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::textField; }

    [[nodiscard]] std::shared_ptr<UITextFieldDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(std::weak_ptr<UITextFieldDelegate> delegate) { delegate_ = std::move(delegate); }

    void setText(std::string text) override;
    [[nodiscard]] UIKeyboardType keyboardType() const noexcept { return keyboardType_; }
    void setKeyboardType(UIKeyboardType type) { keyboardType_ = type; }
    [[nodiscard]] UITextBorderStyle borderStyle() const noexcept { return borderStyle_; }
    /// The room between each side and the text, in points; a border has some by itself.
    [[nodiscard]] double textInset() const noexcept {
        return borderStyle_ == UITextBorderStyle::none ? textInset_ : std::max(textInset_, kBorderRoom);
    }
    void setTextInset(double inset) { assign(textInset_, inset, UIViewChange::content); }
    void setBorderStyle(UITextBorderStyle style) { assign(borderStyle_, style, UIViewChange::content); }

    [[nodiscard]] bool hasText() const override { return !text().empty(); }
    void insertText(const std::string& text) override;
    void deleteBackward() override;

    [[nodiscard]] std::shared_ptr<UIView> inputView() const override { return inputView_; }
    /// Takes the place of the present one at once if the field is the first responder. The view's owner is
    /// not this field alone: a controller's view is held by its controller too.
    void setInputView(std::shared_ptr<UIView> view);

    [[nodiscard]] bool canBecomeFirstResponder() override;
    /// Asks the delegate first.
    bool becomeFirstResponder() override;
    /// A tap begins editing.
    void touchesEnded(const UITouches& touches) override;

    [[nodiscard]] CGSize sizeThatFits(CGSize size) const override;

protected:
    void didBecomeFirstResponder() override;
    void didResignFirstResponder() override;
    [[nodiscard]] UIAccessibilityRole defaultAccessibilityRole() const override {
        return UIAccessibilityRole::textField;
    }
    /// What has been typed is not read out.
    [[nodiscard]] std::string defaultAccessibilityLabel() const override { return {}; }

private:
    void store(std::string& text);

    std::weak_ptr<UITextFieldDelegate> delegate_;
    std::shared_ptr<UIView> inputView_;
    UIKeyboardType keyboardType_ = UIKeyboardType::defaultType;
    static constexpr double kBorderRoom = 7;

    double textInset_ = 0;
    UITextBorderStyle borderStyle_ = UITextBorderStyle::none;
};

} // namespace korvane
