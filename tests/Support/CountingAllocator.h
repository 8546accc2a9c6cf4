#pragma once

// Counts heap allocations through the replaceable global operator new, for tests that check that
// a path allocates nothing. Include it in exactly one file of a test program: it defines that
// program's global allocation functions.
#include <atomic>
#include <cstdlib>
#include <new>

namespace test_support {
inline std::atomic<long> allocationCount{0};
}  // namespace test_support

void* operator new(std::size_t size) {
    test_support::allocationCount.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size == 0 ? 1 : size)) {
        return p;
    }
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    test_support::allocationCount.fetch_add(1, std::memory_order_relaxed);
    return std::malloc(size == 0 ? 1 : size);
}

// GCC 12 takes the frees below for frees of memory from its built-in operator new once they are
// inlined, and warns; here operator new is this malloc.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

void operator delete(void* p, const std::nothrow_t&) noexcept {
    std::free(p);
}

void operator delete(void* p) noexcept {
    std::free(p);
}

void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}

#pragma GCC diagnostic pop
