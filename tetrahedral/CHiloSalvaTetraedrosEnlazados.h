#pragma once

#include "run/CHiloCerrados.h"

class CFile;

namespace Meseta47 {

class CSetTetraedros;

/// The worker of a linking pass in space: writes what may belong to the surface of the closed sets, and frees them.
class URDIMBRE_API CHiloSalvaTetraedrosEnlazados : public CHiloCerrados<CSetTetraedros> {
 public:
  using CCola = CColaCerrados<CSetTetraedros>;

  CHiloSalvaTetraedrosEnlazados() = default;
  ~CHiloSalvaTetraedrosEnlazados() override { Stop(); }

  /// Starts the thread, unless there is one, with the job of `CSetTetraedros::Salva`: `elLimite` is the squared length
  /// above which an edge is long, in scaled units. `elEvento` is reset when the thread leaves. False when the system
  /// gives no thread. Takes what it is given in either case: not for a thread at work.
  bool Start(unsigned elIndice, HANDLE* elEvento, CCola& laCola, CFile* elFichero, double elLimite, bool todas);

 private:
  void Trabaja(CSetTetraedros& set) override;

  CFile* fichero = nullptr;
  double limite = 0;
  bool todas = false;
};

}  // namespace Meseta47
