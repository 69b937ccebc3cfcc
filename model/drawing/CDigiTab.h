#pragma once

#include <vector>

#include "model/drawing/CTipoDat.h"

namespace Meseta47 {

/// A row of a code table: a kind and code of entities, and how they are drawn.
class URDIMBRE_API CElementoDigiTab : public CTipoDat {
 public:
  int rojo = 0;  ///< colour, 0 to 255
  int verde = 0;
  int azul = 0;
  int grosor = 0;  ///< width of the stroke in pixels, 0 for the thinnest
  int trazo = 0;   ///< pattern of the stroke, 0 for an unbroken one
  CString texto;   ///< what the code stands for, for a person
  int visible = 1;

  CElementoDigiTab() = default;
  CElementoDigiTab(CTipoEntidad elTipo, CString const& elCodigo, int elRojo, int elVerde, int elAzul, int elGrosor,
                   int elTrazo, CString const& elTexto, int esVisible)
      : CElementoDigiTab(CTipoDat(elTipo, elCodigo), elRojo, elVerde, elAzul, elGrosor, elTrazo, elTexto, esVisible) {}
  CElementoDigiTab(CTipoDat const& dato, int elRojo, int elVerde, int elAzul, int elGrosor, int elTrazo,
                   CString const& elTexto, int esVisible)
      : CTipoDat(dato),
        rojo(elRojo),
        verde(elVerde),
        azul(elAzul),
        grosor(elGrosor),
        trazo(elTrazo),
        texto(elTexto),
        visible(esVisible) {}
};

/// A table of codes, in the order in which its rows came.
class URDIMBRE_API CDigiTab {
 public:
  [[nodiscard]] unsigned int Cantidad() const { return static_cast<unsigned int>(filas.size()); }
  [[nodiscard]] CElementoDigiTab const& operator[](unsigned int i) const { return filas[i]; }
  [[nodiscard]] CElementoDigiTab& operator[](unsigned int i) { return filas[i]; }

  /// Adds a row at the end. With `unica`, a row whose kind and code the table has already is not added again. Returns
  /// whether it was added.
  bool Inserta(CElementoDigiTab const& fila, bool unica) {
    if (unica) {
      for (CElementoDigiTab const& otra : filas) {
        if (otra.MismoTipo(fila)) return false;
      }
    }
    filas.push_back(fila);
    return true;
  }
  void clear() { filas.clear(); }

 private:
  std::vector<CElementoDigiTab> filas;
};

}  // namespace Meseta47
