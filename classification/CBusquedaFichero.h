#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

class CFile;

namespace Meseta47 {

/// Reads the triangles of a temporary file, or of a slice of it, a block at a time.
class CBusquedaFichero {
 public:
  using CRegistro = std::array<std::int32_t, 3>;  ///< numbers of the vertices; negative for a corner of the frame
  static constexpr unsigned kBytes = sizeof(CRegistro);

  /// The next records that begin before byte `limite`, valid until the next call; none when there is no more. Fewer
  /// than the file promises have come when they end before `limite`: the file's HayError() tells why.
  [[nodiscard]] std::span<CRegistro const> Siguiente(CFile& fichero, std::uint64_t limite);

  [[nodiscard]] static bool TocaElMarco(CRegistro const& r) { return r[0] < 0 || r[1] < 0 || r[2] < 0; }

 private:
  static constexpr std::uint64_t kBloque = 1024;  // records: 12 kB, which stay in the nearest cache

  std::vector<CRegistro> bloque;
};

}  // namespace Meseta47
