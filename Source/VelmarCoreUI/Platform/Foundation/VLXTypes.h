#pragma once

#include <cstdint>

/// Platform integer types. Lengths and coordinates are plain `double`, time intervals are
/// `double` seconds, booleans are `bool`.
using VLXInteger = std::int64_t;
using VLXUInteger = std::uint64_t;
using VLXTimeInterval = double;

/// "Not found" marker for indexes and range locations.
inline constexpr VLXUInteger VLXNotFound = static_cast<VLXUInteger>(INT64_MAX);
