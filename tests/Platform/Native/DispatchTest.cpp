#include "Platform/Headless/HeadlessPlatform.h"
#include "Ui/Screens/TopController.h"
#include "tests/support/SimulatedPlatform.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::Ge;

constexpr Seconds kLong{60.0};

std::shared_ptr<DispatchWorkItem> item(DispatchWorkItem::Work work) {
    return std::make_shared<DispatchWorkItem>(std::move(work));
}

/// What every platform's queues keep to.
template <class SomePlatform>
class DispatchContract : public testing::Test {
protected:
    Dispatch& dispatch() { return platform_->dispatch(); }

    std::optional<SomePlatform> platform_{std::in_place};
};

using Platforms = testing::Types<HeadlessPlatform, SimulatedPlatform>;
TYPED_TEST_SUITE(DispatchContract, Platforms);

TYPED_TEST(DispatchContract, SerialQueueRunsOneAtATimeAndInTheOrderOfEachCaller) {
    constexpr int kCallers = 8;
    constexpr int kItems = 100;
    const auto queue = this->dispatch().makeSerialQueue("numbers");
    const auto ready = this->dispatch().makeSemaphore(0);
    std::vector<std::vector<int>> seen(kCallers);
    std::atomic<int> running{0};
    std::atomic<bool> overlapped{false};
    for (auto& numbers : seen)
        this->dispatch().globalQueue().async([&] {
            for (int number = 0; number < kItems; ++number)
                queue->async([&, number] {
                    overlapped = overlapped || running++ != 0;
                    numbers.push_back(number);
                    --running;
                });
            ready->signal();
        });
    for (int caller = 0; caller < kCallers; ++caller)
        ASSERT_EQ(ready->wait(kLong), DispatchTimeoutResult::success);
    queue->sync([] {});

    EXPECT_FALSE(overlapped);
    for (const auto& numbers : seen) {
        EXPECT_EQ(numbers.size(), static_cast<std::size_t>(kItems));
        EXPECT_TRUE(std::ranges::is_sorted(numbers));
    }
}

TYPED_TEST(DispatchContract, BlockedWorkDoesNotHoldUpTheGlobalQueue) {
    constexpr int kBlocked = 40;
    const auto gate = this->dispatch().makeSemaphore(0);
    const auto ended = this->dispatch().makeSemaphore(0);
    for (int index = 0; index < kBlocked; ++index)
        this->dispatch().globalQueue().async([&] {
            if (gate->wait(kLong) == DispatchTimeoutResult::success) ended->signal();
        });
    this->dispatch().globalQueue().async([&] {
        for (int index = 0; index < kBlocked; ++index)
            gate->signal();
    });
    for (int index = 0; index < kBlocked; ++index)
        ASSERT_EQ(ended->wait(kLong), DispatchTimeoutResult::success);
}

TYPED_TEST(DispatchContract, CancelledItemRunsToItsEndOrNotAtAllAndLetsGoWhatItHolds) {
    const auto queue = this->dispatch().makeSerialQueue("cancelling");
    const auto started = this->dispatch().makeSemaphore(0);
    const auto gate = this->dispatch().makeSemaphore(0);
    const auto text = std::make_shared<std::string>("still there");
    const auto held = std::make_shared<bool>(false);
    std::string seen;
    const auto running = item([&seen, started, gate, text] {
        started->signal();
        if (gate->wait(kLong) == DispatchTimeoutResult::success) seen = *text;
    });
    const auto waiting = item([held] { *held = true; });
    const auto delayed = item([held] { *held = true; });
    queue->async(running);
    queue->async(waiting);
    queue->asyncAfter(Seconds{0.01}, delayed);
    ASSERT_EQ(started->wait(kLong), DispatchTimeoutResult::success);
    for (const auto& cancelled : {running, waiting, delayed}) {
        cancelled->cancel();
        EXPECT_TRUE(cancelled->isCancelled());
    }
    EXPECT_EQ(held.use_count(), 1);
    gate->signal();
    queue->asyncAfter(Seconds{0.03}, item([started] { started->signal(); }));
    ASSERT_EQ(started->wait(kLong), DispatchTimeoutResult::success);
    EXPECT_FALSE(*held);
    EXPECT_EQ(seen, "still there");
}

TYPED_TEST(DispatchContract, DelayedWorkRunsInTheOrderOfItsTimesAndNotBefore) {
    const auto queue = this->dispatch().makeSerialQueue("delays");
    const auto ended = this->dispatch().makeSemaphore(0);
    const Seconds start = this->dispatch().now();
    std::vector<int> order;
    std::vector<double> passed;
    for (const int milliseconds : {60, 20, 40, -5})
        queue->asyncAfter(Seconds{milliseconds / 1000.0}, item([&, milliseconds] {
                              order.push_back(milliseconds);
                              passed.push_back((this->dispatch().now() - start).count() * 1000);
                              ended->signal();
                          }));
    for (int count = 0; count < 4; ++count)
        ASSERT_EQ(ended->wait(kLong), DispatchTimeoutResult::success);

    EXPECT_THAT(order, ElementsAre(-5, 20, 40, 60));
    EXPECT_THAT(passed, ElementsAre(Ge(0), Ge(20), Ge(40), Ge(60)));
}

