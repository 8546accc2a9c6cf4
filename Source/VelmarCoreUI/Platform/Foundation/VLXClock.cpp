#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>

#include <chrono>
#include <cmath>

namespace {

struct ClockState {
    bool manual = false;
    double manualTime = 0;
};

ClockState& state() {
    static ClockState shared;
    return shared;
}

std::chrono::steady_clock::time_point processStart() {
    static const auto start = std::chrono::steady_clock::now();
    return start;
}

// Reads the start during static initialisation so that real time counts from process start
// rather than from the first call.
[[maybe_unused]] const auto kStartedAt = processStart();

double realNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - processStart()).count();
}

}  // namespace

double VLXClock::now() {
    return state().manual ? state().manualTime : realNow();
}

void VLXClock::setManual(double t) {
    if (!std::isfinite(t)) {
        return;
    }
    state().manual = true;
    state().manualTime = t;
}

void VLXClock::advance(double dt) {
    if (!std::isfinite(dt)) {
        return;
    }
    const double base = now();
    const double next = base + dt;
    if (std::isfinite(next)) {
        state().manual = true;
        state().manualTime = next;
    }
}

void VLXClock::setReal() {
    state().manual = false;
}

bool VLXClock::isManual() {
    return state().manual;
}
