#include "support/PlanarGolden.h"

#include <iomanip>
#include <ostream>
#include <sstream>

#include "model/terrain/CTIN.h"
#include "model/threads/Codigos.h"
#include "support/Canonical.h"
#include "support/PlanarRun.h"

namespace Meseta47::test {

namespace {

using support::Family;
using support::Point;

constexpr int kTolerance = 50'000;  // a sixth of the heights of most families: some points pass and some don't

char const* NameOf(Form form) {
  switch (form) {
    case Form::Drawing:
      return "";
    case Form::Others:
      return "_Others";
    case Form::Update:
      return "_Update";
    case Form::Model:
      return "_Model";
  }
  return "";
}

/// The points of a feed as the run of a form takes them.
class Scene {
 public:
  Scene(std::vector<Point> const& points, Form itsForm) : form(itsForm) {
    if (form == Form::Model) {
      CSetPuntosMdt set(0, 0);
      for (Point const& p : points) set.push_back(CPuntoTIN(CCoor3D<int>(p.x, p.y, p.z, 0)), false);
      model.SetPuntosMdt(set);
      return;
    }
    std::vector<std::vector<Point>> dealt(4);
    for (std::size_t i = 0; i < points.size(); ++i) {
      dealt[form == Form::Others ? 4 * i / points.size() : form == Form::Update ? i % 3 / 2 : 0].push_back(points[i]);
    }
    for (auto const& hand : dealt) drawings.push_back(DrawingOf(hand));
    if (form == Form::Others) others = {&drawings[1], &drawings[2], &drawings[3]};
  }
  Scene(Scene const&) = delete;
  Scene& operator=(Scene const&) = delete;

  int Fill(OpenTriangulation& t) {
    return form == Form::Model ? t.Rellena(model) : t.Rellena(drawings[0], Others(), nullptr, Extra());
  }
  int Link(OpenTriangulation& t) {
    if (form != Form::Model) return t.Link(drawings[0], Others(), Extra(), Tolerance());
    const int code = Fill(t);
    return code == kHecho ? t.EnlazaLista(model, 0, nullptr) : code;
  }
  [[nodiscard]] std::string Numbers() const {
    std::string numbers;
    for (CPuntoTIN const& p : model.puntos) numbers += std::to_string(p.num) + ' ';
    for (CDibujo<int> const& drawing : drawings) {
      for (int i = 0; i < drawing[0].NPuntos(); ++i) numbers += std::to_string(drawing[0].Punto(i).num) + ' ';
      numbers += '\n';
    }
    return numbers;
  }
  /// Null for the seeds of the last of the further drawings, which no run looks up.
  CCoor3D<int>* Seed(CPosicion const& place) {
    if (form == Form::Model) return model.puntos.at(place.entidad);
    if (place.lista != 0 && place.lista >= others.size()) return nullptr;
    return const_cast<CCoor3D<int>*>(drawings[place.lista][0].PunteroAPunto(static_cast<int>(place.punto)));
  }
  void InsertRest(OpenTriangulation& t, unsigned& a, unsigned& b) {
    int step = 0;
    if (form == Form::Model) {
      t.InsertaRestoPuntos(model, step, 0, a, b, nullptr);
      return;
    }
    const std::size_t lists = form == Form::Others ? 4 : form == Form::Update ? 2 : 1;
    for (std::size_t list = 0; list < lists; ++list) {
      t.InsertaRestoPuntos(static_cast<short>(list), drawings[list], step, 0, a, b, 0, nullptr, nullptr, nullptr,
                           list == 0 ? 0 : Tolerance(), nullptr);
    }
  }
  [[nodiscard]] int Tolerance() const { return form == Form::Update ? kTolerance : 0; }

 private:
  std::vector<CDibujo<int>*>* Others() { return form == Form::Others ? &others : nullptr; }
  CDibujo<int>* Extra() { return form == Form::Update ? &drawings[1] : nullptr; }

