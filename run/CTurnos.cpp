#include "run/CTurnos.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace Meseta47 {

namespace {

CTurnos::CTestigo elTestigo = nullptr;
int elTramoSolo = CTurnos::kTramoSolo;

CTurnos::CJuicio Cuenta(unsigned mitad, char const* paso) {
  return elTestigo != nullptr ? elTestigo(mitad, paso) : CTurnos::POR_EL_RELOJ;
}

/// A wait is as short as some hundred points as a rule. A thread looks a moment, then lets others have the processor,
/// and soon sleeps: the one that it waits for may have none. All but the first moment is added to `suma`.
template <class CReloj>
class CEspera {
 public:
  explicit CEspera(typename CReloj::duration& laSuma) : suma(laSuma) {}
  CEspera(CEspera const&) = delete;
  CEspera& operator=(CEspera const&) = delete;
  ~CEspera() {
    if (veces > kMiradas) suma += CReloj::now() - desde;
  }

  void UnRato() {
    ++veces;
    if (veces <= kMiradas) return;
    if (veces == kMiradas + 1) desde = CReloj::now();
    if (veces <= kMiradas + kCesiones) {
      std::this_thread::yield();
    } else {
      std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
  }

 private:
  // More looks gain nothing, and cost where the other thread has no processor.
  static constexpr unsigned kMiradas = 64, kCesiones = 400;

  typename CReloj::duration& suma;
  typename CReloj::time_point desde;
  unsigned veces = 0;
};

}  // namespace

void CTurnos::Observa(CTestigo testigo, int tramoSolo) {
  elTestigo = testigo;
  elTramoSolo = tramoSolo;
}

int CTurnos::TramoSolo() { return elTramoSolo; }

void CTurnos::VanLosDos(int numero) {
  vaUno = false;
  encuentro = kAcabada;
  for (CPuesto& puesto : puestos) {
    puesto.numero = numero;
    puesto.quieta = false;
    puesto.hastaDonde = 0;
    puesto.esperado = {};
    puesto.desde = CReloj::now();
    puesto.llamada = elTestigo != nullptr ? unsigned{kTestigo} : 0U;
  }
}

void CTurnos::VaUno() {
  vaUno = true;
  encuentro = kAcabada;
  for (CPuesto& puesto : puestos) {
    puesto.hastaDonde = kAcabada;
    puesto.llamada = elTestigo != nullptr ? unsigned{kTestigo} : 0U;
  }
}

/// What a half does at a number when it is called, or has used up its leave.
bool CTurnos::Atiende(unsigned mitad, int numero) {
  Cuenta(mitad, "begins");
  CPuesto& mio = puestos[mitad];
  if ((mio.llamada.load(std::memory_order_acquire) & kTurno) != 0) CedePaso(mitad);
  if (numero > mio.hastaDonde) {
    // Standing still meanwhile, as in any wait: the other may want its turn to come so far.
    mio.quieta.store(true);
    const bool va = EsperaA(mitad, [&] { return numero - kVentaja <= Numero(1 - mitad) || numero >= Encuentro(); });
    mio.hastaDonde = std::min(Numero(1 - mitad), kAcabada - kVentaja) + kVentaja;
    mio.quieta.store(false);
    if (!va) return false;
    if ((mio.llamada.load() & kTurno) != 0) CedePaso(mitad);
  }
  if (numero < Encuentro()) return !HaParado();
  mio.quieta.store(true);  // from now on; the other may be a few points behind
  return false;
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
  if (vaUno) return !HaParado();
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
  if (va && EsperaDemasiado(mitad)) FijaEncuentro(suyo.numero.load());
  return va;
}

/// Whether the half has spent more time in waits than two threads gain.
bool CTurnos::EsperaDemasiado(unsigned mitad) {
  // Each does some eight tenths of what one does alone, so a third of the time in waits is where nothing is gained. It
  // is judged when there is enough to judge by: what a scheduler takes a processor away for.
  constexpr auto kJuicio = std::chrono::milliseconds(3);
  constexpr int kParte = 3;
  const CJuicio juicio = Cuenta(mitad, "weighs its waits");
  if (juicio != POR_EL_RELOJ) return juicio == ESPERAN_DEMASIADO;
  CPuesto& mio = puestos[mitad];
  if (mio.esperado < kJuicio) return false;
  const CReloj::time_point ahora = CReloj::now();
  const bool demasiado = mio.esperado * kParte > ahora - mio.desde;
  mio.desde = ahora;
  mio.esperado = {};
  return demasiado;
}

/// In turn: the other half is at this number, and may be in the midst of its point. Both stop behind it.
void CTurnos::FijaEncuentro(int numero) {
  if (numero == kAcabada || Encuentro() != kAcabada) return;
  encuentro = numero + 1;
  for (CPuesto& puesto : puestos) puesto.llamada.fetch_or(kEncuentro);
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
  CEspera<CReloj> espera(puestos[mitad].esperado);
  while (!condicion()) {
    if (HaParado()) return false;
    Cuenta(mitad, "waits");
    espera.UnRato();
  }
  return !HaParado();
}

}  // namespace Meseta47
