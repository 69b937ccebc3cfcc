#include "platform/Memoria.h"

#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

void PrefierePaginasGrandes([[maybe_unused]] void* desde, [[maybe_unused]] std::size_t bytes) noexcept {
#if defined(MADV_HUGEPAGE)
  constexpr std::size_t kPoco = std::size_t{4} << 20;  // two big pages of the usual size: one of them is whole
  if (bytes < kPoco) return;
  static const auto pagina = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  const auto sitio = reinterpret_cast<std::uintptr_t>(desde);
  const std::uintptr_t primera = (sitio + pagina - 1) / pagina * pagina, fin = (sitio + bytes) / pagina * pagina;
  ::madvise(reinterpret_cast<void*>(primera), fin - primera, MADV_HUGEPAGE);
#endif
}
