#pragma once

#include <string>

#include "host/vector/ReferenceSystem.h"
#include "model/terrain/CDataExportarMDT.h"
#include "model/terrain/CModeloDigital.h"

namespace Meseta47::host {

/// The file that a model is written to, in the format of its extension.
class ModelOutput {
 public:
  /// Throws UsageError for an extension that no format has.
  explicit ModelOutput(std::string output);

  /// Says where the model lies, to a format that tells. Throws Failure where the format has no word for the unit.
  void lieIn(ReferenceSystem const& system);
  /// Whether the format holds the neighbours of triangles.
  [[nodiscard]] bool holdsNeighbours() const { return how_.formato == FORMATO_NATIVO; }

  /// Throws Failure, and no file is left then.
  void write(CModeloDigital& model) const;

 private:
  std::string output_;
  CDataExportarMDT how_;
};

}  // namespace Meseta47::host
