#include "RunLoopTestSupport.h"

#include <VelmarCoreUI/Platform/Foundation/Private/VLXRunLoopDetail.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

TEST(RunLoopDetail, NextFireDateStaysOnScheduleAndAlwaysMovesForward) {
    using vlx::detail::nextFireDate;
    EXPECT_EQ(nextFireDate(0, 1, 0.5), 1);      // on time
    EXPECT_EQ(nextFireDate(0, 1, 3.5), 4);      // late: dates 1, 2, 3 skipped
    EXPECT_EQ(nextFireDate(0, 1, 3), 4);        // exactly on a missed date: the one after
    EXPECT_EQ(nextFireDate(10, 0.5, 9), 10.5);  // turn before the date (clock moved back)
    // Adding 1 to 1e17 changes nothing: the next representable time instead.
    EXPECT_EQ(nextFireDate(1e17, 1, 1e17), std::nextafter(1e17, kInf));
    // Out of the doubles, or nonsense: never again.
    EXPECT_EQ(nextFireDate(1e308, 1e308, 1e308), kInf);
    EXPECT_EQ(nextFireDate(0, 1e-300, 1e300), std::nextafter(1e300, kInf));
    for (const double bad : {kNaN, kInf, -kInf}) {
        EXPECT_EQ(nextFireDate(bad, 1, 0), kInf);
        EXPECT_EQ(nextFireDate(0, bad, 0), kInf);
        EXPECT_EQ(nextFireDate(0, 1, bad), kInf);
    }
    EXPECT_EQ(nextFireDate(0, 0, 0), kInf);
    EXPECT_EQ(nextFireDate(0, -1, 0), kInf);

    using vlx::detail::timerInterval;
    EXPECT_EQ(timerInterval(2, true, 0.1), 2);
    EXPECT_EQ(timerInterval(0.01, true, 0.1), 0.1);
    EXPECT_EQ(timerInterval(0.01, false, 0.1), 0.01);
    EXPECT_EQ(timerInterval(kInf, true, 0.1), kInf);
    for (const double bad : {kNaN, -kInf, -1.0, 0.0, -0.0}) {
        EXPECT_EQ(timerInterval(bad, false, 0.1), 0);
        EXPECT_EQ(timerInterval(bad, true, 0.1), 0.1);
    }

    using vlx::detail::waitDuration;
    EXPECT_EQ(waitDuration(0, 10, 3, 0.5), 0.5);  // sliced
    EXPECT_EQ(waitDuration(0, 0.2, 3, 0.5), 0.2);
    EXPECT_EQ(waitDuration(0, 10, 0.1, 0.5), 0.1);
    EXPECT_EQ(waitDuration(0, kInf, kInf, 0.5), 0.5);
    EXPECT_EQ(waitDuration(5, 1, 3, 0.5), 0);  // past
    EXPECT_EQ(waitDuration(kNaN, 1, 3, 0.5), 0);
    EXPECT_EQ(waitDuration(0, kNaN, kNaN, 0.5), 0);
}

TEST_F(RunLoopTest, CallsFromOtherThreadsNeverTouchTheLoopDirectly) {
    int fired = 0;
    auto mainTimer = timer(1, true, [&](VLXTimer&) { ++fired; });
    const auto turns = loop().turnCount();
    std::vector<std::string> ran;

    std::shared_ptr<VLXTimer> workerTimer;
    std::shared_ptr<VLXTransactionToken> workerToken;
    VLXRunLoop::ObserverToken workerObserver = 1;
    int workerDepth = -1;
    std::thread worker([&] {
        loop().runOnce();
        loop().runUntil(1e9);
        workerObserver = loop().addObserver(VLXRunLoopPhase::Layout, [&] { ran.push_back("x"); });
        workerTimer = VLXTimer::scheduledTimer(0, false, [&](VLXTimer&) { ran.push_back("x"); });
        loop().performInCallbacksPhase([&] { ran.push_back("forwarded callback"); });
        mainTimer->invalidate();
        VLXTransaction::begin();
        VLXTransaction::setDisableActions(true);
        workerToken = VLXTransaction::currentAnimationToken();
        workerDepth = VLXTransaction::explicitDepth();
    });
    worker.join();

    // Nothing ran or changed on the worker.
    EXPECT_EQ(loop().turnCount(), turns);
    EXPECT_EQ(VLXClock::now(), 100);
    EXPECT_EQ(workerObserver, 0u);
    ASSERT_TRUE(workerTimer);
    EXPECT_FALSE(workerTimer->isValid());
    EXPECT_TRUE(mainTimer->isValid());  // forwarded, not yet done
    ASSERT_TRUE(workerToken);
    EXPECT_EQ(workerDepth, 0);
    EXPECT_EQ(VLXTransaction::explicitDepth(), 0);
    EXPECT_FALSE(VLXTransaction::disableActions());
    EXPECT_FALSE(VLXTransaction::hasImplicitTransaction());

    // The forwarded calls arrive with the next turn.
    loop().runOnce();
    EXPECT_EQ(ran, std::vector<std::string>{"forwarded callback"});
    EXPECT_FALSE(mainTimer->isValid());
    loop().runUntil(105);
    EXPECT_EQ(fired, 0);
    workerToken.reset();
    drain();
    EXPECT_EQ(ran.size(), 1u);
}

