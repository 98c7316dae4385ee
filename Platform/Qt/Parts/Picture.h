#pragma once

#include "Platform/Qt/Parts/PictureLoader.h"
#include "Platform/View/UIImage.h"
#include "Platform/View/UITraitCollection.h"
#include "Platform/View/UIViewTypes.h"

#include <QColor>
#include <QQuickPaintedItem>

namespace korvane {

/// Draws one image into its item, as the content mode says; drawings (SVG) in the screen's own resolution.
/// The network's appear once they are loaded. Main queue only.
class Picture final : public QQuickPaintedItem {
    Q_OBJECT

public:
    /// @param loader  outlives the item.
    Picture(PictureLoader& loader, QQuickItem* parent);

    /// @param image  null for none. One that is rendered as a template has the tint's colour.
    /// @param inset  the room that the image leaves at every side, in points.
    void show(const UIImagePtr& image, UIViewContentMode mode, double inset, const QColor& tint,
              UIUserInterfaceStyle style);

    void paint(QPainter* painter) override;

private:
    [[nodiscard]] QRectF target() const;
    void takeLoaded();

    PictureLoader& loader_;
    QImage loaded_; // of an image of the network
    UIImagePtr image_;
    UIViewContentMode mode_ = UIViewContentMode::scaleToFill;
    double inset_ = 0;
    QColor tint_;
    UIUserInterfaceStyle style_ = UIUserInterfaceStyle::light;
};

} // namespace korvane
