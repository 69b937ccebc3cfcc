// The linking pass: frame, temporary file, worker, seeds, all other points, and the wait for the worker.
#include <algorithm>

#include "model/terrain/CTIN.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CTriangulacion2D.h"
#include "run/Recorrido.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeEnlaza = 19021;
constexpr unsigned kMinimoPuntos = 3;
constexpr double kHolguraMarco =
    1.2;  // the frame is a square around the data with a tenth of the larger extent to spare
constexpr double kHolguraMinima = 2;  // scaled units: a half for the rounding of the centre, one for a corner's
constexpr wchar_t kNombreDeReserva[] = L"Triangulacion2D.tmp";
constexpr unsigned kUltimoModo = CHiloSalvaTriangulosEnlazados::SALVA_TAMBIEN;

}  // namespace

struct CTriangulacion2D::CTrabajo {
  CDibujo<int>& dibujo;
  std::vector<CDibujo<int>*>* otros;
  CDibujo<int>* extra;
  std::vector<CPosicionEntidad> const* seleccion;
  unsigned modo;
  int tolerancia;
  int& contador;
  unsigned total = 0;
  unsigned a = 0, b = 0;
  std::vector<CInfoClasificacion> infos{};     // by point number, mode 2
  std::vector<unsigned short> intensidades{};  // by point number, mode 2

  [[nodiscard]] bool EsAfinidad() const { return modo == CHiloSalvaTriangulosEnlazados::AFINIDAD; }
  [[nodiscard]] CDibujo<int>* DibujoDeSemilla(unsigned lista) const;
};

/// The last of the further drawings is not reached: its seeds are looked for in the extra one, or left out. Hosts count
/// on that numbering.
CDibujo<int>* CTriangulacion2D::CTrabajo::DibujoDeSemilla(unsigned lista) const {
  if (lista == 0) return &dibujo;
  if (otros != nullptr && lista < otros->size()) return (*otros)[lista - 1];
  return extra;
}

//    -2 +---------+ -3        The two triangles of the frame turn clockwise, and all others take after them.
//       |       / |
//       |    /    |           (-1, -2, -3) and (-1, -3, -4)
//       | /       |
//    -1 +---------+ -4
void CTriangulacion2D::ConstruyeMarco(bool holgado) {
  const CCoor3D<int> c = maximas.Centro(false);
  const double extension = std::max(maximas.Ancho(), maximas.Alto());
  double h = extension * kHolguraMarco * 0.5;
  // Corners are rounded, and a tenth of a small extent is nothing: no point may stand on them when they are to go.
  if (holgado) h = std::max(h, extension * 0.5 + kHolguraMinima);
  esquinas[0].ActualizaXY(c.x - h, c.y - h);
  esquinas[1].ActualizaXY(c.x - h, c.y + h);
  esquinas[2].ActualizaXY(c.x + h, c.y + h);
  esquinas[3].ActualizaXY(c.x + h, c.y - h);
  for (int i = 0; i < 4; ++i) esquinas[i].num = -1 - i;
  EstableceDivisiones(divisiones, setRaiz);
  setRaiz.Inserta(CTriangulo2D(&esquinas[0], &esquinas[1], &esquinas[2]));
  setRaiz.Inserta(CTriangulo2D(&esquinas[0], &esquinas[2], &esquinas[3]));
  balance.creados += 2;
}

/// Drops what an earlier linking left: its worker, queue and mesh.
void CTriangulacion2D::PreparaEnlace() {
  hiloSalva.Stop();
  if (evento != nullptr) CloseHandle(evento);
  evento = nullptr;
  setsCerrados.Prepara(0);
  setRaiz.Vacia();
  borde.Vacia();
  balance = {};
}

void CTriangulacion2D::PreparaCola() {
  setsCerrados.Prepara(primerosPuntos.size());
  evento = CreateEventW(nullptr, true, true, nullptr);
}

int CTriangulacion2D::ArrancaHilo(unsigned modo) {
  if (modo > kUltimoModo) return kHecho;
  hiloSalva.Borde(Completa(modo) ? &borde : nullptr);
  const bool enMarcha = modo == CHiloSalvaTriangulosEnlazados::CURVA
                            ? hiloSalva.Start(0, &evento, setsCerrados, &dibujoCurvas, paramCurvaA,
                                              static_cast<double>(paramCurvaB) * paramCurvaB)
                            : hiloSalva.Start(0, &evento, setsCerrados, ficheroTemporal.Fichero(), modo);
  if (!enMarcha) return Abandona(kFicheroInconsistente);
  return kHecho;
}

