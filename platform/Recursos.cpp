#include "platform/Recursos.h"

#include <algorithm>
#include <atomic>

#include "platform/Ventanas.h"

namespace {

std::atomic<HINSTANCE> primero{nullptr};

}  // namespace

HINSTANCE AfxGetResourceHandle() { return primero.load(); }

void AfxSetResourceHandle(HINSTANCE modulo) { primero.store(modulo); }

HINSTANCE AfxFindResourceHandle(unsigned id, unsigned tipo) {
  const auto lo_tiene = [&](HINSTANCE modulo) { return sistema::TieneRecurso(modulo, id, tipo); };
  if (HINSTANCE const elegido = AfxGetResourceHandle(); elegido != nullptr && lo_tiene(elegido)) {
    return elegido;
  }
  auto const modulos = sistema::ModulosConRecursos();
  const auto quien = std::ranges::find_if(modulos, lo_tiene);
  return quien == modulos.end() ? nullptr : *quien;
}

HICON CargaIcono(HINSTANCE modulo, unsigned id) { return sistema::LeeIcono(modulo, id); }
