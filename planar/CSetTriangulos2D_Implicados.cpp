// The cavity of a new point: a breadth-first walk over the mesh to the first circle that holds it, growth over the
// neighbours, the test of heights, and the removal of the condemned.
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
int CSetTriangulos2D::CObra::BuscaSemilla(CSetTriangulos2D& set, CCoor3D<int> const& p, unsigned& aceptados,
                                          unsigned& rechazados, CTriangulo2D* desde, CTriangulo2D*& semilla) {
  aceptados = rechazados = 0;
  condenados = 0;
  if (set.nivel == 0) {
    abiertos.clear();
  } else if (!set.maximas.Dentro(p, 0)) {
    return FUERA;
  }
  if (desde != nullptr) set.inicio = desde;
  if (set.inicio == nullptr || set.inicio->set->cerrado) return SIN_INICIO;
  semilla = PrimeroQueContiene(set.inicio, p, aceptados, rechazados);
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

/// Breadth-first, not a directed walk: short, because it starts close to the point. Links never lead into a closed set,
/// since closing cuts them.
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
    t->ultimoPunto = numero;
    if (t->EnCirculo(x, y)) return t;
    ++rechazados;
    if (cola.size() < puestos + 3) cola.resize(2 * puestos + 64);
    for (CTriangulo2D* v : {t->vecino12, t->vecino23, t->vecino31}) {
      if (v == nullptr) continue;
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

}  // namespace Meseta47
