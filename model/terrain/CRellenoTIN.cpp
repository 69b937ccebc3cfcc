#include "model/terrain/CRellenoTIN.h"

#include <algorithm>
#include <atomic>

namespace Meseta47 {

namespace {

std::uint64_t NumeroNuevo() {
  static std::atomic<std::uint64_t> ultimo{0};
  return ultimo.fetch_add(1, std::memory_order_relaxed) + 1;
}

std::uint64_t MiHilo() {
  static thread_local const std::uint64_t mio = NumeroNuevo();
  return mio;
}

}  // namespace

CRellenoTIN::CRellenoTIN() : numero(NumeroNuevo()) {}

CRellenoTIN::CRellenoTIN(CRellenoTIN const& otro) : numero(NumeroNuevo()) { Copia(otro); }

CRellenoTIN& CRellenoTIN::operator=(CRellenoTIN const& otro) {
  CRellenoTIN copia(otro);
  Toma(copia);
  return *this;
}

void CRellenoTIN::Toma(CRellenoTIN& otro) noexcept {
  trozos.swap(otro.trozos);
  otro.trozos.clear();
  numero = NumeroNuevo();
  otro.numero = NumeroNuevo();
}

std::uint64_t CRellenoTIN::Cantidad() const {
  std::uint64_t suma = 0;
  for (auto const& trozo : trozos) suma += trozo->cuantos;
  return suma;
}

std::vector<std::span<Terna const>> CRellenoTIN::Trozos() const {
  std::vector<std::span<Terna const>> todos;
  for (auto const& trozo : trozos) todos.emplace_back(trozo->ternas.get(), trozo->cuantos);
  return todos;
}

void CRellenoTIN::Vacia() {
  trozos.clear();
  numero = NumeroNuevo();
}

void CRellenoTIN::Inserta(Terna const& terna) {
  // The piece that the thread wrote to last, and the filling that it belongs to.
  static constinit thread_local std::uint64_t relleno = 0;
  static constinit thread_local Trozo* trozo = nullptr;
  if (relleno == numero && trozo->Inserta(terna)) return;
  trozo = OtroTrozo();
  relleno = numero;
  trozo->Inserta(terna);
}

// A piece with room. A thread that fills several models in turn comes back to the piece that it left. Only the newest
// of its pieces can have room, and every piece before it is full.
CRellenoTIN::Trozo* CRellenoTIN::OtroTrozo() {
  const std::uint64_t hilo = MiHilo();
  const std::lock_guard guarda(cerrojo);
  const auto mio = std::find_if(trozos.rbegin(), trozos.rend(), [hilo](auto const& t) { return t->hilo == hilo; });
  if (mio != trozos.rend() && (*mio)->cuantos < Trozo::kCabida) return mio->get();
  trozos.push_back(std::make_unique<Trozo>(hilo));
  return trozos.back().get();
}

void CRellenoTIN::Copia(CRellenoTIN const& otro) {
  for (auto const& trozo : otro.trozos) {
    trozos.push_back(std::make_unique<Trozo>(0));  // nobody's: threads begin pieces of their own
    std::copy_n(trozo->ternas.get(), trozo->cuantos, trozos.back()->ternas.get());
    trozos.back()->cuantos = trozo->cuantos;
  }
}

}  // namespace Meseta47
