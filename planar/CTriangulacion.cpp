#include "planar/CTriangulacion.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "model/geometry/Hilbert.h"
#include "model/terrain/CTIN.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "run/Recorrido.h"

namespace Meseta47 {

namespace {

constexpr wchar_t kCodigo[] = L"Limite";
constexpr std::size_t kMinimoPuntos = 3;

/// Lengths in metres come as decimal fractions that doubles do not have, and a side that is just as long as the limit
/// belongs to the piece. A square of a side is a whole number, and below 2^40 no other one is as near.
constexpr double kHolguraDecimal = 1 + 1e-12;

/// Collects the positions of the points that pass a filter.
struct CRecogida {
  std::vector<CCoor3D<int>>& puntos;

  bool Entidad(CLinea<int> const&) { return true; }
  bool Entera(CLinea<int> const& e) {
    const std::size_t hacen = puntos.size() + static_cast<std::size_t>(e.NPuntos());
    if (hacen > puntos.capacity()) puntos.reserve(std::max(hacen, 2 * puntos.size()));  // lines are many and short
    return false;
  }
  void operator()(CLinea<int> const& e, unsigned, unsigned k) {
    CCoor3D<int> const& p = e.Punto(static_cast<int>(k));
    puntos.emplace_back(p.x, p.y, p.z, 0);
  }
};

/// Place of a value in an interval, as 32 bits of a fraction of it: a number of its own for each integer.
std::uint32_t Fraccion(int valor, int minimo, int maximo) {
  const auto desde = static_cast<std::uint64_t>(static_cast<std::int64_t>(valor) - minimo);
  const auto todo = static_cast<std::uint64_t>(static_cast<std::int64_t>(maximo) - minimo) + 1;
  return static_cast<std::uint32_t>((desde << 32) / todo);
}

struct CEnLaCurva {
  std::uint64_t lugar;
  std::size_t indice;
};

/// Puts each point where the list has its index, along the cycles of that permutation: there is not room for the points
/// twice. The list is used up.
void Permuta(std::vector<CCoor3D<int>>& puntos, std::vector<CEnLaCurva>& orden) {
  for (std::size_t i = 0; i < puntos.size(); ++i) {
    const CCoor3D<int> primero = puntos[i];
    std::size_t aqui = i;
    while (orden[aqui].indice != i) {
      const std::size_t de = std::exchange(orden[aqui].indice, aqui);
      puntos[aqui] = puntos[de];
      aqui = de;
    }
    puntos[aqui] = primero;
    orden[aqui].indice = aqui;
  }
}

/// Puts the points along a Hilbert curve over their box, which links them fast, and leaves of each plan position the
/// highest one. Cocircular points may be cut either way, by the order in which they come: an order of positions alone
/// gives the same pieces however the drawing holds them.
void Ordena(std::vector<CCoor3D<int>>& puntos, CMaximas<int> const& caja) {
  std::vector<CEnLaCurva> orden;
  orden.reserve(puntos.size());
  for (CCoor3D<int> const& p : puntos) {
    orden.push_back({Hilbert(Fraccion(p.x, caja.Minimo.x, caja.Maximo.x), Fraccion(p.y, caja.Minimo.y, caja.Maximo.y)),
                     orden.size()});
  }
  std::sort(orden.begin(), orden.end(), [&](CEnLaCurva const& a, CEnLaCurva const& b) {
    return a.lugar != b.lugar ? a.lugar < b.lugar : puntos[a.indice].z > puntos[b.indice].z;
  });
  Permuta(puntos, orden);
  const auto mismaPlanta = [](CCoor3D<int> const& a, CCoor3D<int> const& b) { return a.x == b.x && a.y == b.y; };
  puntos.erase(std::unique(puntos.begin(), puntos.end(), mismaPlanta), puntos.end());
}

/// The phases of a run over one drawing. The end of the progress level is left to whoever asked for the outline.
class CMalla : public CTriangulacion2D {
 public:
  using CTriangulacion2D::CTriangulacion2D;
  CMalla(CMalla const&) = delete;
  CMalla& operator=(CMalla const&) = delete;
  ~CMalla() override {
    hiloSalva.Stop();
    BorraFicheroTemporal();
  }

