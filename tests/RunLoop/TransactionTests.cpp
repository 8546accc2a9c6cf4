#include "RunLoopTestSupport.h"

#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using Phase = VLXRunLoopPhase;

// Timing functions belong to the animation code; the transaction only passes them through, so
// distinct non-null pointers stand in for them here.
std::shared_ptr<VLXMediaTimingFunction> fakeFunction(const std::shared_ptr<int>& owner) {
    return {owner, reinterpret_cast<VLXMediaTimingFunction*>(owner.get())};
}

// Also leaves no transaction open and no commit observer behind.
class TransactionTest : public RunLoopTest {
protected:
    void TearDown() override {
        for (auto token : m_commitObservers) {
            VLXTransaction::removeCommitObserver(token);
        }
        while (VLXTransaction::explicitDepth() > 0) {
            VLXTransaction::commit();
        }
        RunLoopTest::TearDown();
        EXPECT_FALSE(VLXTransaction::hasImplicitTransaction());
    }

    VLXTransaction::CommitObserverToken observeCommits(std::function<void(double)> block) {
        const auto token = VLXTransaction::addCommitObserver(std::move(block));
        m_commitObservers.push_back(token);
        return token;
    }

private:
    std::vector<VLXTransaction::CommitObserverToken> m_commitObservers;
};

}  // namespace

TEST_F(TransactionTest, NestedTransactionsInheritUnsetSettings) {
    auto outerOwner = std::make_shared<int>(1);
    auto innerOwner = std::make_shared<int>(2);
    VLXTransaction::begin();
    VLXTransaction::setDisableActions(true);
    VLXTransaction::setAnimationDuration(2);
    VLXTransaction::setAnimationTimingFunction(fakeFunction(outerOwner));
    {
        VLXTransaction::begin();
        EXPECT_EQ(VLXTransaction::explicitDepth(), 2);
        EXPECT_TRUE(VLXTransaction::disableActions());
        EXPECT_EQ(VLXTransaction::animationDuration(), 2);
        EXPECT_EQ(VLXTransaction::animationTimingFunction(), fakeFunction(outerOwner));
        VLXTransaction::setDisableActions(false);
        VLXTransaction::setAnimationDuration(0.5);
        VLXTransaction::setAnimationTimingFunction(nullptr);  // nil set explicitly overrides
        EXPECT_EQ(VLXTransaction::animationTimingFunction(), nullptr);
        VLXTransaction::commit();
    }
    // The inner settings went with the inner transaction.
    EXPECT_TRUE(VLXTransaction::disableActions());
    EXPECT_EQ(VLXTransaction::animationDuration(), 2);
    EXPECT_EQ(VLXTransaction::animationTimingFunction(), fakeFunction(outerOwner));

    // Bad durations are ignored.
    VLXTransaction::setAnimationDuration(kNaN);
    VLXTransaction::setAnimationDuration(-1);
    VLXTransaction::setAnimationDuration(kInf);
    EXPECT_EQ(VLXTransaction::animationDuration(), 2);
    VLXTransaction::setAnimationDuration(0);
    EXPECT_EQ(VLXTransaction::animationDuration(), 0);
    VLXTransaction::commit();

    EXPECT_EQ(VLXTransaction::explicitDepth(), 0);
    EXPECT_FALSE(VLXTransaction::disableActions());
    EXPECT_EQ(VLXTransaction::animationDuration(), 0.25);
    EXPECT_EQ(VLXTransaction::animationTimingFunction(), nullptr);

    // Unmatched commits are ignored, also with the implicit transaction open.
    VLXTransaction::commit();
    VLXTransaction::setAnimationDuration(3);
    VLXTransaction::commit();
    EXPECT_TRUE(VLXTransaction::hasImplicitTransaction());
    EXPECT_EQ(VLXTransaction::animationDuration(), 3);
    loop().runOnce();
    EXPECT_EQ(VLXTransaction::animationDuration(), 0.25);
}

