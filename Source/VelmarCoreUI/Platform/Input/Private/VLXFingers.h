#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>

// What the recogniser kinds do with the fingers they follow.
namespace vlx::detail {

/// A finger and where it came down (window coordinates), for kinds that limit movement.
struct HeldFinger {
    std::shared_ptr<VLXTouch> touch;
    VLXPoint down;
};

inline HeldFinger* findFinger(std::vector<HeldFinger>& fingers, const VLXTouch* touch) {
    auto it = std::find_if(fingers.begin(), fingers.end(),
                           [touch](const HeldFinger& f) { return f.touch.get() == touch; });
    return it == fingers.end() ? nullptr : &*it;
}

/// Invalidates and forgets `timer` (nothing when there is none).
inline void stopTimer(std::shared_ptr<VLXTimer>& timer) {
    if (timer) {
        timer->invalidate();
        timer.reset();
    }
}

inline bool containsTouch(const VLXTouchSet& fingers, const VLXTouch* touch) {
    return std::any_of(fingers.begin(), fingers.end(),
                       [touch](const auto& finger) { return finger.get() == touch; });
}

/// True when one of `touches` is among `fingers`.
inline bool containsAnyTouch(const VLXTouchSet& fingers, const VLXTouchSet& touches) {
    return std::any_of(touches.begin(), touches.end(), [&fingers](const auto& touch) {
        return touch && containsTouch(fingers, touch.get());
    });
}

inline void removeTouches(VLXTouchSet& fingers, const VLXTouchSet& touches) {
    std::erase_if(fingers, [&touches](const auto& finger) {
        return std::find(touches.begin(), touches.end(), finger) != touches.end();
    });
}

/// Where a velocity over recent `samples` (oldest first, each with a `time`, at least two)
/// starts: the oldest within `window` seconds of the last, else the one just before the last.
template <class Samples>
std::size_t velocityStart(const Samples& samples, double window) {
    const double last = samples.back().time;
    std::size_t from = samples.size() - 2;
    while (from > 0 && last - samples[from - 1].time <= window) {
        --from;
    }
    return from;
}

/// The latest timestamp among `touches`, else the event's.
inline double latestTime(const VLXTouchSet& touches, const VLXEvent& event) {
    double time = -INFINITY;
    for (const auto& touch : touches) {
        if (touch) {
            time = std::max(time, touch->timestamp());
        }
    }
    return std::isfinite(time) ? time : event.timestamp();
}

}  // namespace vlx::detail
