#include "keyboard/KeyPop.h"

#include "keyboard/KeyPictures.h"
#include "keyboard/KeyboardButton.h"

#include <algorithm>

namespace korvane {

namespace {

/// Between bubble and key, and what the picture's shadow needs below the key. The upper row's bubble then
/// still ends below the top of the bar over the keys.
constexpr double kNeck = 5;
constexpr double kFoot = 2;

/// How much larger than the key's the glyph in a bubble is, where that has room.
constexpr double kLarger = 1.4;

/// The pictures have this much shadow at their sides.
constexpr double kSideShadow = 5.4;
/// The picture of the keys in the middle is that much heavier at its right.
constexpr double kMiddleOffset = -2;

double leftEdge(KeyPopType type, const CGRect& key, double width) {
    switch (type) {
    case KeyPopType::Left: return key.origin.x - kSideShadow;
    case KeyPopType::Right: return CGRectGetMaxX(key) + kSideShadow - width;
    case KeyPopType::Default:
    case KeyPopType::Press: break;
    }
    return key.origin.x + (key.size.width - width) / 2 + kMiddleOffset;
}

} // namespace

KeyPop::KeyPop(const std::shared_ptr<KeyboardButton>& referenceButton, KeyPopStyle style)
    : style_(std::move(style)), keyboardButton_(referenceButton) {
    if (referenceButton->style()) type_ = referenceButton->style()->keyPopType.value_or(type_);
    setUserInteractionEnabled(false);
    setBackgroundColor(style_.backgroundColor);
    layer().setBorderWidth(style_.borderWidth);
    layer().setBorderColor(style_.borderColor);
    if (style_.shadow) applyShadow(*style_.shadow, *this);
    if (referenceButton->type().kind() == KeyboardButtonType::Kind::Image)
        contentView_ = makeKeyImageView(*referenceButton);
    else
        contentView_ = makeKeyLabel(*referenceButton);
    addSubview(contentView_);
}

void KeyPop::setBackgroundImage(UIImagePtr image) {
    if (!backgroundView_) {
        backgroundView_ = std::make_shared<KeyImageView>();
        insertSubview(backgroundView_, 0);
    }
    backgroundView_->setImage(std::move(image));
}

CGRect KeyPop::frame(const KeyboardButtonStyle& style, const CGRect& key, const CGRect& across) {
    const KeyPopType type = style.keyPopType.value_or(KeyPopType::Press);
    if (type == KeyPopType::Press) return key;
    const double width = key.size.width * style.keyPopWidthMultiplier;
    const double height = key.size.height * (style.keyPopHeightMultiplier + 1) + kNeck + kFoot;
    const double least = across.origin.x - kSideShadow;
    const double most = std::max(least, CGRectGetMaxX(across) + kSideShadow - width);
    return {{std::clamp(leftEdge(type, key, width), least, most), CGRectGetMaxY(key) + kFoot - height},
            {width, height}};
}

CGRect KeyPop::bubble(const KeyboardButton& key) const {
    const CGSize size = bounds().size;
    const double height = size.height - key.bounds().size.height - kNeck - kFoot;
    const CGSize inset = style_.contentInset;
    return {{inset.width + style_.contentOffset.x, inset.height + style_.contentOffset.y},
            {std::max(0.0, size.width - 2 * inset.width), std::max(0.0, height - 2 * inset.height)}};
}

void KeyPop::layoutSubviews() {
    if (backgroundView_) backgroundView_->setFrame(bounds());
    const auto key = keyboardButton();
    if (!key) return;
    const bool isOverKey = type_ == KeyPopType::Press;
    const CGRect within = isOverKey ? bounds() : bubble(*key);
    contentView_->setFrame(keyContentFrame(*key, within));
    auto* const label = dynamic_cast<UILabel*>(contentView_.get());
    if (!label || isOverKey) return;
    const UIFont& font = key->style() ? key->style()->font : label->font();
    label->setFont(
        font.withSize(std::max(font.pointSize(), std::min(font.pointSize() * kLarger, within.size.height))));
}

} // namespace korvane
