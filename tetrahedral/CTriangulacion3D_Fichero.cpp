// The TIN3D file of a finished mesh (docs/formats.md): written in one go, read by a team of threads.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>
#include <limits>
#include <new>

#include "model/storage/Binario.h"
#include "model/terrain/CHiloLeerPuntos.h"
#include "model/threads/CEquipo.h"
#include "model/threads/CMarcha.h"
#include "model/threads/IPorcentaje.h"
#include "platform/CFicheroParcial.h"
#include "platform/Procesadores.h"
#include "run/Fases.h"
#include "tetrahedral/CHiloLeerTetraedros.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeLee = 19018, kMensajeEscribe = 19022;
constexpr char kMagia[2][16] = {"Ondara-TIN3D-01", "Ondara-TIN3D-02"};
constexpr unsigned kBytesPunto = 12;

/// What is left of a file from here on.
std::uint64_t Resto(CFile& fichero) {
  const std::uint64_t longitud = fichero.GetLength(), lugar = fichero.GetPosition();
  return longitud > lugar ? longitud - lugar : 0;
}

/// Threads that read one file side by side, each through its own handle, and the wait for them.
template <class THilo>
class CLectores {
 public:
  explicit CLectores(unsigned cuantos) : equipo(cuantos, false) {
    while (hilos.size() < cuantos) hilos.emplace_back();
  }
  [[nodiscard]] bool Estan() const { return equipo.Estan(); }
  [[nodiscard]] unsigned Cuantos() const { return static_cast<unsigned>(hilos.size()); }
  THilo& operator[](unsigned i) { return hilos[i]; }
  CEvent& Evento(unsigned i) { return equipo[i]; }
  [[nodiscard]] auto begin() { return hilos.begin(); }
  [[nodiscard]] auto end() { return hilos.end(); }
  /// Until all are done; `sigue` is asked at once and every 40 ms, and its false ends the wait.
  template <class S>
  bool Espera(S&& sigue) {
    return sigue() && equipo.EsperaHasta([this] { return equipo.EsperaTodos(0); }, sigue);
  }

 private:
  CEquipo equipo;
  std::deque<THilo> hilos;  // destroyed first: that is what waits for them
};

}  // namespace

// --- which file

int CTriangulacion3D::VersionMDT(CFile* fichero) {
  char magia[sizeof kMagia[0]];
  if (fichero->Seek(0, CFile::begin) != 0 || fichero->Read(magia, sizeof magia) != sizeof magia) return 0;
  for (int version = 1; version <= 2; ++version) {
    if (std::memcmp(magia, kMagia[version - 1], sizeof magia) == 0) return version;
  }
  return 0;
}

bool CTriangulacion3D::EsFormatoMDT3D(CFile* fichero) { return VersionMDT(fichero) > 0; }

// --- writing

int CTriangulacion3D::Write(CString const& ruta, int version) {
  CFicheroParcial parcial(ruta);
  if (!parcial.EstaAbierto()) return kFicheroInaccesible;
  const int codigo = Write(&parcial.Fichero(), version);
  if (codigo != kHecho) return codigo;
  return parcial.Confirma() ? kHecho : kFicheroInaccesible;
}

int CTriangulacion3D::Write(CFile* elFichero, int version) {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) {
    porcentaje->Abre(nivelMensajes, 2, 0);
    porcentaje->Fase(nivelMensajes, kMensajeEscribe);
  }
  if (!EscribeCabecera(*elFichero, version)) return kFicheroInaccesible;
  if (const int codigo = EscribePuntos(*elFichero, version); codigo != kHecho) return codigo;
  if (porcentaje != nullptr) porcentaje->Fase(nivelMensajes, kMensajeEscribe);
  int siguiente = 0;
  setRaiz.SetIdentificadores(siguiente);
  if (!Escribe(*elFichero, static_cast<std::uint32_t>(siguiente))) return kFicheroInaccesible;
  CMarcha marcha(porcentaje, nivelMensajes, static_cast<unsigned>(siguiente));
  const int codigo = setRaiz.EscribeNodo(*elFichero, marcha);
  if (codigo != kHecho) return codigo;
  return elFichero->Flush() ? kHecho : kFicheroInaccesible;
}

/// A version below 1 names the second form and has no seed, so that nobody reads it right: hosts that ask for one get
/// what they always got.
bool CTriangulacion3D::EscribeCabecera(CFile& elFichero, int version) const {
  bool bien = Escribe(elFichero, kMagia[version == 1 ? 0 : 1]);
  if (version > 1) {
    bien = bien && Escribe(elFichero, semilla.precision);
    for (const double origen : semilla.origen) bien = bien && Escribe(elFichero, origen);
  }
  const CDataSemilla llana;
  return bien && maximas.Write(&elFichero, version == 1 ? semilla : llana, 0, FICHERO_NATIVO) &&
         Escribe(elFichero, longitudLimite);
}

