#pragma once

#include "Platform/View/UIView.h"
#include "keyboard/KeyboardButton.h"

#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace korvane {

class KeyboardRow;

/// What stands in a row: a key, or a row of keys.
using KeyboardRowElement = std::variant<std::shared_ptr<KeyboardButton>, std::shared_ptr<KeyboardRow>>;

/// One row of keys. Main queue only. It takes no touches itself: they belong to its layout.
/// Lengths are in points.
///
/// The edges of keys lie on half points, which keeps them sharp, and gaps keep their width to the last bit,
/// so that no touch falls between two keys.
class KeyboardRow : public UIView {
public:
    using Characters = std::vector<KeyboardRowElement>;

    /// A row without a style has no paddings.
    KeyboardRow(std::optional<KeyboardRowStyle> style, std::optional<Characters> characters);

    [[nodiscard]] const std::optional<KeyboardRowStyle>& style() const noexcept { return style_; }
    [[nodiscard]] const std::optional<Characters>& characters() const noexcept { return characters_; }
    /// Null for a row that stands in no other.
    [[nodiscard]] std::shared_ptr<KeyboardRow> parentRow() const { return parentRow_.lock(); }
    [[nodiscard]] bool isPortrait() const noexcept { return isPortrait_; }
    void setPortrait(bool isPortrait) { assign(isPortrait_, isPortrait, UIViewChange::layout); }

    // Paddings of the present orientation.

    [[nodiscard]] double getLeadingPadding() const;
    [[nodiscard]] double getTrailingPadding() const;
    [[nodiscard]] double getTopPadding() const;
    [[nodiscard]] double getBottomPadding() const;
    [[nodiscard]] double getButtonsPadding() const;
    /// How far touches reach beyond a key of this row: into half of the gaps beside it, and over the
    /// paddings above and below. Keys at the row's ends, and rows within a row, reach as far as their
    /// neighbours leave them.
    [[nodiscard]] UIEdgeInsets buttonHitRangeInsets() const;

    // Widths, from the row's present frame.

    /// @param percent  from 0 to 1, of what the paddings leave of the row.
    [[nodiscard]] double getRelativeWidthForPercent(double percent) const;
    [[nodiscard]] double getWidthForKeyboardButton(const KeyboardButton& button) const;
    /// One share of what is left for keys without a width of their own. A row within a row takes one share
    /// for each of its elements, so that a letter is as wide in it as outside.
    [[nodiscard]] double getOptimumButtonWidth() const;

    /// Calls with every key from left to right, those of rows within the row in their place.
    void forEachKey(const std::function<void(const std::shared_ptr<KeyboardButton>&)>& call) const;
    /// The key under a point of the own coordinates, or null. Hidden keys are none.
    [[nodiscard]] std::shared_ptr<KeyboardButton> keyboardButton(CGPoint at) const;
    [[nodiscard]] bool pointInside(CGPoint point) const override;
    /// How far inside the bounds touches count; set by what the row stands in.
    void setHitRangeInsets(const UIEdgeInsets& insets);

    /// Puts a key before the element at an index, or at the end if there is none.
    void insert(std::shared_ptr<KeyboardButton> button, std::size_t atIndex);
    /// An index without an element is ignored.
    void remove(std::size_t atIndex);

    void layoutSubviews() override;

private:
    [[nodiscard]] double padding(double KeyboardRowStyle::*portrait,
                                 double KeyboardRowStyle::*landscape) const;
    [[nodiscard]] double ownPaddings() const;
    [[nodiscard]] std::size_t shares() const;
    [[nodiscard]] double width(const KeyboardRowElement& element, double share) const;
    [[nodiscard]] UIEdgeInsets hitRangeInsets() const;
    void placeElements();
    void shareGaps();

    std::optional<KeyboardRowStyle> style_;
    std::optional<Characters> characters_;
    bool isPortrait_ = true;
    std::weak_ptr<KeyboardRow> parentRow_;
    std::optional<UIEdgeInsets> hitRangeInsets_;
};

} // namespace korvane