TEST_F(TransactionTest, ImplicitTransactionCommitsInTheCommitPhaseOfTheTurn) {
    std::vector<std::string> order;
    std::vector<double> commitTimes;
    observeCommits([&](double t) {
        order.push_back("committed");
        commitTimes.push_back(t);
    });
    std::vector<bool> disabledInLayout;
    observe(Phase::Layout, [&] {
        order.push_back("layout");
        disabledInLayout.push_back(VLXTransaction::disableActions());
    });
    observe(Phase::Tick, [&] {
        order.push_back("tick");
        EXPECT_FALSE(VLXTransaction::hasImplicitTransaction());
    });

    // A setter without begin: applies to the rest of the turn.
    loop().post([] {
        VLXTransaction::setDisableActions(true);
        EXPECT_TRUE(VLXTransaction::hasImplicitTransaction());
        EXPECT_EQ(VLXTransaction::explicitDepth(), 0);
    });
    VLXClock::setManual(120);
    loop().runOnce();
    EXPECT_EQ(order, (std::vector<std::string>{"layout", "committed", "tick"}));
    EXPECT_EQ(disabledInLayout, std::vector<bool>{true});  // set by the block, still open
    EXPECT_EQ(commitTimes, std::vector<double>{120});
    EXPECT_EQ(VLXTransaction::lastCommitTime(), 120);
    EXPECT_FALSE(VLXTransaction::disableActions());

    // A turn without changes commits nothing.
    order.clear();
    loop().runOnce();
    EXPECT_EQ(order, (std::vector<std::string>{"layout", "tick"}));

    // Explicit transactions inside the implicit one commit with it at the end of the turn.
    commitTimes.clear();
    VLXTransaction::ensureImplicitTransaction();
    VLXTransaction::begin();
    VLXTransaction::commit();
    EXPECT_TRUE(commitTimes.empty());
    VLXClock::setManual(121);
    loop().runOnce();
    EXPECT_EQ(commitTimes, std::vector<double>{121});

    // With nothing open, an outermost explicit transaction commits at its commit.
    commitTimes.clear();
    VLXTransaction::begin();
    VLXTransaction::begin();
    VLXTransaction::commit();
    EXPECT_TRUE(commitTimes.empty());
    VLXTransaction::commit();
    EXPECT_EQ(commitTimes, std::vector<double>{121});

    // flush commits the implicit transaction at once; inside an explicit transaction, when
    // the outermost commits.
    commitTimes.clear();
    VLXTransaction::setAnimationDuration(9);
    VLXTransaction::flush();
    EXPECT_FALSE(VLXTransaction::hasImplicitTransaction());
    EXPECT_EQ(commitTimes.size(), 1u);
    VLXTransaction::ensureImplicitTransaction();
    VLXTransaction::begin();
    VLXTransaction::flush();
    EXPECT_EQ(commitTimes.size(), 1u);
    VLXTransaction::commit();
    EXPECT_EQ(commitTimes.size(), 2u);
    EXPECT_FALSE(VLXTransaction::hasImplicitTransaction());
    VLXTransaction::flush();  // nothing open: nothing happens
    EXPECT_EQ(commitTimes.size(), 2u);

    // Changes made after the Commit phase belong to the next turn's transaction; changes a
    // commit observer makes in the Commit phase commit within it.
    order.clear();
    const auto lateChange =
        observe(Phase::Composite, [] { VLXTransaction::setDisableActions(true); });
    loop().runOnce();
    EXPECT_TRUE(VLXTransaction::hasImplicitTransaction());
    loop().removeObserver(lateChange);
    bool changedOnce = false;
    observeCommits([&](double) {
        if (!changedOnce) {
            changedOnce = true;
            VLXTransaction::setAnimationDuration(1);
        }
    });
    commitTimes.clear();
    loop().runOnce();
    EXPECT_EQ(commitTimes.size(), 2u);
    EXPECT_FALSE(VLXTransaction::hasImplicitTransaction());
}

