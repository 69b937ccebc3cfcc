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

constinit thread_local CRellenoTIN::Ultimo CRellenoTIN::ultimo;

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

void CRellenoTIN::InsertaEnOtro(Terna const& terna) {
  const std::uint64_t hilo = MiHilo();
  const std::lock_guard guarda(cerrojo);
  // A thread that fills several models in turn comes back to the piece that it left. Only the newest of its pieces can
  // have room, and every piece before it is full.
  const auto mio = std::find_if(trozos.rbegin(), trozos.rend(), [hilo](auto const& t) { return t->hilo == hilo; });
  if (mio != trozos.rend() && (*mio)->Inserta(terna)) {
    ultimo = {numero, mio->get()};
    return;
  }
  trozos.push_back(std::make_unique<Trozo>(hilo));
  trozos.back()->Inserta(terna);
  ultimo = {numero, trozos.back().get()};
}

void CRellenoTIN::Copia(CRellenoTIN const& otro) {
  for (auto const& trozo : otro.trozos) {
    trozos.push_back(std::make_unique<Trozo>(0));  // nobody's: threads begin pieces of their own
    std::copy_n(trozo->ternas.get(), trozo->cuantos, trozos.back()->ternas.get());
    trozos.back()->cuantos = trozo->cuantos;
  }
}

}  // namespace Meseta47
