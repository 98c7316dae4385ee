#include "Platform/Headless/HeadlessPlatform.h"

#include "Ui/Screens/TopController.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <thread>

namespace korvane {
namespace {

using testing::IsEmpty;

TEST(HeadlessPlatform, IsThePlatformOfTheProcessWhileItLives) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    {
        HeadlessPlatform platform;
        EXPECT_EQ(&Platform::current(), &platform);
        EXPECT_DEATH(HeadlessPlatform(), "one platform at a time");
    }
    EXPECT_DEATH(static_cast<void>(Platform::current()), "No platform is installed");
}

TEST(HeadlessPlatform, MainThreadWaitsForNoMainQueueWhetherThatRunsOrNot) {
    HeadlessPlatform platform;
    const auto asks = [&] { return platform.dispatch().mainQueue().isCurrent() && !getTopController(); };
    EXPECT_TRUE(asks());
    platform.runMainUntil(asks);
    std::thread([&] { platform.runMainUntil(asks); }).join();
    EXPECT_FALSE(platform.dispatch().mainQueue().isCurrent());
}

TEST(HeadlessPlatform, RunsOnAMachineWithoutFonts) {
    for (const char* name : {"FONTCONFIG_FILE", "FONTCONFIG_SYSROOT", "HOME", "XDG_CACHE_HOME"})
        setenv(name, "/nowhere", 1);
    HeadlessPlatform platform;
    EXPECT_THAT(platform.fonts().familyNames(), IsEmpty());
    EXPECT_EQ(platform.fonts().systemFontDescription(1), "font-family: \"\"; font-size: 1.0pt");
    unsetenv("FONTCONFIG_SYSROOT");
    unsetenv("FONTCONFIG_FILE");
}

} // namespace
} // namespace korvane
