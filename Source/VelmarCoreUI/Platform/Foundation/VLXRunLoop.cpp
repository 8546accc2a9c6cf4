#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>

#include <VelmarCoreUI/Platform/Foundation/Private/VLXRunLoopDetail.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <utility>

namespace {

constexpr VLXRunLoopPhase kPhases[] = {
    VLXRunLoopPhase::Layout, VLXRunLoopPhase::Display,   VLXRunLoopPhase::Commit,
    VLXRunLoopPhase::Tick,   VLXRunLoopPhase::Callbacks, VLXRunLoopPhase::Composite,
};

// Out-of-range phases (a cast integer) give the count: no such list.
std::size_t phaseIndex(VLXRunLoopPhase phase) {
    const auto index = static_cast<std::size_t>(phase);
    return index < std::size(kPhases) ? index : std::size(kPhases);
}

// A real-clock wait is cut into slices of at most this long, so that a huge distance to the
// next date never becomes an overflowing duration and a clock switched meanwhile is noticed.
constexpr double kMaximumWaitSlice = 0.5;

}  // namespace

VLXRunLoop::VLXRunLoop() = default;
VLXRunLoop::~VLXRunLoop() = default;

VLXRunLoop& VLXRunLoop::main() {
    // Never destroyed: timers, tokens and blocks released during exit may still reach it.
    static VLXRunLoop* const loop = new VLXRunLoop();
    return *loop;
}

void VLXRunLoop::post(Block block) {
    {
        std::lock_guard lock(m_postMutex);
        m_posted.push_back(std::move(block));
    }
    m_postCondition.notify_all();
}

void VLXRunLoop::runOnce() {
    if (m_inTurn || !vlx::detail::isLoopThread()) {
        return;
    }
    runTurn();
}

void VLXRunLoop::runUntil(double t) {
    if (m_inTurn || !vlx::detail::isLoopThread()) {
        return;
    }
    if (!std::isfinite(t)) {
        runTurn();
        return;
    }
    if (VLXClock::isManual()) {
        std::size_t steps = 0;
        while (VLXClock::isManual() && steps < kMaximumSteps) {
            const auto next = nextTimerDate();
            if (!next || *next > t) {
                break;
            }
            if (*next > VLXClock::now()) {
                VLXClock::setManual(*next);
            }
            runTurn();
            ++steps;
        }
        if (VLXClock::isManual() && t > VLXClock::now()) {
            VLXClock::setManual(t);
        }
        runTurn();
        return;
    }
    while (true) {
        runTurn();
        if (VLXClock::isManual() || VLXClock::now() >= t) {
            return;
        }
        waitUntil(t);
    }
}

void VLXRunLoop::waitUntil(double t) {
    if (!m_callbackBlocks.empty()) {
        return;
    }
    const double wait = vlx::detail::waitDuration(VLXClock::now(), t, nextTimerDate().value_or(t),
                                                  kMaximumWaitSlice);
    if (wait <= 0) {
        return;
    }
    std::unique_lock lock(m_postMutex);
    m_postCondition.wait_for(lock, std::chrono::duration<double>(wait),
                             [this] { return !m_posted.empty(); });
}

VLXRunLoop::ObserverToken VLXRunLoop::addObserver(VLXRunLoopPhase phase, Block observer) {
    if (!observer || phaseIndex(phase) >= std::size(kPhases) || !vlx::detail::isLoopThread()) {
        return 0;
    }
    const ObserverToken token = m_nextObserverToken++;
    m_observers[phaseIndex(phase)].push_back(
        Observer{token, std::make_shared<Block>(std::move(observer))});
    return token;
}

void VLXRunLoop::removeObserver(ObserverToken token) {
    if (token == 0) {
        return;
    }
    if (!vlx::detail::isLoopThread()) {
        post([this, token] { removeObserver(token); });
        return;
    }
    for (auto& list : m_observers) {
        const auto it = std::find_if(list.begin(), list.end(),
                                     [token](const Observer& o) { return o.token == token; });
        if (it == list.end()) {
            continue;
        }
        if (m_inTurn) {
            // A phase may be walking this list: blank the entry now, compact after the turn.
            it->block.reset();
            m_observersRemoved = true;
        } else {
            list.erase(it);
        }
        return;
    }
}

