// How one point enters the mesh, and how the points after the seeds are fed to it.
#include <algorithm>
#include <optional>

#include "model/terrain/CTIN.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CTriangulacion2D.h"
#include "platform/CWinApp.h"
#include "run/Recorrido.h"

namespace Meseta47 {

namespace {

enum CRespuesta { HECHA = 0, FUERA = 1, SIN_INICIO = 2, REPETIDO = 3, SIN_CIRCULO = 4, POR_ALTURA = 5 };
constexpr unsigned kMensajeNoSituado = 12105;
constexpr unsigned kMensajeSinInicio = 12106;

/// The text of a message with a point's number and position.
CString TextoDePunto(unsigned mensaje, CCoor3D<int> const& p) {
  CString texto;
  CWinApp const* programa = AfxGetApp();
  CString formato = programa != nullptr ? programa->TextoMensaje(mensaje) : CString();
  if (formato.IsEmpty()) formato = L"%d %d %d %d";
  texto.Format(formato.GetString(), p.num, p.x, p.y, p.z);
  return texto;
}

/// First seed of a drawing: seeds stand in the order of entities and points, so one cursor walked in step is enough.
std::size_t PrimeraSemilla(std::vector<CPosicion> const& semillas, short lista) {
  const auto esta = [lista](CPosicion const& s) { return s.lista == static_cast<unsigned>(lista); };
  return static_cast<std::size_t>(std::find_if(semillas.begin(), semillas.end(), esta) - semillas.begin());
}

}  // namespace

/// The deepest open set near the point: filing begins there, and what it holds is close, which keeps the walk short.
CSetTriangulos2D& CTriangulacion2D::SetCercano(CCoor3D<int> const& p, CDivisiones const& celda) {
  CSetTriangulos2D* set = celda.setAsociado;
  for (int hijo = set->BuscaHijo(p); hijo >= 0 && !set->hijos[hijo].cerrado; hijo = set->BuscaHijo(p)) {
    set = &set->hijos[hijo];
  }
  return *set;
}

CTriangulo2D* CTriangulacion2D::TrianguloInicial(CSetTriangulos2D const& set) {
  if (set.inicio != nullptr) return set.inicio;
  for (unsigned i = 0; set.hijos != nullptr && i < 4; ++i) {
    if (!set.hijos[i].cerrado && set.hijos[i].inicio != nullptr) return set.hijos[i].inicio;
  }
  return set.padre != nullptr ? set.padre->GetActual(true) : nullptr;
}

/// A point that could not be placed: a fault to be reported, unless nobody listens or a tolerance may be the cause.
bool CTriangulacion2D::NoEntra(CCoor3D<int> const& p, unsigned mensaje, int tolerancia) const {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje == nullptr || tolerancia != 0) return true;
  CString texto = TextoDePunto(mensaje, p);
  porcentaje->Mensaje(3, &texto, 1);
  return false;
}

bool CTriangulacion2D::TriangulaPunto(CCoor3D<int>* p, short lista, unsigned entidad, unsigned punto, unsigned& a,
                                      unsigned& b, bool salvar, bool curvar, int tolerancia, CInfoClasificacion* info,
                                      std::vector<CInfoClasificacion>* infos, unsigned short* intensidad,
                                      std::vector<unsigned short>* intensidades, CStdioFile*) {
  CDivisiones* celda = nullptr;
  const bool esUltimo = Inserta(p, lista, entidad, punto, &celda);
  const auto indice = static_cast<std::size_t>(p->num) - 1;
  if (info != nullptr && infos != nullptr) (*infos)[indice] = *info;
  if (intensidad != nullptr && intensidades != nullptr) (*intensidades)[indice] = *intensidad;

  CDivisiones* abierta = celda;
  while (abierta != nullptr && (abierta->setAsociado == nullptr || abierta->setAsociado->cerrado)) {
    abierta = abierta->padre;
  }
  if (abierta == nullptr) return false;

  CSetTriangulos2D& cerca = SetCercano(*p, *abierta);
  const int respuesta = setRaiz.InsertaPunto(p, cerca, TrianguloInicial(cerca), {tolerancia, baseFija}, a, b, balance);
  resumen.examinados += a + b;
  switch (respuesta) {
    case HECHA:
      break;
    case REPETIDO:
      p->num = 0;
      ++duplicados;
      return true;
    case POR_ALTURA:
      p->num = 0;
      ++resumen.rechazados;
      return true;
    default:
      ++resumen.rechazados;
      return NoEntra(*p, respuesta == SIN_INICIO ? kMensajeSinInicio : kMensajeNoSituado, tolerancia);
  }

  if (esUltimo && (salvar || curvar)) Salva(celda);
  return true;
}

