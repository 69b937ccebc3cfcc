// The grid of a cloud, and the lowest point of each of its cells.
#include <algorithm>
#include <atomic>
#include <cmath>
#include <mutex>
#include <numeric>
#include <tuple>

#include "classification/CPuntosSuelo.h"
#include "classification/FasesSuelo.h"
#include "model/geometry/CMaximas.h"
#include "model/threads/CAvance.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kBloque = 1 << 15;   // points that a thread takes at a time
constexpr double kLadoArea = 20;           // metres: squares by which the area of a cloud is told
constexpr double kMayorArea = 1 << 28;     // of these at most
constexpr double kMayorMalla = 1 << 30;    // cells at most
constexpr double kCeldasPunto = 16;        // cells for each point at most, once there are more than ...
constexpr double kCeldasLibres = 1 << 22;  // ... these: sixteen are a corridor that runs across its box
constexpr int kParte = CMallaSuelo::kParte;
constexpr std::size_t kFranja = 2 * kParte;  // rows of cells that a thread takes at a time: whole blocks, whole squares

std::int64_t PorDebajo(std::int64_t a, std::int64_t b) { return a >= 0 ? a / b : -((b - 1 - a) / b); }

/// f(p, place) for all points that take part, on all processors. False when cancelled.
template <class F>
bool ParaTodos(CPuntosSuelo const& puntos, CAvance& avance, F const& f) {
  avance.Pasada(puntos.Total());
  const auto bloque = [&](std::size_t desde, std::size_t hasta) { puntos.Recorre(desde, hasta, f); };
  return Reparte(puntos.Total(), kBloque, bloque, [&](std::size_t hechos) { return avance(hechos); });
}

struct CExtension {
  CMaximas<int> caja;
  std::size_t puntos = 0;
};

bool Mide(CPuntosSuelo const& puntos, CAvance& avance, CExtension& todo) {
  std::mutex cerrojo;
  avance.Pasada(puntos.Total());
  const auto bloque = [&](std::size_t desde, std::size_t hasta) {
    CExtension suya;
    puntos.Recorre(desde, hasta, [&](CCoor3D<int> const& p, std::size_t) {
      suya.caja.Nuevo(p);
      ++suya.puntos;
    });
    const std::lock_guard guarda(cerrojo);
    todo.caja.Nuevo(suya.caja);
    todo.puntos += suya.puntos;
  };
  return Reparte(puntos.Total(), kBloque, bloque, [&](std::size_t hechos) { return avance(hechos); });
}

/// A grid of squares over a box, without anything in them.
CMallaSuelo MallaSobre(CMaximas<int> const& caja, double lado, CMallaSuelo const& unidades) {
  CMallaSuelo malla;
  malla.metro = unidades.metro;
  malla.metroZ = unidades.metroZ;
  malla.origenX = unidades.origenX;
  malla.origenY = unidades.origenY;
  malla.lado = std::max<std::int64_t>(1, std::llround(lado / malla.metro));
  malla.c = static_cast<double>(malla.lado) * malla.metro;
  // Blocks and squares of cells are to be the same ones in every part of a cloud, too.
  const std::int64_t parte = kParte * malla.lado;
  malla.x0 = PorDebajo(caja.Minimo.x + malla.origenX, parte) * parte - malla.origenX;
  malla.y0 = PorDebajo(caja.Minimo.y + malla.origenY, parte) * parte - malla.origenY;
  const auto cuantas = [&](int mayor, std::int64_t cero) { return ((mayor - cero) / parte + 1) * kParte; };
  malla.columnas = cuantas(caja.Maximo.x, malla.x0);
  malla.filas = cuantas(caja.Maximo.y, malla.y0);
  return malla;
}

/// The area of a cloud in square metres: its box, or what it occupies of it.
int Area(CPuntosSuelo const& puntos, CExtension const& extension, CMallaSuelo const& unidades, CAvance& avance,
         double& area) {
  const CMallaSuelo malla = MallaSobre(extension.caja, kLadoArea, unidades);
  if (static_cast<double>(malla.columnas) * static_cast<double>(malla.filas) > kMayorArea) return kNubeDispersa;
  std::vector<std::uint8_t> ocupadas(malla.Celdas());
  const bool sigue = ParaTodos(puntos, avance, [&](CCoor3D<int> const& p, std::size_t) {
    std::atomic_ref(ocupadas[malla.CeldaDe(p)]).store(1, std::memory_order_relaxed);
  });
  const auto cuantas = static_cast<double>(std::count(ocupadas.begin(), ocupadas.end(), 1));
  area =
      std::min(extension.caja.Ancho() * extension.caja.Alto() * malla.metro * malla.metro, cuantas * malla.c * malla.c);
  return sigue ? kHecho : kCancelado;
}

