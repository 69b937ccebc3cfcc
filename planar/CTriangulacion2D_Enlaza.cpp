// The linking pass: frame, temporary file, worker, seeds, all other points, and the wait for the worker.
#include <algorithm>
#include <utility>

#include "model/terrain/CTIN.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CDosMitades.h"
#include "planar/CFuentes.h"
#include "planar/CMedidasDeRun.h"
#include "planar/CTriangulacion2D.h"
#include "platform/Manejadores.h"
#include "run/Fases.h"
#include "run/Recorrido.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeEnlaza = 19021;
constexpr unsigned kMinimoPuntos = 3;
constexpr double kHolguraMinima = 2;  // scaled units: a half for the rounding of the centre, one for a corner's
constexpr wchar_t kNombreDeReserva[] = L"Triangulacion2D.tmp";
constexpr unsigned kUltimoModo = CHiloSalvaTriangulosEnlazados::SALVA_TAMBIEN;

}  // namespace

//    -2 +---------+ -3        The two triangles of the frame turn clockwise, and all others take after them.
//       |       / |
//       |    /    |           (-1, -2, -3) and (-1, -3, -4)
//       | /       |
//    -1 +---------+ -4
void CTriangulacion2D::ConstruyeMarco(bool holgado) {
  const CCoor3D<int> c = maximas.Centro(false);
  const double extension = std::max(maximas.Ancho(), maximas.Alto());
  double h = CMedidasDeRun::SemiladoDelMarco(extension);
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
  medidas = {};
  ladosDelCasco = 0;
  balance = {};
  resumen.duplicados = resumen.rechazados = resumen.picoVivos = resumen.enlazados = resumen.examinados = 0;
}

void CTriangulacion2D::PreparaCola() {
  setsCerrados.Prepara(primerosPuntos.size());
  evento = CreateEventW(nullptr, true, true, nullptr);
}

/// From here on the mesh is the frame, and numbering begins.
int CTriangulacion2D::EmpiezaEnlace(CEnlace& enlace, bool conEvento) {
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Fase(mensajes, kMensajeEnlaza);
  if (cantidadPuntos < kMinimoPuntos) return kPocosPuntos;
  PreparaEnlace();
  ConstruyeMarco(Completa(enlace.modo));
  if (enlace.modo != CHiloSalvaTriangulosEnlazados::CURVA) {
    if (const int codigo = ficheroTemporal.Abre(identificador, kNombreDeReserva); codigo != kHecho) return codigo;
  }
  PreparaCola();
  if (conEvento && evento == nullptr) return kFicheroInconsistente;  // the file stays as long as this object
  if (const int codigo = ArrancaHilo(enlace); codigo != kHecho) return codigo;
  cantidadPuntos = 0;
  return kHecho;
}

int CTriangulacion2D::ArrancaHilo(CEnlace& enlace) {
  if (enlace.modo > kUltimoModo) return kHecho;
  hiloSalva.Borde(Completa(enlace.modo) ? &borde : nullptr);
  hiloSalva.Mide(&medidas);
  return ArrancaTarea(enlace) ? kHecho : Abandona(kFicheroInconsistente);
}

/// Gives the worker the job of the mode, and a thread unless that is mere writing.
bool CTriangulacion2D::ArrancaTarea(CEnlace& enlace) {
  const double lado2 = static_cast<double>(paramCurvaB) * paramCurvaB;
  switch (enlace.modo) {
    case CHiloSalvaTriangulosEnlazados::CURVA:
      return hiloSalva.Start(0, &evento, setsCerrados, &dibujoCurvas, paramCurvaA, lado2);
    case CHiloSalvaTriangulosEnlazados::AFINIDAD:
      PreparaAfinidad(enlace);
      return hiloSalva.Start(0, &evento, setsCerrados, ficheroTemporal.Fichero(), afinidad);
    case CHiloSalvaTriangulosEnlazados::PICOS:
      return hiloSalva.Start(0, &evento, setsCerrados, &enlace.alturasVecinas, lado2, paramPicoB, paramPicoA);
    default:
      hiloSalva.SinHilo(setsCerrados, ficheroTemporal.Fichero(), enlace.modo);
      return true;
  }
}

