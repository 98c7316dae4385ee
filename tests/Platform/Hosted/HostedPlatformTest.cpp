#include "Platform/NotificationCenter.h"
#include "Platform/View/UIApplication.h"
#include "tests/Platform/Hosted/OwnHost.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using testing::ElementsAre;
using enum HostValue;

struct HostedPlatformTest : testing::Test {
    OwnHost host;
    HostedPlatform platform{host.functions()};
};

TEST_F(HostedPlatformTest, TheHostsValuesAreTheMachines) {
    host.values = {{systemName, {"Own"}},
                   {idiom, {"pad"}},
                   {locale, {"de_AT"}},
                   {preferredLanguages, {"de-AT", "sl"}},
                   {locationPermission, {"authorizedWhenInUse"}},
                   {location, {"48.21", "-16.37"}},
                   {isJailbroken, {"yes"}},
                   {isSystemSupported, {"no"}},
                   {fontFamilies, {"Serif", "\xff", "Sans"}},
                   {supportedOrientations, {"UIInterfaceOrientationPortrait"}},
                   {resources, {"/own"}}};
    EXPECT_EQ(platform.device().systemName(), "Own");
    EXPECT_EQ(platform.device().userInterfaceIdiom(), UIUserInterfaceIdiom::pad);
    EXPECT_EQ(platform.locales().current().identifier, "de_AT");
    EXPECT_THAT(platform.locales().preferredLanguages(), ElementsAre("de-AT", "sl"));
    EXPECT_EQ(platform.locationManager().authorizationStatus(), CLAuthorizationStatus::authorizedWhenInUse);
    EXPECT_EQ(platform.locationManager().location()->coordinate.longitude, -16.37);
    EXPECT_TRUE(platform.integrityChecks().isJailbroken());
    EXPECT_FALSE(platform.integrityChecks().isOSVersionSupported());
    EXPECT_THAT(platform.fonts().familyNames(), ElementsAre("Serif", "Sans")) << "one is no UTF-8";
    EXPECT_EQ(platform.mainBundle().stringsForInfoDictionaryKey("UISupportedInterfaceOrientations")->size(),
              1U);
    EXPECT_EQ(platform.mainBundle().privateFrameworksPath(), "/own");
}

TEST_F(HostedPlatformTest, WhatTheHostDoesNotKnowIsTheSystemsAndWhatMakesNoSenseIsAbsent) {
    EXPECT_FALSE(platform.device().systemName().empty());
    EXPECT_FALSE(platform.locales().availableIdentifiers().empty());
    EXPECT_EQ(platform.device().identifierForVendor(), std::nullopt);
    for (const std::vector<std::string>& place : std::vector<std::vector<std::string>>{{},
                                                                                       {"48"},
                                                                                       {"48", "16", "0"},
                                                                                       {"91", "0"},
                                                                                       {"0", "-181"},
                                                                                       {"nan", "0"},
                                                                                       {"48 ", "16"},
                                                                                       {"", ""}}) {
        host.values = {
            {location, place}, {idiom, {"watch"}}, {systemName, {"a", "b"}}, {isEmulator, {"maybe"}}};
        EXPECT_FALSE(platform.locationManager().location()) << testing::PrintToString(place);
    }
    EXPECT_EQ(platform.device().userInterfaceIdiom(), UIUserInterfaceIdiom::unspecified);
    EXPECT_NE(platform.device().systemName(), "a");
    EXPECT_FALSE(platform.integrityChecks().isEmulator());
}

TEST_F(HostedPlatformTest, WhatTheHostsStoreRefusesLastsAsLongAsThePlatform) {
    NSUserDefaults& defaults = platform.userDefaults();
    host.isKeeping = false;
    defaults.setObject("text", "key");
    EXPECT_EQ(defaults.valueForKey("key"), "text");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(host.functions().load("key"), std::nullopt);
    host.isKeeping = true;
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(host.functions().load("key"), "text");
}

TEST_F(HostedPlatformTest, TheHostIsWokenForEachPieceOfWorkAndTellsWhatItSees) {
    int ran = 0;
    for (int work = 0; work < 3; ++work)
        platform.dispatch().mainQueue().async([&] { ++ran; });
    EXPECT_EQ(host.wakes, 3);
    for (int work = 0; work < 5; ++work)
        EXPECT_EQ(platform.runMain(Seconds{0}), work < 3);
    EXPECT_EQ(ran, 3);

    std::vector<std::string> heard;
    std::vector<NotificationObserver> observers;
    for (const std::string_view name :
         {UIScreen::capturedDidChangeNotification, UIApplication::willResignActiveNotification})
        observers.push_back(platform.notificationCenter().addObserver(
            name, [&](const Notification& news) { heard.emplace_back(news.name); }));
    platform.setCaptured(false);
    platform.setCaptured(true);
    EXPECT_TRUE(platform.mainScreen().isCaptured());
    platform.setActive(false);
    platform.setActive(true);
    EXPECT_THAT(heard, ElementsAre(UIScreen::capturedDidChangeNotification,
                                   UIApplication::willResignActiveNotification));
    EXPECT_EQ(platform.application().state(), UIApplicationState::active);
}

/// A host that answers what it likes, when it likes.
TEST(HostedNetwork, AnAnswerCountsOnceAndWithinItsBounds) {
    struct Row {
        const char* name;
        HostAnswer answer;
        bool isTaken;
        std::size_t rounds = 1;
    };
    const Row rows[] = {
        {"an answer", {.status = 200, .body = {1, 2}}, true},
        {"a status of no meaning", {.status = -7}, true},
        {"the largest body", {.status = 200, .body = Bytes(kMostResponseBytes)}, true},
        {"a larger one", {.status = 200, .body = Bytes(kMostResponseBytes + 1)}, false},
        {"an error beside an answer", {.status = 200, .body = {1}, .error = "broken"}, false},
        {"a way to nowhere", {.status = 302, .location = "no URL at all"}, false},
        {"a way round in a circle", {.status = 302, .location = "http://127.0.0.1/"}, false, 21},
        {"a way from there to a file", {.status = 302, .location = "file:///etc/passwd"}, false},
        {"a way to somebody", {.status = 302, .location = "http://ada@127.0.0.1/"}, false},
        {"a way that is none", {.status = 302}, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::vector<std::uint64_t> asked;
        HostedPlatform platform(
            {.send = [&](const HostRequest& request) { asked.push_back(request.number); }});
        const auto ended = platform.dispatch().makeSemaphore(0);
        std::optional<bool> isTaken;
        const auto task = platform.makeURLSession({})->dataTask(
            URLRequest{*URL::make("http://127.0.0.1/")}, [&](auto body, auto error) {
                EXPECT_NE(body.has_value(), error.has_value());
                isTaken = body.has_value();
                ended->signal();
            });
        EXPECT_FALSE(platform.complete(1, {})) << "nobody asked yet";
        task->resume();
        for (std::size_t round = 0; round < asked.size(); ++round) {
            EXPECT_TRUE(platform.complete(asked[round], row.answer));
            EXPECT_FALSE(platform.complete(asked[round], row.answer));
        }
        ASSERT_EQ(ended->wait(Seconds{60}), DispatchTimeoutResult::success);
        EXPECT_EQ(isTaken, row.isTaken);
        EXPECT_EQ(asked.size(), row.rounds);
    }
}

} // namespace
} // namespace korvane
