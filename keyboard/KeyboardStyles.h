#pragma once

#include "Platform/View/UIColor.h"
#include "Platform/View/UIFont.h"
#include "Platform/View/UIImage.h"
#include "keyboard/Shadow.h"

#include <memory>
#include <optional>
#include <string>

namespace korvane {

class UIView;

/// What a key shows while it is pressed: an enlarged picture of itself over the finger, which leans away from
/// the near edge of the screen at the ends of a row, or a darker key.
enum class KeyPopType { Default, Left, Right, Press };

/// A colour of the library's resources.
[[nodiscard]] std::optional<UIColor> keyboardColor(const std::string& name);
/// A picture of the library's resources; null where there is none of that name.
[[nodiscard]] UIImagePtr keyboardImage(const std::string& name);

/// The look of a key. Lengths are in points.
struct KeyboardButtonStyle {
    std::optional<UIColor> backgroundColor = keyboardColor("velka_sdk_kb_button");
    double cornerRadius = 5;
    UIColor borderColor = UIColor::clear();
    double borderWidth = 0;
    Shadow shadow = {};
    UIColor textColor = UIColor::label();
    UIFont font = UIFont::systemFont(25, UIFontWeight::light);
    /// How far below the middle the caption sits.
    double textOffsetY = 0;
    /// Both sides of the image; absent for one that fills the key.
    std::optional<double> imageSize = std::nullopt;
    UIColor tintColor = UIColor::label();
    /// Absent for a key that shows nothing when it is pressed.
    std::optional<KeyPopType> keyPopType = std::nullopt;
    double keyPopWidthMultiplier = 1.85;
    double keyPopHeightMultiplier = 1.1;
    /// Holds the pop-up in place of the key's superview.
    std::weak_ptr<UIView> keyPopContainerView = {};
    std::optional<UIColor> keyPopBackgroundColor = std::nullopt;
};

/// The room around the keys of a row and between them, in points, upright and in landscape.
struct KeyboardRowStyle {
    double leadingPadding = 3;
    double leadingPaddingLandscape = 3;
    double trailingPadding = 3;
    double trailingPaddingLandscape = 3;
    double topPadding = 6;
    double topPaddingLandscape = 6;
    double bottomPadding = 6;
    double bottomPaddingLandscape = 4;
    double buttonsPadding = 6;
    double buttonsPaddingLandscape = 5;
};

struct KeyboardLayoutStyle {
    std::optional<UIColor> backgroundColor = keyboardColor("velka_sdk_kb_bg");
};

/// The look of a pop-up. Lengths are in points.
struct KeyPopStyle {
    std::optional<UIColor> backgroundColor = keyboardColor("velka_sdk_kb_button");
    std::optional<Shadow> shadow = std::nullopt;
    /// The bubble's size, in sizes of the key.
    double widthMultiplier = 1.2;
    double heightMultiplier = 1.2;
    UIFont font = UIFont::systemFont(16);
    UIColor textColor = UIColor::label();
    /// From the bubble's sides to its content.
    CGSize contentInset{5, 5};
    CGPoint contentOffset{0, 0};
    double borderWidth = 1;
    UIColor borderColor = UIColor::black().withAlphaComponent(0.3);
};

} // namespace korvane