bool MasBajo(CCoor3D<int> const& a, CCoor3D<int> const& b) { return std::tie(a.z, a.x, a.y) < std::tie(b.z, b.x, b.y); }

/// Makes `casilla` the place of the lower of its point and of `p`; equal positions make no difference.
void Rebaja(CPuntosSuelo const& puntos, std::uint32_t& casilla, CCoor3D<int> const& p, std::size_t lugar) {
  std::atomic_ref ahora(casilla);
  std::uint32_t visto = ahora.load(std::memory_order_relaxed);
  while (visto == CMallaSuelo::kNinguno || MasBajo(p, puntos[visto])) {
    if (ahora.compare_exchange_weak(visto, static_cast<std::uint32_t>(lugar), std::memory_order_relaxed)) return;
  }
}

/// Blocks of 2 x 2 cells, much of which may be a canopy through which few echoes came: what is lowest in one of their
/// cells need not be ground.
class CDoseles {
 public:
  CDoseles(CPuntosSuelo const& losPuntos, CMallaSuelo& laMalla, CConstantesSuelo const& lasK)
      : puntos(losPuntos), malla(laMalla), k(lasK), columnas((malla.columnas + 1) / 2) {
    bloques.resize(static_cast<std::size_t>(columnas * ((malla.filas + 1) / 2)));
  }

  /// Leaves a block that is a canopy its lowest minimum alone. False when cancelled.
  bool Limpia(CAvance& avance) {
    ParaCeldas([&](std::size_t celda, CBloque& b) {
      const std::uint32_t lugar = malla.indice[celda];
      if (lugar != CMallaSuelo::kNinguno) Rebaja(puntos, b.bajo, puntos[lugar], lugar);
    });
    const auto altura = static_cast<std::int64_t>(k.alturaDosel / malla.metroZ);
    const bool sigue = ParaTodos(puntos, avance, [&](CCoor3D<int> const& p, std::size_t) {
      CBloque& b = BloqueDe(malla.CeldaDe(p));
      std::atomic_ref(b.todos).fetch_add(1, std::memory_order_relaxed);
      if (p.z > puntos[b.bajo].z + altura) std::atomic_ref(b.altos).fetch_add(1, std::memory_order_relaxed);
    });
    ParaCeldas([&](std::size_t celda, CBloque const& b) {
      const bool dosel = b.todos >= k.dosel && b.altos > k.parteDosel * b.todos;
      if (dosel && malla.indice[celda] != b.bajo) malla.indice[celda] = CMallaSuelo::kNinguno;
    });
    return sigue;
  }

 private:
  struct CBloque {
    std::uint32_t bajo = CMallaSuelo::kNinguno, todos = 0, altos = 0;
  };

  /// f(cell, its block), on all processors; the cells of a block on one of them.
  template <class F>
  void ParaCeldas(F const& f) {
    Reparte(static_cast<std::size_t>(malla.filas), kFranja, [&](std::size_t desde, std::size_t hasta) {
      for (std::size_t fila = desde; fila < hasta; ++fila) {
        CBloque* fila2 = bloques.data() + fila / 2 * static_cast<std::size_t>(columnas);
        const std::size_t primera = malla.Celda(0, static_cast<std::int64_t>(fila));
        for (std::size_t q = 0; q < static_cast<std::size_t>(malla.columnas); ++q) f(primera + q, fila2[q / 2]);
      }
    });
  }

  CBloque& BloqueDe(std::size_t celda) {
    const auto ancho = static_cast<std::size_t>(malla.columnas);
    return bloques[celda / ancho / 2 * static_cast<std::size_t>(columnas) + celda % ancho / 2];
  }

  CPuntosSuelo const& puntos;
  CMallaSuelo& malla;
  CConstantesSuelo const& k;
  std::int64_t columnas;
  std::vector<CBloque> bloques;
};

