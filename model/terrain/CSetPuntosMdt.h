#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "model/storage/CIteradorIndice.h"
#include "model/storage/VectorCrudo.h"
#include "model/terrain/CPuntoTIN.h"
#include "model/threads/CNivelMensajes.h"
#include "platform/Exporta.h"

class CFile;

namespace Meseta47 {

class IPorcentaje;

/// The points of a model, side by side in memory but for those that were added to a living mesh. Meshes hold pointers
/// to them: a point stays where it is until somebody sorts, reads, resizes or clears the set, reserves room, or appends
/// beyond capacity() without asking for the order.
///
/// Distinct points may be written by distinct threads at once; every other change belongs to one thread.
class URDIMBRE_API CSetPuntosMdt {
 public:
  unsigned char modificado = 0;  ///< 1 once somebody has taken points out of use
  std::uint32_t reserva = 1024;  ///< room that Read leaves behind the points, for those that are added later

  /// `esRica` other than 0 selects the richer form of the file: with the survey data. The first integer selects
  /// nothing.
  CSetPuntosMdt(int, int esRica) : rica(esRica != 0) {}
  /// A copy has all its points side by side. What is moved from is left empty.
  CSetPuntosMdt(CSetPuntosMdt const& o);
  CSetPuntosMdt(CSetPuntosMdt&&) noexcept = default;
  CSetPuntosMdt& operator=(CSetPuntosMdt const& o) { return *this = CSetPuntosMdt(o); }
  CSetPuntosMdt& operator=(CSetPuntosMdt&&) noexcept = default;
  ~CSetPuntosMdt() = default;

  [[nodiscard]] std::size_t size() const {
    return anexos.empty() ? puntos.size() : puntos.size() + (anexos.size() - 1) * kAnexo + anexos.back().size();
  }
  /// Points that fit in the memory taken so far.
  [[nodiscard]] std::size_t capacity() const {
    return (anexos.empty() ? puntos.capacity() : puntos.size()) + anexos.size() * kAnexo;
  }
  [[nodiscard]] bool EsRica() const { return rica; }

  [[nodiscard]] CPuntoTIN& operator[](unsigned int i) { return i < puntos.size() ? puntos[i] : Anexo(i); }
  [[nodiscard]] CPuntoTIN const& operator[](unsigned int i) const { return i < puntos.size() ? puntos[i] : Anexo(i); }
  /// Null when the index is out of range.
  [[nodiscard]] CPuntoTIN* at(unsigned int i) {
    return i < puntos.size() ? &puntos[i] : (i < size() ? &Anexo(i) : nullptr);
  }
  [[nodiscard]] CPuntoTIN const* at(unsigned int i) const {
    return i < puntos.size() ? &puntos[i] : (i < size() ? &Anexo(i) : nullptr);
  }
  /// Index of a point by where it stands; kSinIndice for one that is not of this set. O(1), but for points that were
  /// added to a living mesh: O(their number / 1024).
  static constexpr unsigned kSinIndice = 0xFFFFFFFF;
  [[nodiscard]] unsigned Indice(CPuntoTIN const* punto) const;

  [[nodiscard]] auto begin() { return CIteradorIndice<CSetPuntosMdt, CPuntoTIN>(*this, 0); }
  [[nodiscard]] auto end() { return CIteradorIndice<CSetPuntosMdt, CPuntoTIN>(*this, size()); }
  [[nodiscard]] auto begin() const { return CIteradorIndice<CSetPuntosMdt const, CPuntoTIN const>(*this, 0); }
  [[nodiscard]] auto end() const { return CIteradorIndice<CSetPuntosMdt const, CPuntoTIN const>(*this, size()); }

  /// Appends the point. With `orden` the set is a living one: no point moves, since meshes point at them, whatever room
  /// there is; a later sort() brings all into order. Without it all points may move when capacity() is reached.
  void push_back(CPuntoTIN const& punto, bool orden);

  /// Room for so many points side by side. The extents select nothing.
  void reserve(unsigned long long cuantos, int, int) {
    if (anexos.empty()) puntos.reserve(cuantos);
  }
  void resize(unsigned long long cuantos);
  /// Drops the points and gives their memory back.
  void clear() {
    Bloque().swap(puntos);
    std::vector<Bloque>().swap(anexos);
  }

  /// Replaces the points, side by side, by as many as `hace(0)`, `hace(1)` ... give; it is called on all processors at
  /// once, in no order, and must not throw. Room that was reserved stays.
  void Genera(std::size_t cuantos, std::function<CPuntoTIN(std::size_t)> const& hace);

  /// Orders the points by x, then y, then z; those of one position keep the order in which they came. O(n) on all
  /// processors, with room for a second set. The arguments select nothing: the order is the same for any number of
  /// threads.
  void sort(short int, bool);
  /// The same order without room for a second set, by 32 bytes a point and one thread: for who has no room for it.
  void OrdenaEnSitio();

  /// The point block of a file. `valor` grows to the number of points, and is reported of `total` where a progress
  /// interface is given and `nivel` is above 0. Write answers kHecho, kCancelado or kFicheroInaccesible. Read replaces
  /// the points, form included, and answers kHecho, kCancelado, kFicheroCortado or kFicheroInconsistente; the set is
  /// empty unless it answers kHecho. It takes no more memory than the rest of the file can fill.
  int Write(CFile* fichero, unsigned int& valor, unsigned int total, IPorcentaje* porcentaje,
            CNivelMensajes nivel) const;
  int Read(CFile* fichero);
  int Read(CFile* fichero, unsigned int& valor, unsigned int total, IPorcentaje* porcentaje, CNivelMensajes nivel);

 private:
  /// Points are neither constructed nor destroyed here: the caller of resize() fills them. The destructor of a point
  /// does nothing, but is virtual, and would be called for each. What else a vector may keep is made as ever.
  template <class T>
  struct Asignador : AsignadorCrudo<T> {
    /// The allocator of another type, as containers ask for it.
    template <class U>
    struct rebind {
      using other = Asignador<U>;
    };
    Asignador() = default;
    template <class U>
    Asignador(Asignador<U> const&) noexcept {}

    template <class U, class... Args>
    void construct(U* lugar, Args&&... args) {
      if constexpr (!std::is_same_v<U, CPuntoTIN> || sizeof...(args) > 0) {
        std::construct_at(lugar, std::forward<Args>(args)...);
      }
    }
    template <class U>
    void destroy(U* lugar) noexcept {
      if constexpr (!std::is_same_v<U, CPuntoTIN>) std::destroy_at(lugar);
    }
  };
  using Bloque = std::vector<CPuntoTIN, Asignador<CPuntoTIN>>;

  static constexpr std::size_t kAnexo = 1024;  // points of a block that is added: 50 KB

  [[nodiscard]] CPuntoTIN& Anexo(std::size_t i) {
    return anexos[(i - puntos.size()) / kAnexo][(i - puntos.size()) % kAnexo];
  }
  [[nodiscard]] CPuntoTIN const& Anexo(std::size_t i) const {
    return anexos[(i - puntos.size()) / kAnexo][(i - puntos.size()) % kAnexo];
  }

  Bloque puntos;
  std::vector<Bloque> anexos;  ///< points behind them that found no room there; all blocks but the last are full
  bool rica;
};

}  // namespace Meseta47
