#pragma once

#include "Platform/View/UIView.h"
#include "keyboard/KeyboardRow.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace korvane {

class KeyboardLayout;

/// Hears of what fingers do on a layout. Every operation may be left out.
class KeyboardLayoutDelegate {
public:
    virtual ~KeyboardLayoutDelegate() = default;

    virtual void keyboardLayoutDidKeyPressStart(KeyboardLayout& /*layout*/,
                                                const std::shared_ptr<KeyboardButton>& /*button*/) {}
    /// The finger has been lifted from the key. `didTouchesEnd` came before.
    virtual void keyboardLayoutDidKeyPressEnd(KeyboardLayout& /*layout*/,
                                              const std::shared_ptr<KeyboardButton>& /*button*/) {}
    virtual void keyboardLayoutDidDraggedIn(KeyboardLayout& /*layout*/,
                                            const std::shared_ptr<KeyboardButton>& /*from*/,
                                            const std::shared_ptr<KeyboardButton>& /*to*/) {}
    virtual void keyboardLayoutDidTouchesBegin(KeyboardLayout& /*layout*/, const UITouches& /*touches*/) {}
    virtual void keyboardLayoutDidTouchesMove(KeyboardLayout& /*layout*/, const UITouches& /*touches*/) {}
    virtual void keyboardLayoutDidTouchesEnd(KeyboardLayout& /*layout*/, const UITouches& /*touches*/) {}
    virtual void keyboardLayoutDidTouchesCancel(KeyboardLayout& /*layout*/, const UITouches& /*touches*/) {}
};

/// A finger and the key that it is on.
struct KeyboardButtonTouch {
    std::shared_ptr<UITouch> touch;
    std::shared_ptr<KeyboardButton> button;
};

/// A page of keys: rows below each other, and the fingers on them. Main queue only.
///
/// A press counts for the key under the finger at its end. A finger that slides off all keys stays on the
/// last one. Where somebody else holds the fingers, as a keyboard does, it gives the page their news by
/// `report` and `follow`.
class KeyboardLayout : public UIView {
public:
    using Rows = std::vector<std::shared_ptr<KeyboardRow>>;

    KeyboardLayout(std::optional<KeyboardLayoutStyle> style, std::optional<Rows> rows);

    [[nodiscard]] const std::optional<KeyboardLayoutStyle>& style() const noexcept { return style_; }
    [[nodiscard]] const std::optional<Rows>& rows() const noexcept { return rows_; }
    [[nodiscard]] std::shared_ptr<KeyboardLayoutDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(std::weak_ptr<KeyboardLayoutDelegate> delegate) { delegate_ = std::move(delegate); }
    /// While it is false the delegate hears of touches, but of no key press.
    [[nodiscard]] bool typingEnabled() const noexcept { return typingEnabled_; }
    void setTypingEnabled(bool typingEnabled) { typingEnabled_ = typingEnabled; }
    [[nodiscard]] const std::vector<KeyboardButtonTouch>& currentTouches() const noexcept {
        return currentTouches_;
    }
    /// Whether the main screen stands upright.
    [[nodiscard]] bool isPortrait() const;

    /// Calls with every key from top left to bottom right, those of rows within a row in their place.
    void forEachKey(const std::function<void(const std::shared_ptr<KeyboardButton>&)>& call) const;
    /// The key at an index of a row; null where there is no row, no element, or a row within the row.
    [[nodiscard]] std::shared_ptr<KeyboardButton> getKeyboardButton(std::size_t atRowIndex,
                                                                    std::size_t buttonIndex) const;
    /// The first key of that identifier from top left to bottom right, or null.
    [[nodiscard]] std::shared_ptr<KeyboardButton> getKeyboardButton(std::string_view withIdentifier) const;
    /// An index without a row is ignored; a button index past the end appends.
    void addKeyboardButton(std::shared_ptr<KeyboardButton> keyboardButton, std::size_t rowAtIndex,
                           std::size_t buttonIndex);
    void removeKeyboardButton(std::size_t atRowIndex, std::size_t buttonIndex);

    /// The sum of the paddings above and below the rows, in points.
    [[nodiscard]] double getRowPaddings() const;
    /// The height of each row, in points; 0 without rows.
    [[nodiscard]] double getOptimumRowHeight() const;

    /// The key under a point of the own coordinates, or null. Places the keys first where that is due: a
    /// finger can come down on a page before it has been drawn.
    [[nodiscard]] std::shared_ptr<KeyboardButton> keyboardButton(CGPoint at);

    /// Tells the delegate of fingers with the same news.
    void report(UITouchPhase phase, const UITouches& touches);
    /// Does to keys what one finger's news asks for. A finger that did not come down on a key
    /// here is passed over.
    void follow(UITouchPhase phase, const std::shared_ptr<UITouch>& touch);
    /// Lets go of all fingers without a word; their pop-ups go.
    std::vector<KeyboardButtonTouch> releaseTouches();
    /// Takes fingers over from another page: each is now on the key that lies under it here, as
    /// if it had slid there.
    void adoptTouches(const std::vector<KeyboardButtonTouch>& touches);

    void layoutSubviews() override;
    /// The bounds, and an open menu that rises above them.
    [[nodiscard]] bool pointInside(CGPoint point) const override;
    void touchesBegan(const UITouches& touches) override;
    void touchesMoved(const UITouches& touches) override;
    void touchesEnded(const UITouches& touches) override;
    void touchesCancelled(const UITouches& touches) override;

private:
    [[nodiscard]] std::shared_ptr<KeyboardRow> row(std::size_t atIndex) const;
    [[nodiscard]] KeyboardButtonTouch* entry(const UITouch& touch);
    std::shared_ptr<KeyboardButton> take(const UITouch& touch);
    void handle(UITouchPhase phase, const UITouches& touches);
    void begin(const std::shared_ptr<UITouch>& touch);
    void move(const std::shared_ptr<UITouch>& touch);
    void end(const std::shared_ptr<UITouch>& touch);
    void cancel(const std::shared_ptr<UITouch>& touch);

    std::optional<KeyboardLayoutStyle> style_;
    std::optional<Rows> rows_;
    std::weak_ptr<KeyboardLayoutDelegate> delegate_;
    bool typingEnabled_ = true;
    std::vector<KeyboardButtonTouch> currentTouches_;
};

} // namespace korvane
