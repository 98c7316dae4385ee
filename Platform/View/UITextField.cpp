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

bool isCodePointStart(const std::string& text, std::size_t at) {
    return at == text.size() || (static_cast<unsigned char>(text[at]) & 0xC0U) != 0x80U;
}

/// Where the user-perceived character begins that ends at `end`, above 0.
std::size_t characterStart(const std::string& text, std::size_t end) {
    const std::string_view before = std::string_view(text).substr(0, end);
    const std::size_t characters = characterCount(before);
    std::size_t start = end - 1;
    while (start > 0 &&
           (!isCodePointStart(text, start) || characterCount(before.substr(0, start)) >= characters))
        --start;
    return start;
}

/// Whether no character of the text spans the place.
bool isBetweenCharacters(const std::string& text, std::size_t at) {
    if (at > text.size() || !isCodePointStart(text, at)) return false;
    const std::string_view all = text;
    return characterCount(all.substr(0, at)) + characterCount(all.substr(at)) == characterCount(all);
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
    selectedRange_ = {this->text().size(), 0};
}

bool UITextField::setSelectedRange(UITextRange range) {
    if (range.length > text().size() || range.location > text().size() - range.length) return false;
    if (!isBetweenCharacters(text(), range.location)) return false;
    if (!isBetweenCharacters(text(), range.location + range.length)) return false;
    assign(selectedRange_, range, UIViewChange::paint);
    return true;
}

void UITextField::insertText(const std::string& text) {
    replace(selectedRange_, text);
}

void UITextField::deleteBackward() {
    UITextRange range = selectedRange_;
    if (range.length == 0) {
        if (range.location == 0) return;
        range.location = characterStart(text(), selectedRange_.location);
        range.length = selectedRange_.location - range.location;
    }
    replace(range, {});
}

/// The event comes last: it may end the field.
void UITextField::replace(UITextRange range, const std::string& with) {
    const auto asked = delegate();
    if (asked && !asked->textField(*this, range, with)) return;
    const std::string& present = text();
    const std::size_t end = range.location + range.length;
    if (end > present.size()) return; // the delegate set another text
    std::string changed;
    changed.reserve(present.size() - range.length + with.size()); // so that it leaves no buffers behind
    changed.append(present, 0, range.location).append(with).append(present, end);
    store(changed);
    selectedRange_ = {range.location + with.size(), 0};
    sendActions(ControlEvent::editingChanged);
}

void UITextField::setInputView(std::shared_ptr<UIView> view) {
    if (view == inputView_) return;
    inputView_ = std::move(view);
    if (window() && isFirstResponder()) UIApplication::shared().showInput(this);
}

void UITextField::setInputAccessoryView(std::shared_ptr<UIView> view) {
    if (view == inputAccessoryView_) return;
    inputAccessoryView_ = std::move(view);
    if (window() && isFirstResponder()) UIApplication::shared().showInput(this);
}

bool UITextField::canBecomeFirstResponder() {
    return isEnabled() && window() != nullptr;
}

bool UITextField::canResignFirstResponder() {
    const auto asked = delegate();
    return !asked || asked->textFieldShouldEndEditing(*this);
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
    if (const auto listener = delegate()) listener->textFieldDidBeginEditing(*this);
    NotificationCenter::defaultCenter().post({textDidBeginEditingNotification});
    sendActions(ControlEvent::editingDidBegin);
}

void UITextField::didResignFirstResponder() {
    setNeedsDisplay();
    if (const auto listener = delegate()) listener->textFieldDidEndEditing(*this);
    sendActions(ControlEvent::editingDidEnd);
}

CGSize UITextField::sizeThatFits(CGSize /*size*/) const {
    constexpr double kBorderRoom = 7;
    const double room = borderStyle_ == UITextBorderStyle::none ? 0 : kBorderRoom;
    std::string shown = onOneLine(text().empty() ? placeholder_ : text());
    const CGSize line = measuredText(shown, shownFont(), kUnbounded, 1);
    cleanse(shown);
    return {line.width + 2 * room, line.height + 2 * room};
}

} // namespace korvane
