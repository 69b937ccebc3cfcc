// The linking pass: frame, temporary file, worker, seeds, all other points, and the wait for the worker.
#include <algorithm>

#include "model/threads/CMarcha.h"
#include "model/threads/IPorcentaje.h"
#include "platform/Manejadores.h"
#include "run/Fases.h"
#include "run/Recorrido.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeEnlaza = 19021;
constexpr wchar_t kNombreDeReserva[] = L"Triangulacion3D.tmp";

}  // namespace

void CTriangulacion3D::EstableceDivisiones(CDivisiones& celda, CSetTetraedros& set) { celda.Empareja(set); }

/// Drops what an earlier linking left: its worker, queue, file and mesh.
void CTriangulacion3D::PreparaEnlace() {
  hiloSalva.Stop();
  if (evento != nullptr) CloseHandle(evento);
  evento = nullptr;
  setsCerrados.Prepara(0);
  ficheroTemporal.Borra();
  setRaiz.Vacia();
  balance = {};
}

/// Six tetrahedra around the diagonal from -1 to -7.
std::vector<CTetraedro> CTriangulacion3D::Marco() {
  constexpr unsigned kEsquina[6][4] = {{1, 2, 3, 7}, {3, 5, 6, 7}, {3, 4, 5, 7},
                                       {1, 3, 4, 7}, {4, 5, 7, 8}, {1, 4, 7, 8}};
  std::vector<CTetraedro> marco;
  for (auto const& e : kEsquina) {
    marco.emplace_back(&esquinas[e[0] - 1], &esquinas[e[1] - 1], &esquinas[e[2] - 1], &esquinas[e[3] - 1]);
  }
  return marco;
}

void CTriangulacion3D::ConstruyeMarco() {
  EstableceDivisiones(divisiones, setRaiz);
  bool enLista = false;
  for (CTetraedro& t : Marco()) {
    setRaiz.Inserta(t, true, true, true, true, enLista, false);
    enLista = true;
    ++balance.creados;
  }
}

int CTriangulacion3D::Abandona(int codigo) {
  hiloSalva.Stop();
  ficheroTemporal.Borra();
  return codigo;
}

int CTriangulacion3D::InsertaSemillas(CDibujo<int>& dibujo, CMarcha& marcha, CInserta const& inserta) {
  for (CPosicion const& lugar : primerosPuntos) {
    if (!marcha.Avanza()) return kCancelado;
    if (lugar.entidad >= dibujo.Cantidad()) continue;
    CLinea<int> const& linea = dibujo[lugar.entidad];
    if (lugar.punto >= static_cast<unsigned>(linea.NPuntos())) continue;
    inserta(PuntoDeRun(linea, lugar.punto), lugar.entidad, lugar.punto);
  }
  return kHecho;
}

int CTriangulacion3D::InsertaResto(CDibujo<int>& dibujo, CMarcha& marcha, CInserta const& inserta) {
  const CFiltroPuntos filtro(datos, Precision(), dibujo, CFiltroPuntos::CPor::CodigosSiempre);
  std::size_t cursor = 0;
  int codigo = kHecho;
  RecorrePuntos(dibujo, filtro, nullptr, [&](CLinea<int> const& e, unsigned entidad, unsigned k) {
    // Seeds stand in the order of the walk, so one cursor in step is enough.
    if (cursor < primerosPuntos.size() && primerosPuntos[cursor] == CPosicion(0, entidad, k)) {
      ++cursor;
      return true;
    }
    if (!marcha.Avanza() || (setsCerrados.EstaLlena() && !EsperaAlHilo(marcha))) {
      codigo = kCancelado;
      return false;
    }
    inserta(PuntoDeRun(e, k), entidad, k);
    return true;
  });
  return codigo;
}

int CTriangulacion3D::EnlazaLista(CDibujo<int>& dibujo, int progresoInicial, bool salvar, bool todas) {
  const CSiSeRompe guarda([this] { Abandona(kCancelado); });
  return Cronometra(resumen.segundosEnlaza, [&] { return Enlaza(dibujo, progresoInicial, salvar, todas); });
}

int CTriangulacion3D::Enlaza(CDibujo<int>& dibujo, int progresoInicial, bool salvar, bool todas) {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(nivelMensajes, kMensajeEnlaza);
  if (cantidadPuntos == 0) return kPocosPuntos;

  PreparaEnlace();
  ConstruyeMarco();
  if (const int codigo = ficheroTemporal.Abre(identificador, kNombreDeReserva); codigo != kHecho) return codigo;
  setsCerrados.Prepara(primerosPuntos.size());
  evento = CreateEventW(nullptr, true, true, nullptr);
  if (evento == nullptr ||
      !hiloSalva.Start(0, &evento, setsCerrados, ficheroTemporal.Fichero(), longitudLimite2, todas)) {
    return Abandona(kFicheroInconsistente);
  }
  CMarcha marcha(porcentaje, nivelMensajes, cantidadPuntos, static_cast<unsigned>(progresoInicial));
  cantidadPuntos = 0;  // numbering begins here
  const auto inserta = [&](bool cierra) {
    return [this, cierra, todas](CCoor3D<int>* p, unsigned entidad, unsigned punto) {
      unsigned a = 0, b = 0, c = 0;
      TriangulaPunto(p, entidad, punto, a, b, c, cierra, todas, nullptr, nullptr, nullptr);
    };
  };
  if (const int codigo = InsertaSemillas(dibujo, marcha, inserta(false)); codigo != kHecho) return Abandona(codigo);
  if (const int codigo = InsertaResto(dibujo, marcha, inserta(salvar)); codigo != kHecho) return Abandona(codigo);
  if (salvar) {
    // The run's last point has closed and queued the root as a rule; queued again it is found empty.
    Salva(&divisiones);
    if (!setsCerrados.EsperaTodo([&marcha] { return marcha.Sigue(); })) return Abandona(kCancelado);
    setsCerrados.Acaba();
    if (setsCerrados.HaParado()) return Abandona(kCancelado);
  }
  return Concluye(salvar);
}

/// What is spilled is on its way to the disk, or the run has failed: no tetrahedron is lost in silence.
int CTriangulacion3D::Concluye(bool salvar) {
  ResumeBalance();
  resumen.picoVivos = std::max(resumen.picoVivos, resumen.enlazados - setsCerrados.Liberados());
  if (!salvar) return Abandona(kHecho);  // a mesh in memory leaves no file
  hiloSalva.Stop();
  CTetraedro::EncogeReserva();
  if (hiloSalva.FaltoMemoria()) return Abandona(kFicheroInconsistente);
  return ficheroTemporal.Vuelca() ? kHecho : Abandona(kFicheroInaccesible);
}

void CTriangulacion3D::ResumeBalance() {
  resumen.enlazados = balance.creados - balance.condenados;
  resumen.creados = balance.creados;
  resumen.pasos = balance.pasos;
  resumen.esferas = balance.esferas;
  resumen.exactas = balance.exactas;
  resumen.porBusqueda = balance.porBusqueda;
}

}  // namespace Meseta47
