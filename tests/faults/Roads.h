#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "classification/CHiloPuntosPorAfinidad.h"
#include "classification/NoiseScene.h"
#include "classification/SearchScene.h"
#include "classification/SeenScene.h"
#include "model/terrain/CModeloDigital.h"
#include "planar/HalvesScenes.h"
#include "support/ScratchFolder.h"
#include "support/WorkingFolder.h"

/// The roads through the library, each as a piece of work on small things, for tests that let something fail on the
/// way.
namespace Meseta47::test {

/// A piece of work on things that it keeps, to be asked for again and again.
class Road {
 public:
  virtual ~Road() = default;
  virtual int Run() = 0;
  /// All that a run made.
  [[nodiscard]] virtual std::string Result() const = 0;
  /// What a failure must leave as it was.
  [[nodiscard]] virtual std::string Kept() const { return {}; }
  /// Whether what is finished before memory runs out stays: then Kept() begins like the whole result.
  [[nodiscard]] virtual bool LeavesWhatIsDone() const { return false; }
};

/// Points within a few hundred metres, in millimetres.
inline std::vector<support::Point> Near(std::size_t n) {
  std::vector<support::Point> points = Scatter(n);
  for (support::Point& p : points) p = {p.x % 20'011, p.y % 19'997, p.z % 1'000};
  return points;
}

inline const CDataSemilla kMillimetres(3, 0, 0, 0);

class ToModel : public Road {
 public:
  explicit ToModel(bool itsWhole = false) : whole(itsWhole) {}
  int Run() override {
    OpenTriangulation t;
    t.SinMarco(whole);
    return t.Run(drawing, model, 0, nullptr, false, nullptr, nullptr, nullptr);
  }
  std::string Result() const override { return Described(model); }

 private:
  bool whole;
  CDibujo<int> drawing = DrawingOf(Near(300));
  CTIN model{0, 0, CDataSemilla()};
};

/// Without its frame.
class ToWholeModel : public ToModel {
 public:
  ToWholeModel() : ToModel(true) {}
};

/// Linked by two threads, each with the points of its half.
class ToModelByTwo : public Road {
 public:
  int Run() override {
    OpenTriangulation t;
    t.DosDesde(0);
    return t.Run(drawing, model, 0, nullptr, false, nullptr, nullptr, nullptr);
  }
  std::string Result() const override { return Described(model); }

 private:
  CDibujo<int> drawing = DrawingOf(InTurns(Near(1'200), 16));
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
  std::vector<support::Point> points = Near(300);
  CDibujo<int> drawing = DrawingOf({points.begin() + 100, points.end()});
  CDibujo<int> extra = DrawingOf({points.begin(), points.begin() + 100});
  CTIN model{0, 0, CDataSemilla()};
};

class Extend : public Road {
 public:
  int Run() override {
    OpenTriangulation t;
    return t.Run({.dibujo = drawing, .extra = &extra, .tolerancia = 1e6}, model);
  }
  std::string Result() const override { return Described(model); }

 private:
  std::vector<support::Point> points = Near(300);
  CDibujo<int> drawing = DrawingOf({points.begin() + 100, points.end()});
  CDibujo<int> extra = DrawingOf({points.begin(), points.begin() + 100});
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
  static std::vector<support::Point> Sorted() {
    std::vector<support::Point> points = Near(300);
    std::sort(points.begin(), points.end());
    return points;
  }
  CTIN model = ModelOf(Sorted());
};

class Contours : public Road {
 public:
  explicit Contours(bool itsWhole = false) : whole(itsWhole) {}
  int Run() override {
    curves.Clear();
    curves.Inserta(CloudAt({{7, 7, 7}}));
    OpenTriangulation t({}, kMillimetres);
    t.SinMarco(whole);
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
  bool LeavesWhatIsDone() const override { return true; }

 private:
  bool whole;
  CDibujo<int> drawing = DrawingOf(Near(300));
  CDibujo<int> curves{kMillimetres};
};

class WholeContours : public Contours {
 public:
  WholeContours() : Contours(true) {}
};

class HighPoints : public Road {
 public:
  /// Points that have the class already take part in the outline: every search begins with the classes of the first.
  int Run() override {
    for (int i = 0; i < drawing[0].NPuntos(); ++i) {
      drawing[0].PunteroAPunto(i)->clasificacion = before[static_cast<std::size_t>(i)];
    }
    return InForest().Run(drawing);
  }
  std::string Result() const override {
    std::string text;
    for (const int clase : ClassesOf(drawing)) text += ' ' + std::to_string(clase);
    return text;
  }

 private:
  CDibujo<int> drawing = Cloud(Forest(300), kMillimetres);
  std::vector<unsigned char> before = Classes(Forest(300));

  static std::vector<unsigned char> Classes(std::vector<ClassedPoint> const& points) {
    std::vector<unsigned char> classes;
    for (ClassedPoint const& p : points) classes.push_back(p.clase);
    return classes;
  }
};

/// A search for noise in a forest; classes change when all that may fail is over.
template <class Search>
class Noise : public Road {
 public:
  int Run() override {
    for (int i = 0; i < drawing[0].NPuntos(); ++i) {
      drawing[0].PunteroAPunto(i)->clasificacion = 2;
      drawing[0].PunteroAPunto(i)->num = 0;
    }
    return Search(search).Run(drawing);
  }
  std::string Result() const override {
    std::string text;
    for (const int clase : ClassesOf(drawing)) text += ' ' + std::to_string(clase);
    return text;
  }
  std::string Kept() const override { return Result(); }

 protected:
  Noise() {
    search.seed = kMillimetres;
    for (int i = 0; i < drawing[0].NPuntos(); ++i) drawing[0].PunteroAPunto(i)->clasificacion = 2;
  }
  Search search;

 private:
  CDibujo<int> drawing = Cloud(Forest(300), kMillimetres);
};

class IsolatedPoints : public Noise<Isolated> {
 public:
  IsolatedPoints() {
    search.distance = 5;
    search.neighbours = 5;  // more than a first piece of a list holds
  }
};

class AerialPoints : public Noise<Aerial> {
 public:
  AerialPoints() { search.factor = 1; }
};

class PeaksAndPits : public Noise<Peaks> {};

/// A search of a garden by what its points look like.
template <int (*Search)(CDibujo<int>&)>
class Looks : public Road {
 public:
  int Run() override {
    for (int i = 0; i < drawing[0].NPuntos(); ++i) drawing[0].PunteroAPunto(i)->clasificacion = kBefore;
    return Search(drawing);
  }
  std::string Result() const override {
    std::string text;
    for (const int clase : ClassesOf(drawing)) text += ' ' + std::to_string(clase);
    return text;
  }

 private:
  static constexpr unsigned char kBefore = 2;
  CDibujo<int> drawing = Seen(Garden(300), kMillimetres);
};

inline int ByColour(CDibujo<int>& drawing) {
  ColourSearch search;
  search.distance = 15;
  search.when = {{60, 100, 128, 5, 2, 130}, {150, 100, 128, 6, 2, 130}};
  return search.Run(drawing);
}
inline int ByIntensity(CDibujo<int>& drawing) {
  IntensitySearch search;
  search.distance = 15;
  search.when = {{0, 8'000, 5, 2}, {8'001, 65'535, 6, 2}};
  return search.Run(drawing);
}
inline int ByJumps(CDibujo<int>& drawing) {
  JumpSearch search;
  search.distance = 15;
  search.difference = 9'000;
  return search.Run(drawing);
}

/// The ways of a growth by affinity: one run, one run on a thread of its own, and a run that goes on to the end.
enum class Growth { Once, OnAThread, ToRest };

template <Growth Way>
class Affinity : public Road {
 public:
  int Run() override {
    for (int i = 0; i < drawing[0].NPuntos(); ++i) drawing[0].PunteroAPunto(i)->clasificacion = i % 20 == 0 ? 2 : 1;
    unsigned changed = 0, rounds = 0;
    CTriangulacion2D t(0, kMillimetres, 7);
    if constexpr (Way == Growth::ToRest) {
      return t.RunAfinidadCompleta(drawing, {.crece = 2, .barrera = 6, .distancias = &near}, changed, rounds, nullptr,
                                   nullptr);
    } else if constexpr (Way == Growth::Once) {
      return t.RunPuntosPorAfinidad(drawing, changed, nullptr, nullptr, &near, nullptr, grows, stops, nullptr, nullptr,
                                    nullptr, 0, nullptr);
    }
    CCriticalSection section;
    int cancel = 0;
    unsigned finished = 0;
    CHiloPuntosPorAfinidad thread;
    thread.Start(3, nullptr, &drawing, nullptr, nullptr, &near, nullptr, &grows, &stops, 0, &data, &section, &cancel,
                 &finished, nullptr, nullptr, 1);
    thread.Stop();
    return thread.Codigo();
  }
  std::string Result() const override {
    std::string text;
    for (const int clase : ClassesOf(drawing)) text += ' ' + std::to_string(clase);
    return text;
  }

  std::string Kept() const override { return Result(); }

 private:
  CDibujo<int> drawing = Sown();
  CRango near = Near();
  CInfoClasificacion grows{2, 0.0, L""}, stops{6, 0.0, L""};
  CDataTriangulacion data;

  static CDibujo<int> Sown() {
    CDibujo<int> sown = Cloud(Forest(300), kMillimetres);
    for (int i = 0; i < 300; ++i) sown[0].PunteroAPunto(i)->clasificacion = i % 20 == 0 ? 2 : 1;
    return sown;
  }
  /// About half of the sides.
  static CRango Near() {
    constexpr double kSide2 = 6e3 * 6e3;
    CRango range(2147483647.0, 2147483647.0, -2147483648.0, 2147483647.0);
    range.SetValorMax(kSide2);
    return range;
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
    CDibujo<int> drawing = DrawingOf(Near(3'000));
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

/// All of them, as parameters of a test.
inline auto EveryRoad() {
  return testing::Values(
      Named<ToModel>("Run"), Named<ToWholeModel>("RunWithoutFrame"), Named<ToModelByTwo>("RunByTwoThreads"),
      Named<Update>("RunActualiza"), Named<Extend>("RunWithAnUpdate"), Named<Rebuild>("RunOfAModel"),
      Named<Contours>("Curvado"), Named<WholeContours>("CurvadoWithoutFrame"), Named<HighPoints>("RunPuntosAltos"),
      Named<Looks<ByColour>>("RunPuntosAltosRGB"), Named<Looks<ByIntensity>>("RunPuntosAltosIntensidad"),
      Named<Looks<ByJumps>>("RunPuntosDifIntensidad"), Named<IsolatedPoints>("RunPuntosAislados"),
      Named<AerialPoints>("RunPuntosAereos"), Named<PeaksAndPits>("BuscaPicos"),
      Named<Affinity<Growth::Once>>("RunPuntosPorAfinidad"),
      Named<Affinity<Growth::OnAThread>>("CHiloPuntosPorAfinidad"),
      Named<Affinity<Growth::ToRest>>("RunAfinidadCompleta"), Named<Write>("Write"), Named<Read>("Read"),
      Named<Export<FORMATO_PLY>>("ExportPly"), Named<Export<FORMATO_LANDXML>>("ExportLandXml"));
}

inline std::string NameOf(testing::TestParamInfo<Kind> const& kind) { return kind.param.name; }

}  // namespace Meseta47::test