int CTriangulacion3D::EscribePuntos(CFile& elFichero, int version) {
  IPorcentaje* porcentaje = Progreso();
  const auto cuantos = static_cast<unsigned>(puntos.size());
  unsigned valor = 0;
  if (version != 1) return puntos.Write(&elFichero, valor, cuantos + setRaiz.cantidad, porcentaje, nivelMensajes);
  if (!Escribe(elFichero, std::uint32_t{cuantos})) return kFicheroInaccesible;
  CMarcha marcha(porcentaje, nivelMensajes, cuantos + setRaiz.cantidad);
  for (CPuntoTIN const& p : puntos) {
    if (!marcha.Avanza()) return kCancelado;
    if (!p.Write(&elFichero, semilla, 0, FICHERO_NATIVO, 0, 3)) return kFicheroInaccesible;
  }
  return kHecho;
}

// --- reading

int CTriangulacion3D::Read(CString const& ruta, bool todo) {
  SueltaMalla();
  CFile lectura;
  if (!lectura.Open(ruta, CFile::modeRead | CFile::shareDenyNone)) return kFicheroInaccesible;
  const int codigo = Read(&lectura, todo);
  fichero = ruta;
  return codigo;
}

int CTriangulacion3D::Read(CFile* elFichero, bool) {
  const CSiSeRompe guarda([this] { SueltaMalla(); });
  SueltaMalla();
  const CDataSemilla antes = semilla;
  const int codigo = Lee(*elFichero);
  if (codigo != kHecho) {
    SueltaMalla();
    semilla = antes;
    return codigo;
  }
  ActualizaCantidades();
  return kHecho;
}

/// Back to an object without points; limit and parameters stay.
void CTriangulacion3D::SueltaMalla() {
  PreparaEnlace();
  divisiones.PreparaDivisiones(0, CMaximas<int>());
  primerosPuntos.clear();
  puntos = CSetPuntosMdt(0, 0);
  resumen = CResumenEspacial();
  Clear();
}

int CTriangulacion3D::Lee(CFile& elFichero) {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) {
    porcentaje->Abre(nivelMensajes, 3, 0);
    porcentaje->Fase(nivelMensajes, kMensajeLee);
  }
  const int version = VersionMDT(&elFichero);
  if (version < 1) return kFicheroInconsistente;
  if (const int codigo = LeeCabecera(elFichero, version); codigo != kHecho) return codigo;
  if (const int codigo = version == 1 ? LeePuntos(elFichero) : LeeBloquePuntos(elFichero); codigo != kHecho) {
    return codigo;
  }
  if (porcentaje != nullptr) porcentaje->Fase(nivelMensajes, kMensajeLee);
  return LeeArbol(elFichero);
}

int CTriangulacion3D::LeeCabecera(CFile& elFichero, int version) {
  if (version == 2) {
    CDataSemilla leida;
    bool va = Meseta47::Lee(elFichero, leida.precision);
    for (double& origen : leida.origen) va = va && Meseta47::Lee(elFichero, origen);
    if (!va) return kFicheroCortado;
    if (!std::all_of(std::begin(leida.origen), std::end(leida.origen), [](double o) { return std::isfinite(o); })) {
      return kFicheroInconsistente;
    }
    semilla = leida;
  }
  if (!maximas.Read(&elFichero, 1.0, FICHERO_NATIVO)) return kFicheroInaccesible;
  GeneraEsquinas();
  return Meseta47::Lee(elFichero, longitudLimite) ? kHecho : kFicheroCortado;
}

