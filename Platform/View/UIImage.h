#pragma once

#include "Platform/Bytes.h"
#include "Platform/CGGeometry.h"
#include "Platform/NSBundle.h"
#include "Platform/View/UIColor.h"

#include <memory>
#include <optional>
#include <string>

namespace korvane {

enum class UIImageRenderingMode { automatic, alwaysOriginal, alwaysTemplate };

/// A picture that a renderer can draw: encoded bytes or one plain colour. Immutable; any thread.
class UIImage {
public:
    /// An image of PNG, JPEG, GIF or SVG bytes at one point per pixel, or null for anything whose head is
    /// none of them. The rest of the bytes is the renderer's to judge.
    [[nodiscard]] static std::shared_ptr<const UIImage> make(Bytes data);

    /// The bundle's file `name` with one of the extensions svg, png, jpg (where `name@2x` and `name@3x` stand
    /// for 2 and 3 pixels a point), or null.
    [[nodiscard]] static std::shared_ptr<const UIImage> named(const std::string& name,
                                                              const NSBundle& bundle);

    /// A rectangle of one colour.
    [[nodiscard]] static std::shared_ptr<const UIImage> filled(CGSize size, const UIColor& color);

    [[nodiscard]] std::shared_ptr<const UIImage> withRenderingMode(UIImageRenderingMode mode) const;

    /// In points.
    [[nodiscard]] CGSize size() const noexcept { return size_; }
    [[nodiscard]] UIImageRenderingMode renderingMode() const noexcept { return renderingMode_; }
    /// The name under which it was found; empty for others.
    [[nodiscard]] const std::string& name() const noexcept { return name_; }
    /// The encoded bytes; empty for an image of one colour.
    [[nodiscard]] ByteView data() const noexcept;
    [[nodiscard]] const std::optional<UIColor>& color() const noexcept { return color_; }

private:
    UIImage() = default;

    std::string name_;
    std::shared_ptr<const Bytes> data_;
    std::optional<UIColor> color_;
    CGSize size_;
    UIImageRenderingMode renderingMode_ = UIImageRenderingMode::automatic;
};

using UIImagePtr = std::shared_ptr<const UIImage>;

/// Width and height in pixels as the head of a PNG, JPEG, GIF or SVG file tells them; no value for other
/// bytes and for empty pictures.
[[nodiscard]] std::optional<CGSize> encodedImageSize(ByteView data);

} // namespace korvane
