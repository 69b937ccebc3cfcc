#include "model/drawing/CIndiceAnillos.h"

#include <algorithm>
#include <cmath>

namespace Meseta47 {

namespace {

bool EsContorno(CLinea<int> const& linea) {
  if (!linea.EsGrafico() || linea.EsBorrado() || linea.NPuntos() < 4) return false;
  CCoor3D<int> const &a = linea.Punto(0), &b = linea.Punto(linea.NPuntos() - 1);
  return a.x == b.x && a.y == b.y;
}

/// Into how many parts to cut a length so that things of a mean size stand in two of them at most, in the mean.
std::size_t Partes(double largo, double tamanoMedio, std::size_t maximo) {
  const double partes = std::floor(largo / std::max(tamanoMedio, 1.0));
  return static_cast<std::size_t>(std::clamp(partes, 1.0, static_cast<double>(std::max<std::size_t>(maximo, 1))));
}

/// In which of so many parts of a stretch a value stands; the ends take what lies beyond.
std::size_t Parte(int valor, int desde, double ancho, std::size_t partes) {
  const double cual = (static_cast<double>(valor) - static_cast<double>(desde)) / ancho;
  return static_cast<std::size_t>(std::clamp(cual, 0.0, static_cast<double>(partes - 1)));
}

/// Turns counts of each place into where each begins: places take one entry more than there are.
void Acumula(std::vector<std::uint32_t>& inicio) {
  std::uint32_t suma = 0;
  for (std::uint32_t& i : inicio) {
    const std::uint32_t cuantos = i;
    i = suma;
    suma += cuantos;
  }
}

}  // namespace

// ---- One ring ----

CAnillo::CAnillo(CLinea<int> const& linea) : caja(linea.maximas) {
  const auto lados = static_cast<std::size_t>(linea.NPuntos() - 1);
  double alturas = 0;
  for (int i = 1; i < linea.NPuntos(); ++i) {
    alturas += std::abs(static_cast<double>(linea.Punto(i).y) - static_cast<double>(linea.Punto(i - 1).y));
  }
  const std::size_t filas = Partes(caja.Alto(), alturas / static_cast<double>(lados), lados);
  porFila = std::max(1.0, caja.Alto() / static_cast<double>(filas));
  inicio.assign(filas + 1, 0);

  const auto paraCadaFila = [&](auto const& que) {
    for (int i = 1; i < linea.NPuntos(); ++i) {
      CCoor3D<int> const &a = linea.Punto(i - 1), &b = linea.Punto(i);
      const std::size_t hasta = Fila(std::max(a.y, b.y));
      for (std::size_t f = Fila(std::min(a.y, b.y)); f <= hasta; ++f) que(f, CTramo{a.x, a.y, b.x, b.y});
    }
  };
  paraCadaFila([&](std::size_t f, CTramo const&) { ++inicio[f]; });
  Acumula(inicio);
  tramos.resize(inicio.back());
  std::vector<std::uint32_t> siguiente(inicio);
  paraCadaFila([&](std::size_t f, CTramo const& t) { tramos[siguiente[f]++] = t; });
}

std::size_t CAnillo::Fila(int y) const { return Parte(y, caja.Minimo.y, porFila, inicio.size() - 1); }

CAnillo::ELugar CAnillo::Lugar(int x, int y) const {
  if (x < caja.Minimo.x || x > caja.Maximo.x || y < caja.Minimo.y || y > caja.Maximo.y) return ELugar::Fuera;
  bool dentro = false;
  const std::size_t fila = Fila(y);
  for (std::uint32_t i = inicio[fila]; i < inicio[fila + 1]; ++i) {
    CTramo const& t = tramos[i];
    if (std::max(t.ax, t.bx) < x || std::min(t.ay, t.by) > y || std::max(t.ay, t.by) < y) continue;
    const double lado =
        ProductoVectorial(static_cast<std::int64_t>(t.bx) - t.ax, static_cast<std::int64_t>(t.by) - t.ay,
                          static_cast<std::int64_t>(x) - t.ax, static_cast<std::int64_t>(y) - t.ay);
    if (lado == 0 && std::min(t.ax, t.bx) <= x) return ELugar::EnElBorde;
    // A vertex belongs to the side above it alone, so that a row through it counts it once where the line goes on.
    const bool sube = t.ay <= y && t.by > y, baja = t.by <= y && t.ay > y;
    if ((sube && lado > 0) || (baja && lado < 0)) dentro = !dentro;
  }
  return dentro ? ELugar::Dentro : ELugar::Fuera;
}

// ---- All of them ----

CIndiceAnillos::CIndiceAnillos(CDibujo<int> const& limites) {
  for (unsigned i = 0; i < limites.Cantidad(); ++i) {
    if (!EsContorno(limites[i])) continue;
    anillos.emplace_back(limites[i]);
    caja.Nuevo(limites[i].maximas);
  }
  EligeCeldas();
  inicio.assign(columnas * filas + 1, 0);
  const auto paraCadaCelda = [&](auto const& que) {
    for (std::uint32_t i = 0; i < anillos.size(); ++i) {
      CMaximas<int> const& suya = anillos[i].Caja();
      const CCelda desde = CeldaDe(suya.Minimo.x, suya.Minimo.y), hasta = CeldaDe(suya.Maximo.x, suya.Maximo.y);
      for (std::size_t f = desde.fila; f <= hasta.fila; ++f) {
        for (std::size_t c = desde.columna; c <= hasta.columna; ++c) que(f * columnas + c, i);
      }
    }
  };
  paraCadaCelda([&](std::size_t celda, std::uint32_t) { ++inicio[celda]; });
  Acumula(inicio);
  porCeldas.resize(inicio.back());
  std::vector<std::uint32_t> siguiente(inicio);
  paraCadaCelda([&](std::size_t celda, std::uint32_t i) { porCeldas[siguiente[celda]++] = i; });
}

void CIndiceAnillos::EligeCeldas() {
  double anchos = 0, altos = 0;
  for (CAnillo const& a : anillos) {
    anchos += a.Caja().Ancho();
    altos += a.Caja().Alto();
  }
  const auto n = static_cast<double>(std::max<std::size_t>(anillos.size(), 1));
  const auto maximo = static_cast<std::size_t>(2 * std::sqrt(n));
  columnas = Partes(caja.Ancho(), anchos / n, maximo);
  filas = Partes(caja.Alto(), altos / n, maximo);
}

CIndiceAnillos::CCelda CIndiceAnillos::CeldaDe(int x, int y) const {
  return {Parte(x, caja.Minimo.x, std::max(1.0, caja.Ancho() / static_cast<double>(columnas)), columnas),
          Parte(y, caja.Minimo.y, std::max(1.0, caja.Alto() / static_cast<double>(filas)), filas)};
}

CAnillo const* CIndiceAnillos::Busca(int x, int y) const {
  if (EstaVacio()) return nullptr;
  const CCelda celda = CeldaDe(x, y);
  const std::size_t cual = celda.fila * columnas + celda.columna;
  CAnillo const* ultimo = nullptr;
  bool dentro = false;
  for (std::uint32_t i = inicio[cual]; i < inicio[cual + 1]; ++i) {
    CAnillo const& anillo = anillos[porCeldas[i]];
    const CAnillo::ELugar lugar = anillo.Lugar(x, y);
    if (lugar == CAnillo::ELugar::EnElBorde) return &anillo;
    if (lugar == CAnillo::ELugar::Fuera) continue;
    dentro = !dentro;
    ultimo = &anillo;
  }
  return dentro ? ultimo : nullptr;
}

}  // namespace Meseta47
