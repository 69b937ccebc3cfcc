// How one point enters the mesh, and how points are fed to it: the seeds, then all others.
#include <algorithm>

#include "model/terrain/CTIN.h"
#include "planar/CTriangulacion2D.h"
#include "platform/Anticipa.h"
#include "platform/CWinApp.h"
#include "run/Recorrido.h"

namespace Meseta47 {

namespace {

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

bool CTriangulacion2D::Triangula(CCoor3D<int>* p, CPosicion const& lugar, CInsercion const& como) {
  CDivisiones* celda = nullptr;
  const bool esUltimo = Inserta(p, static_cast<short>(lugar.lista), lugar.entidad, lugar.punto, &celda);
  if (como.anota) como.anota(*p);

  CDivisiones* abierta = celda;
  while (abierta != nullptr && (abierta->setAsociado == nullptr || abierta->setAsociado->cerrado)) {
    abierta = abierta->padre;
  }
  if (abierta == nullptr) return false;

  CSetTriangulos2D& cerca = SetCercano(*p, *abierta);
  unsigned aceptados = 0, rechazados = 0;
  const int respuesta =
      setRaiz.InsertaPunto(p, cerca, TrianguloInicial(cerca), como.tolerancia, aceptados, rechazados, balance);
  visitados.aceptados += aceptados;
  visitados.rechazados += rechazados;
  resumen.examinados += aceptados + rechazados;
  switch (respuesta) {
    case CSetTriangulos2D::HECHA:
      if (esUltimo && como.cierra) Salva(celda);
      return true;
    case CSetTriangulos2D::REPETIDO:
      p->num = 0;
      ++duplicados;
      return true;
    case CSetTriangulos2D::POR_ALTURA:
      p->num = 0;
      ++resumen.rechazados;
      return true;
    default:
      ++resumen.rechazados;
      return NoEntra(*p, respuesta == CSetTriangulos2D::SIN_INICIO ? kMensajeSinInicio : kMensajeNoSituado,
                     como.tolerancia.unidades);
  }
}

int CTriangulacion2D::InsertaSemillas(CMarcha& marcha, CInsercion const& como, CPuntoDeSemilla const& punto) {
  // Seeds lie as far apart in memory as cells have points; a third of their time was waiting for the point.
  constexpr std::size_t kAdelante = 4;
  for (std::size_t i = 0; i < primerosPuntos.size(); ++i) {
    if (i + kAdelante < primerosPuntos.size()) Anticipa(punto(primerosPuntos[i + kAdelante]));
    if (!Avanza(marcha, como)) return kCancelado;
    CPosicion const& lugar = primerosPuntos[i];
    CCoor3D<int>* p = punto(lugar);
    if (p != nullptr && !Triangula(p, lugar, como)) return kFicheroInconsistente;
  }
  return kHecho;
}

int CTriangulacion2D::InsertaResto(short lista, CDibujo<int> const& dibujo,
                                   std::vector<CPosicionEntidad> const* seleccion, CMarcha& marcha,
                                   CInsercion const& como) {
  // Seeds stand in the order of entities and points, so one cursor walked in step is enough.
  auto siguiente = std::find_if(primerosPuntos.begin(), primerosPuntos.end(),
                                [lista](CPosicion const& s) { return s.lista == static_cast<unsigned>(lista); });
  int codigo = kHecho;
  RecorrePuntos(dibujo, Filtro(dibujo), seleccion, [&](CLinea<int> const& e, unsigned entidad, unsigned k) {
    const CPosicion aqui(static_cast<unsigned>(lista), entidad, k);
    if (siguiente != primerosPuntos.end() && *siguiente == aqui) {
      ++siguiente;  // it is in already
      return true;
    }
    return InsertaUno(PuntoDeRun(e, k), aqui, marcha, como, codigo);
  });
  return codigo;
}

int CTriangulacion2D::InsertaResto(CTIN& tin, CMarcha& marcha, CInsercion const& como) {
  auto siguiente = primerosPuntos.begin();
  int codigo = kHecho;
  for (unsigned i = 0; i < tin.puntos.size(); ++i) {
    if (siguiente != primerosPuntos.end() && siguiente->entidad == i) {
      ++siguiente;
    } else if (!InsertaUno(tin.puntos.at(i), CPosicion(0, i, 0), marcha, como, codigo)) {
      break;
    }
  }
  return codigo;
}

/// False when the list ends here: cancelled, as `codigo` then tells, or at a point that the mesh can't take, which has
/// been reported; the run then goes on with what it has.
bool CTriangulacion2D::InsertaUno(CCoor3D<int>* p, CPosicion const& lugar, CMarcha& marcha, CInsercion const& como,
                                  int& codigo) {
  if (Avanza(marcha, como)) {
    if (!Triangula(p, lugar, como)) return false;
    if (!setsCerrados.EstaLlena() || EsperaAlHilo(marcha)) return true;
  }
  codigo = kCancelado;
  return false;
}

bool CTriangulacion2D::Avanza(CMarcha& marcha, CInsercion const& como) {
  if (como.contador != nullptr) ++*como.contador;
  return marcha.Avanza();
}

}  // namespace Meseta47
