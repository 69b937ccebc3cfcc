// Outlines of real clouds, against the rim of their finished model counted by itself.
#include <gtest/gtest.h>

#include "host/LoadedCloud.h"
#include "model/terrain/CTIN.h"
#include "model/threads/Codigos.h"
#include "planar/CTriangulacion.h"
#include "support/OutlineOracle.h"
#include "support/PlanarRun.h"
#include "support/RealClouds.h"

namespace Meseta47 {
namespace {

struct RealOutline {
  char const* file;
  double distance;  // in the units of the file
};
void PrintTo(RealOutline const& o, std::ostream* out) { *out << o.file << " within " << o.distance; }

class RealOutlines : public testing::TestWithParam<RealOutline> {};

host::LoadedCloud Load(std::filesystem::path const& file) {
  host::CommonOptions quiet;
  quiet.quiet = true;
  host::HostApp app(quiet);
  return std::move(host::loadClouds({{file.string()}}, host::LoadOptions(), app)[0]);
}

TEST_P(RealOutlines, AreTheRimOfTheModelWithoutLongerSides) {
  const auto file = support::realCloud(GetParam().file);
  if (!file) GTEST_SKIP() << support::missingCloud(GetParam().file);
  host::LoadedCloud cloud = Load(*file);
  const test::QuietApp app;
  CDibujo<int> drawing(cloud.seed);
  CSetPuntos<int> set(L"cloud");
  set.CLinea<int>::Asigna(host::takePoints(cloud, true));
  drawing.Inserta(std::move(set));

  CDibujo<int> outlines(cloud.seed);
  CDataSacaLimites how;
  how.distancia = GetParam().distance;
  ASSERT_EQ(CTriangulacion(cloud.seed, {}).LimiteDibujo(drawing, outlines, &how, 1, 0), kHecho);
  EXPECT_GT(outlines.Cantidad(), 1U);

  CTIN tin(0, 0, cloud.seed);
  ASSERT_EQ(CTriangulacion2D(0, cloud.seed, 1).Run(drawing, tin, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  support::Mesh mesh;
  for (CPuntoTIN const& p : tin.puntos) mesh.points.push_back({p.x, p.y, p.z});
  for (std::uint32_t i = 0; i < tin.Cantidad(); ++i) {
    Terna const& t = tin.Vertices(i);
    mesh.triangles.push_back(
        {static_cast<std::int32_t>(t[0]), static_cast<std::int32_t>(t[1]), static_cast<std::int32_t>(t[2])});
  }
  mesh.triangles = support::numberedFromOne(std::move(mesh.triangles));
  std::vector<support::Ring> rings;
  for (unsigned i = 0; i < outlines.Cantidad(); ++i) {
    rings.emplace_back();
    for (CCoor3D<int> const& p : outlines[i].Puntos()) rings.back().push_back({p.x, p.y, p.z});
  }
  const double scaled = GetParam().distance * cloud.seed.Precision();
  EXPECT_EQ(support::outlineFaults(rings, mesh, static_cast<support::Int128>(scaled * scaled + 0.5)), "");
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Clouds, RealOutlines,
                         testing::Values(RealOutline{"Megaplot.las", 1}, RealOutline{"Topography.las", 5},
                                         RealOutline{"autzen_trim.las", 6}, RealOutline{"isprs/samp11.las", 2},
                                         RealOutline{"sample_c.las", 1.5}));

}  // namespace
}  // namespace Meseta47
