#include "tools/screen/Sheet.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <vector>

namespace korvane::screen {

namespace {

// In points.
constexpr std::array<QSize, 3> kDevices{{{320, 568}, {390, 844}, {768, 1024}}};
constexpr int kGap = 32;
constexpr int kCaption = 40;
constexpr int kCaptionSize = 20; // in pixels of the sheet
constexpr QColor kGround(0x8A, 0x8F, 0x96);

struct Picture {
    QString caption;
    QImage image;
};

using Row = std::vector<Picture>;

QSize sizeOf(const Row& row) {
    QSize size(kGap, 0);
    for (const Picture& picture : row) {
        const QSizeF points = picture.image.deviceIndependentSize();
        size.rwidth() += static_cast<int>(points.width()) + kGap;
        size.setHeight(std::max(size.height(), static_cast<int>(points.height()) + kCaption + kGap));
    }
    return size;
}

Picture draw(Stage& stage, const Script& script, const Setting& setting) {
    const QString caption = QStringLiteral("%1 × %2, %3")
                                .arg(setting.size.width())
                                .arg(setting.size.height())
                                .arg(setting.isDark ? "dark" : "light");
    return {caption, stage.draw(script, setting)};
}

/// Upright ones in one row, light beside dark; what lies on its side is wide, and has a row for each.
std::vector<Row> drawRows(Stage& stage, const Script& script, Setting setting) {
    std::vector<Row> rows(3);
    for (const QSize& device : kDevices)
        for (const bool isDark : {false, true}) {
            setting.isDark = isDark;
            setting.size = device;
            rows[0].push_back(draw(stage, script, setting));
            setting.size = device.transposed();
            rows[isDark ? 2 : 1].push_back(draw(stage, script, setting));
        }
    return rows;
}

} // namespace

QImage sheetOf(Stage& stage, const Script& script, const Setting& setting) {
    const std::vector<Row> rows = drawRows(stage, script, setting);
    QSize size(0, kGap);
    for (const Row& row : rows)
        size = {std::max(size.width(), sizeOf(row).width()), size.height() + sizeOf(row).height()};
    const qreal density = rows.front().front().image.devicePixelRatio();
    QImage sheet(size * density, QImage::Format_RGB32);
    sheet.setDevicePixelRatio(density);
    sheet.fill(kGround);
    QPainter painter(&sheet);
    QFont font = painter.font();
    font.setPixelSize(kCaptionSize);
    painter.setFont(font);
    painter.setPen(Qt::white);
    int top = kGap;
    for (const Row& row : rows) {
        int left = kGap;
        for (const auto& [caption, image] : row) {
            const int width = static_cast<int>(image.deviceIndependentSize().width());
            painter.drawText(QRect(left, top, width, kCaption), Qt::AlignLeft | Qt::AlignVCenter, caption);
            painter.drawImage(QPoint(left, top + kCaption), image);
            left += width + kGap;
        }
        top += sizeOf(row).height();
    }
    return sheet;
}

} // namespace korvane::screen
