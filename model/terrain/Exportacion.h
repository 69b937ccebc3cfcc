#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
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

/// A surface as files want it: its points that belong to a triangle, numbered from 0 in their order, and its triangles
/// counter-clockwise seen from above.
class CSuperficieExportada {
 public:
  explicit CSuperficieExportada(CTIN const& elTin);

  [[nodiscard]] std::size_t Puntos() const { return usados.size(); }
  [[nodiscard]] CPuntoTIN const& Punto(std::size_t i) const { return tin.puntos[usados[i]]; }
  [[nodiscard]] std::size_t Caras() const { return tin.Cantidad(); }
  [[nodiscard]] Terna Cara(std::size_t i) const {
    Terna const& t = tin.Vertices(static_cast<std::uint32_t>(i));
    return {numero[t[0]], numero[t[2]], numero[t[1]]};
  }

  CEjeReal x, y, z;

 private:
  CTIN const& tin;
  std::vector<std::uint32_t> usados;  // index of each exported point
  std::vector<std::uint32_t> numero;  // the reverse; any value for points that are not exported
};

/// Writes `cuantas` things: `forma(i, destino)` puts thing `i` into memory, where it has room for `ancho` bytes, and
/// returns the end of it. It is called from several threads; the bytes reach the file in order. kHecho, kCancelado or
/// kFicheroInaccesible.
int EscribeCosas(CFile& fichero, std::size_t cuantas, std::size_t ancho,
                 std::function<char*(std::size_t, char*)> const& forma, CAvance& avance);

/// Writes a text as it stands.
[[nodiscard]] bool EscribeTexto(CFile& fichero, std::string const& texto);

/// Puts a text or an unsigned number into memory and returns the end of it.
inline char* Pon(char* destino, std::string_view texto) { return std::copy(texto.begin(), texto.end(), destino); }
char* Pon(char* destino, std::uint64_t numero);

// The formats; each reports two passes, points and faces.
int EscribePLY(CFile& fichero, CSuperficieExportada const& superficie, CAvance& avance);
int EscribeOBJ(CFile& fichero, CSuperficieExportada const& superficie, CAvance& avance);
int Escribe2DM(CFile& fichero, CSuperficieExportada const& superficie, CAvance& avance);
int EscribeLandXML(CFile& fichero, CSuperficieExportada const& superficie, CDataExportarMDT const& datos,
                   CAvance& avance);

}  // namespace Meseta47
