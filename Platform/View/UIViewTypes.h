#pragma once

#include "Platform/Dispatch.h"

#include <optional>
#include <string>

namespace korvane {

/// What a renderer has to draw for a view, beside what every view has.
enum class UIViewKind {
    view,
    window,
    label,
    textView,
    textField,
    button,
    image,
    scroll,
    table,
    tableCell,
    navigationBar,
    activityIndicator,
    webView,
    visualEffect,
    snapshot
};

/// How content that does not have its view's size is put into it.
enum class UIViewContentMode { scaleToFill, scaleAspectFit, scaleAspectFill, center };

/// What a changed property changes beside itself.
enum class UIViewChange {
    paint,   ///< what is drawn
    content, ///< also the size that the view's content would like
    layout   ///< also where the view's subviews lie
};

/// How a renderer plays the latest changes of a view.
struct UIViewAnimation {
    Seconds duration{0};
    Seconds delay{0};
    friend bool operator==(const UIViewAnimation&, const UIViewAnimation&) = default;
};

/// What a view is to assistive technology.
enum class UIAccessibilityRole {
    none,
    staticText,
    header,
    button,
    image,
    textField,
    checkBox,
    radioButton,
    list,
    page
};

struct UIAccessibilityState {
    bool isEnabled = true;
    bool isSelected = false;
    /// Of what opens and closes a part of the screen; no value for anything else.
    std::optional<bool> isExpanded = std::nullopt;
    friend bool operator==(const UIAccessibilityState&, const UIAccessibilityState&) = default;
};

} // namespace korvane
