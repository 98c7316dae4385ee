#include "Platform/Headless/HeadlessPlatform.h"

#include "Platform/Headless/HeadlessFonts.h"
#include "Platform/Native/NativeDevice.h"
#include "Platform/Native/NativeDispatch.h"
#include "Platform/Native/SizedScreen.h"
#include "Platform/View/TextMeasurer.h"
#include "Platform/View/UIApplication.h"

namespace korvane {

struct HeadlessPlatform::Parts {
    NativeDevice device;
    SizedScreen screen; // empty, until `turn` gives it a size that nobody sees
    HeadlessFonts fonts;
    FixedAdvances textMeasurer;
    NativeDispatch dispatch;
};

HeadlessPlatform::HeadlessPlatform()
    : parts_(std::make_unique<Parts>()),
      installation_(*this, servicesWith({.device = parts_->device,
                                         .mainScreen = parts_->screen,
                                         .fonts = parts_->fonts,
                                         .textMeasurer = parts_->textMeasurer,
                                         .dispatch = parts_->dispatch})) {}

/// The threads end while the platform is still whole, since their work may ask for it.
HeadlessPlatform::~HeadlessPlatform() {
    endNetwork();
    parts_->dispatch.end();
}

void HeadlessPlatform::runMain() {
    parts_->dispatch.runMain();
}

void HeadlessPlatform::runMainUntil(const std::function<bool()>& isDone) {
    parts_->dispatch.runMainUntil(isDone);
}

void HeadlessPlatform::stopMain() {
    parts_->dispatch.stopMain();
}

void HeadlessPlatform::turn(UIDeviceOrientation orientation, CGSize screen) {
    parts_->device.setOrientation(orientation);
    parts_->screen.setSize(screen);
    application().deviceDidRotate();
}

} // namespace korvane
