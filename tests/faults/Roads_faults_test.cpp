// Every road through the library with a failure at the first, second, third ... operation of each kind, until none
// fires: always a stated code, nothing half done, and what it was asked for once the system is well again.
#include <cstdio>
#include <filesystem>
#include <gmock/gmock.h>
#include <system_error>

#include "classification/SearchScene.h"
#include "model/CModeloDigital.h"
#include "planar/PhaseScenes.h"
#include "support/FaultGuard.h"

namespace Meseta47 {
namespace {

using support::Point;
using test::Described;
using test::OpenTriangulation;
using test::QuietApp;
using testing::AnyOf;

/// A piece of work on things that it keeps, to be asked for again and again.
class Road {
 public:
  virtual ~Road() = default;
  virtual int Run() = 0;
  /// All that a run made.
  [[nodiscard]] virtual std::string Result() const = 0;
  /// What a failure must leave as it was.
  [[nodiscard]] virtual std::string Kept() const { return {}; }
};

/// Points within a few hundred metres, in millimetres.
std::vector<Point> Near(std::size_t n) {
  std::vector<Point> points = test::Scatter(n);
  for (Point& p : points) p = {p.x % 20'011, p.y % 19'997, p.z % 1'000};
  return points;
}

const CDataSemilla kMillimetres(3, 0, 0, 0);

class ToModel : public Road {
 public:
  int Run() override {
    OpenTriangulation t;
    return t.Run(drawing, model, 0, nullptr, false, nullptr, nullptr, nullptr);
  }
  std::string Result() const override { return Described(model); }

 private:
  CDibujo<int> drawing = test::DrawingOf(Near(300));
  CTIN model{0, 0, CDataSemilla()};
};

class Update : public Road {
 public:
  int Run() override {
    OpenTriangulation t;
    return t.RunActualiza(drawing, model, 0, extra, 1e6, nullptr, false, nullptr);
  }
  std::string Result() const override { return Described(model); }

 private:
  std::vector<Point> points = Near(300);
  CDibujo<int> drawing = test::DrawingOf({points.begin() + 100, points.end()});
  CDibujo<int> extra = test::DrawingOf({points.begin(), points.begin() + 100});
  CTIN model{0, 0, CDataSemilla()};
};

class Rebuild : public Road {
 public:
  int Run() override {
    OpenTriangulation t;
    model.longitudMaxima = 46'000;
    return t.Run(model, nullptr);
  }
  std::string Result() const override { return Described(model); }

 private:
  static std::vector<Point> Sorted() {
    std::vector<Point> points = Near(300);
    std::sort(points.begin(), points.end());
    return points;
  }
  CTIN model = test::ModelOf(Sorted());
};

class Contours : public Road {
 public:
  int Run() override {
    curves.Clear();
    curves.Inserta(test::CloudAt({{7, 7, 7}}));
    OpenTriangulation t({}, kMillimetres);
    return t.Curvado(drawing, curves, 1000, 0.1, nullptr);
  }
  std::string Result() const override {
    std::string text;
    for (unsigned e = 0; e < curves.Cantidad(); ++e) {
      text += "\nline";
      for (CCoor3D<int> const& p : curves[e].Puntos()) {
        for (const int v : {p.x, p.y, p.z}) text += ' ' + std::to_string(v);
      }
    }
    return text;
  }
  std::string Kept() const override { return curves.Cantidad() == 0 ? "\nline 7 7 7" : Result(); }

 private:
  CDibujo<int> drawing = test::DrawingOf(Near(300));
  CDibujo<int> curves{kMillimetres};
};

class HighPoints : public Road {
 public:
  /// Points that have the class already take part in the outline: every search begins with the classes of the first.
  int Run() override {
    for (int i = 0; i < drawing[0].NPuntos(); ++i)
      drawing[0].PunteroAPunto(i)->clasificacion = before[static_cast<std::size_t>(i)];
    return test::InForest().Run(drawing);
  }
  std::string Result() const override {
    std::string text;
    for (const int clase : test::ClassesOf(drawing)) text += ' ' + std::to_string(clase);
    return text;
  }

 private:
  CDibujo<int> drawing = test::Cloud(test::Forest(300), kMillimetres);
  std::vector<unsigned char> before = Classes(test::Forest(300));

  static std::vector<unsigned char> Classes(std::vector<test::ClassedPoint> const& points) {
    std::vector<unsigned char> classes;
    for (test::ClassedPoint const& p : points) classes.push_back(p.clase);
    return classes;
  }
};

/// A model, and a file of an earlier day where the new one goes.
class ToFile : public Road {
 public:
  ToFile() { PutBytes(folder.Path("m"), "of an earlier day"); }
  std::string Result() const override { return BytesOf(folder.Path("m")) + std::to_string(folder.Files()); }
  std::string Kept() const override { return Result(); }

 protected:
  static CTIN* Made() {
    const QuietApp app;
    auto made = std::make_unique<CTIN>(0, 0, CDataSemilla());
    CDibujo<int> drawing = test::DrawingOf(Near(3'000));
    OpenTriangulation t;
    EXPECT_EQ(t.Run(drawing, *made, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
    return made.release();
  }
  ScratchFolder folder;
  CModeloDigital model{Made()};
};

class Write : public ToFile {
 public:
  int Run() override { return model.Write(folder.Path("m"), 4); }
};

template <int Format>
class Export : public ToFile {
 public:
  int Run() override { return model.Exportar(folder.Path("m"), CDataExportarMDT(Format)); }
};

class Read : public ToFile {
 public:
  Read() { EXPECT_EQ(model.Write(folder.Path("m"), 4), kHecho); }
  int Run() override {
    read.Tin().LiberaTriangulos();
    return read.Read(folder.Path("m"));
  }
  std::string Result() const override { return Described(read.Tin()); }
  std::string Kept() const override { return read.Tin().Cantidad() == 0 ? "" : Result(); }

 private:
  CModeloDigital read{new CTIN(0, 0, CDataSemilla())};
};

struct Kind {
  char const* name;
  std::function<std::unique_ptr<Road>()> make;

  friend void PrintTo(Kind const& kind, std::ostream* out) { *out << kind.name; }
};

template <class Made>
Kind Named(char const* name) {
  return {name, [] { return std::make_unique<Made>(); }};
}

/// A run that is refused a temporary name takes one in the current folder, the same in every run: each test has to work
/// in a folder of its own, since several run at a time.
class WorkingFolder {
 public:
  explicit WorkingFolder(CString const& folder) : before(std::filesystem::current_path()) {
    std::filesystem::current_path(folder.Utf8());
  }
  WorkingFolder(WorkingFolder const&) = delete;
  WorkingFolder& operator=(WorkingFolder const&) = delete;
  ~WorkingFolder() { std::filesystem::current_path(before); }

 private:
  std::filesystem::path before;
};

class Roads : public testing::TestWithParam<Kind> {
 protected:
  Roads() {
    const QuietApp app(2);
    const auto road = GetParam().make();
    EXPECT_EQ(road->Run(), kHecho);
    expected = road->Result();
    EXPECT_GT(expected.size(), 500U);
  }

  /// Runs with each kind of operation refused at its first, second, third time ... until there is none more to refuse.
  template <class Refuse>
  void MeetEachRefusal(char const* how, Refuse refuse);

  /// A run with one thing amiss, and a clean one behind it. Returns whether the first met what was amiss.
  template <class Spoil, class Met>
  bool RunAmiss(EOperacion operation, Spoil spoil, Met met) {
    const QuietApp app(2);
    const WorkingFolder here(app.folder.Path());
    const auto road = GetParam().make();
    const std::string before = road->Kept();
    int code = 0;
    bool fired = false;
    {
      FaultGuard guard;
      spoil(guard);
      try {
        code = road->Run();
      } catch (std::system_error const&) {
        EXPECT_EQ(operation, EOperacion::CreaSeccion);
      }
      fired = met(guard);
    }
    if (code == kHecho) {
      EXPECT_EQ(road->Result(), expected) << "a failure that went unseen";
    } else {
      EXPECT_TRUE(fired);
      EXPECT_THAT(code, StatedFor(operation));
      EXPECT_EQ(road->Kept(), before);
      ++failures;
    }
    // What cannot be deleted stays, and a run without events leaves its file to whoever looks into it.
    if (operation != EOperacion::Borra && operation != EOperacion::CreaEvento) {
      EXPECT_EQ(app.TemporaryFiles(), 0U);
    }
    EXPECT_EQ(road->Run(), kHecho) << "the system is well again";
    EXPECT_EQ(road->Result(), expected);
    return fired;
  }

  static testing::Matcher<int> StatedFor(EOperacion operation) {
    switch (operation) {
      case EOperacion::CreaSeccion:
        return testing::Eq(0);  // an exception
      case EOperacion::CreaEvento:
        return testing::Eq(kFicheroInconsistente);
      case EOperacion::Lee:
      case EOperacion::Posiciona:
      case EOperacion::Longitud:
      case EOperacion::CreaHilo:
        return AnyOf(kFicheroInaccesible, kFicheroInconsistente);
      default:
        return testing::Eq(kFicheroInaccesible);
    }
  }

  void Report(std::string const& what, int injected) {
    RecordProperty(what, injected);
    std::printf("%s: %s: %d faults injected, %d runs failed by them\n", GetParam().name, what.c_str(), injected,
                failures);
  }

  std::string expected;
  int failures = 0;
};

constexpr EOperacion kOperations[] = {EOperacion::Abre,         EOperacion::Lee,        EOperacion::Escribe,
                                      EOperacion::Posiciona,    EOperacion::Longitud,   EOperacion::Sincroniza,
                                      EOperacion::Cierra,       EOperacion::Renombra,   EOperacion::Borra,
                                      EOperacion::CreaTemporal, EOperacion::CreaEvento, EOperacion::CreaHilo,
                                      EOperacion::CreaSeccion};

template <class Refuse>
void Roads::MeetEachRefusal(char const* how, Refuse refuse) {
  int injected = 0;
  for (const EOperacion operation : kOperations) {
    for (int nth = 1;; ++nth) {
      SCOPED_TRACE("operation " + std::to_string(static_cast<int>(operation)) + " " + how + " at time " +
                   std::to_string(nth));
      const bool fired = RunAmiss(
          operation, [&](FaultGuard& guard) { refuse(guard, operation, nth); },
          [&](FaultGuard const& guard) { return guard.Asked(operation) >= nth; });
      ASSERT_FALSE(HasFailure());
      if (!fired) break;
      ++injected;
    }
  }
  EXPECT_GT(injected, 3);
  EXPECT_GT(failures, 2);
  Report(how, injected);
}

TEST_P(Roads, WhateverIsRefusedFromItsNthTimeOnEndsWithACodeAndCanBeAskedForAgain) {
  MeetEachRefusal("refused for good",
                  [](FaultGuard& guard, EOperacion operation, int nth) { guard.Refuse(operation, nth); });
}

TEST_P(Roads, OneRefusalIsNotForgottenWhenWhatFollowsGoesWell) {
  MeetEachRefusal("refused once",
                  [](FaultGuard& guard, EOperacion operation, int nth) { guard.RefuseOnce(operation, nth); });
}

TEST_P(Roads, ADiskThatFillsAnywhereIsToldOrHadRoomEnough) {
  int injected = 0;
  for (std::size_t room = 0; room < 4'000'000; room = room + room / 3 + 11) {
    SCOPED_TRACE("room for " + std::to_string(room));
    const int before = failures;
    RunAmiss(
        EOperacion::Escribe, [&](FaultGuard& guard) { guard.LimitDisk(room); },
        [](FaultGuard const& guard) { return guard.Asked(EOperacion::Escribe) > 0; });
    ASSERT_FALSE(HasFailure());
    if (failures == before) break;
    ++injected;
  }
  Report("no space", injected);
}

TEST_P(Roads, ShortTransfersChangeNothing) {
  int injected = 0;
  for (const std::size_t bytes : {1U, 7U, 1000U}) {
    RunAmiss(
        EOperacion::Lee, [&](FaultGuard& guard) { guard.LimitTransfers(bytes); },
        [](FaultGuard const& guard) { return guard.Asked(EOperacion::Lee) + guard.Asked(EOperacion::Escribe) > 0; });
    ++injected;
  }
  EXPECT_EQ(failures, 0);
  Report("short transfers", injected);
}

INSTANTIATE_TEST_SUITE_P(All, Roads,
                         testing::Values(Named<ToModel>("Run"), Named<Update>("RunActualiza"),
                                         Named<Rebuild>("RunOfAModel"), Named<Contours>("Curvado"),
                                         Named<HighPoints>("RunPuntosAltos"), Named<Write>("Write"),
                                         Named<Read>("Read"), Named<Export<FORMATO_PLY>>("ExportPly"),
                                         Named<Export<FORMATO_LANDXML>>("ExportLandXml")),
                         [](testing::TestParamInfo<Kind> const& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace Meseta47