  Form form;
  std::vector<CDibujo<int>> drawings;
  std::vector<CDibujo<int>*> others;
  CTIN model{0, 0, CDataSemilla()};
};

/// Circles tested, by their answer.
struct Circles {
  unsigned holding = 0, others = 0;
};

/// The same linking once more by hand and without a worker, since a run keeps only the sum. The object has linked the
/// scene before, and so has its frame.
Circles CountCircles(OpenTriangulation& t, Scene& scene) {
  scene.Fill(t);
  t.EstableceDivisiones(t.divisiones, t.setRaiz);
  t.setRaiz.Inserta(CTriangulo2D(&t.esquinas[0], &t.esquinas[1], &t.esquinas[2]));
  t.setRaiz.Inserta(CTriangulo2D(&t.esquinas[0], &t.esquinas[2], &t.esquinas[3]));
  t.cantidadPuntos = 0;
  Circles total;
  for (CPosicion const& place : t.primerosPuntos) {
    CCoor3D<int>* p = scene.Seed(place);
    if (p == nullptr) continue;
    unsigned a = 0, b = 0;
    t.TriangulaPunto(p, static_cast<short>(place.lista), place.entidad, place.punto, a, b, false, false,
                     scene.Tolerance(), nullptr, nullptr, nullptr, nullptr, nullptr);
    total.holding += a;
    total.others += b;
  }
  scene.InsertRest(t, total.holding, total.others);
  return total;
}

}  // namespace

std::string GoldenCase::Name() const { return feed.Name() + NameOf(form); }

std::ostream& operator<<(std::ostream& out, GoldenCase const& golden) { return out << golden.Name(); }

std::vector<GoldenCase> GoldenCases() {
  std::vector<GoldenCase> cases;
  for (const std::size_t size : {4U, 201U, 2'000U}) {
    for (Feed const& feed : EveryFeed(size)) cases.push_back({feed});
  }
  for (const Family family : {Family::Uniform, Family::RegularGrid, Family::JitteredGrid, Family::ScanLines}) {
    cases.push_back({{family, Order::Hilbert, 200'000}});
  }
  for (const Form form : {Form::Others, Form::Update, Form::Model}) {
    for (const Family family : {Family::Uniform, Family::RegularGrid, Family::Circle, Family::Clusters,
                                Family::Duplicates, Family::HugeSpread, Family::ScanLines}) {
      for (const Order order : {Order::Shuffled, Order::Hilbert}) cases.push_back({{family, order, 3'000}, form});
    }
  }
  return cases;
}

std::string GoldenColumns() {
  return "# name; hashes of the temporary file's bytes, of its triangles as a set, of the numbers that points got;\n"
         "# triangles; circles that held a point, that did not, both as the run counted them;\n"
         "# duplicate points, points left out";
}

std::string GoldenLine(GoldenCase const& golden) {
  Scene scene(golden.feed.Points(), golden.form);
  OpenTriangulation triangulation;
  std::ostringstream line;
  line << golden.Name();
  if (const int code = scene.Link(triangulation); code != kHecho) {
    line << " failed: " << code;
    return line.str();
  }
  const std::string bytes = triangulation.SpilledBytes();
  const CResumenPlano summary = triangulation.Resumen();
  line << std::hex << std::setfill('0');
  for (const std::uint64_t hash : {HashOf(bytes), support::goldenHash(RecordsOf(bytes)), HashOf(scene.Numbers())}) {
    line << ' ' << std::setw(16) << hash;
  }
  triangulation.BorraFicheroTemporal();
  const Circles circles = CountCircles(triangulation, scene);
  line << std::dec << ' ' << bytes.size() / 12 << ' ' << circles.holding << ' ' << circles.others << ' '
       << summary.examinados << ' ' << summary.duplicados << ' ' << summary.rechazados;
  return line.str();
}

}  // namespace Meseta47::test
