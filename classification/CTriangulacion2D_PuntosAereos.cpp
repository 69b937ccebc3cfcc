// The search of aerial points: steep triangles give candidates, and each is held against the heights around it.
#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

#include "classification/BusquedaClases.h"
#include "classification/BusquedaMensajes.h"
#include "classification/CBusquedaPasadas.h"
#include "classification/CBusquedaPuntos.h"
#include "classification/CTrianguloBuscado.h"
#include "classification/CVecindario.h"
#include "model/geometry/Signo.h"
#include "model/geometry/Subida.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47 {

namespace {

constexpr double kEmpinado = 0.5235987755982988;  // 30 degrees
constexpr std::size_t kPocosVecinos = 2;          // of which no deviation says anything
constexpr std::size_t kSumaExacta = 1 << 22;      // so many heights of 31 bits are summed in 53
constexpr double kRedondeo = 0x1p-52;             // relative, of a sum of positive numbers, for each of them
constexpr double kOtrosRedondeos = 8;             // the quotient, the root, the product, and what is left for safety

/// What is looked for: points above (a factor that is not negative) or below what is around them.
class CDireccion {
 public:
  explicit CDireccion(double elFactor)
      : factor(elFactor), sentido(elFactor < 0.0 ? -1.0 : 1.0), umbral(Signo(elFactor) != 0 ? kEmpinado : 0.0) {}

  /// Whether the triangle falls steeply away from the vertex, or rises, looking for points below.
  [[nodiscard]] bool EsEmpinado(CCoor3D<int> const& vertice, CCoor3D<int> const& b, CCoor3D<int> const& c) const {
    CCoor3D<double> camino = HaciaElMedio(vertice, b, c);
    camino.z *= -sentido;
    if (camino.z <= 0) return false;
    // Most triangles are far from steep: a third of the square of the run is what the square of the rise is at 30
    // degrees, and a thousandth is left to the function that knows precisely.
    const bool llano = 3 * camino.z * camino.z < 0.999 * (camino.x * camino.x + camino.y * camino.y);
    return umbral == 0 || (!llano && Subida(camino) > umbral);
  }

  /// Whether a height stands out against those of its neighbours, by more deviations than the factor. Sums are rounded,
  /// and so depend on the order of the neighbours in their last digits: that of positions is the one that counts.
  /// Nothing when the neighbours are not `enOrden` and it hangs on those digits.
  [[nodiscard]] std::optional<bool> Destaca(int z, std::span<std::int32_t const> vecinos, bool enOrden) const {
    if (vecinos.size() <= kPocosVecinos) return false;
    const auto n = static_cast<double>(vecinos.size());
    double suma = 0, cuadrados = 0;
    for (const std::int32_t v : vecinos) suma += v;
    const double media = suma / n;
    for (const std::int32_t v : vecinos) {
      const double d = static_cast<float>(v - media);  // as the searches that this serves were tuned with
      cuadrados += d * d;
    }
    const double limite = std::sqrt(cuadrados / (n - 1)) * factor, diferencia = z - media;
    const bool justo = std::abs(diferencia - limite) <= std::abs(limite) * (n + kOtrosRedondeos) * kRedondeo;
    if (!enOrden && (justo || vecinos.size() > kSumaExacta)) return std::nullopt;
    return sentido < 0 ? diferencia < limite : diferencia > limite;
  }

 private:
  double factor, sentido, umbral;
};

/// The points that steep triangles have told of, by number less 1. A point on several of them has been told of by each.
class CCandidatos {
 public:
  explicit CCandidatos(std::size_t numeros) : marcas(numeros) {}

  void Marca(int numero) {
    ++veces;
    marcas[static_cast<std::size_t>(numero) - 1] = true;
  }

  /// Told of fewer than three times, the last point does not count: nothing is chosen of one, and of two at most the
  /// first. So searches have always begun, and what they find in small scenes depends on it.
  [[nodiscard]] bool SobraElUltimo() const { return veces < 3; }
  [[nodiscard]] std::size_t Cuantos() const {
    const auto distintos = static_cast<std::size_t>(std::count(marcas.begin(), marcas.end(), true));
    return distintos != 0 && SobraElUltimo() ? distintos - 1 : distintos;
  }

  /// Those that count, in ascending order of their positions.
  [[nodiscard]] std::vector<CVecindario::CIndice> Elige(CVecindario const& vecindario) const {
    struct CElegido {
      std::uint64_t clave;
      CVecindario::CIndice indice;
    };
    std::vector<CElegido> elegidos;
    elegidos.reserve(Cuantos() + 1);  // with the one that may be left over: growing would take half as much again
    std::vector<CVecindario::CPunto> const& puntos = vecindario.Puntos();
    for (CVecindario::CIndice i = 0; i < puntos.size(); ++i) {
      if (marcas[static_cast<std::size_t>(puntos[i].num) - 1]) elegidos.push_back({puntos[i].clave, i});
    }
    std::sort(elegidos.begin(), elegidos.end(), [](CElegido const& a, CElegido const& b) { return a.clave < b.clave; });
    elegidos.resize(Cuantos());
    std::vector<CVecindario::CIndice> indices;
    indices.reserve(elegidos.size());
    for (CElegido const& e : elegidos) indices.push_back(e.indice);
    return indices;
  }

