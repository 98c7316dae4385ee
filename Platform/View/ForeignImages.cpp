#include "Platform/View/ImageHeads.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace korvane {

namespace {

constexpr std::size_t kMostBytes = std::size_t{512} << 10U;

/// W3C PNG, section 5.3: chunks of a length, a type, data and a checksum. A capital first letter says that
/// the picture cannot be drawn without the chunk.
std::optional<Bytes> decodablePng(Bytes data) {
    constexpr std::size_t kSignature = 8;
    constexpr std::size_t kAroundData = 12;
    const ByteView all = data;
    Bytes kept(data.begin(), data.begin() + kSignature);
    for (std::size_t at = kSignature; all.size() - at >= kAroundData;) {
        std::size_t length = 0;
        for (const std::uint8_t byte : all.subspan(at, 4))
            length = length << 8U | byte;
        if (length > all.size() - at - kAroundData) break;
        const ByteView chunk = all.subspan(at, length + kAroundData);
        const std::string_view type = asText(chunk).substr(4, 4);
        const bool isCritical = (chunk[4] & 0x20U) == 0;
        if (isCritical || type == "tRNS") kept.insert(kept.end(), chunk.begin(), chunk.end());
        at += chunk.size();
    }
    return kept;
}

/// ITU-T T.81, table B.1. A marker's two bytes are counted wherever they stand, as decoders look for the next
/// one behind any damage.
std::optional<Bytes> decodableJpeg(Bytes data) {
    constexpr int kMostScans = 20;
    constexpr int kMostComments = 256;
    int scans = 0;
    int comments = 0;
    for (std::size_t at = 0; at + 1 < data.size(); ++at) {
        if (data[at] != 0xFF) continue;
        const unsigned marker = data[at + 1];
        if (marker == 0xDA) ++scans;
        if ((marker >= 0xE0 && marker <= 0xEF) || marker == 0xFE) ++comments;
    }
    if (scans > kMostScans || comments > kMostComments) return std::nullopt;
    return data;
}

/// Counts the pixels of a GIF's compressed data (GIF89a, appendix F) without making them: of each code the
/// length is kept alone.
class GifPixels {
public:
    /// @param codeSize  the bits of a pixel, from 2 to 8.
    explicit GifPixels(unsigned codeSize) : clear_(1U << codeSize), codeSize_(codeSize) {
        std::fill_n(lengths_.begin(), clear_, std::uint16_t{1});
        restart();
    }

    /// @return false for bytes that no encoder writes.
    [[nodiscard]] bool add(ByteView block) {
        for (const std::uint8_t byte : block) {
            if (hasEnded_) return true; // what follows the end is passed over
            bits_ |= std::uint32_t{byte} << bitCount_;
            for (bitCount_ += 8; bitCount_ >= width_ && !hasEnded_;) {
                const unsigned code = bits_ & ((1U << width_) - 1);
                bits_ >>= width_;
                bitCount_ -= width_;
                if (!take(code)) return false;
            }
        }
        return true;
    }
    [[nodiscard]] std::size_t count() const noexcept { return count_; }

private:
    static constexpr unsigned kMostWidth = 12;
    static constexpr unsigned kNone = 1U << kMostWidth;

    void restart() {
        next_ = clear_ + 2;
        width_ = codeSize_ + 1;
        previous_ = kNone;
    }

    [[nodiscard]] bool take(unsigned code) {
        if (code == clear_) {
            restart();
            return true;
        }
        if (code == clear_ + 1) {
            hasEnded_ = true;
            return true;
        }
        if (code > (previous_ == kNone ? clear_ : next_)) return false;
        if (previous_ != kNone && next_ < kNone) {
            lengths_[next_++] = static_cast<std::uint16_t>(lengths_[previous_] + 1);
            if (next_ == 1U << width_ && width_ < kMostWidth) ++width_;
        }
        count_ += lengths_[code];
        previous_ = code;
        return true;
    }

