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

std::shared_ptr<UIImage> UIImage::make(std::optional<Bytes> data, UIImageOrigin origin) {
    const auto head = data ? imageHead(*data) : std::nullopt;
    if (!head) return nullptr;
    std::shared_ptr<UIImage> image(new UIImage);
    image->encoded_ = std::make_shared<const EncodedImage>(EncodedImage{std::move(*data), *head, origin});
    image->size_ = head->size;
    return image;
}

std::shared_ptr<const UIImage> UIImage::make(Bytes data) {
    return make(decodablePart(std::move(data)), UIImageOrigin::network);
}

std::shared_ptr<const UIImage> UIImage::named(const std::string& name, const NSBundle& bundle) {
    static FileCache<UIImage> images;
    for (const ImageFile& file : kImageFiles) {
        const auto path = bundle.URLForResource(name + std::string(file.suffix), std::string(file.extension));
        if (!path) continue;
        const auto load = [&](Bytes data) -> UIImagePtr {
            const auto image = make(std::move(data), UIImageOrigin::bundle);
            if (!image) return nullptr;
            image->name_ = name;
            image->size_.width /= file.pixelsPerPoint;
            image->size_.height /= file.pixelsPerPoint;
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

} // namespace korvane
