#pragma once

#include "Platform/View/UILabel.h"
#include "keyboard/Shadow.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace korvane {

/// The look of an entry of a menu. Lengths are in points.
struct KeyMenuItemStyle {
    UIColor highlightedBackgroundColor = UIColor::blue();
    UIColor textColor = UIColor::black();
    UIColor highlightedTextColor = UIColor::white();
    UIFont font = UIFont::systemFont(16, UIFontWeight::light);
    UIFont highlightedFont = UIFont::boldSystemFont(16);
    UIColor separatorColor = UIColor::black();
    double separatorWidth = 1;
};

/// One entry of a key's menu. Main queue only.
class KeyMenuItem : public UIView {
public:
    using Action = std::function<void(KeyMenuItem& item)>;

    /// Where the line to the next entry is.
    enum class Edge { none, right, bottom };

    /// @param action  runs when the entry is chosen; empty for none.
    KeyMenuItem(std::optional<std::string> title, KeyMenuItemStyle style, Action action = {});

    [[nodiscard]] const std::optional<std::string>& title() const noexcept { return title_; }
    [[nodiscard]] const KeyMenuItemStyle& style() const noexcept { return style_; }
    [[nodiscard]] const Action& action() const noexcept { return action_; }
    [[nodiscard]] bool highlighted() const noexcept { return highlighted_; }
    void setHighlighted(bool highlighted);
    /// Null for an entry without a title.
    [[nodiscard]] const std::shared_ptr<UILabel>& titleLabel() const noexcept { return titleLabel_; }
    /// Null for none. A layer cannot stand alone here, and so it is a thin view's.
    [[nodiscard]] const std::shared_ptr<UIView>& separator() const noexcept { return separator_; }
    void setSeparator(Edge edge);

    void layoutSubviews() override;

private:
    void showState();

    std::optional<std::string> title_;
    KeyMenuItemStyle style_;
    Action action_;
    bool highlighted_ = false;
    std::shared_ptr<UILabel> titleLabel_;
    std::shared_ptr<UIView> separator_;
    Edge edge_ = Edge::none;
};

} // namespace korvane
