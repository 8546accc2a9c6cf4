#include "RunLoopTestSupport.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <random>
#include <string>
#include <thread>
#include <utility>

namespace {

using Phase = VLXRunLoopPhase;

}  // namespace

TEST_F(RunLoopTest, TimersFireOnceEachInDateOrderWithTiesInSchedulingOrder) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> slot(1, 500);
    std::vector<std::pair<double, int>> expected;
    std::vector<std::pair<double, int>> fired;
    auto record = [&fired](int i) {
        return [&fired, i](VLXTimer&) { fired.emplace_back(VLXClock::now(), i); };
    };
    for (int i = 0; i < 10000; ++i) {
        const double interval = slot(random) * 0.01;
        timer(interval, false, record(i));
        expected.emplace_back(100 + interval, i);
    }
    // Date order; equal dates keep scheduling order, which is the index order here.
    std::stable_sort(expected.begin(), expected.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    loop().runOnce();
    EXPECT_TRUE(fired.empty()) << "nothing is due yet";
    // runUntil visits every date on the way, on the clock, and stops at the target.
    loop().runUntil(105);
    EXPECT_EQ(fired, expected);
    EXPECT_EQ(VLXClock::now(), 105);
    EXPECT_EQ(loop().timerCount(), 0u);

    // A single late turn fires everything due, still in date order.
    fired.clear();
    timer(0.5, false, record(1));
    timer(0.25, false, record(2));
    VLXClock::setManual(110);
    loop().runOnce();
    EXPECT_EQ(fired, (std::vector<std::pair<double, int>>{{110, 2}, {110, 1}}));
}

TEST_F(RunLoopTest, RepeatingTimerKeepsItsScheduleAndSkipsMissedDates) {
    std::vector<double> at;
    auto repeating = timer(1, true, [&](VLXTimer&) { at.push_back(VLXClock::now()); });
    EXPECT_EQ(repeating->fireDate(), 101);

    // Late by 2.5 intervals: fires once, then the next date keeps the original phase.
    VLXClock::setManual(103.5);
    loop().runOnce();
    EXPECT_EQ(at, std::vector<double>{103.5});
    EXPECT_EQ(repeating->fireDate(), 104);

    // Several turns at the same time never fire it twice.
    loop().runOnce();
    loop().runOnce();
    EXPECT_EQ(at.size(), 1u);

    // A turn slightly after the date does not shift later dates.
    VLXClock::setManual(104.2);
    loop().runOnce();
    EXPECT_EQ(repeating->fireDate(), 105);

    at.clear();
    loop().runUntil(107);
    EXPECT_EQ(at, (std::vector<double>{105, 106, 107}));
    EXPECT_TRUE(repeating->isValid());
}

TEST_F(RunLoopTest, InvalidatingReleasesTheCallbackAndTheLoopKeepsTimersAlive) {
    // A timer whose only owner is the loop still fires, then is released.
    int oneShotCount = 0;
    std::weak_ptr<VLXTimer> oneShot = VLXTimer::scheduledTimer(0.5, false, [&](VLXTimer& t) {
        ++oneShotCount;
        EXPECT_FALSE(t.isValid());  // a one-shot timer is done once it fires
    });
    EXPECT_FALSE(oneShot.expired());
    EXPECT_EQ(loop().timerCount(), 1u);
    loop().runUntil(101);
    EXPECT_EQ(oneShotCount, 1);
    EXPECT_TRUE(oneShot.expired());
    EXPECT_EQ(loop().timerCount(), 0u);

    // A repeating timer that captures itself and a payload, and invalidates itself (twice)
    // from inside its callback on the third firing: the cycle is broken, nothing stays alive.
    auto payload = std::make_shared<int>(0);
    std::weak_ptr<int> weakPayload = payload;
    std::weak_ptr<VLXTimer> weakTimer;
    {
        auto self = std::make_shared<std::shared_ptr<VLXTimer>>();
        *self = VLXTimer::scheduledTimer(1, true, [self, payload](VLXTimer& t) {
            ++*payload;
            if (*payload == 3) {
                t.invalidate();
                t.invalidate();
                // The closure is still intact while it runs.
                EXPECT_EQ(*payload, 3);
                EXPECT_TRUE(*self);
            }
        });
        weakTimer = *self;
    }
    payload.reset();
    EXPECT_FALSE(weakPayload.expired());
    loop().runUntil(106);
    EXPECT_TRUE(weakPayload.expired());
    EXPECT_TRUE(weakTimer.expired());
    EXPECT_EQ(loop().timerCount(), 0u);

    // Invalidating from outside before the date: it never fires; invalidating again is fine.
    int count = 0;
    auto cancelled = timer(1, false, [&](VLXTimer&) { ++count; });
    cancelled->invalidate();
    cancelled->invalidate();
    EXPECT_FALSE(cancelled->isValid());
    loop().runUntil(110);
    EXPECT_EQ(count, 0);

    // One timer invalidating another that is due in the same turn stops it.
    int secondCount = 0;
    std::shared_ptr<VLXTimer> second;
    timer(1, false, [&](VLXTimer&) { second->invalidate(); });
    second = timer(1, false, [&](VLXTimer&) { ++secondCount; });
    loop().runUntil(112);
    EXPECT_EQ(secondCount, 0);
}