/// Takes the minima out of the cloud, row by row.
void Recoge(CPuntosSuelo const& puntos, CMallaSuelo& malla) {
  const auto filas = static_cast<std::size_t>(malla.filas), ancho = static_cast<std::size_t>(malla.columnas);
  std::vector<std::size_t> primeros(filas + 1);  // of each row, its first minimum
  Reparte(filas, kFranja, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t fila = desde; fila < hasta; ++fila) {
      std::uint32_t const* casilla = malla.indice.data() + fila * ancho;
      const auto vacias = std::count(casilla, casilla + ancho, CMallaSuelo::kNinguno);
      primeros[fila + 1] = ancho - static_cast<std::size_t>(vacias);
    }
  });
  std::partial_sum(primeros.begin(), primeros.end(), primeros.begin());
  malla.minimos.resize(primeros.back());
  malla.celdas.resize(primeros.back());
  Reparte(filas, kFranja, [&](std::size_t desde, std::size_t hasta) {
    std::size_t minimo = primeros[desde];
    for (std::size_t celda = desde * ancho; celda < hasta * ancho; ++celda) {
      std::uint32_t& i = malla.indice[celda];
      if (i == CMallaSuelo::kNinguno) continue;
      CCoor3D<int> const& p = puntos[i];
      malla.minimos[minimo] = {p.x, p.y, p.z};
      malla.celdas[minimo] = static_cast<std::uint32_t>(celda);
      i = static_cast<std::uint32_t>(minimo++);
    }
  });
  malla.estados.assign(malla.minimos.size(), CEstadoSuelo::Suelo);
}

/// Squares of 8 x 8 cells, by which the spacing of the minima is told.
class CPartes {
 public:
  explicit CPartes(CMallaSuelo const& laMalla)
      : malla(laMalla), columnas(malla.columnas / kParte), filas(malla.filas / kParte) {
    cuentas.resize(static_cast<std::size_t>(columnas * filas));
    Reparte(static_cast<std::size_t>(malla.filas), kFranja, [&](std::size_t desde, std::size_t hasta) {
      for (std::size_t fila = desde; fila < hasta; ++fila) Cuenta(fila);
    });
  }

  /// The spacing around each square, of those near it that hold any, but for the emptiest fifth: these lie at the rim
  /// of the cloud.
  [[nodiscard]] std::vector<float> Espaciados(double mayor) const {
    std::vector<float> espaciados(cuentas.size());
    Reparte(cuentas.size(), kBloque, [&](std::size_t desde, std::size_t hasta) {
      std::vector<std::uint32_t> llenas;
      for (std::size_t parte = desde; parte < hasta; ++parte) {
        if (cuentas[parte] == 0) continue;
        Llenas(static_cast<std::int64_t>(parte), llenas);
        std::sort(llenas.begin(), llenas.end());
        llenas.erase(llenas.begin(), llenas.begin() + static_cast<std::ptrdiff_t>(llenas.size() / 5));
        const auto minimos = static_cast<double>(std::accumulate(llenas.begin(), llenas.end(), 0U));
        const double celdas = static_cast<double>(llenas.size()) * kParte * kParte;
        espaciados[parte] = static_cast<float>(malla.c * std::min(mayor, std::sqrt(celdas / minimos)));
      }
    });
    return espaciados;
  }

  /// The greatest spacing within so many metres of each square.
  [[nodiscard]] std::vector<float> Mayores(std::vector<float> const& espaciados, double metros) const {
    const auto lejos = static_cast<std::int64_t>(std::ceil(metros / (kParte * malla.c)));
    return MayoresEn(MayoresEn(espaciados, lejos, columnas, 1, filas, columnas), lejos, filas, columnas, columnas, 1);
  }

  [[nodiscard]] double Media() const {
    const auto llenas =
        static_cast<double>(cuentas.size() - static_cast<std::size_t>(std::count(cuentas.begin(), cuentas.end(), 0U)));
    return malla.c * std::sqrt(llenas * kParte * kParte / static_cast<double>(malla.Minimos()));
  }

