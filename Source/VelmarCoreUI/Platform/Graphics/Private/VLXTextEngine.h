#pragma once

#include <cstdint>

// Pango's own declaration, so users of the counters need no Pango include path.
typedef struct _PangoContext PangoContext;

// The per-thread text engine behind measuring and drawing text.
namespace vlx::detail {

/// The calling thread's Pango context for measuring and laying out text: its own PangoCairo
/// font map at 72 dpi, metrics unhinted, hint style none, glyph positions not rounded. Made on
/// first use per thread and released when the thread ends.
PangoContext* threadPangoContext();

/// How many expensive text objects were made so far in the process, to check that measuring
/// reuses them (font maps and contexts per thread, font descriptions per distinct font,
/// layouts per thread).
struct VLXTextEngineCounters {
    std::uint64_t fontMapsCreated = 0;
    std::uint64_t fontDescriptionsCreated = 0;
    std::uint64_t layoutsCreated = 0;
};
VLXTextEngineCounters textEngineCounters();
/// Counts one layout made by the text code.
void countLayoutCreated();

}  // namespace vlx::detail
