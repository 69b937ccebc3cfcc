// The cavity of a new point: a breadth-first walk over the mesh to the first circle that holds it, growth over the
// neighbours, the test of heights, and the removal of the condemned.
#include <algorithm>

#include "planar/CSetTriangulos2D_Obra.h"

namespace Meseta47 {

int CSetTriangulos2D::Implicados(CCoor3D<int>* p, CSetLados2D& lados, unsigned& aceptados, unsigned& rechazados,
                                 CTriangulo2D* desde, int tolerancia) {
  return GetNivel0()->Obra().Implicados(*this, p, lados, aceptados, rechazados, desde, tolerancia);
}

int CSetTriangulos2D::CObra::Implicados(CSetTriangulos2D& set, CCoor3D<int>* p, CSetLados2D& lados, unsigned& aceptados,
                                        unsigned& rechazados, CTriangulo2D* desde, int tolerancia) {
  CTriangulo2D* semilla = nullptr;
  int respuesta = BuscaSemilla(set, *p, aceptados, rechazados, desde, semilla);
  if (respuesta == HECHA) respuesta = MarcaCavidad(p, aceptados, rechazados, semilla, {tolerancia});
  RecogeLados(lados);
  if (respuesta == HECHA) BorraCavidad();
  return respuesta;
}

/// The first triangle of the cavity.
template <CAcceso kAcceso>
int CSetTriangulos2D::CObra::BuscaSemilla(CSetTriangulos2D& set, CCoor3D<int> const& p, unsigned& aceptados,
                                          unsigned& rechazados, CTriangulo2D* desde, CTriangulo2D*& semilla) {
  aceptados = rechazados = 0;
  condenados = 0;
  if constexpr (kAcceso != CAcceso::TODO) {
    ajeno = false;
    buscados = 0;
  }
  if (set.nivel == 0) {
    abiertos.clear();
  } else if (!set.maximas.Dentro(p, 0)) {
    return FUERA;
  }
  CTriangulo2D*& suInicio = set.nivel == 0 ? inicio : set.inicio;
  if (desde != nullptr) suInicio = desde;
  if (suInicio == nullptr || suInicio->set->cerrado) return SIN_INICIO;
  semilla = PrimeroQueContiene<kAcceso>(suInicio, p, aceptados, rechazados);
  return semilla != nullptr ? HECHA : SIN_CIRCULO;
}

/// Marks the cavity, or leaves the mesh as it was.
int CSetTriangulos2D::CObra::MarcaCavidad(CCoor3D<int>* p, unsigned& aceptados, unsigned& rechazados,
                                          CTriangulo2D* semilla, CTolerancia tolerancia) {
  // A second stamp tells what the walk already found outside from what has not been met yet.
  const int numero = p->num;
  p->num = numero + kSegundaMarca;
  const bool duplicado = CreceCavidad(*p, semilla, aceptados, rechazados);
  const bool juzga = tolerancia.unidades != 0 && !(duplicado && tolerancia.soloSuperficie);
  const bool admitido = !juzga || AdmiteAltura(*p, tolerancia);
  if (admitido) p->num = numero;
  if (admitido && !duplicado) return HECHA;
  for (CTriangulo2D* t : Condenados()) t->SetBorrado(false);
  return admitido ? REPETIDO : POR_ALTURA;
}

void CSetTriangulos2D::CObra::RecogeLados(CSetLados2D& lados) const {
  for (CTriangulo2D const* t : Condenados()) {
    lados.lados.emplace_back(t->p1, t->p2);
    lados.lados.emplace_back(t->p2, t->p3);
    lados.lados.emplace_back(t->p3, t->p1);
  }
}

/// Whether what the walk is about to read of a triangle may be the work of a later point. A triangle is as old as its
/// first vertex, and links change to new triangles or to none. Two triangles that are older than the point and side by
/// side were so when it was the point's turn. A link that has gone has led into a set that was closed, and what is
/// filed there has its corners in the frame of the set.
inline bool CSetTriangulos2D::CObra::EsTardio(CTriangulo2D const& t, int numero) const {
  if (t.p1->num > numero) return true;
  if (ajena.cortes.empty() || t.LadosLimite() == 0 || t.EsCompartido() || !ajena.Tiene(*t.p1)) return false;
  const auto cortado = [this, numero](CTriangulo2D const* v, CCoor3D<int> const& a, CCoor3D<int> const& b) {
    const auto en = [](CCoor3D<int> const& p) {
      const double x = p.x, y = p.y;
      return CCaja{x, y, x, y};
    };
    return v == nullptr && std::ranges::any_of(ajena.cortes, [&](CCorteDeSet const& c) {
             return c.numero > numero && c.marco.Contiene(en(a)) && c.marco.Contiene(en(b));
           });
  };
  return cortado(t.vecino12, *t.p1, *t.p2) || cortado(t.vecino23, *t.p2, *t.p3) || cortado(t.vecino31, *t.p3, *t.p1);
}

/// Takes back the stamps of the last walk.
void CSetTriangulos2D::CObra::DeshaceBusqueda() {
  for (std::size_t i = 0; i < buscados; ++i) cola[i]->ultimoPunto = 0;
}

/// Breadth-first, not a directed walk: short, because it starts close to the point. Links never lead into a closed set,
/// since closing cuts them.
template <CAcceso kAcceso>
CTriangulo2D* CSetTriangulos2D::CObra::PrimeroQueContiene(CTriangulo2D* desde, CCoor3D<int> const& p,
                                                          unsigned& aceptados, unsigned& rechazados) {
  if (cola.empty()) cola.resize(64);
  cola[0] = desde;
  std::size_t puestos = 1;
  const double x = p.x, y = p.y;
  const int numero = p.num;
  for (std::size_t i = 0; i < puestos; ++i) {
    CTriangulo2D* t = cola[i];
    ++aceptados;
    if (t->GetUltimoPuntoProyectado() == numero) continue;
    if constexpr (kAcceso == CAcceso::EN_TURNO) {
      ajeno = EsTardio(*t, numero);
      if (ajeno) return nullptr;
    }
    t->ultimoPunto = numero;
    if constexpr (kAcceso != CAcceso::TODO) buscados = i + 1;
    if (t->EnCirculo(x, y)) return t;
    ++rechazados;
    if (cola.size() < puestos + 3) cola.resize(2 * puestos + 64);
    for (CTriangulo2D* v : {t->vecino12, t->vecino23, t->vecino31}) {
      if (v == nullptr) continue;
      if constexpr (kAcceso == CAcceso::PROPIO) {
        ajeno = v->EsCompartido();
        if (ajeno) return nullptr;
      }
      cola[puestos] = v;  // branch-free: whether it is new is unpredictable
      puestos +=
          static_cast<std::size_t>(v->GetUltimoPuntoProyectado() != numero) & static_cast<std::size_t>(!v->Borrado());
    }
  }
  return nullptr;
}

/// Condemns the triangles around `semilla` whose circles hold the point and opens their rim. True when the point falls
/// on a vertex of one of them.
bool CSetTriangulos2D::CObra::CreceCavidad(CCoor3D<int> const& p, CTriangulo2D* semilla, unsigned& aceptados,
                                           unsigned& rechazados) {
  const int primeraMarca = p.num - kSegundaMarca;
  cola.assign(1, semilla);
  for (std::size_t i = 0; i < cola.size(); ++i) {
    CTriangulo2D* t = cola[i];
    const int marca = t->GetUltimoPuntoProyectado();
    if (t != semilla) {
      if (marca == p.num) continue;
      if (marca == primeraMarca) {
        abiertos.push_back(t);
        continue;
      }
    }
    if (t->Borrado()) continue;
    if (!t->Dentro(p)) {
      ++rechazados;
      abiertos.push_back(t);
      continue;
    }
    if (t->TieneVerticeEn(p)) return true;
    ++aceptados;
    for (CTriangulo2D* v : {t->vecino12, t->vecino23, t->vecino31}) {
      if (v != nullptr && !v->Borrado()) cola.push_back(v);
    }
    t->SetBorrado(true);
    Condena(t);
  }
  return false;
}

/// One-sided: a point far below the surface passes, and one that no triangle of its cavity can place is refused.
bool CSetTriangulos2D::CObra::AdmiteAltura(CCoor3D<int> const& p, CTolerancia tolerancia) {
  bool fuera = false;
  for (CTriangulo2D* t : Condenados()) {
    CCoor3D<int> sobreElPlano(p);
    if (t->Proyecta(sobreElPlano, true) == 0) continue;
    if (tolerancia.soloSuperficie && (t->p1->num < 0 || t->p2->num < 0 || t->p3->num < 0)) {
      fuera = true;  // heights of the frame mean nothing
      continue;
    }
    return static_cast<std::int64_t>(p.z) - sobreElPlano.z <= tolerancia.unidades;
  }
  return fuera;
}

void CSetTriangulos2D::CObra::BorraCavidad() {
  for (CTriangulo2D* t : Condenados()) {
    t->set->Borra(t);
    delete t;
  }
}

template int CSetTriangulos2D::CObra::BuscaSemilla<CAcceso::TODO>(CSetTriangulos2D&, CCoor3D<int> const&, unsigned&,
                                                                  unsigned&, CTriangulo2D*, CTriangulo2D*&);
template int CSetTriangulos2D::CObra::BuscaSemilla<CAcceso::PROPIO>(CSetTriangulos2D&, CCoor3D<int> const&, unsigned&,
                                                                    unsigned&, CTriangulo2D*, CTriangulo2D*&);
template int CSetTriangulos2D::CObra::BuscaSemilla<CAcceso::EN_TURNO>(CSetTriangulos2D&, CCoor3D<int> const&, unsigned&,
                                                                      unsigned&, CTriangulo2D*, CTriangulo2D*&);

}  // namespace Meseta47