TEST_F(RunLoopTest, PostedBlocksFromOtherThreadsRunOnTheLoopInOrder) {
    constexpr int kThreads = 4;
    constexpr int kPerThread = 500;
    std::vector<std::vector<int>> seen(kThreads);
    std::vector<std::thread::id> ranOn;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([t, &seen, &ranOn] {
            for (int i = 0; i < kPerThread; ++i) {
                VLXRunLoop::main().post([t, i, &seen, &ranOn] {
                    seen[t].push_back(i);
                    ranOn.push_back(std::this_thread::get_id());
                });
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    loop().runOnce();
    for (int t = 0; t < kThreads; ++t) {
        ASSERT_EQ(seen[t].size(), std::size_t(kPerThread));
        EXPECT_TRUE(std::is_sorted(seen[t].begin(), seen[t].end())) << "thread " << t;
    }
    EXPECT_TRUE(std::all_of(ranOn.begin(), ranOn.end(),
                            [](auto id) { return id == std::this_thread::get_id(); }));

    // A block posted by a block waits for the next turn.
    std::vector<std::string> order;
    loop().post([&] {
        order.push_back("first");
        loop().post([&] { order.push_back("posted during turn"); });
    });
    loop().post([&] { order.push_back("second"); });
    loop().runOnce();
    EXPECT_EQ(order, (std::vector<std::string>{"first", "second"}));
    loop().runOnce();
    EXPECT_EQ(order.back(), "posted during turn");

    loop().post({});  // an empty block is harmless
    loop().runOnce();
}

TEST_F(RunLoopTest, OneTurnRunsEveryPhaseInItsFixedOrder) {
    std::vector<std::string> order;
    // Registered out of phase order and twice for Layout: order within a phase is by addition.
    observe(Phase::Composite, [&] { order.push_back("composite"); });
    observe(Phase::Callbacks, [&] {
        order.push_back("callbacks observer");
        loop().performInCallbacksPhase([&] { order.push_back("queued in callbacks"); });
    });
    observe(Phase::Tick, [&] {
        order.push_back("tick");
        loop().performInCallbacksPhase([&] { order.push_back("stop callback"); });
    });
    observe(Phase::Commit, [&] { order.push_back("commit"); });
    observe(Phase::Display, [&] { order.push_back("display"); });
    observe(Phase::Layout, [&] {
        order.push_back("layout 1");
        EXPECT_EQ(loop().currentPhase(), Phase::Layout);
    });
    observe(Phase::Layout, [&] { order.push_back("layout 2"); });
    timer(0, false, [&](VLXTimer&) {
        order.push_back("timer");
        EXPECT_FALSE(loop().currentPhase().has_value());
    });
    loop().post([&] { order.push_back("block"); });
    loop().performInCallbacksPhase([&] { order.push_back("queued before turn"); });

    EXPECT_FALSE(loop().isInTurn());
    loop().runOnce();
    EXPECT_FALSE(loop().isInTurn());
    EXPECT_EQ(order, (std::vector<std::string>{"block", "timer", "layout 1", "layout 2", "display",
                                               "commit", "tick", "callbacks observer",
                                               "queued before turn", "stop callback",
                                               "queued in callbacks", "composite"}));

    // Queued after the Callbacks phase: runs in the next turn's.
    order.clear();
    const auto late = observe(Phase::Composite, [&] {
        loop().performInCallbacksPhase([&] { order.push_back("late"); });
    });
    loop().runOnce();
    EXPECT_EQ(std::count(order.begin(), order.end(), "late"), 0);
    loop().removeObserver(late);
    order.clear();
    loop().runOnce();
    EXPECT_EQ(std::count(order.begin(), order.end(), "late"), 1);
}

TEST_F(RunLoopTest, TurnsDoNotNestAndObserversMayRemoveThemselves) {
    int layouts = 0;
    const auto turnsBefore = loop().turnCount();
    observe(Phase::Layout, [&] {
        ++layouts;
        const double before = VLXClock::now();
        loop().runOnce();
        loop().runUntil(before + 50);
        EXPECT_EQ(VLXClock::now(), before);
        EXPECT_TRUE(loop().isInTurn());
    });
    loop().runOnce();
    EXPECT_EQ(layouts, 1);
    EXPECT_EQ(loop().turnCount(), turnsBefore + 1);

    // An observer removing itself and one that comes later in the same phase.
    std::vector<std::string> calls;
    VLXRunLoop::ObserverToken first = 0;
    VLXRunLoop::ObserverToken later = 0;
    first = observe(Phase::Display, [&] {
        calls.push_back("first");
        loop().removeObserver(first);
        loop().removeObserver(later);
        loop().removeObserver(first);   // twice
        loop().removeObserver(123456);  // unknown
        loop().removeObserver(0);
    });
    later = observe(Phase::Display, [&] { calls.push_back("later"); });
    VLXRunLoop::ObserverToken added = 0;
    observe(Phase::Display, [&] {
        calls.push_back("third");
        if (added == 0) {
            added = observe(Phase::Display, [&] { calls.push_back("added"); });
        }
    });
    loop().runOnce();
    EXPECT_EQ(calls, (std::vector<std::string>{"first", "third"}));
    calls.clear();
    loop().runOnce();
    EXPECT_EQ(calls, (std::vector<std::string>{"third", "added"}));

    EXPECT_EQ(loop().addObserver(Phase::Tick, {}), 0u);
}

TEST_F(RunLoopTest, TheWorkOfOneTurnIsBounded) {
    // A zero-interval timer scheduling another: one per turn, never a loop within a turn.
    int fired = 0;
    std::function<void(VLXTimer&)> again = [&](VLXTimer&) {
        ++fired;
        if (fired < 100) {
            timer(0, false, again);
        }
    };
    timer(0, false, again);
    loop().runOnce();
    EXPECT_EQ(fired, 1);
    loop().runOnce();
    EXPECT_EQ(fired, 2);

    // A Callbacks-phase block queueing itself forever runs a bounded number of rounds per turn.
    int rounds = 0;
    bool stop = false;
    std::function<void()> requeue = [&] {
        ++rounds;
        if (!stop) {
            loop().performInCallbacksPhase(requeue);
        }
    };
    loop().performInCallbacksPhase(requeue);
    loop().runOnce();
    EXPECT_EQ(rounds, VLXRunLoop::kCallbackRounds);
    stop = true;
    loop().runOnce();
    EXPECT_EQ(rounds, VLXRunLoop::kCallbackRounds + 1);
    fired = 100;
    drain();
}

TEST_F(RunLoopTest, OddIntervalsAndTimesGiveDefinedResults) {
    // Non-positive and NaN intervals: one-shot timers fire in the next turn, repeating ones
    // get the minimum interval.
    int count = 0;
    auto counter = [&](VLXTimer&) { ++count; };
    auto nanOnce = timer(kNaN, false, counter);
    auto negativeOnce = timer(-5, false, counter);
    EXPECT_EQ(nanOnce->timeInterval(), 0);
    EXPECT_EQ(nanOnce->fireDate(), 100);
    loop().runOnce();
    EXPECT_EQ(count, 2);

    auto nanRepeating = timer(kNaN, true, counter);
    auto tinyRepeating = timer(1e-9, true, counter);
    auto negativeInfinite = timer(-kInf, true, counter);
    for (const auto& t : {nanRepeating, tinyRepeating, negativeInfinite}) {
        EXPECT_EQ(t->timeInterval(), VLXTimer::kMinimumRepeatingInterval);
    }
    count = 0;
    for (int i = 0; i < 5; ++i) {
        loop().runOnce();  // the clock does not move: they are not due again
    }
    EXPECT_EQ(count, 0);
    nanRepeating->invalidate();
    tinyRepeating->invalidate();
    negativeInfinite->invalidate();

    // An infinite interval: valid, never due, and runUntil does not wait for it.
    auto never = timer(kInf, true, counter);
    EXPECT_TRUE(never->isValid());
    EXPECT_EQ(never->fireDate(), kInf);
    loop().runUntil(1e12);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(VLXClock::now(), 1e12);
    never->invalidate();

    // Non-finite targets run exactly one turn and leave the clock alone; so does a target in
    // the past, which never moves the clock back.
    const auto turns = loop().turnCount();
    loop().runUntil(kNaN);
    loop().runUntil(kInf);
    loop().runUntil(-kInf);
    loop().runUntil(5);
    EXPECT_EQ(loop().turnCount(), turns + 4);
    EXPECT_EQ(VLXClock::now(), 1e12);

    // A minimum-interval timer over a huge span: the steps are capped, the call returns at the
    // target, and the timer then fires once more with its missed dates skipped.
    VLXClock::setManual(0);
    count = 0;
    auto fast = timer(0, true, counter);
    loop().runUntil(1e6);
    EXPECT_EQ(VLXClock::now(), 1e6);
    EXPECT_GE(count, 1000);
    EXPECT_LE(count, int(VLXRunLoop::kMaximumSteps) + 1);
    EXPECT_GT(fast->fireDate(), 1e6);
    EXPECT_LE(fast->fireDate(), 1e6 + VLXTimer::kMinimumRepeatingInterval);
    fast->invalidate();

    // A date so large that adding the interval does not change it still moves forward.
    VLXClock::setManual(1e17);
    auto coarse = timer(1, true, counter);
    count = 0;
    loop().runUntil(1e17 + 64);
    EXPECT_GT(count, 0);
    EXPECT_GT(coarse->fireDate(), VLXClock::now());
    coarse->invalidate();
}