    std::array<std::uint16_t, kNone> lengths_{};
    unsigned clear_;
    unsigned codeSize_;
    unsigned next_ = 0;  // the code that is defined next
    unsigned width_ = 0; // of a code, in bits
    unsigned previous_ = kNone;
    std::uint32_t bits_ = 0;
    unsigned bitCount_ = 0;
    std::size_t count_ = 0;
    bool hasEnded_ = false;
};

/// Reads a GIF from its begin to the end of its first frame (GIF89a, sections 15 to 23).
class GifReader {
public:
    /// @param data  at least a logical screen's descriptor.
    explicit GifReader(ByteView data) : data_(data), screen_{number(6), number(8)} {
        at_ = 13 + colours(data.size() > 10 ? data[10] : 0);
    }

    /// @return where the first frame ends; no value for a frame that is none, or lies beyond the screen.
    [[nodiscard]] std::optional<std::size_t> endOfFrame() {
        constexpr std::uint8_t kExtension = 0x21;
        constexpr std::uint8_t kFrame = 0x2C;
        while (at_ < data_.size() && data_[at_] == kExtension) {
            at_ += 2;
            if (!readBlocks([](ByteView) { return true; })) return std::nullopt;
        }
        if (at_ + 11 > data_.size() || data_[at_] != kFrame) return std::nullopt;
        const Size frame{number(at_ + 5), number(at_ + 7)};
        if (number(at_ + 1) + frame.width > screen_.width || number(at_ + 3) + frame.height > screen_.height)
            return std::nullopt;
        at_ += 10 + colours(data_[at_ + 9]);
        if (at_ >= data_.size() || data_[at_] < 2 || data_[at_] > 8) return std::nullopt;
        GifPixels pixels(data_[at_++]);
        const auto isWithinFrame = [&](ByteView block) {
            return pixels.add(block) && pixels.count() <= frame.width * frame.height;
        };
        return readBlocks(isWithinFrame) ? std::optional(at_) : std::nullopt;
    }

private:
    struct Size {
        std::size_t width;
        std::size_t height;
    };

    [[nodiscard]] std::size_t number(std::size_t at) const {
        return data_[at] + std::size_t{data_[at + 1]} * 256;
    }
    /// The bytes of a table of colours, as the flags before it tell.
    static std::size_t colours(std::uint8_t flags) {
        return (flags & 0x80U) != 0 ? std::size_t{3} << ((flags & 7U) + 1) : 0;
    }
    /// Blocks up to an empty one.
    template <class Take>
    [[nodiscard]] bool readBlocks(Take take) {
        while (at_ < data_.size()) {
            const std::size_t length = data_[at_++];
            if (length == 0) return true;
            if (length > data_.size() - at_ || !take(data_.subspan(at_, length))) return false;
            at_ += length;
        }
        return false;
    }

    ByteView data_;
    Size screen_;
    std::size_t at_ = 0;
};

std::optional<Bytes> decodableGif(Bytes data) {
    constexpr std::uint8_t kTrailer = 0x3B;
    const auto end = GifReader(data).endOfFrame();
    if (!end) return std::nullopt;
    data.resize(*end);
    data.push_back(kTrailer);
    return data;
}

std::optional<Bytes> bounded(UIImageFormat format, Bytes data) {
    switch (format) {
    case UIImageFormat::png: return decodablePng(std::move(data));
    case UIImageFormat::jpeg: return decodableJpeg(std::move(data));
    case UIImageFormat::gif: return decodableGif(std::move(data));
    case UIImageFormat::svg: break;
    }
    return std::nullopt;
}

} // namespace

/// A picture that is left with another head was none.
std::optional<Bytes> decodablePart(Bytes foreign) {
    if (foreign.size() > kMostBytes) return std::nullopt;
    const auto head = imageHead(foreign);
    if (!head) return std::nullopt;
    auto part = bounded(head->format, std::move(foreign));
    return part && imageHead(*part) == head ? part : std::nullopt;
}

} // namespace korvane
