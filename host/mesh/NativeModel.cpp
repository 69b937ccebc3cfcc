#include "host/mesh/NativeModel.h"

#include <algorithm>
#include <fmt/format.h>

#include "host/Failure.h"
#include "host/HostApp.h"
#include "host/Parsing.h"
#include "host/las/ByteSource.h"
#include "model/threads/Codigos.h"

namespace Meseta47::host {

namespace {

CModeloDigital readBy(int (CModeloDigital::*read)(CString const&), std::string const& path) {
  (void)FileSource(path);  // which says best what keeps a file from being opened
  CModeloDigital model(new CTIN(0, 0, CDataSemilla()));
  if (read == &CModeloDigital::ReadPuntos) model.Mensajes(MENSAJES_NINGUNO);  // others report on reading clouds
  const int code = (model.*read)(CString::DesdeUtf8(path));
  if (code != kHecho && code != kCancelado && !model.Error().IsEmpty()) {
    throw Failure(fmt::format("{}: write it again with urdimbre tin", model.Error().Utf8()));
  }
  requireDone(code, path);
  return model;
}

}  // namespace

bool isNativeModel(std::string_view beginning, std::string const& path) {
  return beginning.starts_with("Urdimbre-MDT") || extensionOf(path) == ".urd";
}

CModeloDigital readNativeModel(std::string const& path) { return readBy(&CModeloDigital::Read, path); }

ModelPoints::ModelPoints(std::string path) : path_(std::move(path)) { (void)FileSource(path_); }

CTIN const& ModelPoints::tin() const {
  if (model_ == nullptr) {
    model_ = std::make_unique<CModeloDigital>(readBy(&CModeloDigital::ReadPuntos, path_));
  }
  return model_->Tin();
}

int ModelPoints::precision() const { return std::clamp<int>(tin().semilla.precision, 0, kMostDecimals); }

std::size_t ModelPoints::readBatch(std::vector<CloudPoint>& points, std::size_t max) {
  CTIN const& model = tin();
  const double unit = model.semilla.Precision();
  double const(&origin)[3] = model.semilla.origen;
  const auto end = static_cast<unsigned>(next_ + std::min<std::size_t>(max, model.puntos.size() - next_));
  points.clear();
  for (; next_ < end; ++next_) {
    CPuntoTIN const& from = model.puntos[next_];
    CloudPoint& to = points.emplace_back();
    to.x = from.x / unit + origin[0];
    to.y = from.y / unit + origin[1];
    to.z = from.z / unit + origin[2];
    to.intensity = from.intensidad;
    to.classification = from.clasificacion;
    to.r = from.aero.rojo;
    to.g = from.aero.verde;
    to.b = from.aero.azul;
  }
  return points.size();
}

}  // namespace Meseta47::host
