#include <VelmarCoreUI/Platform/Foundation/Private/VLXRunLoopDetail.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <thread>

namespace vlx::detail {

bool isLoopThread() {
    static std::atomic<std::thread::id> owner{};
    // Once the owner is known, the answer for this thread cannot change.
    thread_local signed char known = 0;
    if (known != 0) {
        return known > 0;
    }
    const auto self = std::this_thread::get_id();
    std::thread::id expected{};
    const bool mine = owner.compare_exchange_strong(expected, self) || expected == self;
    known = mine ? 1 : -1;
    return mine;
}

double timerInterval(double requested, bool repeats, double minimumRepeating) {
    if (std::isnan(requested) || requested <= 0) {
        return repeats ? minimumRepeating : 0;
    }
    if (repeats && requested < minimumRepeating) {
        return minimumRepeating;
    }
    return requested;
}

double nextFireDate(double date, double interval, double now) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    if (!std::isfinite(date) || !std::isfinite(interval) || !std::isfinite(now) ||
        !(interval > 0)) {
        return kInfinity;
    }
    double next = date + interval;
    if (next <= now) {
        // Whole intervals missed since the scheduled date; all in doubles, nothing to overflow
        // an integer.
        const double missed = std::floor((now - date) / interval);
        // Too many intervals to count: the schedule is denser than the doubles near `now`.
        next = std::isfinite(missed) ? date + (missed + 1) * interval : now;
    }
    if (!(next > now)) {
        next = std::nextafter(now, kInfinity);
    }
    return next;
}

double waitDuration(double now, double target, double nextTimer, double slice) {
    const double until = std::min(target, nextTimer);
    const double wait = std::min(until - now, slice);
    return wait > 0 ? wait : 0;  // NaN compares false and gives 0
}

}  // namespace vlx::detail
