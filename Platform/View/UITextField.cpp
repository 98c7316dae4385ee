#include "Platform/View/UITextField.h"

#include "Platform/NotificationCenter.h"
#include "Platform/Security/Secret.h"
#include "Platform/Text.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UIWindow.h"

#include <algorithm>
#include <array>

namespace korvane {

namespace {

bool isCodePointStart(std::string_view text, std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xC0U) != 0x80U;
}

/// Where the last user-perceived character of a text begins that is not empty.
std::size_t lastCharacterStart(std::string_view text) {
    const std::size_t characters = characterCount(text);
    std::size_t start = text.size() - 1;
    while (start > 0 &&
           (!isCodePointStart(text, start) || characterCount(text.substr(0, start)) >= characters))
        --start;
    return start;
}

/// What breaks a line, wherever text is drawn: the longest first.
constexpr std::array<std::string_view, 8> kLineBreaks{"\r\n", "\n",     "\v",     "\f",
                                                      "\r",   "\u0085", "\u2028", "\u2029"};

/// How many bytes at the start of a text break its line.
std::size_t lineBreakLength(std::string_view text) {
    const auto found = std::ranges::find_if(
        kLineBreaks, [text](std::string_view lineBreak) { return text.starts_with(lineBreak); });
    return found == kLineBreaks.end() ? 0 : found->size();
}

} // namespace

/// The buffer is made once, so that it leaves none behind.
std::string onOneLine(std::string_view text) {
    constexpr std::string_view kSign = "\u21B5";
    std::string line;
    line.reserve(text.size() * kSign.size());
    while (!text.empty()) {
        const std::size_t length = lineBreakLength(text);
        line += length > 0 ? kSign : text.substr(0, 1);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return line;
}

UITextField::~UITextField() {
    std::string none;
    store(none);
}

/// What was typed does not stay in memory: `text` comes back as zeros.
void UITextField::store(std::string& text) {
    if (text != this->text()) swapText(text);
    cleanse(text);
}

void UITextField::setText(std::string text) {
    store(text);
}

void UITextField::insertText(const std::string& text) {
    std::string changed;
    changed.reserve(this->text().size() + text.size()); // so that it leaves no buffers behind
    changed.append(this->text()).append(text);
    store(changed);
}

void UITextField::deleteBackward() {
    if (!hasText()) return;
    std::string changed(text(), 0, lastCharacterStart(text()));
    store(changed);
}

void UITextField::setInputView(std::shared_ptr<UIView> view) {
    if (view == inputView_) return;
    inputView_ = std::move(view);
    if (window() && isFirstResponder()) UIApplication::shared().showInput(this);
}

bool UITextField::canBecomeFirstResponder() {
    return isEnabled() && window() != nullptr;
}

bool UITextField::becomeFirstResponder() {
    if (!canBecomeFirstResponder()) return false;
    if (isFirstResponder()) return true;
    const auto asked = delegate();
    if (asked && !asked->textFieldShouldBeginEditing(*this)) return false;
    return UIControl::becomeFirstResponder();
}

void UITextField::touchesEnded(const UITouches& touches) {
    const bool isTapped = isTracking() && pointInside(touches.front()->location(this));
    UIControl::touchesEnded(touches);
    if (isTapped) becomeFirstResponder();
}

void UITextField::didBecomeFirstResponder() {
    setNeedsDisplay();
    NotificationCenter::defaultCenter().post({textDidBeginEditingNotification});
}

void UITextField::didResignFirstResponder() {
    setNeedsDisplay();
}

CGSize UITextField::sizeThatFits(CGSize /*size*/) const {
    const double above = borderStyle_ == UITextBorderStyle::none ? 0 : kBorderRoom;
    std::string shown = onOneLine(text());
    const CGSize line = measuredText(shown, shownFont(), kUnbounded, 1);
    cleanse(shown);
    return {line.width + 2 * textInset(), line.height + 2 * above};
}

} // namespace korvane
