#pragma once

#include <cstddef>

#include "platform/Exporta.h"

/// Tells the system that a big piece of memory, nothing of which has been touched yet, is going to be filled from end
/// to end: it may then give it in pages of megabytes. Ordinary pages are given one at a time, on the first touch of
/// each, and for a buffer that is filled once that costs as much as the filling. A hint: any piece will do, small ones
/// are left alone, and nothing can fail.
URDIMBRE_API void PrefierePaginasGrandes(void* desde, std::size_t bytes) noexcept;
