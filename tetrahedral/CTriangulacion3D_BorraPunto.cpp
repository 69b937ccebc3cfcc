// Points taken out of a finished mesh: the tetrahedra whose spheres hold one give way to those of the points around
// them, which a small run within this one finds.
#include <algorithm>
#include <memory>
#include <unordered_set>
#include <vector>

#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47 {

namespace {

using CLista = std::vector<CTetraedro*>;

[[nodiscard]] bool TieneVertice(CTetraedro const* t, CPuntoTIN const* p) {
  return std::find(t->Puntos(), t->Puntos() + 4, p) != t->Puntos() + 4;
}

/// Tetrahedra of no set yet: destroyed unless somebody takes them.
class CNuevos {
 public:
  CNuevos() = default;
  CNuevos(CNuevos const&) = delete;
  CNuevos& operator=(CNuevos const&) = delete;
  ~CNuevos() { Vacia(); }
  void Vacia() {
    for (CTetraedro* t : tetraedros) delete t;
    tetraedros.clear();
  }
  CLista tetraedros;
};

/// Everything that a drawing of its own holds takes part.
CDataTriangulacion DatosPara(CDibujo<int> const& dibujo) {
  CMaximas<int> caja;
  for (CCoor3D<int> const& p : dibujo[0].Puntos()) caja.Nuevo(p);
  CDataTriangulacion datos;
  const double escala = dibujo.semilla.Precision();
  datos.zMin = (caja.Minimo.z - 1.0) / escala;
  datos.zMax = (caja.Maximo.z + 1.0) / escala;
  datos.incluidos.clear();
  datos.incluidos.Inserta(CElementoDigiTab(CTipoEntidad{}, L"*", 70, 70, 70, 0, 0, CString(), 1), false);
  return datos;
}

}  // namespace

bool CTriangulacion3D::BorraPunto(unsigned indice) {
  CPuntoTIN* p = puntos.at(indice);
  if (p == nullptr) return false;
  std::vector<CPuntoTIN*> quitados{p};
  unsigned implicados = 0, visitados = 0, rechazados = 0;
  return BorraPunto(quitados, implicados, visitados, rechazados);
}

bool CTriangulacion3D::BorraPunto(std::vector<unsigned>& indices) {
  std::vector<CPuntoTIN*> quitados;
  for (const unsigned indice : indices) {
    if (CPuntoTIN* p = puntos.at(indice)) quitados.push_back(p);
  }
  unsigned implicados = 0, visitados = 0, rechazados = 0;
  return BorraPunto(quitados, implicados, visitados, rechazados);
}

bool CTriangulacion3D::BorraPunto(std::vector<CPuntoTIN*>& quitados, unsigned& implicados, unsigned& visitados,
                                  unsigned& rechazados) {
  implicados = visitados = rechazados = 0;
  std::unordered_set<CPuntoTIN const*> vistos;  // asked only: its order is nobody's
  std::erase_if(quitados, [&vistos](CPuntoTIN const* p) { return !vistos.insert(p).second; });
  CLista cavidad;
  if (quitados.empty() || !BuscaCavidad(quitados, cavidad, visitados)) return false;

  CNuevos nuevos;
  int codigo = kHecho;
  for (std::vector<CSetTetraedros::CFaz> faltan;; faltan.clear()) {
    codigo = RellenaCavidad(quitados, cavidad, nuevos.tetraedros, faltan, visitados);
    if (codigo != kHecho || CSetTetraedros::LlenanLoMismo(cavidad, nuevos.tetraedros)) break;
    nuevos.Vacia();
    if (!EnsanchaCavidad(faltan, cavidad)) return false;
  }

  implicados = static_cast<unsigned>(cavidad.size());
  balance.condenados += cavidad.size();
  balance.creados += nuevos.tetraedros.size();
  setRaiz.Sustituye(cavidad, nuevos.tetraedros);
  nuevos.tetraedros.clear();
  if (codigo != kHecho) ++resumen.huecos;
  for (CPuntoTIN* p : quitados) p->num = -p->num;
  puntos.modificado = 1;
  return true;
}

/// The tetrahedra whose spheres hold one of the points, those that have it on them included. Those around a point are
/// among them, and of what lies on one sphere with it nothing stays: every face of the border is then one that any mesh
/// of the points has. False when a point is in no tetrahedron.
bool CTriangulacion3D::BuscaCavidad(std::vector<CPuntoTIN*> const& quitados, CLista& cavidad, unsigned& visitados) {
  std::unordered_set<CTetraedro const*> vistos;
  CLista suyos;
  for (CPuntoTIN const* p : quitados) {
    suyos.clear();
    if (p->num <= 0 || !setRaiz.BuscaEsferas(*p, Inicial(*p), suyos, visitados, balance)) return false;
    if (std::none_of(suyos.begin(), suyos.end(), [p](CTetraedro const* t) { return TieneVertice(t, p); })) return false;
    for (CTetraedro* t : suyos) {
      if (vistos.insert(t).second) cavidad.push_back(t);
    }
  }
  return true;
}

CTetraedro* CTriangulacion3D::Inicial(CCoor3D<int> const& p) { return TetraedroInicial(*setRaiz.DameHijo(p)); }

