// The surface of a run straight to a PLY file: what a model of the same points holds, whatever the threads, and every
// way out.
#include <array>
#include <cstring>
#include <gmock/gmock.h>

#include "model/geometry/CRango.h"
#include "model/terrain/CModeloDigital.h"
#include "planar/PhaseScenes.h"
#include "support/FaultGuard.h"
#include "support/PlanarFeeds.h"
#include "support/PlanarSizes.h"

namespace Meseta47 {
namespace {

using support::Family;
using support::Point;
using test::DrawingAt;
using test::DrawingOf;
using test::Feed;
using test::ListeningApp;
using test::OpenTriangulation;
using test::Order;
using test::QuietApp;
using test::Scatter;

constexpr std::size_t kMany = test::kFullSize ? 40'000 : 4'000;

using Place = std::array<double, 3>;

/// What a PLY file holds: vertices in their order, faces by the places of their corners, the least first.
struct Ply {
  std::string header;
  std::vector<Place> vertices;
  std::vector<std::array<Place, 3>> faces;

  explicit Ply(std::string const& bytes) {
    const std::size_t end = bytes.find("end_header\n") + 11;
    header = bytes.substr(0, end);
    vertices.resize(Count("vertex "));
    char const* at = bytes.data() + end;
    for (Place& p : vertices) at = Take(at, p);
    for (std::size_t i = Count("face "); i != 0; --i) {
      EXPECT_EQ(*at++, 3);
      std::array<std::uint32_t, 3> corners{};
      at = Take(at, corners);
      std::array<Place, 3> face{vertices.at(corners[0]), vertices.at(corners[1]), vertices.at(corners[2])};
      std::rotate(face.begin(), std::min_element(face.begin(), face.end()), face.end());
      faces.push_back(face);
    }
    EXPECT_EQ(at, bytes.data() + bytes.size());
    std::sort(faces.begin(), faces.end());
  }

 private:
  [[nodiscard]] std::size_t Count(char const* element) const {
    return std::stoul(header.substr(header.find(element) + std::strlen(element)));
  }
  template <class T>
  static char const* Take(char const* at, T& value) {
    std::memcpy(&value, at, sizeof value);
    return at + sizeof value;
  }
};

/// A run over points that leave a PLY file.
class Writing {
 public:
  explicit Writing(std::vector<Point> const& points) : drawing(DrawingOf(points)) { t.SinMarco(true); }

  int Run() { return Run({.dibujo = drawing}); }
  int Run(CEncargo const& job) {
    return t.RunPLY(job, [this] {
      ++asked;
      return file.IsOpen() ? &file : nullptr;
    });
  }
  std::string Bytes() {
    EXPECT_TRUE(file.Close());
    return BytesOf(folder.Path("made.ply"));
  }