 private:
  std::vector<bool> marcas;
  std::uint64_t veces = 0;
};

/// What looks around each candidate, in a mesh whose points have numbers up to `numeros`.
class CRonda {
 public:
  CRonda(CBusquedaPuntos const& laBusqueda, unsigned losNumeros, CMaximas<int> const& caja, int radio)
      : busqueda(laBusqueda), numeros(losNumeros), vecindario(caja, losNumeros, radio) {
    Recorre([this](CCoor3D<int> const& p) {
      vecindario.Cuenta(p);
      return true;
    });
    vecindario.Reserva();
  }

  /// Turns the sign of the number of each candidate that stands out; it is not around those behind it any more.
  /// kHecho or kCancelado.
  int Marca(CCandidatos const& candidatos, CDireccion const& direccion, IPorcentaje* porcentaje, int nivel) {
    CMarcha marcha(porcentaje, nivel, vecindario.Puntos().size() + candidatos.Cuantos());
    if (!Llena(marcha)) return kCancelado;
    for (const CVecindario::CIndice i : candidatos.Elige(vecindario)) {
      if (!marcha.Avanza()) return kCancelado;
      CVecindario::CPunto const& p = vecindario.Puntos()[i];
      std::optional<bool> destaca = direccion.Destaca(p.z, vecindario.Alturas(i), false);
      if (!destaca) destaca = direccion.Destaca(p.z, vecindario.AlturasEnOrden(i), true);
      if (!*destaca) continue;
      busqueda.Punto(p.num)->num = -p.num;
      vecindario.Quita(i);
    }
    return kHecho;
  }

 private:
  /// Calls `visita(punto)` for each point of the mesh, until it answers false, which is handed on.
  template <class F>
  bool Recorre(F&& visita) const {
    for (unsigned numero = 1; numero <= numeros; ++numero) {
      CCoor3D<int> const* p = busqueda.Punto(static_cast<int>(numero));
      if (p != nullptr && !visita(*p)) return false;
    }
    return true;
  }

  /// Puts the points in, a step of progress each, and in order. False cancels.
  bool Llena(CMarcha& marcha) {
    bool sigue = Recorre([&](CCoor3D<int> const& p) {
      vecindario.Pon(p);
      return marcha.Avanza();
    });
    for (std::size_t banda = 0; sigue && banda < vecindario.Bandas(); ++banda) {
      vecindario.Ordena(banda);
      sigue = marcha.Sigue();
    }
    return sigue;
  }

  CBusquedaPuntos const& busqueda;
  unsigned numeros;
  CVecindario vecindario;
};

}  // namespace

int CTriangulacion2D::RunPuntosAereos(CDibujo<int>& dibujo, double radio, double factor, CInfoClasificacion const& info,
                                      unsigned int& cantidad, std::vector<CDibujo<int>*>* otros,
                                      std::vector<CPosicionEntidad> const* seleccion) {
  return RunBusqueda(dibujo, otros, seleccion,
                     [&] { return BuscaPuntosAereos(dibujo, otros, radio, factor, info, cantidad, seleccion); });
}

int CTriangulacion2D::BuscaPuntosAereos(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double radio,
                                        double factor, CInfoClasificacion const& info, unsigned int& cantidad,
                                        std::vector<CPosicionEntidad> const* seleccion) {
  const CListasClases clases(datos);
  const CDireccion direccion(factor);
  CBusquedaPuntos busqueda(cantidadPuntos);
  int codigo = PreparaBusqueda(busqueda, CFuentes{dibujo, otros, seleccion});
  if (codigo != kHecho) return codigo;

  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeBusca);
  CCandidatos candidatos(cantidadPuntos);
  CBusquedaPasadas pasada(1, ficheroTemporal.Fichero()->GetLength());
  codigo = RecorrePasadas(ficheroTemporal.Ruta(), pasada, porcentaje, mensajes, [&](CTriple const& numeros) {
    CCoor3D<int> const* const a = busqueda.Punto(numeros[0]);
    CCoor3D<int> const* const b = busqueda.Punto(numeros[1]);
    CCoor3D<int> const* const c = busqueda.Punto(numeros[2]);
    if (!CTrianguloBuscado::Es(a, b, c)) return;
    if (direccion.EsEmpinado(*a, *b, *c)) candidatos.Marca(a->num);
    if (direccion.EsEmpinado(*b, *c, *a)) candidatos.Marca(b->num);
    if (direccion.EsEmpinado(*c, *a, *b)) candidatos.Marca(c->num);
  });
  if (codigo != kHecho) return codigo;

  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeRadio);
  codigo = CRonda(busqueda, cantidadPuntos, maximas, Trunca(Precision() * radio))
               .Marca(candidatos, direccion, porcentaje, mensajes);
  if (codigo != kHecho) return codigo;

  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeClases);
  const CMarcha marcha(porcentaje, mensajes, dibujo.nPuntos);
  return EscribeHallados(dibujo, clases, info, marcha, cantidad, [](CCoor3D<int> const& p) { return p.num < 0; });
}

}  // namespace Meseta47
