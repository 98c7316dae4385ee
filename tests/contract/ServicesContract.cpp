#include "Platform/NotificationCenter.h"
#include "Platform/View/TextMeasurer.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UIFont.h"
#include "tests/contract/Filling.h"

namespace korvane {
namespace {

using testing::AnyOf;
using testing::Each;
using testing::Field;
using testing::IsEmpty;
using testing::MatchesRegex;

KORVANE_CONTRACT(DefaultsContract, Contract);
KORVANE_CONTRACT(RestartContract, Contract, Part::afterlife);
KORVANE_CONTRACT(DeviceContract, Contract);
KORVANE_CONTRACT(ScreenContract, Contract);
KORVANE_CONTRACT(TextContract, Contract);

TEST_P(DefaultsContract, TextsAreKeptReplacedAndFoundOnEveryThread) {
    NSUserDefaults& defaults = platform().userDefaults();
    EXPECT_EQ(defaults.valueForKey("a"), std::nullopt);
    for (const char* text : {"first", "", "Zo\u00eb \U0001F469 \"\\\n"}) {
        defaults.setObject(text, "a");
        EXPECT_EQ(defaults.valueForKey("a"), text);
    }
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

TEST_P(RestartContract, DefaultsSurviveTheApplication) {
    platform().userDefaults().setObject("kept", "a");
    EXPECT_TRUE(platform().userDefaults().synchronize());
    filling().restart();
    EXPECT_EQ(platform().userDefaults().valueForKey("a"), "kept");
}

TEST_P(DeviceContract, WhatTheMachineTellsHasItsForm) {
    const auto uuid = MatchesRegex("[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}");
    Platform& all = platform();
    const auto vendor = all.device().identifierForVendor();
    EXPECT_THAT(vendor.value_or(all.identifierManager().advertisingIdentifier()), uuid);
    EXPECT_THAT(all.identifierManager().advertisingIdentifier(), uuid);
    EXPECT_EQ(all.device().identifierForVendor(), vendor);
    for (const std::string& text : {all.device().systemName(), all.processInfo().machine(),
                                    all.locales().current().identifier, all.mainBundle().bundlePath()})
        EXPECT_NE(text, "");
    EXPECT_THAT(all.locales().preferredLanguages(), Each(MatchesRegex("[A-Za-z]{2,8}(-[A-Za-z0-9]{1,8})*")));
    EXPECT_THAT(all.networkInterfaces().list(),
                Each(Field(&NetworkInterface::family, AnyOf(AddressFamily::kIPv4, AddressFamily::kIPv6))));
    EXPECT_EQ(all.processInfo().environmentVariable("KORVANE_NOBODY_SETS"), std::nullopt);
    EXPECT_EQ(all.mainBundle().URLForResource("nowhere", "file"), std::nullopt);
    EXPECT_THAT(all.fonts().fontNamesForFamilyName("no such family"), IsEmpty());
    for (const std::string& family : all.fonts().familyNames())
        EXPECT_THAT(all.fonts().fontNamesForFamilyName(family), testing::Not(IsEmpty())) << family;
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
                AnyOf(UIDeviceOrientation::landscapeLeft, UIDeviceOrientation::landscapeRight));
    EXPECT_EQ(told, 1);
    platform().application().remove(window);
}

TEST_P(TextContract, LinesAreBrokenAtTheWidthAndCountedToTheLimit) {
    const auto size = [this](std::string_view text, double width, int lines, double points = 20) {
        return platform().textMeasurer().size(text, UIFont::systemFont(points), width, lines);
    };
    const std::string words = "some words that do not fit into one line";
    const double line = size("a", 1e9, 0).height, whole = size(words, 1e9, 0).width;
    EXPECT_GT(line, 0);
    EXPECT_GT(size(words, 1e9, 0, 30).width, whole);
    EXPECT_GT(size(words, 1e9, 0, 30).height, line);
    const struct {
        const char* name;
        std::string text;
        double width;
        int limit, least, most;
    } rows[] = {
        {"an empty text", "", 100, 0, 1, 1},
        {"as wide as it is", words, whole + 1, 0, 1, 1},
        {"a third of the width", words, whole / 3, 0, 3, 6},
        {"the first two count", words, whole / 3, 2, 2, 2},
        {"one line for whatever there is", words, whole / 3, 1, 1, 1},
        {"one word that is too long", std::string(100, 'w'), 200, 0, 3, 100},
        {"lines of the text", "a\nb\n\nc", 200, 0, 4, 4},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const CGSize found = size(row.text, row.width, row.limit);
        EXPECT_GE(found.height, row.least * line - 1);
        EXPECT_LE(found.height, row.most * line + 1);
        EXPECT_LE(found.width, row.width);
        EXPECT_EQ(found.width > 0, !row.text.empty());
    }
}

} // namespace
} // namespace korvane