/// Stops the worker and leaves no file.
int CTriangulacion2D::Abandona(int codigo) {
  hiloSalva.Stop();
  BorraFicheroTemporal();
  return codigo;
}

/// The records are on disk, or the run has failed: no triangle is lost in silence.
int CTriangulacion2D::ConcluyeFichero() {
  resumen.duplicados = duplicados;
  resumen.enlazados = setsCerrados.Elementos();
  if (hiloSalva.FaltoMemoria()) return Abandona(kFicheroInconsistente);
  if (ficheroTemporal.Vuelca()) return kHecho;
  return Abandona(kFicheroInaccesible);
}

int CTriangulacion2D::InsertaSemillas(CTrabajo& trabajo) {
  IPorcentaje* porcentaje = Progreso();
  for (CPosicion const& lugar : primerosPuntos) {
    ++trabajo.contador;
    if (porcentaje != nullptr &&
        porcentaje->Porcentaje(mensajes, static_cast<unsigned>(trabajo.contador), trabajo.total, false) == 0) {
      return kCancelado;
    }
    CDibujo<int> const* dibujo = trabajo.DibujoDeSemilla(lugar.lista);
    if (dibujo == nullptr || lugar.entidad >= dibujo->Cantidad()) continue;
    CLinea<int> const& linea = (*dibujo)[lugar.entidad];
    if (lugar.punto >= static_cast<unsigned>(linea.NPuntos())) continue;
    CCoor3D<int>* p = PuntoDeRun(linea, lugar.punto);
    CInfoClasificacion info(p->clasificacion, 0.0, CString());
    unsigned short intensidad = p->intensidad;
    const bool afinidad = trabajo.EsAfinidad();
    unsigned a = 0, b = 0;
    if (!TriangulaPunto(p, static_cast<short>(lugar.lista), lugar.entidad, lugar.punto, a, b, false, false,
                        baseFija ? 0 : trabajo.tolerancia, afinidad ? &info : nullptr,
                        afinidad ? &trabajo.infos : nullptr, afinidad ? &intensidad : nullptr,
                        afinidad ? &trabajo.intensidades : nullptr, nullptr)) {
      return kFicheroInconsistente;
    }
    trabajo.a += a;
    trabajo.b += b;
  }
  return kHecho;
}

int CTriangulacion2D::InsertaSemillas(CTIN& tin, int& contador, unsigned total, unsigned& a, unsigned& b) {
  IPorcentaje* porcentaje = Progreso();
  for (CPosicion const& lugar : primerosPuntos) {
    ++contador;
    if (porcentaje != nullptr && porcentaje->Porcentaje(mensajes, static_cast<unsigned>(contador), total, false) == 0) {
      return kCancelado;
    }
    unsigned suA = 0, suB = 0;
    if (!TriangulaPunto(tin.puntos.at(lugar.entidad), 0, lugar.entidad, 0, suA, suB, false, false, 0, nullptr, nullptr,
                        nullptr, nullptr, nullptr)) {
      return kFicheroInconsistente;
    }
    a += suA;
    b += suB;
  }
  return kHecho;
}

int CTriangulacion2D::InsertaResto(CTrabajo& t) {
  const auto inserta = [&](short lista, CDibujo<int> const& dibujo, std::vector<CPosicionEntidad> const* seleccion,
                           int tolerancia) {
    return InsertaRestoPuntos(lista, dibujo, t.contador, t.total, t.a, t.b, t.modo, seleccion, &t.infos,
                              &t.intensidades, tolerancia, nullptr);
  };
  int codigo = inserta(0, t.dibujo, t.seleccion, 0);
  short lista = 1;
  if (t.otros != nullptr) {
    for (CDibujo<int> const* otro : *t.otros) {
      if (codigo != kHecho) return codigo;
      if (otro != nullptr) codigo = inserta(lista, *otro, nullptr, 0);
      ++lista;
    }
  }
  if (codigo == kHecho && t.extra != nullptr) codigo = inserta(lista, *t.extra, nullptr, t.tolerancia);
  return codigo;
}