/// Bare points stand where their numbers tell, so that every processor reads its share.
int CTriangulacion3D::LeePuntos(CFile& elFichero) {
  std::uint32_t cuantos = 0;
  if (!Meseta47::Lee(elFichero, cuantos) || Resto(elFichero) / kBytesPunto < cuantos) return kFicheroCortado;
  puntos.reserve(std::uint64_t{cuantos} + puntos.reserva, maximas.Minimo.x, maximas.Maximo.x);
  puntos.resize(cuantos);
  cantidadPuntos = cuantos;

  const unsigned lectores = cuantos < NumeroProcesadores() ? 1 : NumeroProcesadores();
  const unsigned parte = cuantos / lectores;
  const std::uint64_t desde = elFichero.GetPosition();
  long leidos = 0;
  CCriticalSection seccion;
  CLectores<CHiloLeerPuntos> equipo(lectores);
  if (!equipo.Estan()) return kFicheroInconsistente;
  for (unsigned i = 0; i < lectores; ++i) {
    const unsigned suyos = i + 1 == lectores ? cuantos - i * parte : parte;
    equipo[i].Start(i, &equipo.Evento(i), &leidos, elFichero.GetFilePath(),
                    desde + std::uint64_t{i} * parte * kBytesPunto, suyos, i * parte, &puntos, &seccion);
  }
  IPorcentaje* porcentaje = Progreso();
  const bool sigue = equipo.Espera([&] {
    const CSingleLock cerrojo(&seccion, true);
    return porcentaje == nullptr ||
           porcentaje->Porcentaje(nivelMensajes, static_cast<unsigned long long>(leidos), cuantos, false) != 0;
  });
  if (!sigue) return kCancelado;
  const bool enteros = std::all_of(equipo.begin(), equipo.end(), [](auto const& h) { return h.EsCompleto(); });
  if (!enteros) return kFicheroInaccesible;
  const std::uint64_t detras = desde + std::uint64_t{cuantos} * kBytesPunto;
  return elFichero.Seek(static_cast<long long>(detras), CFile::begin) >= 0 ? kHecho : kFicheroInaccesible;
}

int CTriangulacion3D::LeeBloquePuntos(CFile& elFichero) {
  unsigned valor = 0;
  const auto total = static_cast<unsigned>(std::min<std::uint64_t>(Resto(elFichero) / 20, ~0U));
  if (const int codigo = puntos.Read(&elFichero, valor, total, Progreso(), nivelMensajes); codigo != kHecho) {
    return codigo;
  }
  if (puntos.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) return kFicheroInconsistente;
  cantidadPuntos = static_cast<std::uint32_t>(puntos.size());
  int lugar = 0;
  for (CPuntoTIN const& p : puntos) {
    ++lugar;
    if (p.num < 0) puntos.modificado = 1;
    if (p.num > 0 && p.num != lugar) return kFicheroInconsistente;
  }
  return kHecho;
}

int CTriangulacion3D::LeeArbol(CFile& elFichero) {
  std::uint32_t cuantos = 0;
  if (!Meseta47::Lee(elFichero, cuantos)) return kFicheroCortado;
  std::vector<CSetTetraedros*> sets;
  std::vector<unsigned long long> lugares;
  std::uint64_t suma = 0;
  int codigo = setRaiz.LeeCabeceras(elFichero, elFichero.GetLength(), sets, lugares, suma);
  if (codigo != kHecho) return codigo;
  if (suma != cuantos || suma > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max())) {
    return kFicheroInconsistente;
  }
  codigo = LeeTetraedros(elFichero.GetFilePath(), sets, lugares, cuantos);
  if (codigo != kHecho) return codigo;
  std::vector<CTetraedro*> todos;
  todos.reserve(cuantos);
  setRaiz.RellenaVectorPunteros(todos);
  CMarcha marcha(Progreso(), nivelMensajes, cuantos);
  codigo = CSetTetraedros::Resuelve(todos, puntos, esquinas, marcha);
  resumen.enlazados = cuantos;
  return codigo;
}

int CTriangulacion3D::LeeTetraedros(CString const& ruta, std::vector<CSetTetraedros*>& sets,
                                    std::vector<unsigned long long>& lugares, std::uint64_t total) {
  unsigned long long leidos = 0;
  CCriticalSection seccion;
  CLectores<CHiloLeerTetraedros> equipo(
      static_cast<unsigned>(std::min<std::size_t>(NumeroProcesadores(), sets.size())));
  if (!equipo.Estan()) return kFicheroInconsistente;
  for (unsigned i = 0; i < equipo.Cuantos(); ++i) {
    const bool enMarcha = equipo[i].Start(i, &equipo.Evento(i), ruta, &seccion, &sets, &lugares, &leidos);
    if (!enMarcha && i == 0) equipo[0].Run();  // the first of them leaves no node to another
  }
  IPorcentaje* porcentaje = Progreso();
  const bool sigue = equipo.Espera([&] {
    const CSingleLock cerrojo(&seccion, true);
    return porcentaje == nullptr || porcentaje->Porcentaje(nivelMensajes, leidos, total, false) != 0;
  });
  if (!sigue) {
    CHiloLeerTetraedros::Para(seccion, sets);
    return kCancelado;
  }
  for (CHiloLeerTetraedros& hilo : equipo) {
    if (hilo.FaltoMemoria()) throw std::bad_alloc();
    if (hilo.Codigo() != kHecho) return hilo.Codigo();
  }
  return leidos == total ? kHecho : kFicheroInconsistente;
}

}  // namespace Meseta47
