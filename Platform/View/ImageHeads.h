#pragma once

#include "Platform/Bytes.h"
#include "Platform/CGGeometry.h"
#include "Platform/Export.h"

#include <optional>

namespace korvane {

/// How a picture is encoded.
enum class UIImageFormat { png, jpeg, gif, svg };

/// What the first bytes of a picture tell.
struct ImageHead {
    UIImageFormat format = UIImageFormat::png;
    CGSize size; // in pixels
    friend bool operator==(const ImageHead&, const ImageHead&) = default;
};

/// The head of a PNG, JPEG, GIF or SVG file; no value for other bytes and for sizes that cannot be drawn: a
/// side is 0.01 to 4096 pixels long.
KORVANE_EXPORT [[nodiscard]] std::optional<ImageHead> imageHead(ByteView data);

/// What a decoder may be given of a picture that anyone can have made, such as a logo, which any network can
/// send where its address is http: PNG, JPEG or GIF of at most 512 KiB, without what decoders work on for
/// long and nobody sees. These are a PNG's texts and profiles, which inflate; a JPEG's scans above 20 and
/// segments of comments above 256, each of which goes over the picture or over all the others; and a GIF's
/// frames but the first, of which no pixel may lie beyond the picture. No value for any other.
KORVANE_EXPORT [[nodiscard]] std::optional<Bytes> decodablePart(Bytes foreign);

} // namespace korvane
