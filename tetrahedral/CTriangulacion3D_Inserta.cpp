// How one point enters the mesh.
#include <algorithm>

#include "platform/CStdioFile.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47 {

namespace {

enum CRespuesta { HECHA = 0, FUERA = 1, SIN_INICIO = 2, REPETIDO = 3, SIN_ESFERA = 4, COPLANARIO = 5 };

[[nodiscard]] bool Sirve(CTetraedro const* t) { return t != nullptr && !t->Borrado(); }

}  // namespace

/// The deepest open set near the point: filing begins there.
CSetTetraedros& CTriangulacion3D::SetCercano(CCoor3D<int> const& p, CDivisiones const* celda) {
  while (celda != nullptr && (celda->setAsociado == nullptr || celda->setAsociado->cerrado)) celda = celda->padre;
  CSetTetraedros* set = celda != nullptr ? celda->setAsociado : &setRaiz;
  for (int hijo = set->BuscaHijo(p); hijo >= 0 && !set->hijos[hijo].cerrado; hijo = set->BuscaHijo(p)) {
    set = &set->hijos[hijo];
  }
  return *set;
}

/// What the set holds is close to the point, which keeps the walk short. An empty one asks those above it.
CTetraedro* CTriangulacion3D::TetraedroInicial(CSetTetraedros& cerca) const {
  CSetTetraedros const* set = &cerca;
  while (set->hijos == nullptr && set->cantidad == 0 && set->padre != nullptr) {
    set = set->padre;
    if (set->cantidad != 0) break;
  }
  if (!set->cerrado) {
    if (Sirve(set->inicio)) return set->inicio;
    for (unsigned i = 0; set->hijos != nullptr && i < CSetTetraedros::kHijos; ++i) {
      CSetTetraedros const& hijo = set->hijos[i];
      if (!hijo.cerrado && Sirve(hijo.inicio)) return hijo.inicio;
    }
  }
  if (set->padre != nullptr) {
    if (CTetraedro* t = set->padre->GetActual(true)) return t;
  }
  for (CTetraedro* t = set->cerrado ? nullptr : set->primero; t != nullptr; t = t->Sig()) {
    if (Sirve(t)) return t;
  }
  return nullptr;
}

int CTriangulacion3D::TriangulaPunto(CCoor3D<int>* p, unsigned entidad, unsigned punto, unsigned& implicados,
                                     unsigned& visitados, unsigned& rechazados, bool salvar, bool,
                                     unsigned short* intensidad, std::vector<unsigned short>* intensidades,
                                     CStdioFile* registro) {
  p->num = static_cast<int>(++cantidadPuntos);
  CDivisiones* celda = nullptr;
  const bool esUltimo = divisiones.Inserta(*p, {static_cast<int>(entidad), static_cast<int>(punto)}, celda);
  if (intensidad != nullptr && intensidades != nullptr) {
    (*intensidades)[static_cast<std::size_t>(p->num) - 1] = *intensidad;
  }
  CSetTetraedros& cerca = SetCercano(*p, celda);
  const int respuesta =
      setRaiz.InsertaPunto(p, cerca, TetraedroInicial(cerca), implicados, visitados, rechazados, balance);
  Apunta(respuesta, *p, visitados, registro);
  // A last point that repeats another finishes its cell as well; yet the file of faces is kept as it always was, where
  // such a cell waits for the one around it.
  if (esUltimo && salvar && respuesta == HECHA) Salva(celda);
  return respuesta;
}

int CTriangulacion3D::TriangulaPunto(CCoor3D<int>* p, unsigned& implicados, unsigned& visitados, unsigned& rechazados,
                                     CStdioFile* registro) {
  CSetTetraedros& cerca = *setRaiz.DameHijo(*p);
  const int respuesta =
      setRaiz.InsertaPunto(p, cerca, TetraedroInicial(cerca), implicados, visitados, rechazados, balance);
  Apunta(respuesta, *p, visitados, registro);
  return respuesta;
}

/// A point that does not go in is no failure of the run: it is counted, and named unless it repeats another.
void CTriangulacion3D::Apunta(int respuesta, CCoor3D<int> const& p, unsigned visitados, CStdioFile* registro) {
  resumen.visitados += visitados;
  if (respuesta == HECHA) return;
  if (respuesta == REPETIDO) {
    ++resumen.duplicados;
    return;
  }
  resumen.perdidos.push_back(p.num);
  if (respuesta != COPLANARIO) return;
  ++resumen.coplanarios;
  if (registro == nullptr) return;
  CString texto;
  texto.Format(L"Error: El punto [%d] %d %d %d es coplanario\n", p.num, p.x, p.y, p.z);
  registro->WriteString(texto);
}

bool CTriangulacion3D::PuntoNuevo(CCoor3D<int> const& p, CStdioFile* registro) {
  if (puntos.size() == puntos.capacity()) return false;
  puntos.push_back(CPuntoTIN(p), true);
  CPuntoTIN& nuevo = *(puntos.end() - 1);
  // A place is a number: one that was not let in keeps both.
  cantidadPuntos = std::max(cantidadPuntos + 1, static_cast<std::uint32_t>(puntos.size()));
  nuevo.num = static_cast<int>(cantidadPuntos);
  unsigned a = 0, b = 0, c = 0;
  return TriangulaPunto(&nuevo, a, b, c, registro) == HECHA;
}

}  // namespace Meseta47
