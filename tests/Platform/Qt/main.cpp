#include "Platform/Qt/QtPlatform.h"

#include <gmock/gmock.h>

#include <QGuiApplication>

namespace {

/// No display is needed, and none is used. What the environment says already stands.
void goOffscreen() {
    const auto set = [](const char* name, const char* value) {
        if (!qEnvironmentVariableIsSet(name)) qputenv(name, value);
    };
    set("QT_QPA_PLATFORM", "offscreen");
    set("QT_QUICK_BACKEND", "software");
    set("QTWEBENGINE_CHROMIUM_FLAGS", KORVANE_ENGINE_FLAGS);
    // The web engine starts neither as root nor in most containers otherwise; the pages are the tests' own.
    set("QTWEBENGINE_DISABLE_SANDBOX", "1");
}

} // namespace

int main(int count, char** arguments) {
    testing::InitGoogleMock(&count, arguments);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
    goOffscreen();
    korvane::QtPlatform::prepare();
    const QGuiApplication application(count, arguments);
    return RUN_ALL_TESTS();
}