  int Genera(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo) {
    const CFuentes fuentes{dibujo};
    CEnlace enlace;
    int codigo = Rellena(fuentes);
    if (codigo == kHecho) codigo = Enlaza(fuentes, enlace);
    if (codigo != kHecho) return codigo;
    return CTriangulacion2D::Genera({.fuentes = fuentes, .ladoMaximo = ladoMaximo}, tin);
  }
};

/// Every point, and the triangles of the slopes that the parameters keep.
CDataTriangulacion SinElegirPuntos(CDataTriangulacion const& datos) {
  CDataTriangulacion todos;
  todos.pendienteMin = datos.pendienteMin;
  todos.pendienteMax = datos.pendienteMax;
  return todos;
}

CLinea<int> Linea(CTIN const& tin, std::vector<std::uint32_t> const& anillo) {
  CLinea<int> linea{CString(kCodigo)};
  linea.Reserva(anillo.size() + 1);
  const auto anade = [&](std::uint32_t i) {
    CPuntoTIN const& p = tin.puntos[i];
    linea << CCoor3D<int>(p.x, p.y, p.z, 0);
  };
  for (const std::uint32_t i : anillo) anade(i);
  anade(anillo.front());
  return linea;
}

}  // namespace

CTriangulacion::CTriangulacion(CDataSemilla const& laSemilla, CDataTriangulacion const& losDatos)
    : CObjetoFichero(OBJETO_TRIANGULACION), semilla(laSemilla), datos(losDatos) {}

void CTriangulacion::Clear() {
  CObjetoFichero::Clear();
  caja.Borra();
}

std::vector<CCoor3D<int>> CTriangulacion::PuntosDe(CDibujo<int> const& dibujo) const {
  std::vector<CCoor3D<int>> puntos;
  RecorrePuntos(dibujo, CFiltroPuntos(datos, semilla.Precision(), dibujo), nullptr, CRecogida{puntos});
  return puntos;
}

int CTriangulacion::LimiteDibujo(CDibujo<int>& dibujo, CDibujo<int>& limites, CDataSacaLimites const* data, int sentido,
                                 int soloExteriores) {
  return LimitePuntos(PuntosDe(dibujo), limites, data, sentido, soloExteriores);
}

int CTriangulacion::LimitePuntos(std::vector<CCoor3D<int>> puntos, CDibujo<int>& limites, CDataSacaLimites const* data,
                                 int sentido, int soloExteriores) {
  const CDataSacaLimites como = data != nullptr ? *data : CDataSacaLimites();
  CMaximas<int> extension;
  for (CCoor3D<int> const& p : puntos) extension.Nuevo(p);
  Ordena(puntos, extension);
  CTIN tin(0, 0, semilla);
  if (puntos.size() >= kMinimoPuntos && como.distancia != 0) {
    CSetPuntos<int> nube;
    nube.CLinea<int>::Asigna(std::move(puntos));
    CDibujo<int> ordenado(semilla);
    ordenado.Inserta(std::move(nube));
    ordenado.PonNumerosACero();
    CMalla malla(0, semilla, SinElegirPuntos(datos), 0);
    malla.Mensajes(nivelMensajes);
    malla.SinMarco(sinMarco);
    const double ladoMaximo = como.distancia > 0 ? como.distancia * kHolguraDecimal : 0;
    if (const int codigo = malla.Genera(ordenado, tin, ladoMaximo); codigo != kHecho) return codigo;
  }

  const double dobleMinima = 2 * como.superficieMinima * semilla.Precision() * semilla.Precision();
  for (std::size_t i = 0; i < tin.Limite().size(); ++i) {
    if (soloExteriores != 0 && tin.EsHueco(i)) continue;
    CLinea<int> linea = Linea(tin, tin.Limite()[i]);
    if (std::abs(linea.DobleArea()) < dobleMinima) continue;
    if (sentido != 1) linea.Voltea();
    limites.Inserta(std::move(linea));
  }
  caja = CMaximas<double>(extension);
  if (!caja.EstanVacias(true)) {
    caja.Maximo = caja.Maximo / semilla.Precision();
    caja.Minimo = caja.Minimo / semilla.Precision();
  }
  return kHecho;
}

}  // namespace Meseta47
