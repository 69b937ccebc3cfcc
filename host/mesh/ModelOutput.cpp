#include "host/mesh/ModelOutput.h"

#include <cmath>
#include <fmt/format.h>
#include <utility>

#include "host/Failure.h"
#include "host/HostApp.h"
#include "host/OutputFile.h"
#include "host/Parsing.h"
#include "host/Paths.h"
#include "model/threads/Codigos.h"

namespace Meseta47::host {

namespace {

int formatOf(std::string const& output) {
  const std::string extension = extensionOf(output);
  if (extension == ".ply") return FORMATO_PLY;
  if (extension == ".obj") return FORMATO_OBJ;
  if (extension == ".2dm") return FORMATO_2DM;
  if (extension == ".xml") return FORMATO_LANDXML;
  if (extension == ".urd") return FORMATO_NATIVO;
  throw UsageError(
      fmt::format("{}: no format has the extension \"{}\": use .ply, .obj, .2dm, .xml (LandXML) or .urd (native)",
                  output, extension));
}

/// What a format that names its unit says for one of a system.
int unitOf(ReferenceSystem const& system, std::string const& output) {
  constexpr double kFoot = 0.3048, kSurveyFoot = 1200.0 / 3937;
  const PlanUnit unit = system.unit();
  const auto is = [&](double metres) { return std::abs(unit.metres / metres - 1) < 1e-7; };  // the feet differ by 2e-6
  if (is(1)) return UNIDAD_METRO;
  if (is(kFoot)) return UNIDAD_PIE;
  if (is(kSurveyFoot)) return UNIDAD_PIE_TOPOGRAFICO;
  throw Failure(
      fmt::format("{}: LandXML has no coordinates in the unit of {}, which is {}: transform the input, or "
                  "write another format",
                  output, system.label(), unit.name));
}

/// `Written`: what tells of its own failure.
template <class Written>
[[noreturn]] void failWriting(Written const& file) {
  throw Failure(fmt::format("{}: {}", file.Error().Utf8(), helpFor(file.CodigoError())));
}

}  // namespace

ModelOutput::ModelOutput(std::string output) : output_(std::move(output)), how_(formatOf(output_)) {
  how_.nombre = CString::DesdeUtf8(textOf(pathOf(output_).stem()));
}

void ModelOutput::lieIn(ReferenceSystem const& system) {
  if (how_.formato != FORMATO_LANDXML || !system.isKnown()) return;
  how_.unidad = unitOf(system, output_);
  how_.sistema = CString::DesdeUtf8(system.name());
  how_.epsg = system.epsg();
}

void ModelOutput::write(CModeloDigital& model) const {
  const CString path = CString::DesdeUtf8(output_);
  const int code = how_.formato == FORMATO_NATIVO ? model.Write(path, 4) : model.Exportar(path, how_);
  if (code == kFicheroInaccesible) failWriting(model);
  requireDone(code, output_);
}

CFile* ModelOutput::file() {
  partial_.emplace(CString::DesdeUtf8(output_));
  return partial_->EstaAbierto() ? &partial_->Fichero() : nullptr;
}

void ModelOutput::requireWritten() const {
  if (partial_ && partial_->CodigoError() != 0) failWriting(*partial_);
}

void ModelOutput::commit() {
  if (!partial_->Confirma()) failWriting(*partial_);
}

}  // namespace Meseta47::host
