#pragma once

#include <VelmarCoreUI/VLXExport.h>

/// Media time, in seconds, for animations, timers and the run loop.
///
/// Real by default: a steady (monotonic) clock counted from process start, unaffected by changes
/// of the wall clock. Tests and scripted hosts switch it to manual time and step it, so that
/// everything driven by the clock is deterministic and nothing has to sleep.
///
/// Main thread only, like everything that reads it.
class VLX_EXPORT VLXClock {
public:
    /// The current media time.
    static double now();

    /// Switches to manual time at `t`. Non-finite values are ignored.
    static void setManual(double t);
    /// Moves time by `dt` (negative steps go back). On the real clock, first switches to manual
    /// time at the current reading. Non-finite steps are ignored.
    static void advance(double dt);
    /// Returns to the real clock; `now()` jumps to the real reading.
    static void setReal();
    static bool isManual();

    VLXClock() = delete;
};
