#include "Platform/Headless/HeadlessPlatform.h"

#include "Platform/Headless/HeadlessFonts.h"
#include "Platform/Headless/HeadlessScreen.h"
#include "Platform/Native/NativeDevice.h"
#include "Platform/Native/NativeDispatch.h"
#include "Platform/View/TextMeasurer.h"
#include "Platform/View/UIApplication.h"

namespace korvane {

struct HeadlessPlatform::Parts {
    NativeDevice device;
    HeadlessScreen screen;
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
    parts_->screen.setBounds({{0, 0}, screen});
    application().deviceDidRotate();
}

} // namespace korvane
