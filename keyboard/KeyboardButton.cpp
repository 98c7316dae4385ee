#include "keyboard/KeyboardButton.h"

#include "keyboard/CustomKeyboardStates.h"
#include "keyboard/KeyMenu.h"
#include "keyboard/KeyPictures.h"

namespace korvane {

namespace {

/// What a person calls a key whose caption is a picture or a sign; empty for one that is called as it is
/// captioned.
std::string_view nameOf(CustomKeyboardIdentifier effect) {
    using enum CustomKeyboardIdentifier;
    switch (effect) {
    case ShiftOff:
    case ShiftOnce: return "shift";
    case ShiftOn: return "caps lock";
    case Backspace: return "delete";
    case Globe: return "next keyboard";
    case Symbols: return "symbols";
    case Space:
    case Return:
    case Numbers:
    case Letters: break;
    }
    return {};
}

} // namespace

std::shared_ptr<UILabel> makeKeyLabel(const KeyboardButton& of) {
    auto label = std::make_shared<KeyLabel>();
    label->setText(of.type().string());
    label->setTextAlignment(NSTextAlignment::center);
    label->setAdjustsFontSizeToFitWidth(true);
    label->setMinimumScaleFactor(0.5);
    if (!of.style()) return label;
    label->setTextColor(of.style()->textColor);
    label->setFont(of.style()->font);
    return label;
}

std::shared_ptr<UIImageView> makeKeyImageView(const KeyboardButton& of) {
    auto view = std::make_shared<KeyImageView>();
    view->setImage(of.type().image());
    view->setContentMode(UIViewContentMode::scaleAspectFit);
    if (of.style()) view->setTintColor(of.style()->tintColor);
    return view;
}

CGRect keyContentFrame(const KeyboardButton& of, const CGRect& within) {
    const auto& style = of.style();
    if (!style) return within;
    if (of.type().kind() != KeyboardButtonType::Kind::Image)
        return CGRectOffset(within, 0, style->textOffsetY);
    if (!style->imageSize) return within;
    const double side = *style->imageSize;
    return {
        {within.origin.x + (within.size.width - side) / 2, within.origin.y + (within.size.height - side) / 2},
        {side, side}};
}

KeyboardButton::KeyboardButton(KeyboardButtonType type, std::optional<KeyboardButtonStyle> style,
                               KeyboardButtonWidth width, std::shared_ptr<KeyMenu> menu,
                               std::optional<std::string> identifier)
    : type_(std::move(type)), widthInRow_(width), style_(std::move(style)), keyMenu_(std::move(menu)),
      identifier_(std::move(identifier)) {
    reload();
}

std::shared_ptr<KeyboardButton> KeyboardButton::copy() const {
    return std::make_shared<KeyboardButton>(type_, style_, widthInRow_, keyMenu_, identifier_);
}

void KeyboardButton::reload() {
    setUserInteractionEnabled(false);
    if (style_) {
        setBackgroundColor(style_->backgroundColor);
        layer().setCornerRadius(style_->cornerRadius);
        layer().setBorderColor(style_->borderColor);
        layer().setBorderWidth(style_->borderWidth);
        applyShadow(style_->shadow, *this);
    }
    while (!subviews().empty())
        std::shared_ptr<UIView>(subviews().back())->removeFromSuperview();
    textLabel_ = nullptr;
    imageView_ = nullptr;
    if (type_.kind() == KeyboardButtonType::Kind::Image) {
        imageView_ = makeKeyImageView(*this);
        addSubview(imageView_);
    } else {
        textLabel_ = makeKeyLabel(*this);
        addSubview(textLabel_);
    }
}

void KeyboardButton::layoutSubviews() {
    const CGRect frame = keyContentFrame(*this, bounds());
    if (textLabel_) textLabel_->setFrame(frame);
    if (imageView_) imageView_->setFrame(frame);
}

std::string KeyboardButton::defaultAccessibilityLabel() const {
    const auto effect = identifier_ ? fromRawValue<CustomKeyboardIdentifier>(*identifier_) : std::nullopt;
    const std::string_view name = effect ? nameOf(*effect) : std::string_view();
    return name.empty() ? type_.string() : std::string(name);
}

UIAccessibilityState KeyboardButton::accessibilityState() const {
    const bool isLit = identifier_ == rawValue(CustomKeyboardIdentifier::ShiftOnce) ||
                       identifier_ == rawValue(CustomKeyboardIdentifier::ShiftOn);
    return {true, isLit, std::nullopt};
}

} // namespace korvane
