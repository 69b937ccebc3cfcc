#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "planar/CAbanico.h"
#include "planar/CSetTriangulos2D.h"

namespace Meseta47 {

/// The work on a mesh that grows: how a point finds its cavity, and how the cavity gives way to new triangles. Its
/// lists are kept from point to point, so that no insertion allocates once the largest cavity has been seen.
///
/// One object a mesh, owned by its root; for the inserting thread.
class CSetTriangulos2D::CObra {
 public:
  explicit CObra(CSetTriangulos2D& laRaiz) : raiz(laRaiz) {}

  int Implicados(CSetTriangulos2D& set, CCoor3D<int>* p, CSetLados2D& lados, unsigned& aceptados, unsigned& rechazados,
                 CTriangulo2D* desde, int tolerancia);
  int InsertaPunto(CCoor3D<int>* p, CSetTriangulos2D& cerca, CTriangulo2D* desde, CTolerancia tolerancia,
                   unsigned& aceptados, unsigned& rechazados, CBalance& balance);
  /// The triangle of the open list that has the side from `a` to `b`; it leaves the list with its last free side.
  CTriangulo2D* BuscaEnAbiertos(int a, int b, int& lado);
  /// Sets have been closed or made since the last point.
  void OlvidaCamino() { camino.sets[0] = nullptr; }

  std::vector<CTriangulo2D*> abiertos;  ///< triangles with a free side

 private:
  /// An open set near a point and those above it. The circle of a triangle that has the point as a vertex belongs to
  /// one of them: it reaches the point, and so no cell beside their way.
  struct CCamino {
    static constexpr std::size_t kNiveles = CAbanico::CMarcos::kCuantos;  ///< few circles leave more
    CSetTriangulos2D* sets[kNiveles + 1] = {};  ///< from below; the root again and again once it is reached
    CAbanico::CMarcos marcos;                   ///< what a box must keep to, of each but the last

    void Pon(CSetTriangulos2D& cerca);
    /// The set for a triangle whose circle leaves the first `fuera` of them.
    [[nodiscard]] CSetTriangulos2D& SetPara(CTriangulo2D const& t, std::size_t fuera) const;
  };

  /// A triangle that a growing cavity has looked at, and its stamp before that.
  struct CVisita {
    CTriangulo2D* triangulo;
    int marca;
  };

  class CCrecimiento;

  int BuscaSemilla(CSetTriangulos2D& set, CCoor3D<int> const& p, unsigned& aceptados, unsigned& rechazados,
                   CTriangulo2D* desde, CTriangulo2D*& semilla);
  CTriangulo2D* PrimeroQueContiene(CTriangulo2D* desde, CCoor3D<int> const& p, unsigned& aceptados,
                                   unsigned& rechazados);
  bool CreceCavidad(CCoor3D<int> const& p, CTriangulo2D* semilla, unsigned& aceptados, unsigned& rechazados);
  int MarcaCavidad(CCoor3D<int>* p, unsigned& aceptados, unsigned& rechazados, CTriangulo2D* semilla,
                   CTolerancia tolerancia);
  [[nodiscard]] bool AdmiteAltura(CCoor3D<int> const& p, CTolerancia tolerancia);
  void BorraCavidad();
  void RecogeLados(CSetLados2D& lados) const;
  [[nodiscard]] bool CreceContorno(CCoor3D<int> const& p, CTriangulo2D* semilla, unsigned& aceptados,
                                   unsigned& rechazados);
  [[nodiscard]] bool HayAbiertoSinEnlazar() const;
  int JuzgaAltura(CCoor3D<int>* p, CTolerancia tolerancia);
  void SustituyeCavidad(CCoor3D<int>* p, CSetTriangulos2D& cerca);
  void PonAbanico(CCoor3D<int>* p);
  void SustituyePorBusqueda(CCoor3D<int>* p, CBalance& balance);

  [[nodiscard]] std::span<CTriangulo2D* const> Condenados() const { return {cavidad.data(), condenados}; }
  void Condena(CTriangulo2D* t);
  void Amplia();

  CSetTriangulos2D& raiz;
  std::vector<CTriangulo2D*> cola;  ///< triangles still to be looked at, first come first served
  /// Condemned triangles, in the order in which they were found; behind them, as its places are given out, the fan.
  std::vector<CTriangulo2D*> cavidad;
  std::vector<unsigned> entrada;  ///< of each of them, the side of the fan behind which it was found
  std::vector<CVisita> visitas;
  std::size_t condenados = 0;  ///< how many triangles the cavity has
  std::size_t cabida = 0;      ///< and can have, as far as `CreceContorno` is concerned
  CAbanico abanico;
  CCamino camino;
  CSetLados2D pares;
};

inline CSetTriangulos2D& CSetTriangulos2D::CObra::CCamino::SetPara(CTriangulo2D const& t, std::size_t fuera) const {
  CSetTriangulos2D* s = sets[fuera];
  if (fuera == kNiveles) {
    while (!s->paso.Contiene(CajaDe(t))) s = s->padre;
  }
  // A full leaf is to be divided; one that just was has its box in a child.
  if (s->cantidad == kCapacidad || sets[0]->hijos != nullptr) return s->SetPara(CajaDe(t));
  return *s;
}

}  // namespace Meseta47
