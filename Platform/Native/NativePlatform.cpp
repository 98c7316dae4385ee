#include "Platform/Native/NativePlatform.h"

#include "Platform/Native/NativeAbsences.h"
#include "Platform/Native/NativeDevice.h"
#include "Platform/Native/NativeDispatch.h"
#include "Platform/Native/NativeFonts.h"
#include "Platform/View/TextMeasurer.h"
#include "Platform/View/UIApplication.h"

namespace korvane {

struct NativePlatform::Parts {
    NativeDevice device;
    NoScreen screen;
    NativeFonts fonts;
    FixedAdvances textMeasurer;
    NativeDispatch dispatch;
};

NativePlatform::NativePlatform() : parts_(std::make_unique<Parts>()) {}

/// The threads end while the platform is still whole, since their work may ask for it.
NativePlatform::~NativePlatform() {
    endNetwork();
    parts_->dispatch.end();
}

UIDevice& NativePlatform::device() {
    return parts_->device;
}

UIScreen& NativePlatform::mainScreen() {
    return parts_->screen;
}

UIFontServices& NativePlatform::fonts() {
    return parts_->fonts;
}

TextMeasurer& NativePlatform::textMeasurer() {
    return parts_->textMeasurer;
}

Dispatch& NativePlatform::dispatch() {
    return parts_->dispatch;
}

void NativePlatform::runMain() {
    parts_->dispatch.runMain();
}

void NativePlatform::runMainUntil(const std::function<bool()>& isDone) {
    parts_->dispatch.runMainUntil(isDone);
}

void NativePlatform::stopMain() {
    parts_->dispatch.stopMain();
}

void NativePlatform::turn(UIDeviceOrientation orientation, CGSize screen) {
    parts_->device.setOrientation(orientation);
    parts_->screen.setBounds({{0, 0}, screen});
    application().deviceDidRotate();
}

} // namespace korvane
