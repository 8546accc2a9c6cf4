#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>

#include <VelmarCoreUI/Platform/Foundation/Private/VLXRunLoopDetail.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

#include <utility>

VLXTimer::VLXTimer(double interval, bool repeats, Callback callback)
    : m_interval(vlx::detail::timerInterval(interval, repeats, kMinimumRepeatingInterval)),
      m_repeats(repeats),
      m_callback(std::move(callback)) {}

VLXTimer::~VLXTimer() = default;

std::shared_ptr<VLXTimer> VLXTimer::scheduledTimer(double interval, bool repeats,
                                                   Callback callback) {
    if (!vlx::detail::isLoopThread()) {
        // Off the loop's thread it could only race with the loop: an invalid timer instead.
        auto timer = VLXMakeShared<VLXTimer>(interval, repeats, nullptr);
        timer->m_valid = false;
        return timer;
    }
    auto timer = VLXMakeShared<VLXTimer>(interval, repeats, std::move(callback));
    // Now + ∞ stays ∞: such a timer is never due but stays valid until invalidated.
    timer->m_fireDate = VLXClock::now() + timer->m_interval;
    VLXRunLoop::main().scheduleTimer(timer);
    return timer;
}

void VLXTimer::invalidate() {
    if (!vlx::detail::isLoopThread()) {
        // Forwarded: the loop's thread may be firing this timer right now.
        VLXRunLoop::main().post([self = std::static_pointer_cast<VLXTimer>(shared_from_this())] {
            self->invalidate();
        });
        return;
    }
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
    // Afterwards (also when the callback throws), a repeating timer that is still valid gets
    // its callback back and its next date.
    struct Reschedule {
        VLXTimer& timer;
        Callback& callback;
        double now;
        ~Reschedule() {
            if (!timer.m_valid) {
                return;
            }
            if (!timer.m_callback) {
                timer.m_callback = std::move(callback);
            }
            timer.m_fireDate = vlx::detail::nextFireDate(timer.m_fireDate, timer.m_interval, now);
            VLXRunLoop::main().scheduleTimer(
                std::static_pointer_cast<VLXTimer>(timer.shared_from_this()));
        }
    } reschedule{*this, running, now};
    if (running) {
        running(*this);
    }
}

std::string VLXTimer::description() const {
    return VLXStringWithFormat(
        "<VLXTimer: %p; interval %g%s; fire date %g%s>", static_cast<const void*>(this), m_interval,
        m_repeats ? ", repeats" : "", m_fireDate, m_valid ? "" : "; invalid");
}