/// Meshes the points around the cavity, in the frame of this mesh, and takes of it what the removed points would
/// condemn and what can be reached from there within the cavity: that fills it, and nothing else does.
///
/// In a frame of its own, a fifth wider than this one's corners, what lies between those and the hull would be missing.
int CTriangulacion3D::RellenaCavidad(std::vector<CPuntoTIN*> const& quitados, CLista const& cavidad, CLista& nuevos,
                                     std::vector<CSetTetraedros::CFaz>& faltan, unsigned& visitados) {
  const std::vector<CPuntoTIN*> vecinos = PuntosAlrededor(cavidad, quitados);
  CDibujo<int> dibujo(semilla);
  {
    CSetPuntos<int> nube(L"nuevo");
    for (CPuntoTIN const* p : vecinos) nube.Inserta(CCoor3D<int>(p->x, p->y, p->z, 0), tipoAero3{});
    dibujo.Inserta(std::move(nube));
  }
  CTriangulacion3D local(0, semilla, DatosPara(dibujo), 0);
  local.Mensajes(nivelMensajes);
  if (const int codigo = local.Cavidad(dibujo, *this); codigo != kHecho) return codigo;

  CLista suyos;
  for (CPuntoTIN const* p : quitados) {
    if (!local.setRaiz.BuscaEsferas(*p, local.Inicial(*p), suyos, visitados, balance)) return kFicheroInconsistente;
  }
  std::sort(suyos.begin(), suyos.end());
  suyos.erase(std::unique(suyos.begin(), suyos.end()), suyos.end());
  const auto punto = [&](CTetraedro const& t, unsigned i) -> CCoor3D<int>* {
    const int n = t.Puntos()[i]->num;
    return n > 0 ? vecinos[static_cast<std::size_t>(n) - 1] : &esquinas[-n - 1];
  };
  std::vector<CSetTetraedros::CFaz> borde;
  static_cast<void>(CSetTetraedros::Borde(CSetTetraedros::Fazes(cavidad), borde));
  CSetTetraedros::Inunda(suyos, borde, [&punto](CTetraedro const& t, unsigned i) { return punto(t, i)->num; });
  // In the order of the small mesh: addresses are nobody's.
  const std::unordered_set<CTetraedro const*> elegidos(suyos.begin(), suyos.end());
  CLista todos;
  local.setRaiz.RellenaVectorPunteros(todos);
  std::vector<CSetTetraedros::CNumeros3> caras;
  for (CTetraedro const* t : todos) {
    for (auto const& v : CTetraedro::kVertice) {
      auto& cara = caras.emplace_back();
      std::transform(v, v + 3, cara.begin(), [&](unsigned i) { return punto(*t, i)->num; });
      std::sort(cara.begin(), cara.end());
    }
  }
  std::sort(caras.begin(), caras.end());
  for (CSetTetraedros::CFaz const& faz : borde) {
    if (!std::binary_search(caras.begin(), caras.end(), faz.numeros)) faltan.push_back(faz);
  }
  for (CTetraedro const* t : todos) {
    if (!elegidos.contains(t)) continue;
    nuevos.push_back(nullptr);  // its place first: nobody else owns it yet
    nuevos.back() = CTetraedro::Nuevo(CTetraedro(punto(*t, 0), punto(*t, 1), punto(*t, 2), punto(*t, 3)));
  }
  return kHecho;
}

/// The points of the cavity that stay, as they come to stand in the small run's own set: no two of them share a place.
std::vector<CPuntoTIN*> CTriangulacion3D::PuntosAlrededor(CLista const& cavidad,
                                                          std::vector<CPuntoTIN*> const& quitados) {
  std::unordered_set<CPuntoTIN const*> vistos(quitados.begin(), quitados.end());
  std::vector<CPuntoTIN*> vecinos;
  for (CTetraedro const* t : cavidad) {
    for (unsigned i = 0; i < 4; ++i) {
      auto* p = static_cast<CPuntoTIN*>(t->Puntos()[i]);
      if (p->num > 0 && vistos.insert(p).second) vecinos.push_back(p);
    }
  }
  std::sort(vecinos.begin(), vecinos.end(), [](CPuntoTIN const* a, CPuntoTIN const* b) { return (*a < *b) != 0; });
  return vecinos;
}

/// Four points on a circle between two spheres are two triangles in two ways. Where the small run has taken the other
/// one, a face of the border is missing from it, and the far sphere joins the cavity as well. False when there is none.
bool CTriangulacion3D::EnsanchaCavidad(std::vector<CSetTetraedros::CFaz> const& faltan, CLista& cavidad) {
  const std::size_t antes = cavidad.size();
  std::unordered_set<CTetraedro const*> vistos(cavidad.begin(), cavidad.end());
  for (CSetTetraedros::CFaz const& faz : faltan) CSetTetraedros::AnadeEsfera(faz, vistos, cavidad);
  return cavidad.size() > antes;
}

/// The small run: in memory, in the frame of another mesh. Without points the frame alone.
int CTriangulacion3D::Cavidad(CDibujo<int>& dibujo, CTriangulacion3D const& madre) {
  const auto tomaMarco = [&] {
    maximas = madre.maximas;
    std::copy(std::begin(madre.esquinas), std::end(madre.esquinas), std::begin(esquinas));
  };
  if (dibujo[0].NPuntos() == 0) {
    EstableceDivisiones(0, madre.maximas);
    tomaMarco();
    ConstruyeMarco();
    return kHecho;
  }
  int codigo = Rellena(dibujo);
  tomaMarco();
  if (codigo == kHecho) codigo = EnlazaLista(dibujo, 0, false, false);
  if (codigo == kHecho) codigo = GenerarMDT(dibujo);
  return codigo;
}

}  // namespace Meseta47
