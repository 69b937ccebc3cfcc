#include "tetrahedral/CHiloSalvaTetraedrosEnlazados.h"

#include "tetrahedral/CSetTetraedros.h"

namespace Meseta47 {

bool CHiloSalvaTetraedrosEnlazados::Start(unsigned elIndice, HANDLE* elEvento, CCola& laCola, CFile* elFichero,
                                          double elLimite, bool lasTodas) {
  fichero = elFichero;
  limite = elLimite;
  todas = lasTodas;
  return Empieza(elIndice, elEvento, laCola);
}

/// A refusal of the disk stays with the file, and the driver asks for it at the end.
void CHiloSalvaTetraedrosEnlazados::Trabaja(CSetTetraedros& set) { set.Salva(fichero, limite, todas, nullptr); }

}  // namespace Meseta47
