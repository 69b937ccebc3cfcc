// Growth of a class in the triangles of a closed set, sweep after sweep, until a sweep changes nothing.
#include <algorithm>

#include "planar/CAfinidad.h"
#include "planar/CSetTriangulos2D_Consume.h"

namespace Meseta47 {

namespace {

/// The tables of a host that keeps a record a point.
struct CTablasDeHost {
  CReglasAfinidad reglas;
  std::vector<CInfoClasificacion>& infos;
  std::vector<unsigned short>* intensidades;
  CInfoClasificacion const& tipo;
  unsigned& cambiados;

  [[nodiscard]] static std::size_t Indice(CCoor3D<int> const& p) { return static_cast<std::size_t>(p.num) - 1; }
  [[nodiscard]] unsigned char Clase(CCoor3D<int> const& p) const { return infos[Indice(p)].GetTipo(); }
  [[nodiscard]] bool SonAfines(CCoor3D<int> const& n, CCoor3D<int> const& p) const {
    return reglas.EnLugar(n, p) &&
           (intensidades == nullptr || reglas.EnIntensidad((*intensidades)[Indice(n)], (*intensidades)[Indice(p)]));
  }
  void Toma(CCoor3D<int> const& p) {
    infos[Indice(p)] = tipo;
    ++cambiados;
  }
};

bool EstaEntero(CTriangulo2D const& t) {
  return t.P1() != nullptr && t.P2() != nullptr && t.P3() != nullptr && t.N1() > 0 && t.N2() > 0 && t.N3() > 0;
}

/// Of four sets, or of none.
bool NoTienenNada(CSetTriangulos2D const* hijos) {
  return hijos == nullptr || std::all_of(hijos, hijos + CSetTriangulos2D::kHijos, [](CSetTriangulos2D const& h) {
           return h.primero == nullptr && NoTienenNada(h.hijos);
         });
}

}  // namespace

/// One sweep over the own list, from either end. Triangles in which nothing can change any more leave it, and so do
/// those at the frame. True when some point took the class.
template <class T>
bool CSetTriangulos2D::BarreAfines(T& tabla, bool adelante) {
  bool cambio = false;
  CTriangulo2D* caidos = nullptr;
  for (CTriangulo2D *t = adelante ? primero : ultimo, *siguiente = nullptr; t != nullptr; t = siguiente) {
    siguiente = adelante ? t->sig : t->ant;
    if (EstaEntero(*t) && CreceEnTriangulo(tabla.reglas, tabla, {t->p1, t->p2, t->p3}, cambio)) continue;
    (t->ant != nullptr ? t->ant->sig : primero) = t->sig;
    (t->sig != nullptr ? t->sig->ant : ultimo) = t->ant;
    t->sig = caidos;
    caidos = t;
    --cantidad;
  }
  CTriangulo2D::DestruyeLista(caidos);
  return cambio;
}

/// Sweeps until one changes nothing in the own list; what changes in the children alone doesn't ask for another, so
/// that of two children the earlier may be left behind the later. Repeated runs catch up with it.
template <class T>
void CSetTriangulos2D::AsientaAfines(T& tabla) {
  if (!cerrado) Desengancha();
  // What a list by itself comes to is the same whichever way it is swept, and both ways in turn come there sooner: a
  // class that goes against the list would gain a triangle a sweep.
  const bool sola = NoTienenNada(hijos);
  for (bool cambio = true, adelante = true; cambio; adelante = !sola || !adelante) {
    cambio = BarreAfines(tabla, adelante);
    for (unsigned i = 0; !sola && i < kHijos; ++i) hijos[i].AsientaAfines(tabla);
  }
}

bool CSetTriangulos2D::ClasificaPorAfinidad(CFile* fichero, std::vector<CInfoClasificacion>& infos,
                                            std::vector<unsigned short>* intensidades, CInfoClasificacion const& tipo1,
                                            CInfoClasificacion const& tipo2, CRango const* rangoZ,
                                            CRango const* rangoIntensidad, CRango const* rangoDistancia,
                                            CRango const* rangoPendiente, unsigned& cambiados, bool salvar) {
  CTablasDeHost tablas{{tipo1.GetTipo(), tipo2.GetTipo(), rangoZ, rangoIntensidad, rangoDistancia, rangoPendiente},
                       infos,
                       rangoIntensidad != nullptr ? intensidades : nullptr,
                       tipo1,
                       cambiados};
  AsientaAfines(tablas);
  if (salvar) Salva(fichero);
  return false;
}

bool CSetTriangulos2D::ClasificaPorAfinidad(CFile* fichero, CAfinidad& afinidad) {
  AsientaAfines(afinidad);
  if (afinidad.guarda) return Salva(fichero);
  Consume([](CTriangulo2D const&) {});
  return true;
}

}  // namespace Meseta47
