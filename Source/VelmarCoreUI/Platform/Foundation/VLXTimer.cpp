#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

#include <cmath>
#include <limits>
#include <utility>

namespace {

double effectiveInterval(double interval, bool repeats) {
    if (std::isnan(interval) || interval <= 0) {
        return repeats ? VLXTimer::kMinimumRepeatingInterval : 0;
    }
    if (repeats && interval < VLXTimer::kMinimumRepeatingInterval) {
        return VLXTimer::kMinimumRepeatingInterval;
    }
    return interval;
}

}  // namespace

VLXTimer::VLXTimer(double interval, bool repeats, Callback callback)
    : m_interval(effectiveInterval(interval, repeats)),
      m_repeats(repeats),
      m_callback(std::move(callback)) {}

VLXTimer::~VLXTimer() = default;

std::shared_ptr<VLXTimer> VLXTimer::scheduledTimer(double interval, bool repeats,
                                                   Callback callback) {
    auto timer = VLXMakeShared<VLXTimer>(interval, repeats, std::move(callback));
    // Now + ∞ stays ∞: such a timer is never due but stays valid until invalidated.
    timer->m_fireDate = VLXClock::now() + timer->m_interval;
    VLXRunLoop::main().scheduleTimer(timer);
    return timer;
}

void VLXTimer::invalidate() {
    if (!m_valid) {
        return;
    }
    m_valid = false;
    // Moving the callback out first: releasing it may drop the last other reference to us.
    Callback released = std::move(m_callback);
    m_callback = nullptr;
    if (m_scheduled) {
        VLXRunLoop::main().unscheduleTimer(*this);
    }
}

void VLXTimer::fire(double now) {
    if (!m_valid) {
        return;
    }
    // The callback runs from a local copy: invalidating inside it releases the stored one
    // without destroying the closure that is running.
    Callback running = std::move(m_callback);
    m_callback = nullptr;
    if (!m_repeats) {
        m_valid = false;
    }
    if (running) {
        running(*this);
    }
    if (!m_valid) {
        return;
    }
    if (!m_callback) {
        m_callback = std::move(running);
    }
    // Next date counted from the scheduled one; dates already past are skipped.
    double next = m_fireDate + m_interval;
    if (next <= now && std::isfinite(next)) {
        const double missed = std::floor((now - m_fireDate) / m_interval);
        next = m_fireDate + (missed + 1) * m_interval;
        if (!(next > now)) {
            next = std::nextafter(now, std::numeric_limits<double>::infinity());
        }
    }
    m_fireDate = next;
    VLXRunLoop::main().scheduleTimer(std::static_pointer_cast<VLXTimer>(shared_from_this()));
}

std::string VLXTimer::description() const {
    return VLXStringWithFormat(
        "<VLXTimer: %p; interval %g%s; fire date %g%s>", static_cast<const void*>(this), m_interval,
        m_repeats ? ", repeats" : "", m_fireDate, m_valid ? "" : "; invalid");
}