void VLXRunLoop::performInCallbacksPhase(Block block) {
    if (block && !vlx::detail::isLoopThread()) {
        post([this, block = std::move(block)]() mutable {
            performInCallbacksPhase(std::move(block));
        });
        return;
    }
    if (block) {
        m_callbackBlocks.push_back(std::move(block));
    }
}

std::optional<double> VLXRunLoop::nextTimerDate() const {
    if (m_timers.empty()) {
        return std::nullopt;
    }
    return m_timers.begin()->date;
}

void VLXRunLoop::scheduleTimer(const std::shared_ptr<VLXTimer>& timer) {
    if (!timer || !timer->m_valid || timer->m_scheduled) {
        return;
    }
    if (timer->m_order == 0) {
        timer->m_order = m_nextTimerOrder++;
    }
    m_timers.insert(TimerEntry{timer->m_fireDate, timer->m_order, timer});
    timer->m_scheduled = true;
}

void VLXRunLoop::unscheduleTimer(const VLXTimer& timer) {
    if (!timer.m_scheduled) {
        return;
    }
    const auto it = m_timers.find(TimerEntry{timer.m_fireDate, timer.m_order, nullptr});
    if (it != m_timers.end()) {
        // Keep the timer alive until the entry is gone: this may be its last owner.
        const auto keep = it->timer;
        m_timers.erase(it);
        keep->m_scheduled = false;
    }
}

void VLXRunLoop::runTurn() {
    struct TurnScope {
        VLXRunLoop& loop;
        explicit TurnScope(VLXRunLoop& l) : loop(l) { loop.m_inTurn = true; }
        ~TurnScope() {
            loop.m_inTurn = false;
            loop.m_phase.reset();
            if (loop.m_observersRemoved) {
                loop.m_observersRemoved = false;
                for (auto& list : loop.m_observers) {
                    std::erase_if(list, [](const Observer& o) { return !o.block; });
                }
            }
        }
    } scope(*this);

    m_turnTime = VLXClock::now();
    ++m_turnCount;
    runPostedBlocks();
    fireDueTimers();
    for (const auto phase : kPhases) {
        runPhase(phase);
        if (phase == VLXRunLoopPhase::Callbacks) {
            runCallbackBlocks();
        }
    }
}

void VLXRunLoop::runPostedBlocks() {
    m_phase.reset();
    std::size_t count = 0;
    {
        std::lock_guard lock(m_postMutex);
        count = m_posted.size();
    }
    // Only the blocks present when the turn began; each is taken out before it runs, so a
    // throwing block leaves the rest queued.
    for (std::size_t i = 0; i < count; ++i) {
        Block block;
        {
            std::lock_guard lock(m_postMutex);
            if (m_posted.empty()) {
                break;
            }
            block = std::move(m_posted.front());
            m_posted.pop_front();
        }
        if (block) {
            block();
        }
    }
}

void VLXRunLoop::fireDueTimers() {
    const double now = m_turnTime;
    // Timers scheduled from here on get orders at or above this and wait for a later turn. A
    // new timer is never dated before `now`, so it sorts after every timer already due.
    const std::uint64_t firstNewOrder = m_nextTimerOrder;
    while (!m_timers.empty()) {
        const auto it = m_timers.begin();
        if (it->date > now || it->order >= firstNewOrder) {
            break;
        }
        const auto timer = it->timer;
        m_timers.erase(it);
        timer->m_scheduled = false;
        timer->fire(now);
    }
}

void VLXRunLoop::runPhase(VLXRunLoopPhase phase) {
    m_phase = phase;
    auto& list = m_observers[phaseIndex(phase) % std::size(kPhases)];
    const std::size_t count = list.size();
    for (std::size_t i = 0; i < count && i < list.size(); ++i) {
        // A local reference keeps the closure alive if the observer removes itself.
        const auto block = list[i].block;
        if (block && *block) {
            (*block)();
        }
    }
}

void VLXRunLoop::runCallbackBlocks() {
    for (int round = 0; round < kCallbackRounds && !m_callbackBlocks.empty(); ++round) {
        const std::size_t count = m_callbackBlocks.size();
        for (std::size_t i = 0; i < count && !m_callbackBlocks.empty(); ++i) {
            Block block = std::move(m_callbackBlocks.front());
            m_callbackBlocks.pop_front();
            block();
        }
    }
}
