#pragma once

#include <iosfwd>

namespace vlx::detail {
/// Shortest of "%.15g" / "%.17g" that reads back to the same double ("nan", "inf" as C prints).
void printNumber(std::ostream& os, double value);
}  // namespace vlx::detail
