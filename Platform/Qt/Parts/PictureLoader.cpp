#include "Platform/Qt/Parts/PictureLoader.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>

namespace korvane {

namespace {

/// Of the screens' two logos, each may take its time.
constexpr int kThreads = 2;

/// Logos are some hundred pixels long on the densest screens.
constexpr int kLongestSide = 1024;

/// The name of a format for Qt.
const char* nameOf(UIImageFormat format) {
    switch (format) {
    case UIImageFormat::png: return "png";
    case UIImageFormat::jpeg: return "jpeg";
    case UIImageFormat::gif: return "gif";
    case UIImageFormat::svg: return "svg";
    }
    return nullptr;
}

} // namespace

/// Qt scales a palette by leaving pixels out, which makes noise; so pictures are scaled
/// once they have colours.
QImage decoded(const EncodedImage& picture, QSize pixels) {
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(picture.bytes.data()),
                                               static_cast<qsizetype>(picture.bytes.size()));
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, nameOf(picture.head.format));
    reader.setAutoDetectImageFormat(false);
    const bool isDrawing = picture.head.format == UIImageFormat::svg;
    const QSize told = QSizeF(picture.head.size.width, picture.head.size.height).toSize();
    if (isDrawing)
        reader.setScaledSize(pixels);
    else if (reader.size() != told)
        return {};
    QImage image = reader.read();
    if (image.isNull()) return image;
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    const QSize wanted = pixels.boundedTo(image.size());
    return wanted == image.size() ? image
                                  : image.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

PictureLoader::PictureLoader(std::chrono::milliseconds time) : time_(time) {
    pool_.setMaxThreadCount(kThreads);
}

PictureLoader::~PictureLoader() {
    pool_.clear();
    pool_.waitForDone();
}

QImage PictureLoader::picture(const std::shared_ptr<const EncodedImage>& encoded) {
    const auto known = pictures_.find(encoded);
    if (known != pictures_.end()) return known->second;
    std::erase_if(pictures_, [](const auto& entry) { return entry.first.expired(); });
    pictures_.emplace(encoded, QImage());
    load(encoded);
    return {};
}

void PictureLoader::load(const std::shared_ptr<const EncodedImage>& encoded) {
    QElapsedTimer clock;
    clock.start();
    pool_.start([this, encoded, clock] {
        QSize pixels = QSizeF(encoded->head.size.width, encoded->head.size.height).toSize();
        if (std::max(pixels.width(), pixels.height()) > kLongestSide)
            pixels = pixels.scaled(kLongestSide, kLongestSide, Qt::KeepAspectRatio).expandedTo({1, 1});
        const QImage image = decoded(*encoded, pixels);
        QMetaObject::invokeMethod(this, [this, key = Key(encoded), clock, image] {
            if (clock.elapsed() >= time_.count() || image.isNull()) return;
            pictures_[key] = image;
            emit loaded();
        });
    });
}

} // namespace korvane
