#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "planar/CAbanico.h"
#include "planar/CSetTriangulos2D.h"

namespace Meseta47 {

/// What an insertion may touch.
enum class CAcceso {
  TODO,      ///< the whole mesh: there is one thread
  PROPIO,    ///< triangles that are not shared
  EN_TURNO,  ///< the whole mesh, as the other thread stands still; but that may be ahead
};

/// The work on a mesh that grows: how a point finds its cavity, and how the cavity gives way to new triangles. Its
/// lists are kept from point to point, so that no insertion allocates once the largest cavity has been seen.
///
/// One object a mesh, owned by its root; for the inserting thread. Where two insert (CMitad), each has one of its own,
/// so that its lists stay in the cache of its processor; the root's serves the one whose turn it is where a cavity has
/// to be filled by a search for the sides.
class CSetTriangulos2D::CObra {
 public:
  /// Answers beside CRespuesta.
  enum : int {
    AJENA = 6,   ///< PROPIO: it would touch what is shared; nothing has changed
    TARDIA = 7,  ///< EN_TURNO: it would see what a later point has made; the mesh is of no more use
    LARGA = 8,   ///< EN_TURNO, not the root's: it is for the root's work; nothing has changed
  };
  /// A set that was closed, and what is filed in it lies in this frame.
  struct CCorteDeSet {
    int numero;  ///< of the point that closed it
    CMarco marco;
  };
  /// The half of the other thread, as far as a point in turn may see it.
  struct CAjena {
    std::span<CCorteDeSet const> cortes{};  ///< those of points not much earlier, and of later ones
    int CCoor3D<int>::*eje = nullptr;
    int medio = 0;
    bool alta = false;  ///< it lies at `medio` and above

    [[nodiscard]] bool Tiene(CCoor3D<int> const& p) const { return (p.*eje >= medio) == alta; }
  };

  /// The half that inserts.
  struct CPropia {
    CMarco marco{};                      ///< what a box must keep to, to lie in it
    CSetTriangulos2D* enRaiz = nullptr;  ///< has what lies in it of the root's list: the root itself for one thread

    /// Whether a triangle with this circle is the half's own. Circles that are judged by their vertices are not.
    [[nodiscard]] bool Tiene(CCirculo const& c) const {
      return c.radio2 != 0 && c.radio <= CTriangulo2D::kRadioDudoso &&
             marco.Contiene({c.x - c.radio, c.y - c.radio, c.x + c.radio, c.y + c.radio});
    }
  };

  explicit CObra(CSetTriangulos2D& laRaiz) : CObra(laRaiz, laRaiz.inicio) {}
  /// `elInicio` stands for the root's.
  CObra(CSetTriangulos2D& laRaiz, CTriangulo2D*& elInicio) : raiz(laRaiz), inicio(elInicio) { propia.enRaiz = &raiz; }

  int Implicados(CSetTriangulos2D& set, CCoor3D<int>* p, CSetLados2D& lados, unsigned& aceptados, unsigned& rechazados,
                 CTriangulo2D* desde, int tolerancia);
  template <CAcceso kAcceso = CAcceso::TODO>
  int InsertaPunto(CCoor3D<int>* p, CSetTriangulos2D& cerca, CTriangulo2D* desde, CTolerancia tolerancia,
                   unsigned& aceptados, unsigned& rechazados, CBalance& balance);
  /// The triangle of the open list that has the side from `a` to `b`; it leaves the list with its last free side.
  CTriangulo2D* BuscaEnAbiertos(int a, int b, int& lado);
  /// All lists are about to be searched for a side, of which two threads have some that one would find elsewhere.
  void BuscaEnTodo() { ajeno |= propia.enRaiz != &raiz; }
  /// Sets have been closed or made since the last point.
  void OlvidaCamino() { camino.sets[0] = nullptr; }

  std::vector<CTriangulo2D*> abiertos;  ///< triangles with a free side
  CAjena ajena;                         ///< EN_TURNO
  CPropia propia;                       ///< PROPIO and EN_TURNO

 private:
  /// An open set near a point and those above it. The circle of a triangle that has the point as a vertex belongs to
  /// one of them: it reaches the point, and so no cell beside their way.
  struct CCamino {
    static constexpr std::size_t kNiveles = CAbanico::CMarcos::kCuantos;  ///< few circles leave more
    CSetTriangulos2D* sets[kNiveles + 1] = {};  ///< from below; the root again and again once it is reached
    CAbanico::CMarcos marcos;                   ///< what a box must keep to, of each but the last

