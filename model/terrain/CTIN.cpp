#include "model/terrain/CTIN.h"

#include <algorithm>
#include <utility>

namespace Meseta47 {

namespace {

constexpr std::size_t kTrozo = 1 << 16;  // triangles that a thread takes at a time
constexpr int kFormaRica = 3;            // the least state that selects points with survey data

/// Which side of a triangle runs between two points, whatever its direction; -1 when none does.
std::int16_t LadoEntre(Terna const& t, std::uint32_t a, std::uint32_t b) {
  for (std::size_t s = 0; s < 3; ++s) {
    const std::uint32_t p = t[s], q = t[(s + 1) % 3];
    if ((p == a && q == b) || (p == b && q == a)) return static_cast<std::int16_t>(s);
  }
  return -1;
}

}  // namespace

CTIN::CTIN(int, int forma, CDataSemilla const& laSemilla)
    : CObjetoFichero(OBJETO_TIN),
      puntos(0, forma >= kFormaRica),
      estado(static_cast<unsigned char>(forma >= kFormaRica ? forma : 0)),
      semilla(laSemilla) {}

CTIN::CTIN(CTIN const& otro) = default;

/// All or nothing: indices into points that did not come would lead astray.
CTIN& CTIN::operator=(CTIN const& otro) {
  CTIN copia(otro);
  CObjetoFichero::operator=(static_cast<CObjetoFichero&&>(copia));
  puntos = std::move(copia.puntos);
  estado = copia.estado;
  longitudMaxima = copia.longitudMaxima;
  semilla = copia.semilla;
  conVecinos = copia.conVecinos;
  relleno.Toma(copia.relleno);
  triangulos = std::move(copia.triangulos);
  vecinos = std::move(copia.vecinos);
  quitaRepetidos = copia.quitaRepetidos;
  enlazado = copia.enlazado;
  limite = std::move(copia.limite);
  huecos = std::move(copia.huecos);
  return *this;
}

CTIN::~CTIN() = default;

void CTIN::SetPuntosMdt(CSetPuntosMdt& nuevos) {
  LiberaTriangulos();
  if (&nuevos == &puntos) return;
  puntos = std::move(nuevos);
  nuevos.clear();  // NOLINT(bugprone-use-after-move): a list that was moved away may be cleared
}

bool CTIN::Inserta(CTriangulo& triangulo, bool, bool unico, bool) {
  if (unico) quitaRepetidos = true;  // asked for by single threads only
  const Terna terna{puntos.Indice(triangulo.P1), puntos.Indice(triangulo.P2), puntos.Indice(triangulo.P3)};
  if (std::max({terna[0], terna[1], terna[2]}) >= puntos.size()) return false;
  relleno.Inserta(terna);
  return true;
}

std::uint64_t CTIN::Cantidad() const { return triangulos.size() + relleno.Cantidad(); }

bool CTIN::EstaOrdenado() const { return relleno.Cantidad() == 0; }

void CTIN::LiberaTriangulos() {
  relleno.Vacia();
  VectorCrudo<Terna>().swap(triangulos);
  VectorCrudo<Terna>().swap(vecinos);
  quitaRepetidos = enlazado = false;
  limite.clear();
  huecos.clear();
}

CTriangulo CTIN::Triangulo(std::uint32_t i) {
  Terna const& v = triangulos[i];
  std::int16_t lados[3] = {-1, -1, -1};
  for (std::size_t s = 0; enlazado && s < 3; ++s) {
    const std::uint32_t vecino = vecinos[i][s];
    if (vecino != kSinTriangulo) lados[s] = LadoEntre(triangulos[vecino], v[s], v[(s + 1) % 3]);
  }
  return {&puntos[v[0]], &puntos[v[1]], &puntos[v[2]], lados[0], lados[1], lados[2]};
}

void CTIN::ActualizaCantidades() {
  cantidades[0] = static_cast<std::uint32_t>(puntos.size());
  cantidades[1] = static_cast<std::uint32_t>(Cantidad());
  cantidades[2] = static_cast<std::uint32_t>(limite.size());
}

void CTIN::Clear() {
  LiberaTriangulos();
  puntos.clear();
  if (estado < kFormaRica) estado = 0;
  longitudMaxima = 0;
  CObjetoFichero::Clear();
}

CMaximas<double> CTIN::GetMaximasDouble() const {
  CMaximas<int> caja;
  for (CPuntoTIN const& p : puntos) caja.Nuevo(p);
  CMaximas<double> real(caja);
  if (!real.EstanVacias(true)) {
    real.Maximo = real.Maximo / semilla.Precision();
    real.Minimo = real.Minimo / semilla.Precision();
  }
  return real;
}

std::vector<std::span<Terna const>> CTIN::Trozos() const {
  std::vector<std::span<Terna const>> trozos = relleno.Trozos();
  for (std::size_t i = 0; i < triangulos.size(); i += kTrozo) {
    trozos.emplace_back(triangulos.data() + i, std::min(kTrozo, triangulos.size() - i));
  }
  return trozos;
}

}  // namespace Meseta47
