#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

class VLXTimer;

/// The phases of a run-loop turn after posted blocks and timers, in the order they run. Each is
/// served by the observers that higher layers register for it.
enum class VLXRunLoopPhase {
    Layout,     ///< pending layout
    Display,    ///< redrawing layers marked as needing display
    Commit,     ///< the implicit transaction commits; new animations start
    Tick,       ///< animations are evaluated at the turn's time; finished ones are removed
    Callbacks,  ///< animation start / stop callbacks, transaction completions
    Composite,  ///< the presentation tree is drawn
};

/// The main run loop: one thread's queue of posted blocks, its timers and the per-turn passes.
///
/// One turn, at the clock reading taken when it starts, runs in this fixed order:
///   1. blocks posted before the turn began, first in first out;
///   2. timers whose fire date is at or before the turn's time, in date order (ties in
///      scheduling order), each at most once;
///   3. the observers of `Layout`, `Display`, `Commit`, `Tick`, `Callbacks` and `Composite`,
///      phase by phase, each phase's observers in the order they were added. In `Callbacks`,
///      the observers run first, then the blocks queued with `performInCallbacksPhase`.
///
/// The work of one turn is bounded: blocks posted during a turn run in the next turn, timers
/// scheduled during a turn fire in a later turn, a repeating timer fires at most once per turn,
/// and `performInCallbacksPhase` blocks queued while that phase drains run in the same phase for
/// at most `kCallbackRounds` rounds, later ones in the next turn.
///
/// Calling `runOnce` or `runUntil` from inside a turn does nothing: a turn never nests.
///
/// Main thread only, except `post`, which any thread may call. The main thread is the first
/// thread that calls a main-thread-only function of the loop, its timers or transactions. On
/// other threads `runOnce`, `runUntil` and `addObserver` do nothing (token 0), while
/// `removeObserver` and `performInCallbacksPhase` are forwarded to the main thread with `post`.
///
/// Exceptions thrown by callbacks propagate out of `runOnce`; the loop stays usable and the work
/// not yet done stays queued (a repeating timer whose callback threw stays scheduled).
class VLX_EXPORT VLXRunLoop {
public:
    using ObserverToken = std::uint64_t;
    using Block = std::function<void()>;

    /// Blocks queued for the Callbacks phase while it drains run in it for this many rounds.
    static constexpr int kCallbackRounds = 8;
    /// `runUntil` on the manual clock steps through at most this many timer dates; past that it
    /// jumps to the target time (late timers then fire once and skip their missed dates).
    static constexpr std::size_t kMaximumSteps = 100000;

    /// The run loop of the main thread (created on first use, lives for the whole process).
    static VLXRunLoop& main();

    /// Queues `block` to run on the main thread at the start of the next turn, after blocks
    /// posted earlier. Thread-safe; wakes a waiting `runUntil`. An empty block only wakes.
    void post(Block block);

    /// Runs one turn at `VLXClock::now()`. Does nothing inside a turn.
    void runOnce();

    /// Runs turns until the clock reaches `t`.
    ///
    /// Manual clock: sets the clock to each timer date ≤ `t` in turn (including dates of timers
    /// scheduled on the way) and runs a turn there, then sets the clock to `t` and runs a final
    /// turn. The clock never moves backwards: a `t` in the past runs one turn at the current
    /// time. Real clock: runs a turn, then waits (without spinning) until the next timer date,
    /// `t` or a post, and repeats until `VLXClock::now() >= t`.
    ///
    /// A non-finite `t` runs one turn. Does nothing inside a turn.
    void runUntil(double t);

    /// Registers `observer` for `phase`; it runs in every turn until removed. Observers of one
    /// phase run in the order added; one added during its own phase first runs in the next turn.
    /// An empty observer, or a phase outside the enumeration, is not registered (token 0).
    ObserverToken addObserver(VLXRunLoopPhase phase, Block observer);
    /// Unregisters an observer; unknown tokens are ignored. Safe inside any observer, including
    /// the one being removed: a removed observer is not called again, not even later in the
    /// same phase.
    void removeObserver(ObserverToken token);

    /// Queues `block` for the Callbacks phase of this turn, or of the next turn once this turn
    /// is past it (or outside a turn). Such blocks run after the phase's observers, first in
    /// first out. Animation start / stop callbacks and transaction completions go here.
    void performInCallbacksPhase(Block block);

    /// True while a turn runs.
    bool isInTurn() const { return m_inTurn; }
    /// The phase now running, nil outside a turn and while blocks or timers run.
    std::optional<VLXRunLoopPhase> currentPhase() const { return m_phase; }
    /// The clock reading at the start of the current (or last) turn.
    double turnTime() const { return m_turnTime; }
    /// The number of turns run so far.
    std::uint64_t turnCount() const { return m_turnCount; }

    /// The number of timers scheduled and valid.
    std::size_t timerCount() const { return m_timers.size(); }
    /// The earliest fire date among scheduled timers, nil without timers.
    std::optional<double> nextTimerDate() const;

    VLXRunLoop(const VLXRunLoop&) = delete;
    VLXRunLoop& operator=(const VLXRunLoop&) = delete;

private:
    friend class VLXTimer;

    struct TimerEntry {
        double date;
        std::uint64_t order;
        std::shared_ptr<VLXTimer> timer;
        bool operator<(const TimerEntry& other) const {
            return date < other.date || (date == other.date && order < other.order);
        }
    };
    struct Observer {
        ObserverToken token;
        std::shared_ptr<Block> block;
    };

    VLXRunLoop();
    ~VLXRunLoop();

    // Timers call these; the loop keeps a scheduled timer alive through its entry.
    void scheduleTimer(const std::shared_ptr<VLXTimer>& timer);
    void unscheduleTimer(const VLXTimer& timer);

    void runTurn();
    void runPostedBlocks();
    void fireDueTimers();
    void runPhase(VLXRunLoopPhase phase);
    void runCallbackBlocks();
    void waitUntil(double t);

    // Posted blocks: the only state shared with other threads.
    mutable std::mutex m_postMutex;
    std::condition_variable m_postCondition;
    std::deque<Block> m_posted;

    std::set<TimerEntry> m_timers;
    std::uint64_t m_nextTimerOrder = 1;

    std::vector<Observer> m_observers[6];
    ObserverToken m_nextObserverToken = 1;
    bool m_observersRemoved = false;

    std::deque<Block> m_callbackBlocks;

    bool m_inTurn = false;
    std::optional<VLXRunLoopPhase> m_phase;
    double m_turnTime = 0;
    std::uint64_t m_turnCount = 0;
};