int CTriangulacion2D::EnlazaLista(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, int* contador, CString*,
                                  unsigned modo, std::vector<CPosicionEntidad> const* seleccion,
                                  CInfoClasificacion const*, CInfoClasificacion const*, unsigned*, CDibujo<int>* extra,
                                  int tolerancia, CRango const*, CRango const*, CRango const*, CRango const*,
                                  std::vector<CPosicionEntidad>*) {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeEnlaza);
  if (cantidadPuntos < kMinimoPuntos) return kPocosPuntos;
  int propio = 0;
  CTrabajo trabajo{dibujo, otros, extra, seleccion, modo, tolerancia, contador != nullptr ? *contador : propio};
  if (trabajo.EsAfinidad()) {
    trabajo.infos.resize(cantidadPuntos);
    trabajo.intensidades.resize(cantidadPuntos);
  }

  PreparaEnlace();
  ConstruyeMarco(Completa(modo));
  if (modo != CHiloSalvaTriangulosEnlazados::CURVA) {
    if (const int codigo = ficheroTemporal.Abre(identificador, kNombreDeReserva); codigo != kHecho) return codigo;
  }
  PreparaCola();
  if (evento == nullptr) return kFicheroInconsistente;  // the file stays as long as this object
  if (const int codigo = ArrancaHilo(modo); codigo != kHecho) return codigo;
  trabajo.total = cantidadPuntos;
  cantidadPuntos = 0;  // numbering begins here
  if (const int codigo = InsertaSemillas(trabajo); codigo != kHecho) return Abandona(codigo);
  if (const int codigo = InsertaResto(trabajo); codigo != kHecho) return Abandona(codigo);

  // The run's last point has closed and queued the root as a rule; queued again it is found empty.
  Salva(&divisiones);
  const CMarcha marcha(porcentaje, mensajes, trabajo.total, static_cast<unsigned>(trabajo.contador));
  if (hiloSalva.EstaEnMarcha() && !setsCerrados.EsperaTodo([&] { return marcha.Sigue(); })) return Abandona(kCancelado);
  setsCerrados.Acaba();
  CTriangulo2D::EncogeReserva();
  if (const int codigo = CompletaSuperficie(modo); codigo != kHecho) return codigo;
  const int codigo = ConcluyeFichero();
  if (codigo == kHecho) PonClases(dibujo, trabajo);
  return codigo;
}

/// Gives the points of a class run the classes found for their numbers.
void CTriangulacion2D::PonClases(CDibujo<int>& dibujo, CTrabajo const& trabajo) {
  if (!trabajo.EsAfinidad()) return;
  const CFiltroPuntos filtro(datos, Precision(), dibujo, CFiltroPuntos::CPor::DibujoYClases);
  RecorrePuntos(dibujo, filtro, trabajo.seleccion, [&](CLinea<int> const& e, unsigned entidad, unsigned k) {
    const int num = e.PunteroAPunto(static_cast<int>(k))->num;
    if (num == 0) return;
    CInfoClasificacion const& hallada = trabajo.infos[static_cast<std::size_t>(num) - 1];
    dibujo[entidad].SetClasificacion(CInfoClasificacion(hallada.GetTipo(), 0.0, CString()), static_cast<int>(k));
  });
}

int CTriangulacion2D::EnlazaLista(CTIN& tin, int contador, CString*) {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeEnlaza);
  if (cantidadPuntos < kMinimoPuntos) return kPocosPuntos;

  PreparaEnlace();
  constexpr unsigned kModo = CHiloSalvaTriangulosEnlazados::SALVA;
  ConstruyeMarco(Completa(kModo));
  if (const int codigo = ficheroTemporal.Abre(identificador, kNombreDeReserva); codigo != kHecho) return codigo;
  PreparaCola();  // an event that could not be made hinders nothing here
  if (const int codigo = ArrancaHilo(kModo); codigo != kHecho) return codigo;
  const unsigned total = cantidadPuntos;
  cantidadPuntos = 0;  // numbering begins here
  unsigned a = 0, b = 0;
  int codigo = InsertaSemillas(tin, contador, total, a, b);
  if (codigo == kHecho) codigo = InsertaRestoPuntos(tin, contador, total, a, b, nullptr);
  if (codigo != kHecho) return Abandona(codigo);

  const bool entera = Completa(kModo);
  if (entera) Salva(&divisiones);
  setsCerrados.Acaba();
  const CMarcha marcha(porcentaje, 1, 0);
  if (!setsCerrados.EsperaTodo([&] { return marcha.Sigue(); })) return Abandona(kCancelado);
  // The event is set until the worker leaves and resets it, and the worker may have left by now: the wait only looks.
  WaitForMultipleObjects(1, &evento, true, 0);
  // Stopped before the root is queued: a root that the last point has not closed (because it was a duplicate or a seed)
  // does not reach the file. Models are made anew from points that went through this once, and hosts rely on the
  // outcome. A run without its frame has no such past.
  setsCerrados.Para();
  if (!entera) Salva(&divisiones);
  setRaiz.clear();
  CTriangulo2D::EncogeReserva();
  if (codigo = CompletaSuperficie(kModo); codigo != kHecho) return codigo;
  return ConcluyeFichero();
}

}  // namespace Meseta47
