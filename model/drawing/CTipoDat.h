#pragma once

#include <cstdint>
#include <utility>

#include "platform/CString.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// Kinds of entity. Rows of a code table that stand for any kind carry the first.
enum CTipoEntidad : std::int16_t {
  ENTIDAD_LINEA = 0,      ///< a line: its points follow one another
  ENTIDAD_SETPUNTOS = 1,  ///< a set of points with nothing between them
  ENTIDAD_TEXTO = 2,      ///< lettering and the like: never terrain
};

/// Code of a table row that matches every entity.
inline constexpr wchar_t kCodigoTodos[] = L"*";

/// Kind and code of an entity, or of a row of a code table.
class URDIMBRE_API CTipoDat {
 public:
  CTipoDat() = default;
  CTipoDat(CTipoEntidad elTipo, CString elCodigo) : codigo(std::move(elCodigo)), tipo(elTipo) {}
  CTipoDat(CTipoDat const&) = default;
  CTipoDat(CTipoDat&&) = default;
  CTipoDat& operator=(CTipoDat const&) = default;
  CTipoDat& operator=(CTipoDat&&) = default;
  virtual ~CTipoDat() = default;

  [[nodiscard]] CTipoEntidad GetTipo() const { return tipo; }
  [[nodiscard]] CString const& GetCodigo() const { return codigo; }
  void SetCodigo(CString const& nuevo) { codigo = nuevo; }

  /// Whether it is drawn as a line.
  [[nodiscard]] bool EsGrafico() const { return tipo == ENTIDAD_LINEA; }
  [[nodiscard]] bool EsSetPuntos() const { return tipo == ENTIDAD_SETPUNTOS; }
  /// A deleted entity stays in its place, takes part in nothing and can be brought back.
  [[nodiscard]] bool EsBorrado() const { return borrado; }
  void SetBorrado(bool si) { borrado = si; }

  /// Whether this code is that of a table row, letter by letter; the row "*" matches every code.
  [[nodiscard]] bool ComparaCodigo(CString const& fila) const { return fila == kCodigoTodos || codigo == fila; }

  /// Kind and code; the deleted mark takes no part.
  [[nodiscard]] bool MismoTipo(CTipoDat const& o) const { return tipo == o.tipo && codigo == o.codigo; }

 protected:
  CString codigo;
  CTipoEntidad tipo = ENTIDAD_LINEA;
  bool borrado = false;
};

}  // namespace Meseta47
