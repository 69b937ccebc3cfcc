#include "host/mesh/Tin3d.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/OutputFile.h"
#include "host/Parsing.h"
#include "host/SpaceDrawing.h"
#include "host/las/ByteSource.h"
#include "model/geometry/CEsfera.h"
#include "platform/CFicheroParcial.h"
#include "platform/CFile.h"

namespace Meseta47::host {

namespace {

constexpr std::string_view kMagic = "Ondara-TIN3D-";

bool beginsAsTin3d(std::string const& path) {
  try {
    std::array<std::uint8_t, kMagic.size()> bytes{};
    FileSource source(path);
    return source.read(0, bytes) == bytes.size() && std::equal(bytes.begin(), bytes.end(), kMagic.begin());
  } catch (FileError const&) {
    return false;  // whoever reads it says what is wrong
  }
}

[[noreturn]] void failReading(std::string const& path, int code) {
  if (code == kFicheroCortado) throw FileError(path, fmt::format("it ends too early: {}", kDamaged));
  if (code == kFicheroInaccesible) throw FileError(path, fmt::format("its tree of cells cannot be read: {}", kDamaged));
  throw FileError(path, fmt::format("it is no TIN3D file, or its numbers contradict one another: {}", kDamaged));
}

}  // namespace

bool isNamedTin3d(std::string const& path) { return extensionOf(path) == ".tin3d"; }
bool isTin3d(std::string const& path) { return isNamedTin3d(path) || beginsAsTin3d(path); }

bool isMeshAlone(std::vector<std::string> const& inputs) {
  const auto mesh = std::find_if(inputs.begin(), inputs.end(), isTin3d);
  if (mesh == inputs.end()) return false;
  if (inputs.size() > 1) throw UsageError(fmt::format("{}: a mesh is taken alone: give one mesh, or clouds", *mesh));
  return true;
}

Tin3d readTin3d(std::string const& path, std::optional<int> precision, HostApp& app) {
  (void)FileSource(path);  // which says best what keeps a file from being opened
  const CDataSemilla seed(static_cast<char>(precision.value_or(CDataSemilla().precision)), 0, 0, 0);
  Tin3d read;
  read.mesh = std::make_unique<CTriangulacion3D>(0, seed, everything(), 1);
  CFile file(CString::DesdeUtf8(path), CFile::modeRead);
  read.version = CTriangulacion3D::VersionMDT(&file);
  const int code = read.mesh->Read(&file, false);
  if (code == kCancelado) throw Cancelled();
  if (code != kHecho) failReading(path, code);
  if (read.version == 1 && !precision) {
    app.warn(
        fmt::format("{}: version 1 names neither decimals nor origin: {} decimals are taken; --precision says "
                    "otherwise",
                    path, seed.precision));
  }
  return read;
}

void writeTin3d(CTriangulacion3D& mesh, std::string const& output, int version) {
  CFicheroParcial partial(CString::DesdeUtf8(output));
  const int code = partial.EstaAbierto() ? mesh.Write(&partial.Fichero(), version) : kFicheroInaccesible;
  if (code == kCancelado) throw Cancelled();
  if (code == kHecho && partial.Confirma()) return;
  throw FileError(output,
                  fmt::format("cannot be written: {}: {}", partial.Causa().Utf8(), helpFor(partial.CodigoError())));
}

ExactSpaceMesh framedMesh(CTriangulacion3D& kept) {
  ExactSpaceMesh mesh;
  CDataSemilla const& seed = kept.Semilla();
  mesh.precision = +seed.precision;  // a small number, not a character
  std::copy(std::begin(seed.origen), std::end(seed.origen), mesh.origin.begin());
  constexpr std::int32_t kCorners = 8;
  constexpr std::uint32_t kUnused = ~0U;
  std::vector<std::uint32_t> vertexOf(kCorners + std::size_t{kept.CantidadPuntos()}, kUnused);
  const auto vertex = [&](std::int32_t number) {
    std::uint32_t& place =
        vertexOf[number < 0 ? static_cast<std::size_t>(-1 - number) : static_cast<std::size_t>(kCorners - 1 + number)];
    if (place == kUnused) {
      place = static_cast<std::uint32_t>(mesh.vertices.size());
      mesh.vertices.push_back(number < 0 ? kept.Esquina(static_cast<unsigned>(-1 - number))
                                         : *kept.Punto(static_cast<unsigned>(number - 1)));
    }
    return place;
  };
  kept.RecorreMalla([&](CTriangulacion3D::CCuatro const& record) {
    Tetrahedron t{};
    std::transform(record.begin(), record.end(), t.begin(), vertex);
    auto const& v = mesh.vertices;
    // Numbers ascend in the file: which way round they run is nobody's statement.
    if (SignoDeVolumen(v[t[0]], v[t[1]], v[t[2]], v[t[3]]) > 0) std::swap(t[2], t[3]);
    mesh.tetrahedra.push_back(t);
  });
  return mesh;
}

}  // namespace Meseta47::host
