#include "run/CTurnos.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace Meseta47 {

namespace {

CTurnos::CTestigo elTestigo = nullptr;

void Cuenta(unsigned mitad, char const* paso) {
  if (elTestigo != nullptr) elTestigo(mitad, paso);
}

/// A wait is as short as some hundred points as a rule. A thread looks a moment, then lets others have the processor,
/// and soon sleeps: the one that it waits for may have none.
class CEspera {
 public:
  void UnRato() {
    // More looks gain nothing, and cost where the other thread has no processor.
    constexpr unsigned kMiradas = 64, kCesiones = 400;
    ++veces;
    if (veces <= kMiradas) return;
    if (veces <= kMiradas + kCesiones) {
      std::this_thread::yield();
    } else {
      std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
  }

 private:
  unsigned veces = 0;
};

}  // namespace

void CTurnos::Observa(CTestigo testigo) { elTestigo = testigo; }

CTurnos::CTurnos() {
  if (elTestigo == nullptr) return;
  for (CPuesto& puesto : puestos) puesto.llamada = kTestigo;
}

/// What a half does at a number when it is called, or has used up its leave.
bool CTurnos::Atiende(unsigned mitad, int numero) {
  Cuenta(mitad, "begins");
  CPuesto& mio = puestos[mitad];
  if ((mio.llamada.load(std::memory_order_acquire) & kTurno) != 0) CedePaso(mitad);
  if (numero > mio.hastaDonde) {
    // Standing still meanwhile, as in any wait: the other may want its turn to come so far.
    mio.quieta.store(true);
    const bool va = EsperaA(mitad, [&] { return numero - kVentaja <= Numero(1 - mitad); });
    mio.hastaDonde = std::min(Numero(1 - mitad), kAcabada - kVentaja) + kVentaja;
    mio.quieta.store(false);
    if (!va) return false;
    if ((mio.llamada.load() & kTurno) != 0) CedePaso(mitad);
  }
  return !HaParado();
}

/// Stands still until the other half has had its turn. The flag goes down before the call is looked at again, and the
/// other calls before it looks at the flag: one of the two sees the other.
void CTurnos::CedePaso(unsigned mitad) {
  CPuesto& mio = puestos[mitad];
  do {
    mio.quieta.store(true);
    Cuenta(mitad, "stands still");
    EsperaA(mitad, [&] { return (mio.llamada.load() & kTurno) == 0; });
    mio.quieta.store(false);
  } while ((mio.llamada.load() & kTurno) != 0 && !HaParado());
}

bool CTurnos::Toma(unsigned mitad) {
  CPuesto &mio = puestos[mitad], &suyo = puestos[1 - mitad];
  const int numero = mio.numero.load(std::memory_order_relaxed);
  Cuenta(mitad, "asks for its turn");
  mio.quieta.store(true);
  bool va = EsperaA(mitad, [&] { return suyo.numero.load() > numero; });
  if (va) {
    suyo.llamada.fetch_or(kTurno);
    va = EsperaA(mitad, [&] { return suyo.quieta.load(); });
  }
  mio.quieta.store(false);
  Cuenta(mitad, "has its turn");
  return va;
}

void CTurnos::Suelta(unsigned mitad) {
  Cuenta(mitad, "gives its turn back");
  puestos[1 - mitad].llamada.fetch_and(~static_cast<unsigned>(kTurno));
}

void CTurnos::Acaba(unsigned mitad) {
  puestos[mitad].numero.store(kAcabada);
  puestos[mitad].quieta.store(true);
}

int CTurnos::HechoHasta() const { return std::min(Numero(0), Numero(1)); }

void CTurnos::Para() noexcept {
  parado.store(true);
  for (CPuesto& puesto : puestos) puesto.llamada.fetch_or(kFin);
}

/// False when the work is to end.
template <class F>
bool CTurnos::EsperaA(unsigned mitad, F&& condicion) {
  CEspera espera;
  while (!condicion()) {
    if (HaParado()) return false;
    Cuenta(mitad, "waits");
    espera.UnRato();
  }
  return !HaParado();
}

}  // namespace Meseta47
