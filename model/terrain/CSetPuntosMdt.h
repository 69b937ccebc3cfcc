#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "model/storage/VectorCrudo.h"
#include "model/terrain/CPuntoTIN.h"
#include "model/threads/CNivelMensajes.h"
#include "platform/Exporta.h"

class CFile;

namespace Meseta47 {

class IPorcentaje;

/// The points of a model, side by side in memory. Meshes hold pointers to them: a point stays where it is as long as
/// size() does not pass capacity() and nobody sorts, reads, resizes or clears the set.
///
/// Distinct points may be written by distinct threads at once; every other change belongs to one thread.
class URDIMBRE_API CSetPuntosMdt {
 public:
  unsigned char modificado = 0;  ///< 1 once somebody has taken points out of use
  std::uint32_t reserva = 1024;  ///< room that Read leaves behind the points, for those that are added later

  /// `esRica` other than 0 selects the richer form of the file: with the survey data. The first integer selects
  /// nothing.
  CSetPuntosMdt(int, int esRica) : rica(esRica != 0) {}
  CSetPuntosMdt(CSetPuntosMdt const&) = default;
  CSetPuntosMdt(CSetPuntosMdt&&) noexcept = default;
  CSetPuntosMdt& operator=(CSetPuntosMdt const&) = default;
  CSetPuntosMdt& operator=(CSetPuntosMdt&&) noexcept = default;
  ~CSetPuntosMdt() = default;

  [[nodiscard]] std::size_t size() const { return puntos.size(); }
  [[nodiscard]] std::size_t capacity() const { return puntos.capacity(); }
  [[nodiscard]] bool EsRica() const { return rica; }

  [[nodiscard]] CPuntoTIN& operator[](unsigned int i) { return puntos[i]; }
  [[nodiscard]] CPuntoTIN const& operator[](unsigned int i) const { return puntos[i]; }
  /// Null when the index is out of range.
  [[nodiscard]] CPuntoTIN* at(unsigned int i) { return i < puntos.size() ? &puntos[i] : nullptr; }
  [[nodiscard]] CPuntoTIN const* at(unsigned int i) const { return i < puntos.size() ? &puntos[i] : nullptr; }

  [[nodiscard]] CPuntoTIN* begin() { return puntos.data(); }
  [[nodiscard]] CPuntoTIN* end() { return puntos.data() + puntos.size(); }
  [[nodiscard]] CPuntoTIN const* begin() const { return puntos.data(); }
  [[nodiscard]] CPuntoTIN const* end() const { return puntos.data() + puntos.size(); }

  /// Appends the point. Where the order is to be kept it is appended too: what stands in the set keeps its place, since
  /// meshes point at it, and a later sort() brings all into order.
  void push_back(CPuntoTIN const& punto, bool) { puntos.push_back(punto); }

  /// Room for so many points. The extents select nothing.
  void reserve(unsigned long long cuantos, int, int) { puntos.reserve(cuantos); }
  void resize(unsigned long long cuantos);
  /// Drops the points and gives their memory back.
  void clear() { Bloque().swap(puntos); }

  /// Replaces the points by as many as `hace(0)`, `hace(1)` ... give; it is called on all processors at once, in no
  /// order, and must not throw. Room that was reserved stays.
  void Genera(std::size_t cuantos, std::function<CPuntoTIN(std::size_t)> const& hace);

  /// Orders the points by x, then y, then z; those of one position keep the order in which they came. O(n) on all
  /// processors, with room for a second set. The arguments select nothing: the order is the same for any number of
  /// threads.
  void sort(short int, bool);

  /// The point block of a file. `valor` grows to the number of points, and is reported of `total` where a progress
  /// interface is given and `nivel` is above 0. Write answers kHecho, kCancelado or kFicheroInaccesible. Read replaces
  /// the points, form included, and answers kHecho, kCancelado, kFicheroCortado or kFicheroInconsistente; the set is
  /// empty unless it answers kHecho. It takes no more memory than the rest of the file can fill.
  int Write(CFile* fichero, unsigned int& valor, unsigned int total, IPorcentaje* porcentaje,
            CNivelMensajes nivel) const;
  int Read(CFile* fichero, unsigned int& valor, unsigned int total, IPorcentaje* porcentaje, CNivelMensajes nivel);

 private:
  /// Elements are neither constructed nor destroyed here: the caller of resize() fills them. The destructor of a
  /// point does nothing, but is virtual, and would be called for each.
  struct Asignador : AsignadorCrudo<CPuntoTIN> {
    /// The allocator of another type, as containers ask for it.
    template <class U>
    struct rebind {
      using other = Asignador;
    };
    template <class... Args>
    void construct(CPuntoTIN* lugar, Args const&... args) {
      if constexpr (sizeof...(args) > 0) std::construct_at(lugar, args...);
    }
    void destroy(CPuntoTIN*) noexcept {}
  };
  using Bloque = std::vector<CPuntoTIN, Asignador>;

  Bloque puntos;
  bool rica;
};

}  // namespace Meseta47
