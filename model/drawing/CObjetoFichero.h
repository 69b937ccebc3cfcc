#pragma once

#include <cstdint>

#include "model/geometry/CDataHelmertNTV2.h"
#include "model/geometry/CMaximas.h"
#include "model/threads/CNivelMensajes.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

namespace Meseta47 {

enum CTipoObjeto : std::int32_t {
  OBJETO_NINGUNO = 0,
  OBJETO_DIBUJO = 1,
  OBJETO_TIN = 2,
  OBJETO_MODELO_DIGITAL = 3,
  OBJETO_TRIANGULACION = 4,
  OBJETO_TRIANGULACION3D = 5,
};

/// Base of what a host opens, shows and saves as one document.
class URDIMBRE_API CObjetoFichero {
 public:
  CString fichero;  ///< where it was read from or goes to; empty while it has no file
  CNivelMensajes nivelMensajes = MENSAJES_NORMALES;
  std::uint32_t cantidades[3] = {0, 0, 0};  ///< counts of its items, as ActualizaCantidades left them

  explicit CObjetoFichero(CTipoObjeto elTipo = OBJETO_NINGUNO) : tipoObjeto(elTipo) {}
  CObjetoFichero(CObjetoFichero const&) = default;
  CObjetoFichero(CObjetoFichero&&) noexcept = default;
  virtual ~CObjetoFichero() = default;

  /// Copies the name, the level and the counts. The kind of an object is not changed by what is assigned to it.
  /// Derived classes say `using CObjetoFichero::operator=`, or their own assignment would hide it.
  virtual CObjetoFichero& operator=(CObjetoFichero const& o);
  /// Takes the name over, and the level and the counts as well.
  CObjetoFichero& operator=(CObjetoFichero&& o) noexcept;

  /// Counts the items anew. The base has none and leaves the counts as they are.
  virtual void ActualizaCantidades() {}
  /// Takes everything to another reference system; positions are rounded to the object's precision. False when the
  /// object cannot be taken there, as the base never can.
  virtual bool Transformacion(CDataHelmertNTV2 const&) { return false; }
  /// Leaves the object without items: the counts become 0. Name and level stay.
  virtual void Clear();
  /// The box of its items: scaled units divided by the scale.
  [[nodiscard]] virtual CMaximas<double> GetMaximasDouble() const = 0;
  virtual void SetMaximasDouble(CMaximas<double> const& m) = 0;

  /// Sets the level and returns the one it replaces. A value outside the known ones is kept as 0.
  virtual CNivelMensajes Mensajes(CNivelMensajes nivel);
  [[nodiscard]] CNivelMensajes Mensajes() const { return nivelMensajes; }

  [[nodiscard]] CTipoObjeto GetTipoObjeto() const { return tipoObjeto; }

 private:
  CTipoObjeto tipoObjeto;
};

}  // namespace Meseta47
