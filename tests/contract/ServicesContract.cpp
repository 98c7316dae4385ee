#include "Platform/NotificationCenter.h"
#include "Platform/View/UIApplication.h"
#include "tests/contract/Filling.h"

namespace korvane {
namespace {

KORVANE_CONTRACT(DefaultsContract, Contract);
KORVANE_CONTRACT(ScreenContract, Contract);

TEST_P(DefaultsContract, TextsAreKeptReplacedAndFoundOnEveryThread) {
    NSUserDefaults& defaults = platform().userDefaults();
    EXPECT_EQ(defaults.valueForKey("a"), std::nullopt);
    for (const char* text : {"first", "", "Zo\u00eb \U0001F469 \"\\\n"}) {
        defaults.setObject(text, "a");
        EXPECT_EQ(defaults.valueForKey("a"), text);
    }
    EXPECT_TRUE(defaults.synchronize()) << "there is a place for them";
    defaults.setObject("\xED\xA0\x80", "a");
    EXPECT_NE(defaults.valueForKey("a"), "\xED\xA0\x80") << "no UTF-8";

    constexpr int kWriters = 8, kKeys = 80;
    const auto ended = dispatch().makeSemaphore(0);
    for (int writer = 0; writer < kWriters; ++writer)
        dispatch().globalQueue().async([&, writer] {
            for (int key = writer; key < kKeys; key += kWriters)
                defaults.setObject("value", std::to_string(key));
            ended->signal();
        });
    for (int writer = 0; writer < kWriters; ++writer)
        ASSERT_EQ(ended->wait(Seconds{60}), DispatchTimeoutResult::success);
    for (int key = 0; key < kKeys; ++key)
        EXPECT_EQ(defaults.valueForKey(std::to_string(key)), "value");
}

TEST_P(ScreenContract, ATurnIsToldOnTheMainQueueOnceScreenAndWindowsHaveTurned) {
    filling().setScreen({390, 844});
    const auto window = std::make_shared<UIWindow>();
    window->makeKeyAndVisible();
    EXPECT_EQ(window->frame(), (CGRect{{0, 0}, {390, 844}}));
    int told = 0;
    const CGRect turned{{0, 0}, {844, 390}};
    const auto observer = platform().notificationCenter().addObserver(
        UIDevice::orientationDidChangeNotification, [&](const Notification&) {
            ++told;
            EXPECT_TRUE(dispatch().mainQueue().isCurrent() && window->frame() == turned);
        });
    filling().setScreen(turned.size);
    EXPECT_EQ(platform().mainScreen().bounds(), turned);
    EXPECT_THAT(platform().device().orientation(),
                testing::AnyOf(UIDeviceOrientation::landscapeLeft, UIDeviceOrientation::landscapeRight));
    EXPECT_EQ(told, 1);
    platform().application().remove(window);
}

} // namespace
} // namespace korvane
