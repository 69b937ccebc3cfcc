// Openings of the lowest heights: what a disc that is pushed up from below cannot reach is an object.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "classification/FasesSuelo.h"
#include "model/threads/CAvance.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace {

using CRaster = VectorCrudo<float>;

constexpr float kVacia = std::numeric_limits<float>::infinity();
constexpr std::size_t kFranja = 48;  // rows that a thread works out at a time; a disc of 25 cells reads twice as many
constexpr std::size_t kTrozo = 1 << 16;
constexpr std::array<int, 16> kRadios = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 12, 14, 16, 19, 22, 25};

/// The next larger disc, in cells: all of the small ones, then steps of a sixth.
int RadioTras(int radio) {
  for (const int otro : kRadios) {
    if (otro > radio) return otro;
  }
  return radio + radio / 6;
}

/// Half widths of the rows of a disc, from its middle row outwards.
std::vector<int> Disco(int radio) {
  std::vector<int> anchos;
  for (int dy = 0; dy <= radio; ++dy) anchos.push_back(static_cast<int>(std::sqrt(radio * radio - dy * dy)));
  return anchos;
}

/// Least values over runs of 1, 2, 4 ... cells of one row: entry i of level n is that of i to i + 2^n - 1.
class CMinimosFila {
 public:
  CMinimosFila(std::int64_t lasColumnas, int elRadio)
      : columnas(lasColumnas), radio(elRadio), paso(static_cast<std::size_t>(columnas + 2 * radio + 2)) {
    niveles = 1;
    while ((1 << niveles) <= 2 * radio + 1) ++niveles;
    tabla.resize(paso * static_cast<std::size_t>(niveles), kVacia);
  }

  void Toma(float const* fila) {
    std::copy(fila, fila + columnas, tabla.begin() + radio);
    const std::int64_t total = columnas + 2 * radio;
    for (int n = 1; n < niveles; ++n) {
      float const* antes = Nivel(n - 1);
      float* ahora = Nivel(n);
      const std::int64_t salto = std::int64_t{1} << (n - 1), hasta = total - (std::int64_t{1} << n) + 1;
      for (std::int64_t i = 0; i < hasta; ++i) ahora[i] = std::min(antes[i], antes[i + salto]);
    }
  }

  /// salida[i] becomes the least of it and of the cells i - ancho to i + ancho.
  void Rebaja(float* salida, int ancho) const {
    int n = 0;
    while ((2 << n) <= 2 * ancho + 1) ++n;
    float const* izquierda = Nivel(n) + radio - ancho;
    float const* derecha = Nivel(n) + radio + ancho + 1 - (1 << n);
    for (std::int64_t i = 0; i < columnas; ++i) salida[i] = std::min(salida[i], std::min(izquierda[i], derecha[i]));
  }

 private:
  [[nodiscard]] float const* Nivel(int n) const { return tabla.data() + paso * static_cast<std::size_t>(n); }
  float* Nivel(int n) { return tabla.data() + paso * static_cast<std::size_t>(n); }

  std::int64_t columnas;
  int radio, niveles;
  std::size_t paso;
  std::vector<float> tabla;
};

/// For the rows [desde, hasta): the least value within a disc around each cell, into `salida`, row after row. Empty
/// cells hold kVacia.
void Erosiona(CMallaSuelo const& malla, CRaster const& entrada, std::vector<int> const& disco, std::size_t desde,
              std::size_t hasta, float* salida) {
  const int radio = static_cast<int>(disco.size()) - 1;
  const std::int64_t primera = static_cast<std::int64_t>(desde), ultima = static_cast<std::int64_t>(hasta) - 1;
  CMinimosFila minimos(malla.columnas, radio);
  std::fill(salida, salida + malla.Celda(0, ultima + 1 - primera), kVacia);
  for (std::int64_t fila = std::max<std::int64_t>(0, primera - radio);
       fila <= std::min(malla.filas - 1, ultima + radio); ++fila) {
    minimos.Toma(entrada.data() + malla.Celda(0, fila));
    for (std::int64_t otra = std::max(primera, fila - radio); otra <= std::min(ultima, fila + radio); ++otra) {
      minimos.Rebaja(salida + malla.Celda(0, otra - primera), disco[static_cast<std::size_t>(std::abs(otra - fila))]);
    }
  }
}

/// Changes the sign of heights, so that greatest values are found as least ones. Empty cells stay empty.
void Voltea(float* desde, float const* hasta) {
  for (; desde < hasta; ++desde) *desde = *desde == kVacia ? kVacia : -*desde;
}

/// Heights of the minima that are no noise, in scaled units.
CRaster Alturas(CMallaSuelo const& malla) {
  CRaster z(malla.Celdas());
  Reparte(z.size(), kTrozo, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t i = desde; i < hasta; ++i) {
      const std::uint32_t m = malla.indice[i];
      const bool hay = m != CMallaSuelo::kNinguno && malla.estados[m] != CEstadoSuelo::Ruido;
      z[i] = hay ? static_cast<float>(malla.minimos[m].z) : kVacia;
    }
  });
  return z;
}

