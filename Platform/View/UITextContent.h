#pragma once

#include "Platform/Export.h"
#include "Platform/View/UIColor.h"
#include "Platform/View/UIFont.h"
#include "Platform/View/UIView.h"

#include <string>

namespace korvane {

enum class NSTextAlignment { natural, left, center, right };

/// The font in the size in which the user wants to read it.
KORVANE_EXPORT [[nodiscard]] UIFont inUsersSize(const UIFont& font);

/// A view that shows one text in one font: what labels, text views and text fields share. Main queue only.
/// `Base` is a view.
template <class Base>
class UITextContent : public Base {
public:
    using Base::Base;

    /// Empty for no text.
    [[nodiscard]] const std::string& text() const noexcept { return text_; }
    virtual void setText(std::string text) { this->assign(text_, std::move(text), UIViewChange::content); }
    [[nodiscard]] const UIFont& font() const noexcept { return font_; }
    void setFont(const UIFont& font) { this->assign(font_, font, UIViewChange::content); }
    /// Whether the user's size of text counts (`UIApplication::textScale`); it does unless told otherwise.
    void setAdjustsFontForContentSizeCategory(bool adjusts) {
        this->assign(adjustsFont_, adjusts, UIViewChange::content);
    }
    /// The font in the size that the user sees.
    [[nodiscard]] UIFont shownFont() const { return adjustsFont_ ? inUsersSize(font_) : font_; }
    [[nodiscard]] const UIColor& textColor() const noexcept { return textColor_; }
    void setTextColor(const UIColor& color) { this->assign(textColor_, color, UIViewChange::paint); }
    [[nodiscard]] NSTextAlignment textAlignment() const noexcept { return textAlignment_; }
    void setTextAlignment(NSTextAlignment alignment) {
        this->assign(textAlignment_, alignment, UIViewChange::paint);
    }

protected:
    /// Another text takes the present one's place, which `text` then holds.
    void swapText(std::string& text) {
        text_.swap(text);
        this->didChange(UIViewChange::content);
    }

    [[nodiscard]] std::string defaultAccessibilityLabel() const override { return text_; }

private:
    std::string text_;
    UIFont font_ = UIFont::systemFont(17);
    UIColor textColor_ = UIColor::label();
    NSTextAlignment textAlignment_ = NSTextAlignment::natural;
    bool adjustsFont_ = true;
};

/// What a text needs within a width, by the platform's measurer, in whole points upwards.
KORVANE_EXPORT [[nodiscard]] CGSize measuredText(const std::string& text, const UIFont& font,
                                                 double maximumWidth, int maximumLines);

} // namespace korvane
