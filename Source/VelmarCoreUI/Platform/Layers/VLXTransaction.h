#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

class VLXMediaTimingFunction;

/// Keeps a transaction's completion block pending while held.
///
/// Every open transaction level has one token (made on first use). A layer takes the current
/// one with `VLXTransaction::currentAnimationToken()` when an animation is added and drops it
/// after delivering that animation's stop callback (finished or removed). When the transaction
/// has committed and no holder is left, the completion block is queued with
/// `VLXRunLoop::performInCallbacksPhase`; queued from a stop callback running in the Callbacks
/// phase, it runs later in that same phase, after the stop callback.
///
/// A nested transaction's token holds its outer transaction's token, so an outer completion
/// also waits for animations added in nested transactions, and runs after the inner one.
class VLX_EXPORT VLXTransactionToken {
public:
    ~VLXTransactionToken();
    VLXTransactionToken(const VLXTransactionToken&) = delete;
    VLXTransactionToken& operator=(const VLXTransactionToken&) = delete;

private:
    friend class VLXTransaction;
    friend struct VLXTransactionAccess;
    explicit VLXTransactionToken(std::shared_ptr<VLXTransactionToken> outer);

    std::function<void()> m_completion;
    std::shared_ptr<VLXTransactionToken> m_outer;
};

/// Groups layer changes so that they commit, and their animations start, together.
///
/// `begin` / `commit` nest. Changes made outside any `begin` open the implicit transaction,
/// which commits in the Commit phase of the run-loop turn (the commit observer is registered
/// on the main run loop on first use); changes made after that phase belong to the next
/// turn's. Explicit transactions opened while the implicit one is open nest inside it, so their
/// changes commit with it at the end of the turn; an outermost explicit transaction opened with
/// no implicit one open commits at its `commit`.
///
/// Settings (`disableActions`, `animationDuration`, `animationTimingFunction`) belong to the
/// innermost open transaction; one that is not set reads the enclosing transaction's value, so
/// a nested transaction inherits them, and the outermost falls back to the defaults (actions
/// enabled, 0.25 s, nil). A setter called with no transaction open opens the implicit one, so
/// it applies to the rest of that turn. The completion block is not inherited.
///
/// Main thread only (the run loop's thread). On other threads `begin`, `commit`, `flush`, the
/// setters and the hooks do nothing, getters give the defaults, and `currentAnimationToken`
/// gives a token of no transaction.
class VLX_EXPORT VLXTransaction {
public:
    using CommitObserverToken = std::uint64_t;

    static constexpr double kDefaultAnimationDuration = 0.25;

    /// Opens a nested transaction.
    static void begin();
    /// Closes the innermost explicit transaction. Without an open `begin` it is ignored (the
    /// implicit transaction is not closed by `commit`).
    static void commit();
    /// Commits the implicit transaction now. With explicit transactions open, it commits when
    /// the outermost of them does (still inside the same turn, at the latest at its end).
    static void flush();

    static bool disableActions();
    static void setDisableActions(bool disable);

    /// 0.25 s unless set. Values that are NaN, infinite or negative are ignored.
    static double animationDuration();
    static void setAnimationDuration(double duration);

    /// Nil unless set (nil then means the default pacing of the animation that reads it).
    static std::shared_ptr<VLXMediaTimingFunction> animationTimingFunction();
    static void setAnimationTimingFunction(std::shared_ptr<VLXMediaTimingFunction> function);

    /// The completion block of the innermost open transaction (empty if none is set).
    static std::function<void()> completionBlock();
    /// Runs on the run loop, in the Callbacks phase, once the transaction has committed and
    /// every animation added in it (and in transactions nested in it) has finished or been
    /// removed, after their stop callbacks; with no animation, in the first Callbacks phase
    /// after the commit. Setting it again replaces it; an empty block clears it.
    static void setCompletionBlock(std::function<void()> block);

    // Hooks for layers.

    /// Opens the implicit transaction when no transaction is open; call before the first
    /// change of a layer model property. Cheap when a transaction is open already.
    static void ensureImplicitTransaction();
    /// The completion token of the innermost open transaction (opening the implicit one if
    /// none is open). Hold it while an animation added now is attached; release it after that
    /// animation's stop callback.
    static std::shared_ptr<VLXTransactionToken> currentAnimationToken();

    /// Registers `observer`, called after every commit of an outermost transaction (explicit,
    /// implicit at the end of a turn, or by `flush`) with the commit time, the clock reading at
    /// the commit. Layers start the animations added in the transaction there and resolve a
    /// begin time of 0 to the commit time. Observers run in the order added. Changes made by an
    /// observer open a new implicit transaction; when that happens during the turn's Commit
    /// phase, it commits within the same phase (for a few rounds, then in the next turn).
    /// An empty observer is not registered (token 0).
    static CommitObserverToken addCommitObserver(std::function<void(double commitTime)> observer);
    /// Unregisters a commit observer; safe inside a commit observer. Unknown tokens are ignored.
    static void removeCommitObserver(CommitObserverToken token);
    /// The time of the last commit of an outermost transaction, nil before the first.
    static std::optional<double> lastCommitTime();

    /// The number of explicit transactions open (`begin` without its `commit`).
    static int explicitDepth();
    /// True while the implicit transaction is open.
    static bool hasImplicitTransaction();

    VLXTransaction() = delete;
};
