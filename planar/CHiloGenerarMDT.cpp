#include "planar/CHiloGenerarMDT.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "model/geometry/CRango.h"
#include "model/terrain/CTIN.h"
#include "platform/Anticipa.h"
#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"
#include "platform/Manejadores.h"

namespace Meseta47 {

void AnulaLadosRepetidos(std::vector<CLado>& lados) {
  for (std::size_t i = 1; i < lados.size(); ++i) {
    if (!(lados[i] == lados[i - 1])) continue;
    lados[i - 1] = lados[i] = CLado(0, 0, 0, 0);
    ++i;
  }
  std::sort(lados.begin(), lados.end());
}

CHiloGenerarMDT::CHiloGenerarMDT(CHiloGenerarMDT const& o) { *this = o; }

CHiloGenerarMDT& CHiloGenerarMDT::operator=(CHiloGenerarMDT const& o) {
  indice = o.indice;
  evento = o.evento;
  longitud = o.longitud;
  modelo = o.modelo;
  mapa = o.mapa;
  lado2 = o.lado2;
  confia = o.confia;
  alturas = o.alturas;
  intensidades = o.intensidades;
  pendientes = o.pendientes;
  seccion = o.seccion;
  bytes = o.bytes;
  terminados = o.terminados;
  lados = o.lados;
  ladoMasLargo = o.ladoMasLargo;
  rechazos = o.rechazos;
  falloDeDisco = o.falloDeDisco;
  faltoMemoria = o.faltoMemoria;
  return *this;
}

CHiloGenerarMDT::~CHiloGenerarMDT() { Stop(); }

bool CHiloGenerarMDT::Start(unsigned elIndice, CEvent* elEvento, CString const& ruta, CTIN* elModelo,
                            std::vector<int> const* elMapa, double elLado2, unsigned long long* laLongitud,
                            unsigned parte, CRango const* rangoAlturas, CRango const* rangoIntensidades,
                            CRango const* rangoPendientes, CCriticalSection* laSeccion,
                            std::atomic<std::uint64_t>* losBytes, std::atomic<long>* losTerminados) {
  indice = elIndice;
  evento = elEvento;
  modelo = elModelo;
  mapa = elMapa;
  lado2 = elLado2;
  longitud = laLongitud;
  alturas = rangoAlturas;
  intensidades = rangoIntensidades;
  pendientes = rangoPendientes;
  seccion = laSeccion;
  bytes = losBytes;
  terminados = losTerminados;
  if (!lector.Abre(ruta)) return false;
  lector.Situa(elIndice, parte, *longitud);
  hilo = CreateThread(nullptr, 0, &Rutina, this, 0, nullptr);
  return hilo != nullptr;
}

void CHiloGenerarMDT::Stop() {
  if (hilo == nullptr) return;
  WaitForSingleObject(hilo, INFINITE);
  CloseHandle(hilo);
  hilo = nullptr;
}

void CHiloGenerarMDT::Suspender() {
  if (hilo != nullptr) SuspendThread(hilo);
}
void CHiloGenerarMDT::Reanudar() {
  if (hilo != nullptr) ResumeThread(hilo);
}
void CHiloGenerarMDT::SetPriority(int prioridad) {
  if (hilo != nullptr) SetThreadPriority(hilo, prioridad);
}

unsigned long CHiloGenerarMDT::Rutina(void* yo) {
  static_cast<CHiloGenerarMDT*>(yo)->Run();
  return 0;
}

void CHiloGenerarMDT::Run() {
  ladoMasLargo = 0;
  while (!abandona.load(std::memory_order_relaxed)) {
    CompruebaSuspension();
    const auto triples = lector.Siguiente();
    bytes->fetch_add(triples.size_bytes(), std::memory_order_relaxed);
    if (triples.empty() || !Procesa(triples)) break;
  }
  falloDeDisco = lector.HayError();
  std::sort(lados.begin(), lados.end());
  AnulaLadosRepetidos(lados);
  terminados->fetch_add(1);
  evento->SetEvent();
}

/// Points in a row of the file are neighbours in plan and far apart in memory: all are on their way from there before
/// the first is needed. False when there is no memory for a triangle.
bool CHiloGenerarMDT::Procesa(std::span<CTriple const> triples) {
  CPuntos3 puntos[kTanda];
  for (std::size_t i = 0; i < triples.size(); ++i) {
    for (std::size_t v = 0; v < 3; ++v) {
      puntos[i][v] = PuntoDe(triples[i][v]);
      if (!confia) AnticipaLectura(puntos[i][v]);
    }
  }
  try {
    for (std::size_t i = 0; i < triples.size(); ++i) Procesa(triples[i], puntos[i]);
  } catch (std::bad_alloc const&) {
    faltoMemoria = true;
  }
  return !faltoMemoria;
}

CPuntoTIN* CHiloGenerarMDT::PuntoDe(std::int32_t numero) const {
  const auto i = static_cast<std::size_t>(static_cast<std::int64_t>(numero) - 1);
  return i < mapa->size() ? modelo->puntos.at(static_cast<unsigned>((*mapa)[i] - 1)) : nullptr;
}

void CHiloGenerarMDT::Guarda(CPuntoTIN const* a, CPuntoTIN const* b) {
  const unsigned i = modelo->puntos.Indice(a), j = modelo->puntos.Indice(b);
  lados.emplace_back(std::min(i, j), std::max(i, j), -1, 0);
}

/// Rejects the triangle when the quantity differs too much along a side; the sides that stay within the range and the
/// length are kept.
template <class F>
bool CHiloGenerarMDT::RechazaPorDiferencia(CRango const& rango, CTriangulo const& t, double d12, double d23, double d31,
                                           F&& valor) {
  const bool bien12 = rango.EsValido(valor(*t.P1), valor(*t.P2)) != 0;
  const bool bien23 = rango.EsValido(valor(*t.P2), valor(*t.P3)) != 0;
  const bool bien31 = rango.EsValido(valor(*t.P1), valor(*t.P3)) != 0;
  if (bien12 && bien23 && bien31) return false;
  if (bien12 && d12 <= lado2) Guarda(t.P1, t.P2);
  if (bien23 && d23 <= lado2) Guarda(t.P2, t.P3);
  if (bien31 && d31 <= lado2) Guarda(t.P3, t.P1);
  return true;
}

void CHiloGenerarMDT::Procesa(CTriple const& numeros, CPuntos3 const& puntos) {
  if (TocaElMarco(numeros)) {
    ++rechazos.delMarco;
    ProcesaDelMarco(numeros, puntos);
    return;
  }
  if (confia) {
    Inserta(puntos);
    return;
  }
  CTriangulo t(puntos[0], puntos[1], puntos[2], -1, -1, -1);
  if (!t.EsValido()) return;
  const double d12 = t.Distancia2_12(false), d23 = t.Distancia2_23(false), d31 = t.Distancia2_31(false);
  const auto guardaCortos = [&] {
    if (d12 <= lado2) Guarda(t.P1, t.P2);
    if (d23 <= lado2) Guarda(t.P2, t.P3);
    if (d31 <= lado2) Guarda(t.P3, t.P1);
  };
  if (pendientes != nullptr && pendientes->EsValido(t.Pendiente()) == 0) {
    ++rechazos.porPendiente;
    guardaCortos();
    return;
  }
  const auto altura = [](CPuntoTIN const& p) { return static_cast<double>(p.z); };
  if (alturas != nullptr && RechazaPorDiferencia(*alturas, t, d12, d23, d31, altura)) {
    ++rechazos.porAltura;
    return;
  }
  const auto intensidad = [](CPuntoTIN const& p) { return static_cast<double>(p.intensidad); };
  if (intensidades != nullptr && RechazaPorDiferencia(*intensidades, t, d12, d23, d31, intensidad)) {
    ++rechazos.porIntensidad;
    return;
  }
  ladoMasLargo = std::max({ladoMasLargo, d12, d23, d31});  // before the length is looked at: it may pass the limit
  if (d12 > lado2 || d23 > lado2 || d31 > lado2) {
    ++rechazos.porLongitud;
    guardaCortos();
    return;
  }
  t.ColocaPuntos(true);
  modelo->Inserta(t, false, false, false);
}

/// Where points stand in order, the least of a triangle is the one that stands first.
void CHiloGenerarMDT::Inserta(CPuntos3 puntos) {
  std::rotate(puntos.begin(), std::min_element(puntos.begin(), puntos.end()), puntos.end());
  CTriangulo t(puntos[0], puntos[1], puntos[2], -1, -1, -1);
  modelo->Inserta(t, false, false, false);
}

/// A triangle at the frame gives its one real side to the outline.
void CHiloGenerarMDT::ProcesaDelMarco(CTriple const& numeros, CPuntos3 const& puntos) {
  const auto [a, b, c] = numeros;
  CPuntoTIN const *p = nullptr, *q = nullptr;
  if (a >= 0 && b >= 0) {
    p = puntos[0], q = puntos[1];
  } else if (b < 0 && a >= 0 && c >= 1) {
    p = puntos[0], q = puntos[2];
  } else if (a < 0 && b >= 1 && c >= 1) {
    p = puntos[1], q = puntos[2];
  }
  if (p == nullptr || q == nullptr || p->Distancia2(*q, 0) > lado2) return;
  if (alturas != nullptr && alturas->EsValido(p->z, q->z) == 0) return;
  Guarda(p, q);
}

}  // namespace Meseta47
