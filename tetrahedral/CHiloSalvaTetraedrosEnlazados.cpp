#include "tetrahedral/CHiloSalvaTetraedrosEnlazados.h"

#include "tetrahedral/CSetTetraedros.h"

namespace Meseta47 {

bool CHiloSalvaTetraedrosEnlazados::Start(unsigned elIndice, HANDLE* elEvento, CCola& laCola, CFile* elFichero,
                                          double elLimite, bool lasTodas, bool losEnteros) {
  fichero = elFichero;
  limite = elLimite;
  todas = lasTodas;
  enteros = losEnteros;
  return Empieza(elIndice, elEvento, laCola);
}

/// A refusal of the disk stays with the file, and the driver asks for it at the end.
void CHiloSalvaTetraedrosEnlazados::Trabaja(CSetTetraedros& set) {
  if (enteros) {
    set.SalvaEnteros(fichero);
  } else {
    set.Salva(fichero, limite, todas, nullptr);
  }
}

}  // namespace Meseta47
