#pragma once

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/VLXExport.h>

#include <cstdint>
#include <functional>
#include <memory>

/// A timer on the main run loop, driven by `VLXClock`.
///
/// It fires in the first turn whose time is at or after its fire date. A repeating timer then
/// reschedules from its scheduled date (not from when it fired), so it does not drift; a late
/// timer fires once and skips the dates it missed. Timers fire in date order, ties in
/// scheduling order.
///
/// The run loop keeps a scheduled timer alive until it is invalidated or, when it does not
/// repeat, has fired; the returned pointer may be dropped. Invalidating releases the callback,
/// which breaks cycles through a callback that captures its own timer.
///
/// Main thread only (the run loop's thread). Scheduled on another thread, a timer is returned
/// already invalid; `invalidate` called on another thread is forwarded to the main thread.
class VLX_EXPORT VLXTimer : public VLXObject {
public:
    using Callback = std::function<void(VLXTimer&)>;

    /// The smallest interval of a repeating timer, so that it cannot fire every turn of a loop
    /// that is driven faster than the clock moves.
    static constexpr double kMinimumRepeatingInterval = 0.0001;

    /// Schedules a timer on the main run loop, first firing `interval` seconds from
    /// `VLXClock::now()`.
    ///
    /// Intervals that are NaN, negative or zero become 0 for a one-shot timer (it fires in the
    /// next turn) and `kMinimumRepeatingInterval` for a repeating one; smaller positive
    /// intervals of repeating timers are raised to it too. An infinite interval gives a valid
    /// timer that never fires. An empty callback is allowed (the timer fires doing nothing).
    static std::shared_ptr<VLXTimer> scheduledTimer(double interval, bool repeats,
                                                    Callback callback);

    /// Stops the timer for good and releases its callback. Idempotent; safe inside the timer's
    /// own callback (the callback finishes running first and is released when it returns).
    void invalidate();
    /// True until invalidated; a one-shot timer also turns invalid once it has fired.
    bool isValid() const { return m_valid; }
    /// When the timer fires next (for an invalid timer, the last date it had).
    double fireDate() const { return m_fireDate; }
    /// The interval in effect after the adjustments made by `scheduledTimer`.
    double timeInterval() const { return m_interval; }
    bool repeats() const { return m_repeats; }

    std::string description() const override;

    ~VLXTimer() override;

protected:
    VLXTimer(double interval, bool repeats, Callback callback);

private:
    friend class VLXRunLoop;

    // Runs the callback for the turn at `now` and reschedules or invalidates.
    void fire(double now);

    double m_interval = 0;
    double m_fireDate = 0;
    bool m_repeats = false;
    bool m_valid = true;
    bool m_scheduled = false;
    std::uint64_t m_order = 0;
    Callback m_callback;
};