TEST_F(TransactionTest, CompletionBlocksWaitForTheirAnimations) {
    std::vector<std::string> order;
    observe(Phase::Callbacks, [&] { order.push_back("callbacks phase"); });

    // No animation: runs in the first Callbacks phase after the commit, not at the commit.
    VLXTransaction::begin();
    VLXTransaction::setCompletionBlock([&] { order.push_back("done"); });
    VLXTransaction::commit();
    EXPECT_TRUE(order.empty());
    loop().runOnce();
    EXPECT_EQ(order, (std::vector<std::string>{"callbacks phase", "done"}));

    // The implicit transaction's completion runs in the turn that commits it.
    order.clear();
    VLXTransaction::setCompletionBlock([&] { order.push_back("implicit done"); });
    loop().runOnce();
    EXPECT_EQ(order, (std::vector<std::string>{"callbacks phase", "implicit done"}));

    // A held token (an attached animation) keeps it pending across turns; dropping the token
    // in a stop callback delivered in the Callbacks phase runs it right after that callback.
    order.clear();
    std::shared_ptr<VLXTransactionToken> animation;
    std::shared_ptr<VLXTransactionToken> innerAnimation;
    VLXTransaction::begin();
    animation = VLXTransaction::currentAnimationToken();
    EXPECT_EQ(VLXTransaction::currentAnimationToken(), animation);  // one per transaction
    {
        VLXTransaction::begin();
        innerAnimation = VLXTransaction::currentAnimationToken();
        EXPECT_NE(innerAnimation, animation);
        VLXTransaction::setCompletionBlock([&] { order.push_back("inner done"); });
        VLXTransaction::commit();
    }
    // Set after the animation was added: still waits for it.
    VLXTransaction::setCompletionBlock([&] { order.push_back("outer done"); });
    VLXTransaction::commit();
    for (int i = 0; i < 3; ++i) {
        loop().runOnce();
    }
    EXPECT_EQ(order, std::vector<std::string>(3, "callbacks phase"));

    order.clear();
    observe(Phase::Tick, [&] {
        if (animation) {
            loop().performInCallbacksPhase([&] {
                order.push_back("stop outer animation");
                animation.reset();
            });
        }
    });
    loop().runOnce();
    // The outer one also waits for the animation added in the nested transaction.
    EXPECT_EQ(order, (std::vector<std::string>{"callbacks phase", "stop outer animation"}));

    order.clear();
    loop().performInCallbacksPhase([&] {
        order.push_back("stop inner animation");
        innerAnimation.reset();
    });
    loop().runOnce();
    EXPECT_EQ(order, (std::vector<std::string>{"callbacks phase", "stop inner animation",
                                               "inner done", "outer done"}));

    // The completion block is not inherited and can be cleared.
    VLXTransaction::begin();
    VLXTransaction::setCompletionBlock([&] { order.push_back("cleared"); });
    VLXTransaction::begin();
    EXPECT_FALSE(VLXTransaction::completionBlock());
    VLXTransaction::commit();
    VLXTransaction::setCompletionBlock({});
    VLXTransaction::commit();
    order.clear();
    loop().runOnce();
    EXPECT_EQ(order, std::vector<std::string>{"callbacks phase"});
}

TEST_F(TransactionTest, CommitObserversCanBeRemovedWhileNotified) {
    int first = 0;
    int second = 0;
    VLXTransaction::CommitObserverToken firstToken = 0;
    VLXTransaction::CommitObserverToken secondToken = 0;
    firstToken = observeCommits([&](double) {
        ++first;
        VLXTransaction::removeCommitObserver(firstToken);
        VLXTransaction::removeCommitObserver(secondToken);
    });
    secondToken = observeCommits([&](double) { ++second; });
    VLXTransaction::begin();
    VLXTransaction::commit();
    VLXTransaction::begin();
    VLXTransaction::commit();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 0);
    EXPECT_EQ(VLXTransaction::addCommitObserver({}), 0u);
    VLXTransaction::removeCommitObserver(0);
    VLXTransaction::removeCommitObserver(987654);
}
