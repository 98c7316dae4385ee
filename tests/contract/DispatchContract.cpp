#include "tests/contract/Filling.h"

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <thread>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::Ge;

constexpr Seconds kLong{60.0};

std::shared_ptr<DispatchWorkItem> item(DispatchWorkItem::Work work) {
    return std::make_shared<DispatchWorkItem>(std::move(work));
}

KORVANE_CONTRACT(DispatchContract, Contract);
KORVANE_CONTRACT(MainThreadContract, Contract, Part::mainThread);
KORVANE_CONTRACT(AfterlifeContract, Contract, Part::afterlife);

TEST_P(DispatchContract, SerialQueueRunsOneAtATimeAndInTheOrderOfEachCaller) {
    constexpr int kCallers = 8;
    constexpr int kItems = 100;
    const auto queue = dispatch().makeSerialQueue("numbers");
    const auto ready = dispatch().makeSemaphore(0);
    std::vector<std::vector<int>> seen(kCallers);
    std::atomic<int> running{0};
    std::atomic<bool> overlapped{false};
    for (auto& numbers : seen)
        dispatch().globalQueue().async([&] {
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

TEST_P(DispatchContract, BlockedWorkDoesNotHoldUpTheGlobalQueue) {
    constexpr int kBlocked = 40;
    const auto gate = dispatch().makeSemaphore(0);
    const auto ended = dispatch().makeSemaphore(0);
    for (int index = 0; index < kBlocked; ++index)
        dispatch().globalQueue().async([&] {
            if (gate->wait(kLong) == DispatchTimeoutResult::success) ended->signal();
        });
    dispatch().globalQueue().async([&] {
        for (int index = 0; index < kBlocked; ++index)
            gate->signal();
    });
    for (int index = 0; index < kBlocked; ++index)
        ASSERT_EQ(ended->wait(kLong), DispatchTimeoutResult::success);
}

TEST_P(DispatchContract, CancelledItemRunsToItsEndOrNotAtAllAndLetsGoWhatItHolds) {
    const auto queue = dispatch().makeSerialQueue("cancelling");
    const auto started = dispatch().makeSemaphore(0);
    const auto gate = dispatch().makeSemaphore(0);
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

TEST_P(DispatchContract, CancelledWorkIsNotKeptUntilItsTime) {
    const auto serial = dispatch().makeSerialQueue("cancelling");
    const auto expired = [](auto cancelled) {
        const std::weak_ptr weak(cancelled);
        cancelled.reset();
        return weak.expired();
    };
    for (DispatchQueue* const queue : {serial.get(), &dispatch().mainQueue(), &dispatch().globalQueue()}) {
        auto twice = item([] {});
        queue->asyncAfter(kLong, twice);
        queue->asyncAfter(kLong * 2, twice);
        twice->cancel();
        EXPECT_TRUE(expired(std::move(twice)));
        auto late = item([] {});
        late->cancel();
        queue->asyncAfter(kLong, late);
        EXPECT_TRUE(expired(std::move(late)));
    }
    auto timer = Timer::scheduledTimer(dispatch(), kLong, [] {});
    timer->invalidate();
    EXPECT_TRUE(expired(std::move(timer)));

    const auto held = std::make_shared<int>(0);
    for (int count = 0; count < 500; ++count) {
        const auto falling = item([held] {});
        serial->asyncAfter(Seconds{count % 3 * 1e-5}, falling);
        falling->cancel();
    }
    serial->sync([] {});
    EXPECT_EQ(held.use_count(), 1) << "cancelled as they fell due";
}

TEST_P(DispatchContract, DelayedWorkRunsInTheOrderOfItsTimesAndNotBefore) {
    const auto queue = dispatch().makeSerialQueue("delays");
    const auto ended = dispatch().makeSemaphore(0);
    const Seconds start = dispatch().now();
    std::vector<int> order;
    std::vector<double> passed;
    for (const int milliseconds : {60, 20, 40, -5})
        queue->asyncAfter(Seconds{milliseconds / 1000.0}, item([&, milliseconds] {
                              order.push_back(milliseconds);
                              passed.push_back((dispatch().now() - start).count() * 1000);
                              ended->signal();
                          }));
    for (int count = 0; count < 4; ++count)
        ASSERT_EQ(ended->wait(kLong), DispatchTimeoutResult::success);

    EXPECT_THAT(order, ElementsAre(-5, 20, 40, 60));
    EXPECT_THAT(passed, ElementsAre(Ge(0), Ge(20), Ge(40), Ge(60)));
}

TEST_P(DispatchContract, TimesBeyondAllClocksNeitherRunNorFail) {
    const auto ran = std::make_shared<bool>(false);
    dispatch().globalQueue().asyncAfter(Seconds{1e300}, item([ran] { *ran = true; }));
    const auto semaphore = dispatch().makeSemaphore(1);
    EXPECT_EQ(semaphore->wait(Seconds{1e300}), DispatchTimeoutResult::success);
    EXPECT_FALSE(*ran);
}

TEST_P(DispatchContract, SemaphoreCountsAndTimesOut) {
    const auto semaphore = dispatch().makeSemaphore(1);
    semaphore->signal();
    EXPECT_EQ(semaphore->wait(Seconds{0}), DispatchTimeoutResult::success);
    EXPECT_EQ(semaphore->wait(Seconds{0}), DispatchTimeoutResult::success);
    const Seconds start = dispatch().now();
    EXPECT_EQ(semaphore->wait(Seconds{0.02}), DispatchTimeoutResult::timedOut);
    EXPECT_GE((dispatch().now() - start).count(), 0.02);

    dispatch().globalQueue().async([semaphore] { semaphore->signal(); });
    EXPECT_EQ(semaphore->wait(kLong), DispatchTimeoutResult::success);
}

TEST_P(DispatchContract, SyncReturnsWhenTheWorkHasEnded) {
    const auto queue = dispatch().makeSerialQueue("sync");
    int value = 0;
    queue->async([&] { value = 1; });
    queue->sync([&] { value = value == 1 && queue->isCurrent() ? 2 : -1; });
    EXPECT_EQ(value, 2);
    std::thread::id runner;
    dispatch().globalQueue().sync([&] { runner = std::this_thread::get_id(); });
    EXPECT_EQ(runner, std::this_thread::get_id());
}

/// Threads serve one queue after another.
TEST_P(DispatchContract, SerialQueueIsCurrentInItsOwnWorkAlone) {
    const auto queue = dispatch().makeSerialQueue("own");
    const auto other = dispatch().makeSerialQueue("other");
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

TEST_P(DispatchContract, ProgrammersFaultsEndTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // The children begin at `main` and die before they remove their folders: those lie in one of ours.
    const TemporaryFolder ofChildren;
    const std::string usual = std::filesystem::temp_directory_path();
    ::setenv("TMPDIR", ofChildren.path().c_str(), 1);
    const auto queue = dispatch().makeSerialQueue("faults");
    EXPECT_DEATH(queue->sync([&] { queue->sync([] {}); }), "would never return");
    EXPECT_DEATH(queue->sync([] { throw std::runtime_error("out of a work item"); }),
                 "left a work item: out of");
    ::setenv("TMPDIR", usual.c_str(), 1);
}

TEST_P(DispatchContract, MainQueueRunsInOrderAndLetsOthersWaitForIt) {
    DispatchQueue& main = dispatch().mainQueue();
    const Seconds start = dispatch().now();
    std::vector<int> order;
    main.asyncAfter(Seconds{0.02},
                    item([&] { order.push_back(dispatch().now() - start >= Seconds{0.02} ? 5 : -5); }));
    main.async([&] {
        order.push_back(main.isCurrent() && !dispatch().globalQueue().isCurrent() ? 1 : -1);
        main.async([&] { order.push_back(3); });
        dispatch().globalQueue().async([&] {
            bool hasRun = false;
            main.sync([&] { hasRun = main.isCurrent(); });
            const int seen = hasRun && !main.isCurrent() && dispatch().globalQueue().isCurrent() ? 4 : -4;
            main.async([&, seen] { order.push_back(seen); });
        });
    });
    main.async([&] { order.push_back(2); });
    EXPECT_TRUE(order.empty()) << "work ran within async";
    EXPECT_TRUE(runUntil([&] { return order.size() == 5; }));
    EXPECT_THAT(order, testing::UnorderedElementsAre(1, 2, 3, 4, 5));
    order.resize(3); // the others come whenever they do
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST_P(MainThreadContract, MainQueueStandsOnTheThreadThatMadeThePlatform) {
    const auto thread = std::this_thread::get_id();
    std::thread::id runner;
    EXPECT_TRUE(dispatch().mainQueue().isCurrent()) << "also outside of its work";
    dispatch().mainQueue().async([&] { runner = std::this_thread::get_id(); });
    EXPECT_TRUE(runUntil([&] { return runner != std::thread::id(); }));
    EXPECT_EQ(runner, thread);
    std::thread([&] { EXPECT_FALSE(dispatch().mainQueue().isCurrent()); }).join();
}

TEST_P(AfterlifeContract, EndFreesWhatWaitsAndLetsGoWhoWaitsForTheMainQueue) {
    const auto held = std::make_shared<int>(0);
    const auto work = [held] { ++*held; };
    const auto queue = dispatch().makeSerialQueue("survivor");
    const auto started = dispatch().makeSemaphore(0);
    std::atomic<int> ended{0};
    queue->async([&, &main = dispatch().mainQueue()] {
        started->signal();
        main.sync([held] { ++*held; });
        ++ended;
    });
    queue->async(work);
    dispatch().mainQueue().async(work);
    dispatch().globalQueue().asyncAfter(Seconds{3600}, item(work));
    Timer::scheduledTimer(dispatch(), Seconds{3600}, work);
    ASSERT_EQ(started->wait(kLong), DispatchTimeoutResult::success);
    filling().end();
    EXPECT_FALSE(Platform::isInstalled());
    EXPECT_EQ(ended, 1);
    queue->async(work);
    queue->sync(work);
    EXPECT_EQ(*held, 0);
    EXPECT_EQ(held.use_count(), 2) << "the test's own two";
}

} // namespace
} // namespace korvane
