#pragma once

// Shared by the fuzz targets: invariant checks that stop the run with a message (libFuzzer then
// saves the input), and small readers over the fuzzer's bytes.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <fuzzer/FuzzedDataProvider.h>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

namespace vlxfuzz {

[[noreturn]] inline void fail(const char* file, int line, const char* condition,
                              const std::string& detail) {
    std::fprintf(stderr, "%s:%d: invariant failed: %s\n%s\n", file, line, condition,
                 detail.c_str());
    std::abort();
}

// A double from a set that favours the awkward values, or any bit pattern.
inline double edgyDouble(FuzzedDataProvider& data) {
    static constexpr double kEdges[] = {0.0,  -0.0,  1.0,   -1.0,   0.5,    1e-9,   -1e-9,
                                        1e9,  -1e9,  1e300, -1e300, 1e-300, 255.0,  256.0,
                                        1e15, -1e15, 1e14,  -1e14,  4.6e12, -4.6e12};
    switch (data.ConsumeIntegralInRange<int>(0, 4)) {
        case 0:
            return kEdges[data.ConsumeIntegralInRange<std::size_t>(0, std::size(kEdges) - 1)];
        case 1:
            return std::nan("");
        case 2:
            return data.ConsumeBool() ? HUGE_VAL : -HUGE_VAL;
        case 3:
            return data.ConsumeFloatingPointInRange<double>(-1000.0, 1000.0);
        default:
            return data.ConsumeFloatingPoint<double>();
    }
}

inline std::string describe(const VLXValue& value) {
    std::string text = value.description();
    if (text.size() > 2000) {
        text.resize(2000);
        text += "…";
    }
    return text;
}

}  // namespace vlxfuzz

#define VLX_FUZZ_CHECK(condition, detail)                              \
    do {                                                               \
        if (!(condition)) {                                            \
            ::vlxfuzz::fail(__FILE__, __LINE__, #condition, (detail)); \
        }                                                              \
    } while (false)
