#include "Platform/Qt/KorvaneWindow.h"

namespace korvane {

namespace {

/// Of a telephone held upright, in points.
constexpr QSize kUsualSize{390, 844};

} // namespace

KorvaneWindow::KorvaneWindow() : host_(new KorvaneHost(contentItem())) {
    resize(kUsualSize);
    host_->setSize(kUsualSize);
}

void KorvaneWindow::resizeEvent(QResizeEvent* event) {
    QQuickWindow::resizeEvent(event);
    host_->setSize(size());
}

} // namespace korvane
