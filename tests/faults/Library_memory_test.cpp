// What promises not to throw, and what promises to lose nothing, with memory refused at each request.
#include <atomic>
#include <gmock/gmock.h>
#include <memory>
#include <new>
#include <thread>
#include <type_traits>
#include <vector>

#include "faults/FailingHeap.h"
#include "model/terrain/CDataSacaLimites.h"
#include "model/terrain/CSetPuntosMdt.h"
#include "planar/CTriangulacion.h"
#include "planar/HalvesScenes.h"
#include "platform/CEvent.h"
#include "platform/CFicheroParcial.h"
#include "platform/Manejadores.h"
#include "support/PlanarSizes.h"
#include "support/Threads.h"

namespace Meseta47 {
namespace {

using failing_heap::Refusal;
using test::DrawingOf;
using test::LineAt;
using test::OpenTriangulation;
using test::QuietApp;
using test::Scatter;

const CString kLongText = L"a text that is far too long to be kept within the object itself";

/// Runs `deed` with no memory at all.
template <class Deed>
void WithoutMemory(Deed deed) {
  failing_heap::RefuseAt(1, Refusal::ForGood);
  deed();
  failing_heap::Stop();
}

/// Runs `deed` on what `make` gives with the n-th request refused, for each n, until none is refused; `judge` is told
/// what is left and whether the deed was done. Returns how many were refused.
template <class Make, class Deed, class Judge>
int AtEachRequest(Make make, Deed deed, Judge judge) {
  for (long nth = 1;; ++nth) {
    SCOPED_TRACE("request " + std::to_string(nth));
    auto scene = make();
    bool done = false;
    failing_heap::RefuseAt(nth, Refusal::Once);
    try {
      deed(scene);
      done = true;
    } catch (std::bad_alloc const&) {
    }
    const bool fired = failing_heap::Stop() >= nth;
    judge(scene, done);
    if (testing::Test::HasFailure() || !fired) return static_cast<int>(nth) - 1;
  }
}

CDibujo<int> NamedDrawing(int lines = 3) {
  CDibujo<int> drawing;
  drawing.fichero = kLongText;
  for (int i = 0; i < lines; ++i) drawing.Inserta(LineAt({{i, 0}, {i + 1, 0}, {i + 1, 9}}, kLongText));
  drawing.Inserta(test::CloudAt({{1, 2}, {3, 4}}, kLongText));
  return drawing;
}

std::string Described(CDibujo<int> const& drawing) {
  std::string text;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) {
    text += drawing[i].GetCodigo().Utf8() + ':';
    for (CCoor3D<int> const& p : drawing[i].Puntos()) text += std::to_string(p.x) + ',' + std::to_string(p.y) + ' ';
  }
  return text;
}

static_assert(std::is_nothrow_move_constructible_v<CDibujo<int>> && std::is_nothrow_move_assignable_v<CDibujo<int>>);
static_assert(std::is_nothrow_move_constructible_v<CSetPuntos<int>> &&
              std::is_nothrow_move_assignable_v<CSetPuntos<int>>);
static_assert(std::is_nothrow_move_constructible_v<CLinea<int>> && std::is_nothrow_move_assignable_v<CLinea<int>>);
static_assert(std::is_nothrow_move_constructible_v<CFile> && std::is_nothrow_move_assignable_v<CFile>);

TEST(WithoutMemory, ADrawingIsMovedWithItsName) {
  CDibujo<int> drawing = NamedDrawing(), other;
  const std::string before = Described(drawing);
  alignas(CDibujo<int>) std::byte place[sizeof(CDibujo<int>)];
  WithoutMemory([&] {
    auto* moved = new (place) CDibujo<int>(std::move(drawing));
    other = std::move(*moved);
    moved->~CDibujo<int>();
  });
  EXPECT_EQ(Described(other), before);
  EXPECT_EQ(other.fichero, kLongText);
  EXPECT_EQ(drawing.Cantidad(), 0U);  // NOLINT(bugprone-use-after-move): that is the claim
}

TEST(WithoutMemory, EntitiesAreMoved) {
  CLinea<int> line = LineAt({{1, 2}, {3, 4}}, kLongText), otherLine;
  CSetPuntos<int> cloud(kLongText), otherCloud;
  cloud.Inserta(CCoor3D<int>(5, 6, 7, 8), tipoAero3{1, 2, 3, 4, 5, 6, 7, 8});
  WithoutMemory([&] {
    CLinea<int> l(std::move(line));
    otherLine = std::move(l);
    CSetPuntos<int> c(std::move(cloud));
    otherCloud = std::move(c);
  });
  EXPECT_EQ(otherLine.NPuntos(), 2);
  EXPECT_EQ(otherLine.GetCodigo(), kLongText);
  EXPECT_EQ(otherCloud.Info(0).rojo, 2);
  EXPECT_EQ(otherCloud.GetCodigo(), kLongText);
}

TEST(WithoutMemory, ASetOfPointsIsMovedWithThoseOfALivingMesh) {
  CSetPuntosMdt set(0, 0), other(0, 0);
  for (int i = 0; i < 3000; ++i) set.push_back(CPuntoTIN(CCoor3D<int>(i, 0, 0, 0)), true);
  WithoutMemory([&] {
    CSetPuntosMdt moved(std::move(set));
    other = std::move(moved);
  });
  EXPECT_EQ(other.size(), 3000U);
  EXPECT_EQ(other[2999].x, 2999);
}

TEST(WithoutMemory, AFileIsMovedWrittenAndClosed) {
  const ScratchFolder folder;
  CFile file(folder.Path("f"), CFile::modeCreate | CFile::modeWrite), other;
  file.Write("abc", 3);
  WithoutMemory([&] {
    CFile moved(std::move(file));
    other = std::move(moved);
    other.Write("def", 3);
    EXPECT_TRUE(other.Close());
  });
  EXPECT_EQ(BytesOf(folder.Path("f")), "abcdef");
}

TEST(WithoutMemory, AnUnfinishedFileIsGivenUp) {
  const ScratchFolder folder;
  {
    auto part = std::make_unique<CFicheroParcial>(folder.Path("f"));
    ASSERT_TRUE(part->EstaAbierto());
    part->Fichero().Write("abc", 3);
    WithoutMemory([&] { part.reset(); });
  }
  EXPECT_EQ(folder.Files(), 0U);
}

TEST(EachRequestRefused, AFileIsReplacedOrToldNotToBe) {
  const ScratchFolder folder;
  int failed = 0;
  for (long nth = 1;; ++nth) {
    SCOPED_TRACE("request " + std::to_string(nth));
    PutBytes(folder.Path("f"), "old");
    CFicheroParcial part(folder.Path("f"));
    part.Fichero().Write("new", 3);
    bool replaced = false;
    failing_heap::RefuseAt(nth, Refusal::Once);
    try {
      replaced = part.Confirma();
    } catch (std::bad_alloc const&) {
    }
    const bool fired = failing_heap::Stop() >= nth;
    ASSERT_EQ(BytesOf(folder.Path("f")), replaced ? "new" : "old");
    failed += replaced ? 0 : 1;
    if (!fired) break;
  }
  EXPECT_GT(failed, 0);
}

TEST(WithoutMemory, AMeshIsTakenDownAndItsFileDeleted) {
  const QuietApp app(2);
  CDibujo<int> drawing = DrawingOf(Scatter(2'000));
  auto t = std::make_unique<OpenTriangulation>();
  ASSERT_EQ(t->Link(drawing), kHecho);
  ASSERT_EQ(app.TemporaryFiles(), 1U);
  WithoutMemory([&] {
    t->setRaiz.clear();
    t->BorraFicheroTemporal();
    t->divisiones.clear();
    t.reset();
    CTriangulo2D::EncogeReserva();
  });
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(WithoutMemory, AThreadEndsWhoseTrianglesOthersHold) {
  constexpr int kThreads = 20;
  std::vector<CTriangulo2D*> held(kThreads, nullptr);
  std::atomic<int> ready{0};
  std::atomic<bool> end{false};
  Threads threads;
  for (CTriangulo2D*& triangle : held) {
    threads.start([&] {
      triangle = new CTriangulo2D;
      ++ready;
      while (!end) std::this_thread::yield();
    });
  }
  while (ready < kThreads) std::this_thread::yield();
  WithoutMemory([&] {
    end = true;
    threads.join();
    for (CTriangulo2D* triangle : held) delete triangle;
  });
}

TEST(WithoutMemory, TheSystemGivesNeitherEventNorThreadNorLongWait) {
  std::vector<CEvent> events(100);
  std::vector<HANDLE> handles(events.begin(), events.end());
  HANDLE event = handles[0], thread = handles[0], automatic = nullptr;
  unsigned long one = 0, many = 0;
  bool made = true;
  WithoutMemory([&] {
    event = CreateEventW(nullptr, true, true, nullptr);
    thread = CreateThread(
        nullptr, 0, [](void*) { return 0UL; }, nullptr, 0, nullptr);
    CEvent object;
    made = object.SetEvent();
    automatic = object.m_hObject;
    one = WaitForSingleObject(handles[0], 0);
    many = WaitForMultipleObjects(100, handles.data(), false, 0);
  });
  EXPECT_EQ(event, nullptr);
  EXPECT_EQ(thread, nullptr);
  EXPECT_EQ(automatic, nullptr);
  EXPECT_FALSE(made);
  EXPECT_EQ(one, WAIT_TIMEOUT);
  EXPECT_EQ(many, WAIT_FAILED);
}

struct Two {
  CDibujo<int> to = NamedDrawing(1), from = NamedDrawing(40);
};

TEST(Requests, TheOutlineOfManyLinesAsksForMoreRoomNowAndThenOnly) {
  const QuietApp app(1);
  CDibujo<int> drawing, outline;
  constexpr int kLines = 4'000;
  for (int i = 0; i < kLines; ++i) {
    drawing.Inserta(LineAt({{i % 63 * 100, i / 63 * 90}, {i % 63 * 100 + 41, i / 63 * 90 + 37}}));
  }
  CDataSacaLimites how;
  how.distancia = 5;
  CTriangulacion triangulation(CDataSemilla(), CDataTriangulacion{});
  failing_heap::RefuseAt(1'000'000'000, Refusal::Once);
  const int code = triangulation.LimiteDibujo(drawing, outline, &how, 1, 0);
#ifdef URDIMBRE_SANITIZED
  constexpr long kTriangles = 2L * 2 * kLines;  // built so, each is a request of its own: two a point
#else
  constexpr long kTriangles = 0;
#endif
  EXPECT_LT(failing_heap::Stop(), kTriangles + kLines / 2);
  EXPECT_EQ(code, kHecho);
  EXPECT_EQ(outline.Cantidad(), 1U);
}

TEST(EachRequestRefused, AddingADrawingTakesAllOfItOrNothing) {
  const Two fresh;
  const std::string both = Described(fresh.to) + Described(fresh.from);
  const int refused = AtEachRequest([] { return Two(); }, [](Two& two) { two.to.Suma(std::move(two.from), true, 0); },
                                    [&](Two& two, bool done) {
                                      EXPECT_EQ(Described(two.to) + Described(two.from), both);
                                      EXPECT_EQ(two.from.Cantidad(), done ? 0U : 41U);
                                    });
  EXPECT_GT(refused, 1);
}

TEST(EachRequestRefused, AddingACopyOfADrawingAddsAllOfItOrNothing) {
  const Two fresh;
  const int refused =
      AtEachRequest([] { return Two(); }, [](Two& two) { two.to.Suma(two.from, false, 1); },
                    [&](Two& two, bool done) {
                      EXPECT_EQ(Described(two.from), Described(fresh.from));
                      EXPECT_EQ(two.to.Cantidad(), done ? 42U : 2U);
                      EXPECT_EQ(Described(two.to).substr(0, Described(fresh.to).size()), Described(fresh.to));
                    });
  EXPECT_GT(refused, 40);
}

TEST(EachRequestRefused, AnEntityThatDoesNotGoInIsStillItsOwners) {
  struct Scene {
    CDibujo<int> drawing;
    CLinea<int> line = LineAt({{1, 2}, {3, 4}}, kLongText);
    CSetPuntos<int> cloud = test::CloudAt({{5, 6}}, kLongText);
  };
  AtEachRequest([] { return Scene(); },
                [](Scene& s) {
                  s.drawing.Inserta(std::move(s.line));
                  s.drawing.Inserta(std::move(s.cloud));
                },
                [](Scene& s, bool done) {
                  EXPECT_EQ(s.drawing.nPuntos + static_cast<unsigned>(s.line.NPuntos() + s.cloud.NPuntos()), 3U);
                  EXPECT_EQ(s.drawing.Cantidad(), done ? 2U : (s.line.NPuntos() == 0 ? 1U : 0U));
                });
}

TEST(EachRequestRefused, SurveyDataStayWithTheirPoint) {
  const auto fill = [](CSetPuntos<int>& set) {
    for (int i = 1; i < 40; ++i) {
      for (bool in = false; !in;) {
        try {
          set.Inserta(CCoor3D<int>(i, 0, 0, 0), tipoAero3{static_cast<double>(i), 0, 0, 0, 0, 0, 0, 0});
          in = true;
        } catch (std::bad_alloc const&) {
        }
      }
    }
  };
  AtEachRequest([] { return CSetPuntos<int>(); }, fill,
                [](CSetPuntos<int> const& set, bool) {
                  ASSERT_EQ(set.NPuntos(), 39);
                  for (int i = 0; i < 39; ++i) EXPECT_EQ(set.Info(static_cast<unsigned>(i)).gps, set.Punto(i).x);
                });
}

TEST(EachRequestRefused, AModelIsAssignedWholeOrNotAtAll) {
  const auto model = [](int shift) {
    std::vector<CPuntoTIN> points;
    for (int i = 0; i < 4; ++i) points.push_back(CPuntoTIN(CCoor3D<int>(shift + i % 2, i / 2, i, 0)));
    CTIN tin(0, 0, CDataSemilla());
    tin.fichero = kLongText;
    CSetPuntosMdt set(0, 0);
    for (CPuntoTIN const& p : points) set.push_back(p, false);
    tin.SetPuntosMdt(set);
    CTriangulo t(tin.Punto(0), tin.Punto(1), tin.Punto(2), -1, -1, -1);
    tin.Inserta(t, false, false, false);
    EXPECT_EQ(tin.Sort(nullptr, 0, true), kHecho);
    CTriangulo unsorted(tin.Punto(1), tin.Punto(2), tin.Punto(3), -1, -1, -1);
    tin.Inserta(unsorted, false, false, false);
    return tin;
  };
  const CTIN to = model(10);
  const int refused = AtEachRequest([&] { return model(0); }, [&](CTIN& tin) { tin = to; },
                                    [](CTIN& tin, bool done) {
                                      EXPECT_EQ(tin.Punto(0)->x, done ? 10 : 0);
                                      EXPECT_EQ(tin.puntos.size(), 4U);
                                      EXPECT_EQ(tin.Cantidad(), 2U);
                                      EXPECT_EQ(tin.Vertices(0)[0], 0U);
                                    });
  EXPECT_GT(refused, 3);
}

TEST(EachRequestRefused, JoiningLosesNoLine) {
  const auto make = [] {
    CDibujo<int> drawing;
    for (int i = 0; i < 12; ++i) {
      drawing.Inserta(LineAt({{i, 0}, {i + (i % 4 == 3 ? 0 : 1), 1}, {i + 1, 0}}, kLongText));
    }
    return drawing;
  };
  const std::string before = Described(make());
  const int refused = AtEachRequest(
      make, [](CDibujo<int>& d) { d.Junta(0, 0, true, true, true, 0, 0, false); },
      [&](CDibujo<int>& d, bool done) {
        EXPECT_EQ(Described(d) == before, !done);
        EXPECT_EQ(d.Cantidad(), done ? 1U : 12U);
      });
  EXPECT_GT(refused, 10);
}

TEST(EachRequestRefused, SortingAndCleaningLeaveNoNullEntity) {
  const auto make = [] {
    CDibujo<int> drawing = NamedDrawing(9);
    drawing.Suma(CDibujo<int>(drawing), false, 0);
    return drawing;
  };
  const unsigned count = make().Cantidad();
  AtEachRequest(
      make, [](CDibujo<int>& d) { d.Sort(7, false, -1); },
      [&](CDibujo<int>& d, bool) {
        ASSERT_EQ(d.Cantidad(), count);
        EXPECT_FALSE(Described(d).empty());
      });
  AtEachRequest(
      make, [](CDibujo<int>& d) { d.BorraDuplicadas(true, false); },
      [&](CDibujo<int>& d, bool done) {
        d.ActualizaCantidades();
        EXPECT_FALSE(Described(d).empty());
        EXPECT_TRUE(!done || d.Cantidad() == count / 2);
      });
}

/// Two threads keep the records of a closed set until the other is beyond them; one writes them at once.
TEST(EachRequestRefused, RecordsThatFindNoMemoryAreToldByACodeByOneThreadAndByTwo) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(test::InTurns(Scatter(2'000), 16));
  OpenTriangulation t;
  t.DosDesde(0);
  ASSERT_EQ(t.Link(drawing), kHecho);
  const std::string expected = t.SpilledBytes();
  for (const unsigned threads : {1U, 2U}) {
    AfxGetApp()->PonProcesadores(threads);
    int answered = 0, thrown = 0;
    for (long nth = 1;; nth += 1 + nth / 16) {
      SCOPED_TRACE(std::to_string(threads) + " threads, request " + std::to_string(nth));
      t.BorraFicheroTemporal();
      int code = 0;
      failing_heap::RefuseAt(nth, Refusal::Once);
      try {
        code = t.Link(drawing);
      } catch (std::bad_alloc const&) {
        ++thrown;
      }
      const bool fired = failing_heap::Stop() >= nth;
      if (code == kHecho) {
        EXPECT_TRUE(t.SpilledBytes() == expected);
      } else {
        EXPECT_TRUE(code == kFicheroInconsistente || thrown > 0);
        const bool fileStays = app.TemporaryFiles() != 0;
        EXPECT_TRUE(!fileStays || t.cantidadPuntos == 2'000U) << "but for want of an event, before any point goes in";
        answered += code == kFicheroInconsistente && !fileStays ? 1 : 0;
      }
      ASSERT_FALSE(HasFailure());
      if (!fired) break;
      ASSERT_EQ(t.Link(drawing), kHecho);
      ASSERT_TRUE(t.SpilledBytes() == expected);
    }
    // Under the sanitizers each triangle is a request of its own, and of those for records few are met.
    EXPECT_GT(answered, test::kFullSize ? 0 : -1);
    EXPECT_GT(thrown, 0) << "for the mesh itself, as ever";
    t.BorraFicheroTemporal();
  }
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

/// Mode 2 gives the points the classes that they had when they went in. Here one gets another class after that.
TEST(EachRequestRefused, ClassesAreNotGivenByALinkingThatFailed) {
  constexpr int kPoints = 600, kOwn = 3, kLater = 77;
  const CInfoClasificacion grows(5, 0.0, L""), stops(6, 0.0, L"");  // of which there are none
  int failedLate = 0;
  for (long nth = 1;; ++nth) {
    SCOPED_TRACE("request " + std::to_string(nth));
    test::ListeningApp app(2);
    CDibujo<int> drawing = DrawingOf(Scatter(kPoints));
    CCoor3D<int>& point = *drawing[0].PunteroAPunto(0);
    point.clasificacion = kOwn;
    OpenTriangulation t;
    ASSERT_EQ(t.Rellena(drawing, nullptr, nullptr, nullptr), kHecho);
    const std::size_t filling = app.steps.size();
    app.steps.reserve(1'000'000);
    app.onStep = [&] {
      if (app.steps.size() == filling + kPoints) point.clasificacion = kLater;
    };
    int code = 0;
    failing_heap::RefuseAt(nth, Refusal::Once);
    try {
      code = t.EnlazaLista(drawing, nullptr, nullptr, nullptr, 2, nullptr, &grows, &stops, nullptr, nullptr, 0, nullptr,
                           nullptr, nullptr, nullptr, nullptr);
    } catch (std::bad_alloc const&) {
    }
    const bool fired = failing_heap::Stop() >= nth;
    const bool late = app.steps.size() >= filling + kPoints;
    EXPECT_EQ(point.clasificacion, code == kHecho || !late ? kOwn : kLater);
    failedLate += code != kHecho && late ? 1 : 0;
    t.hiloSalva.Stop();
    t.BorraFicheroTemporal();
    if (HasFailure() || !fired) break;
  }
  EXPECT_GT(failedLate, 0);
}

}  // namespace
}  // namespace Meseta47
