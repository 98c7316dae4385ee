#pragma once

#include "Platform/Bytes.h"
#include "Platform/CGGeometry.h"
#include "Platform/Export.h"
#include "Platform/NSBundle.h"
#include "Platform/View/ImageHeads.h"
#include "Platform/View/UIColor.h"

#include <memory>
#include <optional>
#include <string>

namespace korvane {

enum class UIImageRenderingMode { automatic, alwaysOriginal, alwaysTemplate };

/// Whom a picture's bytes come from: what anybody may have made is decoded apart and within a time.
enum class UIImageOrigin { network, bundle };

/// The bytes of a picture, and what a decoder has to know of them. Never SVG from the network, which can name
/// files and cost without bounds.
struct EncodedImage {
    Bytes bytes;
    ImageHead head;
    UIImageOrigin origin = UIImageOrigin::network;
};

/// A picture that a renderer can draw: encoded bytes or one plain colour. Immutable; any thread.
class KORVANE_EXPORT UIImage {
public:
    /// An image that came over the network, at one point per pixel, or null for bytes of which
    /// `decodablePart` leaves none. Whether they decode is the renderer's to find out, which
    /// draws nothing otherwise.
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
    /// Null for an image of one colour; the same for all rendering modes.
    [[nodiscard]] const std::shared_ptr<const EncodedImage>& encoded() const noexcept { return encoded_; }
    [[nodiscard]] const std::optional<UIColor>& color() const noexcept { return color_; }

private:
    UIImage() = default;

    static std::shared_ptr<UIImage> make(std::optional<Bytes> data, UIImageOrigin origin);

    std::string name_;
    std::shared_ptr<const EncodedImage> encoded_;
    std::optional<UIColor> color_;
    CGSize size_;
    UIImageRenderingMode renderingMode_ = UIImageRenderingMode::automatic;
};

using UIImagePtr = std::shared_ptr<const UIImage>;

} // namespace korvane
