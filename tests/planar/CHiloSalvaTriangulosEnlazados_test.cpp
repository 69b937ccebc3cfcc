// The jobs of the worker of a linking pass, on sets fed by hand.
#include <gmock/gmock.h>

#include "planar/CAfinidad.h"
#include "planar/CAlturasVecinas.h"
#include "planar/CSetTriangulos2D.h"
#include "planar/PhaseScenes.h"
#include "platform/Manejadores.h"
#include "support/FaultGuard.h"

namespace Meseta47 {
namespace {

using support::Triangle;
using testing::ElementsAre;
using testing::IsEmpty;
using Worker = CHiloSalvaTriangulosEnlazados;

/// Closed sets of a triangle each, whose records are (1, 2, 3), (4, 5, 6), ...
class SalvaEnlazados : public testing::Test {
 protected:
  SalvaEnlazados() {
    for (int i = 0; i < 5; ++i) {
      points.emplace_back(100 * i, 0, 10, 3 * i + 1);
      points.emplace_back(100 * i, 50, 50 * i, 3 * i + 2);
      points.emplace_back(100 * i + 50, 0, 10, 3 * i + 3);
    }
    for (std::size_t i = 0; i < 5; ++i) {
      own.push_back(std::make_unique<CSetTriangulos2D>(1));
      own.back()->EstableceDivisiones(test::Box(-10'000, -10'000, 10'000, 10'000), false);
      own.back()->InsertaOrdenado(CTriangulo2D(&points[3 * i], &points[3 * i + 1], &points[3 * i + 2]),
                                  own.back()->maximas);
      own.back()->QuitaTrianguloActual();
    }
    event = CreateEventW(nullptr, true, true, nullptr);
  }
  ~SalvaEnlazados() override {
    worker.Stop();
    CloseHandle(event);
  }

  void Append(std::size_t i) { queue.Anade(own[i].get(), own[i]->cantidad); }
  bool WaitForAll() {
    return queue.EsperaTodo([] { return true; });
  }
  [[nodiscard]] std::vector<Triangle> Records() {
    file.Flush();
    return test::RecordsOf(BytesOf(file.GetFilePath()));
  }

  ScratchFolder folder;
  CFile file{folder.Path("sets"), 36930};
  std::vector<CCoor3D<int>> points;
  std::vector<std::unique_ptr<CSetTriangulos2D>> own;
  Worker::CCola queue;
  HANDLE event = nullptr;
  Worker worker;
};

TEST_F(SalvaEnlazados, WritesAndFreesWhatIsQueuedInOrder) {
  for (const std::size_t i : {2U, 0U, 1U}) Append(i);
  ASSERT_TRUE(worker.Start(0, &event, queue, &file));
  ASSERT_TRUE(WaitForAll());
  EXPECT_THAT(Records(), ElementsAre(Triangle{7, 8, 9}, Triangle{1, 2, 3}, Triangle{4, 5, 6}));
  EXPECT_EQ(own[2]->cantidad, 0U);
}

TEST_F(SalvaEnlazados, ASetQueuedTwiceIsEmptyTheSecondTime) {
  Append(3);
  Append(3);
  ASSERT_TRUE(worker.Start(0, &event, queue, &file));
  ASSERT_TRUE(WaitForAll());
  EXPECT_THAT(Records(), ElementsAre(Triangle{10, 11, 12}));
}

TEST_F(SalvaEnlazados, ARefusalOfTheDiskStaysWithTheFileAndTheSetsAreFreed) {
  FaultGuard guard;
  guard.LimitDisk(12);
  for (std::size_t i = 0; i < 5; ++i) Append(i);
  ASSERT_TRUE(worker.Start(0, &event, queue, &file));
  ASSERT_TRUE(WaitForAll());
  EXPECT_FALSE(file.Flush());
  EXPECT_TRUE(file.HayError());
  for (auto const& set : own) EXPECT_EQ(set->cantidad, 0U);
  EXPECT_FALSE(worker.FaltoMemoria());
}

TEST_F(SalvaEnlazados, TheJobOfCuttingGathersSegmentsAndWritesNothing) {
  CSegmentos contours;
  Append(1);
  ASSERT_TRUE(worker.Start(0, &event, queue, &contours, 40, 1e12));
  ASSERT_TRUE(WaitForAll());
  EXPECT_EQ(contours.Cantidad(), 1U) << "the triangle rises from 10 to 50";
  EXPECT_EQ(own[1]->cantidad, 0U);
  EXPECT_THAT(Records(), IsEmpty());
}

TEST_F(SalvaEnlazados, TheJobOfPeaksGathersHeightsAndWritesNothing) {
  CAlturasVecinas heights;
  heights.Prepara(15);
  Append(4);
  ASSERT_TRUE(worker.Start(0, &event, queue, &heights, 1e12, 1.0, 10));
  ASSERT_TRUE(WaitForAll());
  EXPECT_EQ(heights.minimos[12], 10);
  EXPECT_EQ(heights.maximos[12], 200);
  EXPECT_EQ(heights.sumas[13], 20);
  EXPECT_EQ(heights.vecinos[14], 2);
  EXPECT_EQ(heights.empinados[13], 2) << "it is 190 above the others, which are 50 and 71 away";
  EXPECT_EQ(heights.vecinos[0], 0);
  EXPECT_EQ(own[4]->cantidad, 0U);
  EXPECT_THAT(Records(), IsEmpty());
}

TEST_F(SalvaEnlazados, TheJobOfGrowingChangesClassesFreesAllAndWritesWhatIsAskedFor) {
  for (const bool keeps : {false, true}) {
    CSetTriangulos2D set(1);
    set.EstableceDivisiones(test::Box(-10'000, -10'000, 10'000, 10'000), false);
    for (const std::size_t i : {0U, 1U}) {
      set.InsertaOrdenado(CTriangulo2D(&points[3 * i], &points[3 * i + 1], &points[3 * i + 2]), set.maximas);
    }
    set.QuitaTrianguloActual();
    unsigned changed = 0;
    CAfinidad affinity;
    affinity.reglas = {.crece = 2, .barrera = 6};
    affinity.cambiados = &changed;
    affinity.guarda = keeps;
    affinity.Prepara(points.size());
    points[0].clasificacion = 2;
    for (CCoor3D<int> const& p : points) affinity.Anota(p);
    Worker grower;
    Worker::CCola sets;
    sets.Anade(&set, set.cantidad);
    ASSERT_TRUE(grower.Start(0, &event, sets, &file, affinity));
    ASSERT_TRUE(sets.EsperaTodo([] { return true; }));
    grower.Stop();
    EXPECT_EQ(changed, 2U);
    EXPECT_EQ(affinity.Clase(points[2]), 2);
    EXPECT_EQ(affinity.Clase(points[3]), 0);
    EXPECT_EQ(set.cantidad, 0U);
    EXPECT_EQ(Records().size(), keeps ? 1U : 0U) << "no point of the second triangle has the class";
  }
}

}  // namespace
}  // namespace Meseta47
