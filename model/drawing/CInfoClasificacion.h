#pragma once

#include "platform/CString.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// Text of the class that matches every class.
inline constexpr wchar_t kTextoComodin[] = L"_###COMODIN###";

/// A class that a point can have, or a condition on it.
class URDIMBRE_API CInfoClasificacion {
 public:
  CInfoClasificacion() = default;
  CInfoClasificacion(unsigned char clase, double cifra, CString const& nombre)
      : tipo(clase), comodin(nombre == kTextoComodin), valor(cifra), texto(nombre) {}

  [[nodiscard]] unsigned char GetTipo() const { return tipo; }
  [[nodiscard]] double GetValor() const { return valor; }
  [[nodiscard]] CString const& GetTexto() const { return texto; }
  /// True when the byte equals the type; for the wildcard, always.
  [[nodiscard]] bool Compara(unsigned char clase) const { return comodin || clase == tipo; }

  [[nodiscard]] bool operator==(CInfoClasificacion const& o) const {
    return tipo == o.tipo && valor == o.valor && texto == o.texto;
  }
  [[nodiscard]] bool operator!=(CInfoClasificacion const& o) const { return !(*this == o); }

 private:
  unsigned char tipo = 0;
  bool comodin = false;
  double valor = 0;
  CString texto;
};

}  // namespace Meseta47
