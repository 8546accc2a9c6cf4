#pragma once

// The checks that keep the run loop, timers and transactions defined under odd input: calls
// from the wrong thread, nonsense intervals and dates far out of range.
namespace vlx::detail {

/// True on the run loop's thread: the first thread that used a main-thread-only function of the
/// run loop, its timers or transactions (`post` does not count). Once chosen it never changes.
/// Main-thread-only calls made on any other thread are ignored or forwarded to the loop with
/// `post`, as each function documents, so that they never race with the loop.
bool isLoopThread();

/// The interval a timer uses for a requested one: NaN, zero and negative requests give 0 for a
/// one-shot timer and `minimumRepeating` for a repeating one, which is also the least interval
/// of any repeating timer; +∞ stays (the timer never fires).
double timerInterval(double requested, bool repeats, double minimumRepeating);

/// The next date of a repeating timer scheduled at `date` every `interval` seconds that fired in
/// the turn at `now`: `date + interval` when that is after `now`, else the first date of the
/// schedule after `now` (the missed ones are skipped). Always strictly after `now`, even where
/// adding the interval does not change a huge date; +∞ when the schedule leaves the doubles or
/// an input is not finite.
double nextFireDate(double date, double interval, double now);

/// How long `runUntil` on the real clock may wait from `now`: until the earlier of `target`
/// and `nextTimer`, at most `slice` seconds, 0 when nothing is left to wait for or an input is
/// NaN.
double waitDuration(double now, double target, double nextTimer, double slice);

}  // namespace vlx::detail