/// One raster, to be eroded and dilated by discs.
class CAberturas {
 public:
  explicit CAberturas(CMallaSuelo const& laMalla) : malla(laMalla), z(Alturas(laMalla)), erosion(z.size()) {}

  [[nodiscard]] CRaster const& Z() const { return z; }
  /// The opposite of closing is opening upside down.
  void Invierte() { Voltea(z.data(), z.data() + z.size()); }

  /// Opens the raster by a disc; usa(rows [desde, hasta), their opening) is called for all rows, on all processors.
  template <class Usa>
  bool Abre(int radio, CAvance& avance, Usa const& usa) {
    const std::vector<int> disco = Disco(radio);
    const auto filas = static_cast<std::size_t>(malla.filas);
    const auto avisa = [&](std::size_t hechas) { return avance(hechas); };
    avance.Pasada(filas);
    const auto erosiona = [&](std::size_t desde, std::size_t hasta) {
      float* suyas = erosion.data() + malla.Celda(0, static_cast<std::int64_t>(desde));
      Erosiona(malla, z, disco, desde, hasta, suyas);
      Voltea(suyas, erosion.data() + malla.Celda(0, static_cast<std::int64_t>(hasta)));
    };
    if (!Reparte(filas, kFranja, erosiona, avisa)) return false;
    const auto dilata = [&](std::size_t desde, std::size_t hasta) {
      CRaster abertura((hasta - desde) * static_cast<std::size_t>(malla.columnas));
      Erosiona(malla, erosion, disco, desde, hasta, abertura.data());
      Voltea(abertura.data(), abertura.data() + abertura.size());
      usa(desde, hasta, abertura);
    };
    return Reparte(filas, kFranja, dilata, avisa);
  }

 private:
  CMallaSuelo const& malla;
  CRaster z, erosion;
};

}  // namespace

void QuitaRuidoBajo(CMallaSuelo& malla, CConstantesSuelo const& k) {
  const auto hondo = static_cast<float>(k.ruidoBajo * malla.c / malla.metroZ);
  CAberturas aberturas(malla);
  aberturas.Invierte();
  CRaster const& z = aberturas.Z();
  CAvance nadie(nullptr, 0, 1);
  aberturas.Abre(1, nadie, [&](std::size_t desde, std::size_t hasta, CRaster const& abertura) {
    const std::size_t primera = malla.Celda(0, static_cast<std::int64_t>(desde));
    for (std::size_t celda = primera; celda < malla.Celda(0, static_cast<std::int64_t>(hasta)); ++celda) {
      if (z[celda] - abertura[celda - primera] <= hondo || z[celda] == kVacia) continue;
      malla.estados[malla.indice[celda]] = CEstadoSuelo::Ruido;
    }
  });
}

unsigned Aberturas(CMallaSuelo const& malla, CDataSuelo const& data) {
  unsigned cuantas = 1;
  for (int radio = RadioTras(1); radio * malla.c <= data.Ventana; radio = RadioTras(radio)) ++cuantas;
  return cuantas;
}

bool SeparaPorAberturas(CMallaSuelo& malla, CConstantesSuelo const& k, CDataSuelo const& data, CAvance& avance) {
  for (CEstadoSuelo& estado : malla.estados) {
    if (estado != CEstadoSuelo::Ruido) estado = CEstadoSuelo::Suelo;
  }
  CAberturas aberturas(malla);
  CRaster anterior(aberturas.Z());
  for (int radio = 1; radio == 1 || radio * malla.c <= data.Ventana; radio = RadioTras(radio)) {
    const double salto = k.saltoApertura + data.Pendiente * radio * malla.c;
    const auto umbral = static_cast<float>(salto / malla.metroZ);
    const auto marca = [&](std::size_t desde, std::size_t hasta, CRaster const& abertura) {
      float* antes = anterior.data() + malla.Celda(0, static_cast<std::int64_t>(desde));
      std::uint32_t const* indice = malla.indice.data() + malla.Celda(0, static_cast<std::int64_t>(desde));
      for (std::size_t i = 0; i < (hasta - desde) * static_cast<std::size_t>(malla.columnas); ++i) {
        if (indice[i] != CMallaSuelo::kNinguno && antes[i] - abertura[i] > umbral) {
          CEstadoSuelo& estado = malla.estados[indice[i]];
          if (estado == CEstadoSuelo::Suelo) estado = CEstadoSuelo::Objeto;
        }
        antes[i] = std::min(antes[i], abertura[i]);
      }
    };
    if (!aberturas.Abre(radio, avance, marca)) return false;
  }
  return true;
}

}  // namespace Meseta47
