#include "tests/support/SimulatedPlatform.h"

#include <gmock/gmock.h>

#include <set>
#include <string>
#include <vector>

namespace korvane {
namespace {

using testing::ElementsAre;

std::shared_ptr<DispatchWorkItem> item(DispatchWorkItem::Work work) {
    return std::make_shared<DispatchWorkItem>(std::move(work));
}

/// Work on four queues that waits, hops and talks to the network, as a line of text.
std::string interleaving(std::uint64_t seed) {
    SimulatedPlatform platform(seed);
    Dispatch& dispatch = platform.dispatch();
    platform.network().answer = [](const URLRequest&) { return ScriptedAnswer{Bytes{}, {}, Seconds{1}}; };
    const auto session = platform.makeURLSession({});
    const auto serial = dispatch.makeSerialQueue("serial");
    std::string line;
    const auto add = [&](char letter) { return [&line, letter] { line += letter; }; };
    for (const char letter : {'a', 'b', 'c'}) {
        dispatch.globalQueue().async([&, letter] {
            const auto answered = dispatch.makeSemaphore(0);
            session->dataTask({*URL::make("https://acs/")}, [answered](auto, auto) { answered->signal(); })
                ->resume();
            const bool isAnswered = answered->wait(Seconds{2}) == DispatchTimeoutResult::success;
            line += isAnswered ? letter : '!';
            dispatch.mainQueue().sync(add('m'));
        });
        serial->asyncAfter(Seconds{1}, item(add('s')));
        dispatch.mainQueue().asyncAfter(Seconds{1}, item(add('.')));
    }
    platform.runUntilIdle();
    EXPECT_EQ(platform.leftAlive(), LeftAlive{});
    return line;
}

TEST(SimulatedPlatform, SeedReplaysAnInterleavingAndSeedsDiffer) {
    std::set<std::string> different;
    for (std::uint64_t seed = 0; seed < 200; ++seed) {
        const std::string line = interleaving(seed);
        ASSERT_EQ(line.size(), 12U) << line;
        ASSERT_EQ(line.find('!'), std::string::npos) << line;
        ASSERT_EQ(line, interleaving(seed));
        different.insert(line);
    }
    EXPECT_GT(different.size(), 100U);
}

TEST(SimulatedPlatform, MinutesPassInVirtualTimeOnly) {
    SimulatedPlatform platform;
    const auto start = platform.dispatch().date();
    std::vector<double> times;
    const auto note = [&] { times.push_back(platform.now().count()); };
    platform.dispatch().globalQueue().asyncAfter(Seconds{600}, item(note));
    platform.dispatch().mainQueue().asyncAfter(Seconds{12.5}, item(note));
    platform.runFor(Seconds{12.5});
    note();
    EXPECT_EQ(platform.leftAlive(), (LeftAlive{0, 1, 0, 0}));
    EXPECT_TRUE(platform.runUntil([&] { return times.size() == 3; }));
    EXPECT_THAT(times, ElementsAre(12.5, 12.5, 600));
    EXPECT_EQ(platform.dispatch().date() - start, std::chrono::seconds(600));
    EXPECT_FALSE(platform.runUntil([] { return false; }));
}

/// A serial queue waits for the main queue, which waits for the network: on one stack neither could go on.
TEST(SimulatedPlatform, WorkThatWaitsForAnotherWaitGoesOnWhenThatOneEnds) {
    SimulatedPlatform platform;
    Dispatch& dispatch = platform.dispatch();
    const auto serial = dispatch.makeSerialQueue("serial");
    std::vector<double> times;
    dispatch.mainQueue().async([&] {
        serial->async([&] { dispatch.mainQueue().sync([&] { times.push_back(platform.now().count()); }); });
        static_cast<void>(dispatch.makeSemaphore(0)->wait(Seconds{12}));
        times.push_back(-platform.now().count());
    });
    dispatch.globalQueue().asyncAfter(Seconds{11}, item([&] {
                                          EXPECT_EQ(platform.leftAlive(), (LeftAlive{1, 0, 0, 2}));
                                      }));
    platform.runUntilIdle();
    EXPECT_EQ(platform.leftAlive(), LeftAlive{});
    EXPECT_THAT(times, ElementsAre(-12, 12));
}

TEST(SimulatedPlatform, MainQueueStandsStillWhileTheTestsBodyWaits) {
    SimulatedPlatform platform;
    bool hasRun = false;
    platform.dispatch().mainQueue().async([&] { hasRun = true; });
    EXPECT_EQ(platform.dispatch().makeSemaphore(0)->wait(Seconds{5}), DispatchTimeoutResult::timedOut);
    EXPECT_FALSE(hasRun);
    platform.runUntilIdle();
    EXPECT_TRUE(hasRun);
}

TEST(SimulatedPlatform, DeadlockEndsTheProcessWithItsName) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            SimulatedPlatform platform;
            const auto serial = platform.dispatch().makeSerialQueue("serial");
            serial->sync([&] { platform.dispatch().mainQueue().sync([] {}); });
        },
        "Simulated deadlock");
}

TEST(SimulatedPlatform, EndOfThePlatformEndsBlockedWorkAndFreesTheRest) {
    const auto held = std::make_shared<int>(0);
    {
        SimulatedPlatform platform;
        Dispatch& dispatch = platform.dispatch();
        platform.network().answer = [](const URLRequest&) { return ScriptedAnswer{{}, {}, std::nullopt}; };
        const auto session = platform.makeURLSession({});
        session->dataTask({*URL::make("https://acs/")}, [held](auto, auto) { *held += 10; })->resume();
        dispatch.globalQueue().async([&dispatch, held] {
            const auto never = dispatch.makeSemaphore(0);
            *held += never->wait(Seconds{100}) == DispatchTimeoutResult::timedOut ? 1 : 10;
        });
        dispatch.globalQueue().asyncAfter(Seconds{50}, item([held] { *held += 10; }));
        Timer::scheduledTimer(dispatch, Seconds{20}, [held] { *held += 10; });
        platform.runFor(Seconds{10});
        EXPECT_EQ(platform.leftAlive(), (LeftAlive{0, 3, 1, 1}));
    }
    EXPECT_EQ(*held, 1);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(SimulatedPlatform, TimerKeepsItsBeatWhenARunComesLate) {
    SimulatedPlatform platform;
    std::vector<double> times;
    const auto timer = Timer::scheduledTimer(platform.dispatch(), Seconds{2}, [&] {
        times.push_back(platform.now().count());
        if (times.size() == 1) static_cast<void>(platform.dispatch().makeSemaphore(0)->wait(Seconds{5}));
    });
    platform.runFor(Seconds{11});
    timer->invalidate();
    platform.runUntilIdle();
    EXPECT_THAT(times, ElementsAre(2, 8, 10));
    EXPECT_EQ(platform.leftAlive(), LeftAlive{});
}

} // namespace
} // namespace korvane
