#pragma once

#include <optional>
#include <string>

#include "host/vector/ReferenceSystem.h"
#include "model/terrain/CDataExportarMDT.h"
#include "model/terrain/CModeloDigital.h"
#include "platform/CFicheroParcial.h"

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

  /// Whether a run writes the format by itself. Then file() makes the file for it, null when that fails; after the run
  /// requireWritten() throws Failure when the file was refused anything; and commit() gives it its name. Without that
  /// no file is left.
  [[nodiscard]] bool takesRuns() const { return how_.formato == FORMATO_PLY; }
  [[nodiscard]] CFile* file();
  void requireWritten() const;
  void commit();

 private:
  std::string output_;
  CDataExportarMDT how_;
  std::optional<CFicheroParcial> partial_;  // of a run
};

}  // namespace Meseta47::host
