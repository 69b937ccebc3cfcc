#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "model/terrain/CDataExportarMDT.h"
#include "model/terrain/CTIN.h"
#include "model/threads/CAvance.h"
#include "model/threads/Codigos.h"

class CFile;

namespace Meseta47 {

/// Turns the integers of one axis back into real coordinates, the origin included.
class CEjeReal {
 public:
  CEjeReal(int precision, double elOrigen);

  /// Metres, as near as a double can be.
  [[nodiscard]] double Valor(int v) const;
  /// Writes the number with as many decimals as the precision has, and no terminator, and returns the end of it. The
  /// number is exact where the origin is a whole number of metres. Takes up to Ancho() characters.
  char* Escribe(char* destino, int v) const;
  [[nodiscard]] std::size_t Ancho() const { return entero ? 32 : 352 + static_cast<std::size_t>(decimales); }

 private:
  std::int64_t Entero(int v) const { return v * factor + desplazamiento; }

  double origen;
  int decimales;
  double escala;
  bool entero;                      // whether the real coordinate is Entero() / 10^decimales exactly
  std::int64_t factor = 1;          // above 1 for a negative precision, whose unit is more than a metre
  std::int64_t desplazamiento = 0;  // origin, in units of the last decimal
  std::uint64_t unidad = 1;         // 10^decimales
};

/// The three axes of a seed.
struct CEjesReales {
  CEjeReal x, y, z;

  explicit CEjesReales(CDataSemilla const& semilla)
      : x(semilla.precision, semilla.origen[0]),
        y(semilla.precision, semilla.origen[1]),
        z(semilla.precision, semilla.origen[2]) {}
};

/// A surface as files want it: its points that belong to a triangle, numbered from 0 in their order, and its triangles
/// counter-clockwise seen from above.
class CSuperficieExportada : public CEjesReales {
 public:
  explicit CSuperficieExportada(CTIN const& elTin);

  [[nodiscard]] std::size_t Puntos() const { return usados.size(); }
  [[nodiscard]] CPuntoTIN const& Punto(std::size_t i) const { return tin.puntos[usados[i]]; }
  [[nodiscard]] std::size_t Caras() const { return tin.Cantidad(); }
  [[nodiscard]] Terna Cara(std::size_t i) const {
    Terna const& t = tin.Vertices(static_cast<std::uint32_t>(i));
    return {numero[t[0]], numero[t[2]], numero[t[1]]};
  }

 private:
  CTIN const& tin;
  std::vector<std::uint32_t> usados;  // index of each exported point
  std::vector<std::uint32_t> numero;  // the reverse; any value for points that are not exported
};

/// Puts the things from `desde` to before `hasta` into memory and returns the end of them; `pieza` tells apart the
/// calls that are under way at the same time: it is below NumeroProcesadores().
using CFormaBloque = std::function<char*(std::size_t desde, std::size_t hasta, std::size_t pieza, char* destino)>;

/// Writes `cuantas` things by blocks of `porBloque`, which have room for `ancho` bytes a thing. `forma` is called from
/// several threads, and answers null when it can't; the bytes reach the file in order. kHecho, kCancelado, or
/// kFicheroInaccesible when the file or `forma` refused.
int EscribeBloques(CFile& fichero, std::size_t cuantas, std::size_t porBloque, std::size_t ancho,
                   CFormaBloque const& forma, CAvance& avance);

/// The same with one thing at a time: `forma(i, destino)` puts thing `i` into memory and returns the end of it.
int EscribeCosas(CFile& fichero, std::size_t cuantas, std::size_t ancho,
                 std::function<char*(std::size_t, char*)> const& forma, CAvance& avance);

/// Writes a text as it stands.
[[nodiscard]] bool EscribeTexto(CFile& fichero, std::string const& texto);

/// Puts a text or an unsigned number into memory and returns the end of it.
inline char* Pon(char* destino, std::string_view texto) { return std::copy(texto.begin(), texto.end(), destino); }
char* Pon(char* destino, std::uint64_t numero);

// What a PLY file consists of.
[[nodiscard]] std::string CabeceraPLY(std::size_t puntos, std::size_t caras);
inline constexpr std::size_t kAnchoPuntoPLY = 3 * sizeof(double), kAnchoCaraPLY = 1 + sizeof(Terna);
char* PonPuntoPLY(char* destino, CEjesReales const& ejes, CCoor3D<int> const& p);
char* PonCaraPLY(char* destino, Terna const& cara);

// The formats; each reports two passes, points and faces.
int EscribePLY(CFile& fichero, CSuperficieExportada const& superficie, CAvance& avance);
int EscribeOBJ(CFile& fichero, CSuperficieExportada const& superficie, CAvance& avance);
int Escribe2DM(CFile& fichero, CSuperficieExportada const& superficie, CAvance& avance);
int EscribeLandXML(CFile& fichero, CSuperficieExportada const& superficie, CDataExportarMDT const& datos,
                   CAvance& avance);

}  // namespace Meseta47
