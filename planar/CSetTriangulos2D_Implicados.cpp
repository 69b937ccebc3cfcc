// The cavity of a new point: a breadth-first walk over the mesh to the first circle that holds it, growth over the
// neighbours, the test of heights, and the removal of the condemned.
#include "planar/CSetTriangulos2D.h"

namespace Meseta47 {

int CSetTriangulos2D::Implicados(CCoor3D<int>* p, CSetLados2D& lados, unsigned& aceptados, unsigned& rechazados,
                                 CTriangulo2D* desde, int tolerancia) {
  const int respuesta = BuscaCavidad(p, aceptados, rechazados, desde, tolerancia);
  if (borrador != nullptr) RecogeLados(lados);
  if (respuesta == 0) BorraCavidad();
  return respuesta;
}

/// Marks the cavity, or leaves the mesh as it was.
int CSetTriangulos2D::BuscaCavidad(CCoor3D<int>* p, unsigned& aceptados, unsigned& rechazados, CTriangulo2D* desde,
                                   int tolerancia) {
  aceptados = rechazados = 0;
  if (borrador == nullptr) borrador = std::make_unique<CBorrador>();
  borrador->cavidad.clear();
  if (nivel == 0) {
    abiertos.clear();
  } else if (!maximas.Dentro(*p, 0)) {
    return 1;
  }
  if (desde != nullptr) inicio = desde;
  if (inicio == nullptr || inicio->set->cerrado) return 2;

  CTriangulo2D* semilla = PrimeroQueContiene(*p, aceptados, rechazados);
  if (semilla == nullptr) return 4;
  // A second stamp tells what the walk already found outside from what has not been met yet.
  const int numero = p->num;
  p->num = numero + kSegundaMarca;
  const bool duplicado = CreceCavidad(*p, semilla, aceptados, rechazados);
  const bool admitido = tolerancia == 0 || AdmiteAltura(*p, tolerancia);
  if (admitido) p->num = numero;
  if (admitido && !duplicado) return 0;
  for (CTriangulo2D* t : borrador->cavidad) t->SetBorrado(false);
  return admitido ? 3 : 5;
}

void CSetTriangulos2D::RecogeLados(CSetLados2D& lados) const {
  for (CTriangulo2D const* t : borrador->cavidad) {
    lados.lados.emplace_back(t->p1, t->p2);
    lados.lados.emplace_back(t->p2, t->p3);
    lados.lados.emplace_back(t->p3, t->p1);
  }
}

/// Breadth-first, not a directed walk: short, because it starts close to the point. Links never lead into a closed set,
/// since closing cuts them.
CTriangulo2D* CSetTriangulos2D::PrimeroQueContiene(CCoor3D<int> const& p, unsigned& aceptados, unsigned& rechazados) {
  auto& cola = borrador->cola;
  cola.assign(1, inicio);
  for (std::size_t i = 0; i < cola.size(); ++i) {
    CTriangulo2D* t = cola[i];
    ++aceptados;
    if (t->GetUltimoPuntoProyectado() == p.num) continue;
    if (t->Dentro(p)) return t;
    ++rechazados;
    for (CTriangulo2D* v : {t->vecino12, t->vecino23, t->vecino31}) {
      if (v != nullptr && v->GetUltimoPuntoProyectado() != p.num && !v->Borrado()) cola.push_back(v);
    }
  }
  return nullptr;
}

/// Condemns the triangles around `semilla` whose circles hold the point and opens their rim. True when the point falls
/// on a vertex of one of them.
bool CSetTriangulos2D::CreceCavidad(CCoor3D<int> const& p, CTriangulo2D* semilla, unsigned& aceptados,
                                    unsigned& rechazados) {
  auto& cola = borrador->cola;
  auto& cavidad = borrador->cavidad;
  const int primeraMarca = p.num - kSegundaMarca;
  CSetTriangulos2D* raiz = GetNivel0();
  cola.assign(1, semilla);
  for (std::size_t i = 0; i < cola.size(); ++i) {
    CTriangulo2D* t = cola[i];
    const int marca = t->GetUltimoPuntoProyectado();
    if (t != semilla) {
      if (marca == p.num) continue;
      if (marca == primeraMarca) {
        raiz->abiertos.push_back(t);
        continue;
      }
    }
    if (t->Borrado()) continue;
    if (!t->Dentro(p)) {
      ++rechazados;
      raiz->abiertos.push_back(t);
      continue;
    }
    const auto coincide = [&p](CCoor3D<int> const* v) { return v->x == p.x && v->y == p.y; };
    if (coincide(t->p1) || coincide(t->p2) || coincide(t->p3)) return true;
    ++aceptados;
    for (CTriangulo2D* v : {t->vecino12, t->vecino23, t->vecino31}) {
      if (v != nullptr && !v->Borrado()) cola.push_back(v);
    }
    t->SetBorrado(true);
    cavidad.push_back(t);
  }
  return false;
}

/// One-sided: a point far below the surface passes, and one that no triangle of its cavity can place is refused.
bool CSetTriangulos2D::AdmiteAltura(CCoor3D<int> const& p, int tolerancia) {
  for (CTriangulo2D* t : borrador->cavidad) {
    CCoor3D<int> sobreElPlano(p);
    if (t->Proyecta(sobreElPlano, true) == 0) continue;
    return static_cast<std::int64_t>(p.z) - sobreElPlano.z <= tolerancia;
  }
  return false;
}

void CSetTriangulos2D::BorraCavidad() {
  for (CTriangulo2D* t : borrador->cavidad) {
    t->set->Borra(t);
    delete t;
  }
}

}  // namespace Meseta47