TEST_F(RunLoopTest, ThrowingCallbacksLeaveEverythingUsable) {
    // A repeating timer that throws once: the exception reaches the caller, the timer stays
    // scheduled on its grid and fires again.
    int fired = 0;
    auto throwing = timer(1, true, [&](VLXTimer&) {
        if (++fired == 1) {
            throw std::runtime_error("timer");
        }
    });
    VLXClock::setManual(101);
    EXPECT_THROW(loop().runOnce(), std::runtime_error);
    EXPECT_FALSE(loop().isInTurn());
    EXPECT_TRUE(throwing->isValid());
    EXPECT_EQ(throwing->fireDate(), 102);
    loop().runUntil(102);
    EXPECT_EQ(fired, 2);
    throwing->invalidate();

    // A throwing posted block keeps the blocks after it queued.
    std::vector<int> ran;
    loop().post([] { throw std::runtime_error("block"); });
    loop().post([&] { ran.push_back(2); });
    EXPECT_THROW(loop().runOnce(), std::runtime_error);
    EXPECT_TRUE(ran.empty());
    loop().runOnce();
    EXPECT_EQ(ran, std::vector<int>{2});

    // A throwing commit observer: later commits and flushes still work at once.
    bool shouldThrow = true;
    int commits = 0;
    const auto observer = VLXTransaction::addCommitObserver([&](double) {
        ++commits;
        if (shouldThrow) {
            shouldThrow = false;
            throw std::runtime_error("commit");
        }
    });
    VLXTransaction::begin();
    EXPECT_THROW(VLXTransaction::commit(), std::runtime_error);
    EXPECT_EQ(VLXTransaction::explicitDepth(), 0);
    VLXTransaction::setAnimationDuration(1);
    VLXTransaction::flush();
    EXPECT_FALSE(VLXTransaction::hasImplicitTransaction());
    EXPECT_EQ(commits, 2);
    VLXTransaction::removeCommitObserver(observer);
    VLXTransaction::begin();
    VLXTransaction::commit();
    EXPECT_EQ(commits, 2);
}

TEST_F(RunLoopTest, DeepNestingAndOddPhases) {
    // Very deep nesting neither overflows the stack when the tokens are made nor when the
    // chain is released; completions run innermost first.
    constexpr int kDepth = 100000;
    std::vector<int> completed;
    for (int i = 0; i < kDepth; ++i) {
        VLXTransaction::begin();
        if (i == 0 || i == kDepth / 2 || i == kDepth - 1) {
            VLXTransaction::setCompletionBlock([&completed, i] { completed.push_back(i); });
        }
    }
    auto token = VLXTransaction::currentAnimationToken();
    EXPECT_EQ(VLXTransaction::explicitDepth(), kDepth);
    for (int i = 0; i < kDepth; ++i) {
        VLXTransaction::commit();
    }
    EXPECT_EQ(VLXTransaction::explicitDepth(), 0);
    loop().runOnce();
    EXPECT_TRUE(completed.empty());
    token.reset();
    loop().runOnce();
    EXPECT_EQ(completed, (std::vector<int>{kDepth - 1, kDepth / 2, 0}));

    // A phase value outside the enumeration is refused.
    EXPECT_EQ(loop().addObserver(static_cast<VLXRunLoopPhase>(99), [] {}), 0u);
    EXPECT_EQ(loop().addObserver(static_cast<VLXRunLoopPhase>(-1), [] {}), 0u);
}
