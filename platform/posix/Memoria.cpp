#include "platform/Memoria.h"

#include <memory>
#include <sys/mman.h>
#include <unistd.h>

void Puebla([[maybe_unused]] void* desde, [[maybe_unused]] std::size_t bytes) noexcept {
#ifdef MADV_POPULATE_WRITE
  const auto pagina = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  if (desde == nullptr || std::align(pagina, pagina, desde, bytes) == nullptr) return;
  ::madvise(desde, bytes / pagina * pagina, MADV_POPULATE_WRITE);
#endif
}

void EnPaginasGrandes([[maybe_unused]] void* desde, [[maybe_unused]] std::size_t bytes) noexcept {
#ifdef MADV_HUGEPAGE
  ::madvise(desde, bytes, MADV_HUGEPAGE);
#endif
}
