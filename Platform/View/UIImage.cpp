#include "Platform/View/UIImage.h"

#include "Platform/View/FileCache.h"

#include <array>
#include <exception>

namespace korvane {

namespace {

/// The files that can hold an image, the best first.
struct ImageFile {
    std::string_view suffix;
    std::string_view extension;
    double pixelsPerPoint;
};

constexpr std::array kImageFiles{ImageFile{"", "svg", 1}, ImageFile{"@3x", "png", 3},
                                 ImageFile{"@2x", "png", 2}, ImageFile{"", "png", 1},
                                 ImageFile{"", "jpg", 1}};

} // namespace

std::shared_ptr<const UIImage> UIImage::make(Bytes data) {
    const auto size = encodedImageSize(data);
    if (!size) return nullptr;
    const std::shared_ptr<UIImage> image(new UIImage);
    image->data_ = std::make_shared<const Bytes>(std::move(data));
    image->size_ = *size;
    return image;
}

std::shared_ptr<const UIImage> UIImage::named(const std::string& name, const NSBundle& bundle) {
    static FileCache<UIImage> images;
    for (const ImageFile& file : kImageFiles) {
        const auto path = bundle.URLForResource(name + std::string(file.suffix), std::string(file.extension));
        if (!path) continue;
        const auto load = [&](Bytes data) -> UIImagePtr {
            const auto plain = make(std::move(data));
            if (!plain) return nullptr;
            const std::shared_ptr<UIImage> image(new UIImage(*plain));
            image->name_ = name;
            image->size_ = {plain->size_.width / file.pixelsPerPoint,
                            plain->size_.height / file.pixelsPerPoint};
            return image;
        };
        try {
            if (auto image = images.get(*path, load)) return image;
        } catch (const std::exception&) {
            continue; // a file that cannot be read is as good as none
        }
    }
    return nullptr;
}

std::shared_ptr<const UIImage> UIImage::filled(CGSize size, const UIColor& color) {
    const std::shared_ptr<UIImage> image(new UIImage);
    image->size_ = size;
    image->color_ = color;
    return image;
}

std::shared_ptr<const UIImage> UIImage::withRenderingMode(UIImageRenderingMode mode) const {
    const std::shared_ptr<UIImage> image(new UIImage(*this));
    image->renderingMode_ = mode;
    return image;
}

ByteView UIImage::data() const noexcept {
    return data_ ? ByteView(*data_) : ByteView();
}

} // namespace korvane