TYPED_TEST(DispatchContract, TimesBeyondAllClocksNeitherRunNorFail) {
    const auto ran = std::make_shared<bool>(false);
    this->dispatch().globalQueue().asyncAfter(Seconds{1e300}, item([ran] { *ran = true; }));
    const auto semaphore = this->dispatch().makeSemaphore(1);
    EXPECT_EQ(semaphore->wait(Seconds{1e300}), DispatchTimeoutResult::success);
    EXPECT_FALSE(*ran);
}

TYPED_TEST(DispatchContract, SemaphoreCountsAndTimesOut) {
    const auto semaphore = this->dispatch().makeSemaphore(1);
    semaphore->signal();
    EXPECT_EQ(semaphore->wait(Seconds{0}), DispatchTimeoutResult::success);
    EXPECT_EQ(semaphore->wait(Seconds{0}), DispatchTimeoutResult::success);
    const Seconds start = this->dispatch().now();
    EXPECT_EQ(semaphore->wait(Seconds{0.02}), DispatchTimeoutResult::timedOut);
    EXPECT_GE((this->dispatch().now() - start).count(), 0.02);

    this->dispatch().globalQueue().async([semaphore] { semaphore->signal(); });
    EXPECT_EQ(semaphore->wait(kLong), DispatchTimeoutResult::success);
}

TYPED_TEST(DispatchContract, SyncReturnsWhenTheWorkHasEnded) {
    const auto queue = this->dispatch().makeSerialQueue("sync");
    int value = 0;
    queue->async([&] { value = 1; });
    queue->sync([&] { value = value == 1 && queue->isCurrent() ? 2 : -1; });
    EXPECT_EQ(value, 2);
    std::thread::id runner;
    this->dispatch().globalQueue().sync([&] { runner = std::this_thread::get_id(); });
    EXPECT_EQ(runner, std::this_thread::get_id());
}

/// Threads serve one queue after another.
TYPED_TEST(DispatchContract, SerialQueueIsCurrentInItsOwnWorkAlone) {
    const auto queue = this->dispatch().makeSerialQueue("own");
    const auto other = this->dispatch().makeSerialQueue("other");
    std::thread::id served, thread;
    EXPECT_FALSE(queue->isCurrent());
    queue->sync([&] { served = std::this_thread::get_id(); });
    for (int count = 0; count < 1000 && thread != served; ++count)
        other->sync([&] {
            thread = std::this_thread::get_id();
            EXPECT_TRUE(other->isCurrent() && !queue->isCurrent());
        });
    EXPECT_EQ(thread, served) << "no thread has served both";
}

TYPED_TEST(DispatchContract, ProgrammersFaultsEndTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto queue = this->dispatch().makeSerialQueue("faults");
    EXPECT_DEATH(queue->sync([&] { queue->sync([] {}); }), "would never return");
    EXPECT_DEATH(queue->sync([] { throw std::runtime_error("out of a work item"); }),
                 "left a work item: out of");
}

TEST(NativeDispatch, MainQueueRunsInOrderOnTheThreadThatRunsIt) {
    HeadlessPlatform platform;
    DispatchQueue& main = platform.dispatch().mainQueue();
    const auto thread = std::this_thread::get_id();
    std::vector<int> order;
    main.async([&] {
        order.push_back(std::this_thread::get_id() == thread && main.isCurrent() ? 1 : -1);
        main.async([&] { order.push_back(3); });
        platform.dispatch().globalQueue().async([&] {
            main.sync([&] { order.push_back(std::this_thread::get_id() == thread ? 4 : -4); });
            platform.stopMain();
        });
    });
    main.async([&] { order.push_back(2); });
    platform.runMain();
    EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
}

TEST(NativeDispatch, MainThreadWaitsForNoMainQueueWhetherThatRunsOrNot) {
    HeadlessPlatform platform;
    const auto asks = [&] { return platform.dispatch().mainQueue().isCurrent() && !getTopController(); };
    EXPECT_TRUE(asks());
    platform.runMainUntil(asks);
    std::thread([&] { platform.runMainUntil(asks); }).join();
    EXPECT_FALSE(platform.dispatch().mainQueue().isCurrent());
}

TEST(NativeDispatch, EndOfThePlatformFreesWhatWaitsAndLetsGoWhoWaitsForTheMainQueue) {
    const auto held = std::make_shared<int>(0);
    const auto work = [held] { ++*held; };
    std::shared_ptr<DispatchQueue> queue;
    std::atomic<int> ended{0};
    {
        HeadlessPlatform platform;
        Dispatch& dispatch = platform.dispatch();
        queue = dispatch.makeSerialQueue("survivor");
        const auto started = dispatch.makeSemaphore(0);
        queue->async([&, started] {
            started->signal();
            dispatch.mainQueue().sync([held] { ++*held; });
            ++ended;
        });
        queue->async(work);
        dispatch.globalQueue().asyncAfter(Seconds{3600}, item(work));
        Timer::scheduledTimer(dispatch, Seconds{3600}, work);
        ASSERT_EQ(started->wait(kLong), DispatchTimeoutResult::success);
    }
    EXPECT_EQ(ended, 1);
    queue->async(work);
    queue->sync(work);
    EXPECT_EQ(*held, 0);
    EXPECT_EQ(held.use_count(), 2) << "the test's own two";
}

} // namespace
} // namespace korvane
