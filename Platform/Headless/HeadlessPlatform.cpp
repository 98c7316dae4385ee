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

HeadlessPlatform::HeadlessPlatform() : parts_(std::make_unique<Parts>()) {}

/// The threads end while the platform is still whole, since their work may ask for it.
HeadlessPlatform::~HeadlessPlatform() {
    endNetwork();
    parts_->dispatch.end();
}

UIDevice& HeadlessPlatform::device() {
    return parts_->device;
}

UIScreen& HeadlessPlatform::mainScreen() {
    return parts_->screen;
}

UIFontServices& HeadlessPlatform::fonts() {
    return parts_->fonts;
}

TextMeasurer& HeadlessPlatform::textMeasurer() {
    return parts_->textMeasurer;
}

Dispatch& HeadlessPlatform::dispatch() {
    return parts_->dispatch;
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