void CTriangulacion2D::PreparaAfinidad(CEnlace const& enlace) {
  const auto numero = [](CInfoClasificacion const* tipo) {
    return tipo != nullptr ? tipo->GetTipo() : static_cast<unsigned char>(0);
  };
  afinidad.reglas = {.crece = numero(enlace.tipoA),
                     .barrera = numero(enlace.tipoB),
                     .alturas = enlace.alturas,
                     .intensidades = enlace.intensidades,
                     .distancias = enlace.distancias,
                     .pendientes = enlace.pendientes};
  afinidad.cambiados = enlace.cuenta;
  afinidad.guarda = enlace.guarda;
  afinidad.Prepara(cantidadPuntos);
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

int CTriangulacion2D::Enlaza(CFuentes const& fuentes, CEnlace& enlace) {
  const CSiSeRompe guarda([this] { Abandona(kCancelado); });  // the worker is at what the caller's frame holds
  const bool porAfinidad = enlace.modo == CHiloSalvaTriangulosEnlazados::AFINIDAD;
  const bool porPicos = enlace.modo == CHiloSalvaTriangulosEnlazados::PICOS;
  if (porPicos && cantidadPuntos >= kMinimoPuntos) enlace.alturasVecinas.Prepara(cantidadPuntos);
  const std::uint32_t todos = cantidadPuntos;
  const int contadorAntes = enlace.contador != nullptr ? *enlace.contador : 0;
  int codigo = kHecho;
  bool conDos = CabenDosMitades(fuentes, enlace);
  porDos = {};
  do {
    CMarcha marcha(Progreso(), mensajes, todos, static_cast<unsigned>(contadorAntes));
    codigo = EmpiezaEnlace(enlace, true);
    if (codigo != kHecho) return codigo;
    codigo = InsertaTodo(fuentes, enlace, marcha, conDos);
    if (codigo == kTarde) {
      cantidadPuntos = todos;
      duplicados = 0;
      if (enlace.contador != nullptr) *enlace.contador = contadorAntes;
    }
  } while (codigo == kTarde && std::exchange(conDos, false));
  if (codigo != kHecho) return Abandona(codigo);

  CTriangulo2D::EncogeReserva();
  codigo = CompletaSuperficie(enlace.modo);
  if (codigo == kHecho) codigo = ConcluyeFichero();
  if (codigo == kHecho && porAfinidad && !enlace.guarda) PonClases(fuentes, enlace);
  if (codigo == kHecho && porPicos) PonClasesDePicos(fuentes, enlace);
  return codigo;
}

/// From the seeds to the end of the worker.
int CTriangulacion2D::InsertaTodo(CFuentes const& fuentes, CEnlace& enlace, CMarcha& marcha, bool conDos) {
  const bool porAfinidad = enlace.modo == CHiloSalvaTriangulosEnlazados::AFINIDAD;
  std::unique_ptr<CDosMitades> mitades;  // its thread may only go when the triangles that it has made are gone
  CInsercion como{.cierra = false, .tolerancia = enlace.DeSemillas(), .contador = enlace.contador};
  if (porAfinidad) como.anota = [this](CCoor3D<int> const& p) { afinidad.Anota(p); };
  int codigo = InsertaSemillas(marcha, como, [&](CPosicion const& lugar) { return fuentes.Semilla(lugar); });
  como.cierra = true;
  if (codigo == kHecho && conDos) {
    codigo = InsertaEnMitades(fuentes, enlace, marcha, como, mitades);
  } else if (codigo == kHecho) {
    codigo = fuentes.Recorre([&](short lista, CDibujo<int> const& d, auto const* elegidos) {
      como.tolerancia = fuentes.EsExtra(lista) ? enlace.tolerancia : CTolerancia{};
      return InsertaResto(lista, d, elegidos, marcha, como);
    });
  }
  if (codigo != kHecho) return codigo;

  // The run's last point has closed and queued the root as a rule; queued again it is found empty.
  Salva(&divisiones);
  if (hiloSalva.EstaEnMarcha() && !setsCerrados.EsperaTodo([&] { return marcha.Sigue(); })) return kCancelado;
  setsCerrados.Acaba();
  return kHecho;
}

/// Calls `visita` with the place, the point and the index of each point of the classified drawing that has a number of
/// this run and whose class may change. A point that the linking has not reached may hold a number of an earlier run,
/// beyond the last one of this.
void CTriangulacion2D::RecorreNumerados(
    CFuentes const& fuentes, CEnlace const& enlace,
    std::function<void(CPosicionEntidad const&, CCoor3D<int> const&, std::size_t)> const& visita) {
  CDibujo<int> const& dibujo = *enlace.clasifica;
  const CFiltroPuntos filtro(datos, Precision(), dibujo, CFiltroPuntos::CPor::DibujoYClases);
  RecorrePuntos(dibujo, filtro, fuentes.seleccion, [&](CLinea<int> const& e, unsigned entidad, unsigned k) {
    CCoor3D<int> const& p = *e.PunteroAPunto(static_cast<int>(k));
    const auto indice = static_cast<std::size_t>(p.num) - 1;  // numbers below 1 come out beyond any
    if (indice < cantidadPuntos) visita({static_cast<int>(entidad), static_cast<int>(k)}, p, indice);
  });
}

/// Gives the points of a class run the classes found for their numbers.
void CTriangulacion2D::PonClases(CFuentes const& fuentes, CEnlace const& enlace) {
  RecorreNumerados(fuentes, enlace, [&](CPosicionEntidad const& lugar, CCoor3D<int> const& p, std::size_t) {
    const CInfoClasificacion clase(afinidad.Clase(p), 0.0, CString());
    (*enlace.clasifica)[static_cast<unsigned>(lugar.entidad)].SetClasificacion(clase, lugar.punto);
  });
}

/// Gives the class of the run to the points that stand out against their neighbours. Should memory give out, no class
/// has changed.
void CTriangulacion2D::PonClasesDePicos(CFuentes const& fuentes, CEnlace const& enlace) {
  std::vector<CPosicionEntidad> picos;
  RecorreNumerados(fuentes, enlace, [&](CPosicionEntidad const& lugar, CCoor3D<int> const& p, std::size_t indice) {
    if (enlace.alturasVecinas.EsPico(indice, p.z, paramPicoA)) picos.push_back(lugar);
  });
  if (enlace.hallados != nullptr) enlace.hallados->insert(enlace.hallados->end(), picos.begin(), picos.end());
  if (enlace.cuenta != nullptr) *enlace.cuenta += static_cast<unsigned>(picos.size());
  const CInfoClasificacion clase(enlace.tipoA->GetTipo(), 0.0, CString());
  for (CPosicionEntidad const& lugar : picos) {
    (*enlace.clasifica)[static_cast<unsigned>(lugar.entidad)].SetClasificacion(clase, lugar.punto);
  }
}

int CTriangulacion2D::Enlaza(CTIN& tin, int contador) {
  CEnlace enlace;
  CMarcha marcha(Progreso(), mensajes, cantidadPuntos, static_cast<unsigned>(contador));
  // An event that could not be made hinders nothing here.
  int codigo = EmpiezaEnlace(enlace, false);
  if (codigo != kHecho) return codigo;
  codigo =
      InsertaSemillas(marcha, {.cierra = false}, [&](CPosicion const& lugar) { return tin.puntos.at(lugar.entidad); });
  if (codigo == kHecho) codigo = InsertaResto(tin, marcha, {});
  if (codigo != kHecho) return Abandona(codigo);

  const bool entera = Completa(enlace.modo);
  if (entera) Salva(&divisiones);
  setsCerrados.Acaba();
  const CMarcha espera(Progreso(), 1, 0);
  if (!setsCerrados.EsperaTodo([&] { return espera.Sigue(); })) return Abandona(kCancelado);
  // The event is set until the worker leaves and resets it, and the worker may have left by now: the wait only looks.
  WaitForMultipleObjects(1, &evento, true, 0);
  // Stopped before the root is queued: a root that the last point has not closed (because it was a duplicate or a seed)
  // does not reach the file. Models are made anew from points that went through this once, and hosts rely on the
  // outcome. A run without its frame has no such past.
  setsCerrados.Para();
  if (!entera) Salva(&divisiones);
  setRaiz.clear();
  CTriangulo2D::EncogeReserva();
  if (codigo = CompletaSuperficie(enlace.modo); codigo != kHecho) return codigo;
  return ConcluyeFichero();
}

}  // namespace Meseta47
