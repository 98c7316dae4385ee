#pragma once

#include "Platform/View/UIImageView.h"
#include "Platform/View/UIView.h"
#include "keyboard/KeyboardStyles.h"

#include <memory>

namespace korvane {

class KeyboardButton;

/// What appears over the finger while a key is pressed. Main queue only. It takes no touches.
class KeyPop : public UIView {
public:
    /// Shows a copy of what the key shows.
    KeyPop(const std::shared_ptr<KeyboardButton>& referenceButton, KeyPopStyle style);

    [[nodiscard]] KeyPopType type() const noexcept { return type_; }
    [[nodiscard]] const KeyPopStyle& style() const noexcept { return style_; }
    /// Null once the key is gone.
    [[nodiscard]] std::shared_ptr<KeyboardButton> keyboardButton() const { return keyboardButton_.lock(); }
    [[nodiscard]] const std::shared_ptr<UIView>& contentView() const noexcept { return contentView_; }

    /// The picture behind the content; it fills the pop-up.
    void setBackgroundImage(UIImagePtr image);

    /// Where the pop-up of a key lies: over the key itself, or standing on the key's foot with its bubble
    /// above the key.
    /// @param key     the key's frame, in the coordinates of the result.
    /// @param across  what the bubble stays within, from left to right; its shadow may leave it.
    [[nodiscard]] static CGRect frame(const KeyboardButtonStyle& style, const CGRect& key,
                                      const CGRect& across);

    void layoutSubviews() override;

private:
    [[nodiscard]] CGRect bubble(const KeyboardButton& key) const;

    KeyPopType type_ = KeyPopType::Default;
    KeyPopStyle style_;
    std::weak_ptr<KeyboardButton> keyboardButton_;
    std::shared_ptr<UIImageView> backgroundView_;
    std::shared_ptr<UIView> contentView_;
};

} // namespace korvane
