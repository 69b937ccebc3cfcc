// Two threads that insert leave what one leaves of real clouds, in the order of the program and in that of the file.
#include <gtest/gtest.h>

#include "host/LoadedCloud.h"
#include "host/SpatialOrder.h"
#include "model/threads/Codigos.h"
#include "support/PlanarRun.h"
#include "support/PlanarSizes.h"
#include "support/RealClouds.h"

namespace Meseta47 {
namespace {

struct Left {
  std::string bytes;
  std::vector<int> numbers;
  std::vector<std::uint64_t> counts;
  bool byTwo = false;
};

std::vector<CCoor3D<int>> Load(std::string const& path, host::Halves halves, bool hilbert) {
  host::CommonOptions quiet;
  quiet.quiet = true;
  host::HostApp app(quiet);
  host::LoadedCloud cloud = std::move(host::loadClouds({{path}}, host::LoadOptions(), app)[0]);
  return host::takePoints(cloud, hilbert, host::Ties::byPosition, halves);
}

Left Linked(std::vector<CCoor3D<int>> points, unsigned threads) {
  const test::QuietApp app(threads);
  CSetPuntos<int> set(L"CLOUD");
  set.CLinea<int>::Asigna(std::move(points));
  CDibujo<int> drawing;
  drawing.Inserta(std::move(set));
  test::OpenTriangulation t;
  t.DosDesde(0);
  EXPECT_EQ(t.Link(drawing), kHecho);
  CResumenPlano const& r = t.Resumen();
  Left left{t.SpilledBytes(), {}, {r.duplicados, r.rechazados, r.picoVivos, r.enlazados, r.examinados}, t.porDos.hecho};
  for (CCoor3D<int> const& p : drawing[0].Puntos()) left.numbers.push_back(p.num);
  t.BorraFicheroTemporal();
  return left;
}

class DosMitadesReales : public testing::TestWithParam<std::string> {};

TEST_P(DosMitadesReales, LeaveWhatOneThreadLeaves) {
  const auto path = support::realCloud(GetParam());
  if (!path) GTEST_SKIP() << support::missingCloud(GetParam());
  for (const bool hilbert : {true, false}) {
    const auto points = Load(path->string(), host::Halves::inTurns, hilbert);
    const Left one = Linked(points, 1);
    for (const unsigned threads : {2U, 4U}) {
      const Left more = Linked(points, threads);
      EXPECT_TRUE(one.bytes == more.bytes) << threads << " threads, along the curve: " << hilbert;
      EXPECT_TRUE(one.numbers == more.numbers);
      EXPECT_EQ(one.counts, more.counts);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Clouds, DosMitadesReales,
                         testing::Values("autzen_trim.las", "Topography.las", "Megaplot.las", "sample_c.las",
                                         "4_6_crop.las", "bcts_1.las"),
                         [](testing::TestParamInfo<std::string> const& cloud) {
                           std::string name = cloud.param.substr(0, cloud.param.find('.'));
                           std::erase(name, '_');
                           return name;
                         });

}  // namespace
}  // namespace Meseta47
