#pragma once

// The library is built with hidden symbol visibility: only declarations marked VLX_EXPORT are
// exported from the shared library. Mark every public class (so its vtable and type info are
// shared with the host) and every public function that is not inline or a template.
#if defined(__GNUC__) || defined(__clang__)
#define VLX_EXPORT __attribute__((visibility("default")))
#else
#define VLX_EXPORT
#endif
