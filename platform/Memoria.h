#pragma once

#include <cstddef>

#include "platform/Exporta.h"

/// Has the system lay out memory that was reserved and is about to be filled: to do it page by page as they are met
/// costs as much as the filling, and falls to the thread that fills. Different parts may be laid out by several
/// threads. A hint that changes no contents; any address will do, and nothing can fail.
URDIMBRE_API void Puebla(void* desde, std::size_t bytes) noexcept;

/// Has the system lay out memory that is going to be used, all of it, in large pages where it has them. A hint like the
/// other.
URDIMBRE_API void EnPaginasGrandes(void* desde, std::size_t bytes) noexcept;