  ScratchFolder folder;
  CFile file{folder.Path("made.ply"), CFile::modeCreate | CFile::modeReadWrite};
  CDibujo<int> drawing;
  OpenTriangulation t;
  int asked = 0;
};

/// The PLY file of a model that a run has made.
std::string FromModel(CEncargo const& job, bool withoutFrame = true) {
  const ScratchFolder folder;
  OpenTriangulation t;
  t.SinMarco(withoutFrame);
  auto tin = std::make_unique<CTIN>(0, 0, CDataSemilla());
  EXPECT_EQ(t.Run(job, *tin), kHecho);
  CModeloDigital model(tin.release());
  EXPECT_EQ(model.Exportar(folder.Path("model.ply"), CDataExportarMDT(FORMATO_PLY)), kHecho);
  return BytesOf(folder.Path("model.ply"));
}

class ExportaFamilias : public testing::TestWithParam<Family> {};
INSTANTIATE_TEST_SUITE_P(Families, ExportaFamilias, testing::ValuesIn(support::kAllFamilies),
                         [](testing::TestParamInfo<Family> const& family) { return support::name(family.param); });

TEST_P(ExportaFamilias, TheFileHoldsTheSurfaceOfTheModelOnAnyNumberOfThreads) {
  const std::vector<Point> points =
      Feed{GetParam(), Order::Hilbert, std::min(kMany, test::LargestSize(GetParam()))}.Points();
  CDibujo<int> drawing = DrawingOf(points);
  std::string first;
  for (const unsigned threads : {1U, 2U, 4U}) {
    const QuietApp app(threads);
    Writing writing(points);
    ASSERT_EQ(writing.Run(), kHecho);
    if (writing.t.Resumen().triangulos == 0) {
      EXPECT_EQ(writing.asked, 0) << "there is nothing to write";
      return;
    }
    EXPECT_EQ(writing.asked, 1);
    EXPECT_EQ(app.TemporaryFiles(), 0U);
    const std::string bytes = writing.Bytes();
    if (threads == 1) first = bytes;
    EXPECT_TRUE(bytes == first) << threads << " threads";
    if (threads != 1) continue;
    const Ply made(bytes), wanted(FromModel({.dibujo = drawing}));
    EXPECT_EQ(made.header, wanted.header);
    EXPECT_TRUE(made.faces == wanted.faces);
    EXPECT_EQ(writing.t.Resumen().vertices, made.vertices.size());
    EXPECT_EQ(writing.t.Resumen().triangulos, made.faces.size());
    EXPECT_EQ(writing.t.Resumen().anillos, 1U);
  }
}

TEST(Exporta, VerticesStandInTheOrderOfTheDrawingsWithoutDuplicates) {
  const QuietApp app;
  Writing writing({});
  CDibujo<int> first = DrawingAt({{0, 0, 1}, {900, 10, 2}, {0, 0, 3}}),
               second = DrawingAt({{450, 800, 4}, {900, 10, 5}, {400, 300, 6}});
  std::vector<CDibujo<int>*> others{&second};
  ASSERT_EQ(writing.Run({.dibujo = first, .otros = &others}), kHecho);
  const Ply made(writing.Bytes());
  const double unit = CDataSemilla().Precision();
  std::vector<Place> wanted{{0, 0, 1}, {900, 10, 2}, {450, 800, 4}, {400, 300, 6}};
  for (Place& p : wanted) {
    for (double& v : p) v /= unit;
  }
  EXPECT_EQ(made.vertices, wanted);
  EXPECT_EQ(made.faces.size(), 3U);
}

TEST(Exporta, WithAFilterOrTheFrameTheFileIsThatOfTheModel) {
  const QuietApp app;
  const std::vector<Point> points = Scatter(2'000);
  CDibujo<int> drawing = DrawingOf(points);
  const CRango heights(2147483647.0, 2147483647.0, 0.0, 500'000.0);
  for (CEncargo const& job : {CEncargo{.dibujo = drawing, .ladoMaximo = 40},
                              CEncargo{.dibujo = drawing, .alturas = &heights}, CEncargo{.dibujo = drawing}}) {
    const bool filtered = job.ladoMaximo != 0 || job.alturas != nullptr;
    Writing writing({});
    writing.t.SinMarco(filtered);
    ASSERT_EQ(writing.Run(job), kHecho);
    EXPECT_GT(writing.t.Resumen().triangulos, 100U);
    EXPECT_TRUE(writing.Bytes() == FromModel(job, filtered));
  }
}

TEST(Exporta, ADrawingAddedUnderAToleranceIsPartOfIt) {
  const QuietApp app;
  CDibujo<int> base = DrawingAt({{0, 0, 0}, {1'000, 0, 0}, {0, 1'000, 0}, {1'000, 1'000, 0}}),
               added = DrawingAt({{300, 310, 5}, {600, 620, 50'000}, {0, 0, 9}});
  Writing writing({});
  ASSERT_EQ(writing.Run({.dibujo = base, .extra = &added, .tolerancia = 10 / CDataSemilla().Precision()}), kHecho);
  EXPECT_EQ(writing.t.Resumen().vertices, 5U);
  EXPECT_EQ(writing.t.Resumen().anadidos, 1U);
  EXPECT_EQ(writing.t.Resumen().rechazados, 1U);
  EXPECT_EQ(Ply(writing.Bytes()).faces.size(), 4U);
}

TEST(Exporta, TheDrawingsAreEmptiedWhenAskedTo) {
  const QuietApp app;
  Writing writing(Scatter(300));
  std::vector<CDibujo<int>*> others{new CDibujo<int>(DrawingOf(Scatter(500)))};
  ASSERT_EQ(writing.Run({.dibujo = writing.drawing, .otros = &others, .vaciar = true}), kHecho);
  EXPECT_EQ(others[0], nullptr);
  EXPECT_EQ(writing.drawing.Cantidad(), 0U);
}

TEST(Exporta, AFileThatIsNotThereOrFillsUpEndsTheRunAndLeavesNoTemporaryFile) {
  const QuietApp app;
  Writing none(Scatter(500));
  none.file.Close();
  EXPECT_EQ(none.Run(), kFicheroInaccesible);
  EXPECT_EQ(none.asked, 1);
  EXPECT_EQ(app.TemporaryFiles(), 0U);

  Writing writing(Scatter(20'000));
  writing.file = CFile(CString("/dev/full"), CFile::modeWrite);
  EXPECT_EQ(writing.Run(), kFicheroInaccesible);
  EXPECT_TRUE(writing.file.HayError());
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(Exporta, ATemporaryFileThatCannotBeReadIsAnotherMatter) {
  for (const EOperacion operation : {EOperacion::Lee, EOperacion::Posiciona}) {
    const QuietApp app(2);
    Writing writing(Scatter(20'000));
    FaultGuard guard;
    guard.Refuse(operation);
    EXPECT_EQ(writing.Run(), kFicheroInconsistente);
    EXPECT_FALSE(writing.file.HayError());
    EXPECT_EQ(app.TemporaryFiles(), 0U);
  }
}

TEST(Exporta, CancelledInAnyPhaseItLeavesNothingAndTheSameObjectThenWrites) {
  const std::vector<Point> points = Scatter(40);
  std::string wanted;
  {
    const QuietApp app;
    Writing writing(points);
    ASSERT_EQ(writing.Run(), kHecho);
    wanted = writing.Bytes();
  }
  int cancelled = 0;
  for (int n = 1;; ++n) {
    Writing writing(points);
    {
      ListeningApp app(2);
      app.cancelAt = n;
      const int code = writing.Run();
      EXPECT_EQ(app.TemporaryFiles(), 0U) << "at step " << n;
      if (static_cast<int>(app.steps.size()) < n) {
        EXPECT_EQ(code, kHecho);
        break;
      }
      EXPECT_EQ(code, kCancelado) << "at step " << n;
    }
    ++cancelled;
    const QuietApp quiet;
    writing.file = CFile(writing.folder.Path("made.ply"), CFile::modeCreate | CFile::modeReadWrite);
    ASSERT_EQ(writing.Run(), kHecho);
    EXPECT_TRUE(writing.Bytes() == wanted) << "after step " << n;
  }
  EXPECT_GT(cancelled, 80);
}

TEST(Exporta, ReportsItsPhasesInOrder) {
  ListeningApp app(2);
  Writing writing(Scatter(300));
  ASSERT_EQ(writing.Run(), kHecho);
  EXPECT_THAT(app.PhaseMessages(), testing::ElementsAre(19020U, 19021U, 19029U, 19022U));
  EXPECT_GE(writing.t.Resumen().segundosEscribe, 0.0);
  EXPECT_GE(writing.t.Resumen().segundosGenera, 0.0);
}

}  // namespace
}  // namespace Meseta47