int CTriangulacion2D::InsertaRestoPuntos(short lista, CDibujo<int> const& dibujo, int& contador, unsigned total,
                                         unsigned& a, unsigned& b, unsigned modo,
                                         std::vector<CPosicionEntidad> const* seleccion,
                                         std::vector<CInfoClasificacion>* infos,
                                         std::vector<unsigned short>* intensidades, int tolerancia,
                                         CStdioFile* registro) {
  const bool afinidad = modo == CHiloSalvaTriangulosEnlazados::AFINIDAD;
  const bool curvas = modo == CHiloSalvaTriangulosEnlazados::CURVA;
  std::size_t cursor = PrimeraSemilla(primerosPuntos, lista);
  IPorcentaje* porcentaje = Progreso();
  int codigo = kHecho;
  RecorrePuntos(dibujo, CFiltroPuntos(datos, Precision(), dibujo), seleccion,
                [&](CLinea<int> const& e, unsigned entidad, unsigned k) {
                  if (cursor < primerosPuntos.size() &&
                      primerosPuntos[cursor] == CPosicion(static_cast<unsigned>(lista), entidad, k)) {
                    ++cursor;  // it is in already
                    return true;
                  }
                  ++contador;
                  if (porcentaje != nullptr &&
                      porcentaje->Porcentaje(mensajes, static_cast<unsigned>(contador), total, false) == 0) {
                    codigo = kCancelado;
                    return false;
                  }
                  CCoor3D<int>* p = PuntoDeRun(e, k);
                  std::optional<CInfoClasificacion> info;
                  unsigned short intensidad = p->intensidad;
                  if (afinidad) info.emplace(p->clasificacion, 0.0, CString());
                  unsigned suA = 0, suB = 0;
                  if (!TriangulaPunto(p, lista, entidad, k, suA, suB, !curvas, curvas, tolerancia,
                                      afinidad ? &*info : nullptr, afinidad ? infos : nullptr,
                                      afinidad ? &intensidad : nullptr, afinidad ? intensidades : nullptr, registro)) {
                    return false;  // reported already: the list ends here and the run goes on with what it has
                  }
                  a += suA;
                  b += suB;
                  const CMarcha marcha(porcentaje, mensajes, total, static_cast<unsigned>(contador));
                  if (setsCerrados.EstaLlena() && !EsperaAlHilo(marcha)) codigo = kCancelado;
                  return codigo == kHecho;
                });
  return codigo;
}

int CTriangulacion2D::InsertaRestoPuntos(CTIN& tin, int& contador, unsigned total, unsigned& a, unsigned& b,
                                         CStdioFile* registro) {
  IPorcentaje* porcentaje = Progreso();
  CSetPuntosMdt& puntos = tin.puntos;
  std::size_t cursor = 0;
  for (unsigned i = 0; i < puntos.size(); ++i) {
    if (cursor < primerosPuntos.size() && primerosPuntos[cursor].entidad == i) {
      ++cursor;
      continue;
    }
    ++contador;
    if (porcentaje != nullptr && porcentaje->Porcentaje(mensajes, static_cast<unsigned>(contador), total, false) == 0) {
      return kCancelado;
    }
    unsigned suA = 0, suB = 0;
    if (!TriangulaPunto(puntos.at(i), 0, i, 0, suA, suB, true, false, 0, nullptr, nullptr, nullptr, nullptr,
                        registro)) {
      return kHecho;
    }
    a += suA;
    b += suB;
    const CMarcha marcha(porcentaje, mensajes, total, static_cast<unsigned>(contador));
    if (setsCerrados.EstaLlena() && !EsperaAlHilo(marcha)) return kCancelado;
  }
  return kHecho;
}

}  // namespace Meseta47
