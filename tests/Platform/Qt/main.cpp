#include "Platform/Qt/QtPlatform.h"

#include <gmock/gmock.h>

#include <QGuiApplication>

int main(int count, char** arguments) {
    testing::InitGoogleMock(&count, arguments);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS(); // needs no display
    korvane::QtPlatform::prepare();
    const QGuiApplication application(count, arguments);
    return RUN_ALL_TESTS();
}