 private:
  /// The greatest value within `lejos` places, along `lineas` lines of so many places each.
  static std::vector<float> MayoresEn(std::vector<float> const& valores, std::int64_t lejos, std::int64_t lugares,
                                      std::int64_t paso, std::int64_t lineas, std::int64_t entreLineas) {
    std::vector<float> mayores(valores.size());
    for (std::int64_t linea = 0; linea < lineas; ++linea) {
      const auto en = [&](std::int64_t lugar) { return static_cast<std::size_t>(linea * entreLineas + lugar * paso); };
      for (std::int64_t i = 0; i < lugares; ++i) {
        const std::int64_t hasta = std::min(lugares - 1, i + lejos);
        for (std::int64_t j = std::max<std::int64_t>(0, i - lejos); j <= hasta; ++j) {
          mayores[en(i)] = std::max(mayores[en(i)], valores[en(j)]);
        }
      }
    }
    return mayores;
  }

  /// Counts the minima of a row of cells.
  void Cuenta(std::size_t fila) {
    std::uint32_t const* casilla = malla.indice.data() + malla.Celda(0, static_cast<std::int64_t>(fila));
    std::uint32_t* cuenta = cuentas.data() + fila / kParte * static_cast<std::size_t>(columnas);
    for (std::int64_t q = 0; q < malla.columnas; ++q) cuenta[q / kParte] += casilla[q] != CMallaSuelo::kNinguno ? 1 : 0;
  }

  /// What the squares within two of this one hold, where they hold any.
  void Llenas(std::int64_t parte, std::vector<std::uint32_t>& llenas) const {
    const std::int64_t fila = parte / columnas, columna = parte % columnas;
    llenas.clear();
    for (std::int64_t f = std::max<std::int64_t>(0, fila - 2); f <= std::min(filas - 1, fila + 2); ++f) {
      for (std::int64_t c = std::max<std::int64_t>(0, columna - 2); c <= std::min(columnas - 1, columna + 2); ++c) {
        const std::uint32_t cuenta = cuentas[static_cast<std::size_t>(f * columnas + c)];
        if (cuenta > 0) llenas.push_back(cuenta);
      }
    }
  }

  CMallaSuelo const& malla;
  std::int64_t columnas, filas;
  std::vector<std::uint32_t> cuentas;  ///< minima
};

}  // namespace

int ReuneMinimos(CPuntosSuelo const& puntos, CConstantesSuelo const& k, CAvance& avance, CMallaSuelo& malla) {
  CExtension extension;
  if (!Mide(puntos, avance, extension)) return kCancelado;
  if (extension.puntos < 3) return kPocosPuntos;
  if (puntos.Total() >= CMallaSuelo::kNinguno) return kNubeDispersa;
  double area = 0;
  if (const int codigo = Area(puntos, extension, malla, avance, area); codigo != kHecho) return codigo;

  const auto n = static_cast<double>(extension.puntos);
  const double lado = std::round(k.celdaEspaciado * std::sqrt(area / n) / k.escalonCelda) * k.escalonCelda;
  malla = MallaSobre(extension.caja, std::max(k.celdaMinima, lado), malla);
  const double celdas = static_cast<double>(malla.columnas) * static_cast<double>(malla.filas);
  if (celdas > std::min(kMayorMalla, kCeldasLibres + kCeldasPunto * n)) return kNubeDispersa;

  malla.indice.assign(malla.Celdas(), CMallaSuelo::kNinguno);
  const bool sigue = ParaTodos(puntos, avance, [&](CCoor3D<int> const& p, std::size_t lugar) {
    Rebaja(puntos, malla.indice[malla.CeldaDe(p)], p, lugar);
  });
  if (!sigue || !CDoseles(puntos, malla, k).Limpia(avance)) return kCancelado;
  Recoge(puntos, malla);
  const CPartes partes(malla);
  const std::vector<float> espaciados = partes.Espaciados(k.mayorEspaciado);
  malla.sp.resize(malla.Minimos());
  Reparte(malla.Minimos(), kBloque, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t i = desde; i < hasta; ++i) malla.sp[i] = espaciados[malla.Parte(malla.celdas[i])];
  });
  malla.alcances = partes.Mayores(espaciados, (k.radioPlano + k.radioVecinos) * k.mayorEspaciado * malla.c);
  malla.espaciado = partes.Media();
  return kHecho;
}

}  // namespace Meseta47
