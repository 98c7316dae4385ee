#include "Platform/Qt/QtPlatform.h"

#include "Platform/Native/NativeDispatch.h"
#include "Platform/Native/SizedScreen.h"
#include "Platform/Qt/Fonts.h"
#include "Platform/Qt/KorvaneHost.h"
#include "Platform/Qt/Parts/Accessible.h"
#include "Platform/Qt/Parts/ViewItem.h"
#include "Platform/Qt/QtDevice.h"
#include "Platform/Qt/QtMainLoop.h"
#include "Platform/Qt/Web/PageEngine.h"
#include "Platform/View/UIApplication.h"

#include <qqml.h>

/// Resources of a static library are there only where they are asked for; outside of every namespace.
static void loadResources() {
    Q_INIT_RESOURCE(Parts);
}

namespace korvane {

struct QtPlatform::Parts {
    SizedScreen screen; // the item that shows the library's screens
    QtDevice device{screen};
    QtFonts fonts;
    QtTextMeasurer textMeasurer;
    NativeDispatch dispatch{std::make_unique<QtMainLoop>()};
    AccessibleItems accessibleItems;
};

void QtPlatform::prepare() {
    if (const auto* const pages = PageEngine::ofBuild()) pages->prepare();
}

QtPlatform::QtPlatform()
    : parts_(std::make_unique<Parts>()),
      installation_(*this, servicesWith({.device = parts_->device,
                                         .mainScreen = parts_->screen,
                                         .fonts = parts_->fonts,
                                         .textMeasurer = parts_->textMeasurer,
                                         .dispatch = parts_->dispatch})) {
    loadResources();
    application().setShowsPages(PageEngine::ofBuild() != nullptr);
    qmlRegisterType<ViewItem>("Korvane.Parts", 1, 0, "ViewItem");
    qmlRegisterType<KorvaneHost>("Korvane", 1, 0, "KorvaneHost");
}

/// The threads end while the platform is still whole, since their work may ask for it.
QtPlatform::~QtPlatform() {
    endNetwork();
    parts_->dispatch.end();
}

void QtPlatform::setScreenSize(CGSize size) {
    parts_->screen.setSize(size);
    parts_->device.setOrientation(size.width > size.height ? UIDeviceOrientation::landscapeLeft
                                                           : UIDeviceOrientation::portrait);
}

} // namespace korvane
