#include "Platform/Qt/QtPlatform.h"

#include <gmock/gmock.h>

#include <QGuiApplication>

#include <unistd.h>

namespace {

/// No display is needed, and none is used. What the environment says already stands.
void goOffscreen() {
    const auto set = [](const char* name, const char* value) {
        if (!qEnvironmentVariableIsSet(name)) qputenv(name, value);
    };
    set("QT_QPA_PLATFORM", "offscreen");
    set("QT_QUICK_BACKEND", "software");
    set("QTWEBENGINE_CHROMIUM_FLAGS", KORVANE_ENGINE_FLAGS);
    // The web engine does not start as root otherwise.
    if (::geteuid() == 0) set("QTWEBENGINE_DISABLE_SANDBOX", "1");
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
