#include "Platform/Qt/Parts/Picture.h"

#include "Platform/Qt/Parts/Values.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>

#include <algorithm>

namespace korvane {

namespace {

/// A picture of the network's may say that it is larger; it is not drawn in more pixels than this.
constexpr int kLongestSide = 4096;

/// Decoded in the pixels that it is drawn in, if that is fewer; null for bytes that are no picture.
QImage decoded(const UIImage& image, QSize pixels) {
    QByteArray bytes(reinterpret_cast<const char*>(image.data().data()),
                     static_cast<qsizetype>(image.data().size()));
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    reader.setScaledSize(pixels.boundedTo({kLongestSide, kLongestSide}));
    return reader.read();
}

QImage tinted(QImage image, const QColor& tint) {
    image = std::move(image).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), tint);
    return image;
}

} // namespace

Picture::Picture(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
}

void Picture::show(const UIImagePtr& image, UIViewContentMode mode, const QColor& tint,
                   UIUserInterfaceStyle style) {
    if (image == image_ && mode == mode_ && tint == tint_ && style == style_) return;
    image_ = image;
    mode_ = mode;
    tint_ = tint;
    style_ = style;
    update();
}

/// Where the image goes; outside of the item it is cut off.
QRectF Picture::target() const {
    const QSizeF natural(image_->size().width, image_->size().height);
    QSizeF size = boundingRect().size();
    switch (mode_) {
    case UIViewContentMode::scaleToFill: break;
    case UIViewContentMode::scaleAspectFit: size = natural.scaled(size, Qt::KeepAspectRatio); break;
    case UIViewContentMode::scaleAspectFill:
        size = natural.scaled(size, Qt::KeepAspectRatioByExpanding);
        break;
    case UIViewContentMode::center: size = natural; break;
    }
    QRectF rect({0, 0}, size);
    rect.moveCenter(boundingRect().center());
    return rect;
}

void Picture::paint(QPainter* painter) {
    if (!image_ || boundingRect().isEmpty()) return;
    const QRectF rect = target();
    const bool isTemplate = image_->renderingMode() == UIImageRenderingMode::alwaysTemplate;
    if (const auto& color = image_->color()) {
        painter->fillRect(rect, isTemplate ? tint_ : asColor(*color, style_));
        return;
    }
    const qreal density = painter->device()->devicePixelRatioF();
    QImage image = decoded(*image_, (rect.size() * density).toSize().expandedTo({1, 1}));
    if (image.isNull()) return;
    if (isTemplate) image = tinted(std::move(image), tint_);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(rect, image);
}

} // namespace korvane
