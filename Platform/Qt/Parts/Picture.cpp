#include "Platform/Qt/Parts/Picture.h"

#include "Platform/Qt/Parts/Values.h"

#include <QPainter>

#include <algorithm>

namespace korvane {

namespace {

/// However large it is drawn, no drawing is made in more pixels than this.
constexpr int kLongestSide = 4096;

bool isForeign(const UIImagePtr& image) {
    return image && image->encoded() && image->encoded()->origin == UIImageOrigin::network;
}

QImage tinted(QImage image, const QColor& tint) {
    image = std::move(image).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), tint);
    return image;
}

} // namespace

Picture::Picture(PictureLoader& loader, QQuickItem* parent) : QQuickPaintedItem(parent), loader_(loader) {
    setAntialiasing(true);
    connect(&loader_, &PictureLoader::loaded, this, &Picture::takeLoaded);
}

void Picture::show(const UIImagePtr& image, UIViewContentMode mode, double inset, const QColor& tint,
                   UIUserInterfaceStyle style) {
    if (image == image_ && mode == mode_ && inset == inset_ && tint == tint_ && style == style_) return;
    image_ = image;
    mode_ = mode;
    inset_ = inset;
    tint_ = tint;
    style_ = style;
    loaded_ = {};
    takeLoaded();
    update();
}

void Picture::takeLoaded() {
    if (!isForeign(image_) || !loaded_.isNull()) return;
    loaded_ = loader_.picture(image_->encoded());
    if (!loaded_.isNull()) update();
}

/// Where the image goes; outside of the item it is cut off.
QRectF Picture::target() const {
    const QSizeF natural(image_->size().width, image_->size().height);
    const QRectF room = boundingRect().adjusted(inset_, inset_, -inset_, -inset_);
    QSizeF size = room.size();
    switch (mode_) {
    case UIViewContentMode::scaleToFill: break;
    case UIViewContentMode::scaleAspectFit: size = natural.scaled(size, Qt::KeepAspectRatio); break;
    case UIViewContentMode::scaleAspectFill:
        size = natural.scaled(size, Qt::KeepAspectRatioByExpanding);
        break;
    case UIViewContentMode::center: size = natural; break;
    }
    QRectF rect({0, 0}, size);
    rect.moveCenter(room.center());
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
    const QSize pixels =
        (rect.size() * density).toSize().expandedTo({1, 1}).boundedTo({kLongestSide, kLongestSide});
    QImage image = isForeign(image_) ? loaded_ : decoded(*image_->encoded(), pixels);
    if (image.isNull()) return;
    if (image.width() > pixels.width() && image.height() > pixels.height())
        image = image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (isTemplate) image = tinted(std::move(image), tint_);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(rect, image);
}

} // namespace korvane