    void Pon(CSetTriangulos2D& cerca);
    /// The set for a triangle whose circle leaves the first `fuera` of them.
    [[nodiscard]] CSetTriangulos2D& SetPara(CTriangulo2D const& t, std::size_t fuera,
                                            CTriangulo2D*& inicioDeRaiz) const;
  };

  /// A triangle that a growing cavity has looked at, and its stamp before that.
  struct CVisita {
    CTriangulo2D* triangulo;
    int marca;
  };

  template <CAcceso kAcceso>
  class CCrecimiento;

  template <CAcceso kAcceso = CAcceso::TODO>
  int BuscaSemilla(CSetTriangulos2D& set, CCoor3D<int> const& p, unsigned& aceptados, unsigned& rechazados,
                   CTriangulo2D* desde, CTriangulo2D*& semilla);
  template <CAcceso kAcceso>
  CTriangulo2D* PrimeroQueContiene(CTriangulo2D* desde, CCoor3D<int> const& p, unsigned& aceptados,
                                   unsigned& rechazados);
  bool CreceCavidad(CCoor3D<int> const& p, CTriangulo2D* semilla, unsigned& aceptados, unsigned& rechazados);
  int MarcaCavidad(CCoor3D<int>* p, unsigned& aceptados, unsigned& rechazados, CTriangulo2D* semilla,
                   CTolerancia tolerancia);
  [[nodiscard]] bool AdmiteAltura(CCoor3D<int> const& p, CTolerancia tolerancia);
  void BorraCavidad();
  void RecogeLados(CSetLados2D& lados) const;
  template <CAcceso kAcceso>
  [[nodiscard]] bool CreceContorno(CCoor3D<int> const& p, CTriangulo2D* semilla, unsigned& aceptados,
                                   unsigned& rechazados);
  [[nodiscard]] bool HayAbiertoSinEnlazar() const;
  int JuzgaAltura(CCoor3D<int>* p, CTolerancia tolerancia);
  void CalculaAbanico(CCoor3D<int> const& p, CSetTriangulos2D& cerca);
  template <CAcceso kAcceso>
  void SustituyeCavidad(CCoor3D<int>* p);
  void PonAbanico(CCoor3D<int>* p);
  template <CAcceso kAcceso>
  void ArchivaEnRaiz(CTriangulo2D* t);
  [[nodiscard]] bool QuedaEnMitad() const;
  [[nodiscard]] bool InvadeOtroCuadrante(CCoor3D<int> const& p) const;
  [[nodiscard]] bool InvadeOtroCuadrante(CCirculo const& c, CCoor3D<int> const& p) const;
  [[nodiscard]] bool EsTardio(CTriangulo2D const& t, int numero) const;
  void DeshaceVisitas();
  void DeshaceBusqueda();
  template <CAcceso kAcceso>
  void SustituyePorBusqueda(CCoor3D<int>* p, CBalance& balance);

  [[nodiscard]] std::span<CTriangulo2D* const> Condenados() const { return {cavidad.data(), condenados}; }
  void Condena(CTriangulo2D* t);
  void Amplia();

  CSetTriangulos2D& raiz;
  CTriangulo2D*& inicio;            ///< where a walk starts that nothing nearer gives a start
  std::vector<CTriangulo2D*> cola;  ///< triangles still to be looked at, first come first served
  /// Condemned triangles, in the order in which they were found; behind them, as its places are given out, the fan.
  std::vector<CTriangulo2D*> cavidad;
  std::vector<unsigned> entrada;  ///< of each of them, the side of the fan behind which it was found
  std::vector<CVisita> visitas;
  std::size_t visitadas = 0;   ///< how many of them, once the cavity has grown
  std::size_t buscados = 0;    ///< triangles that the last walk has taken from the queue
  bool ajeno = false;          ///< the walk or the growth has met what it may not touch
  std::size_t condenados = 0;  ///< how many triangles the cavity has
  std::size_t cabida = 0;      ///< and can have, as far as `CreceContorno` is concerned
  CAbanico abanico;
  CCamino camino;
  CSetLados2D pares;
};

inline CSetTriangulos2D& CSetTriangulos2D::CObra::CCamino::SetPara(CTriangulo2D const& t, std::size_t fuera,
                                                                   CTriangulo2D*& inicioDeRaiz) const {
  CSetTriangulos2D* s = sets[fuera];
  if (fuera == kNiveles) {
    while (!s->paso.Contiene(CajaDe(t))) s = s->padre;
  }
  // A full leaf is to be divided; one that just was has its box in a child.
  if (s->cantidad == kCapacidad || sets[0]->hijos != nullptr) return s->SetPara(CajaDe(t), inicioDeRaiz);
  return *s;
}

}  // namespace Meseta47
