#include "support/SpaceGolden.h"

#include <iomanip>
#include <ostream>
#include <sstream>

#include "model/threads/Codigos.h"
#include "support/SpaceRun.h"

namespace Meseta47::test {

namespace {

using support::Point;
using support::SpaceFamily;
using Form = SpaceGoldenCase::Form;

char const* NameOf(Form form) {
  switch (form) {
    case Form::Faces:
      return "Faces";
    case Form::Whole:
      return "Whole";
    case Form::Kept:
      return "Kept";
  }
  return "";
}

/// The cells: boxes, and the last point of each.
void Describe(CTriangulacion3D::CDivisiones const& cell, std::ostream& out) {
  CCoor3D<int> const &least = cell.maximas.Minimo, &most = cell.maximas.Maximo;
  out << cell.nivel << ' ' << least.x << ' ' << least.y << ' ' << least.z << ' ' << most.x << ' ' << most.y << ' '
      << most.z << ' ' << cell.ultimaEntidad << ' ' << cell.ultimoPuntoCelda << '\n';
  for (unsigned i = 0; cell.hijos != nullptr && i < 8; ++i) Describe(cell.hijos[i], out);
}

/// The sets, and what each holds, in the order of its list.
void Describe(CSetTetraedros const& set, std::ostream& out) {
  out << set.Cantidad() << ':';
  for (CTetraedro const* t = set.Primero(); t != nullptr; t = t->Sig()) {
    out << ' ' << t->N1() << ' ' << t->N2() << ' ' << t->N3() << ' ' << t->N4();
  }
  out << '\n';
  for (unsigned i = 0; set.TieneHijos() && i < 8; ++i) Describe(*const_cast<CSetTetraedros&>(set).Hijo(i), out);
}

template <class T>
std::uint64_t HashOfTree(T const& root) {
  std::ostringstream text;
  Describe(root, text);
  return HashOf(text.str());
}

std::uint64_t HashOfNumbers(CLinea<int> const& cloud) {
  std::string numbers;
  for (int i = 0; i < cloud.NPuntos(); ++i) numbers += std::to_string(cloud.PunteroAPunto(i)->num) + ' ';
  return HashOf(numbers);
}

}  // namespace

std::string SpaceGoldenCase::Name() const {
  return std::string(support::name(family)) + '_' + std::to_string(size) + '_' + NameOf(form);
}

std::ostream& operator<<(std::ostream& out, SpaceGoldenCase const& golden) { return out << golden.Name(); }

std::vector<SpaceGoldenCase> SpaceGoldenCases() {
  std::vector<SpaceGoldenCase> cases;
  for (const SpaceFamily family : support::kSpaceFamilies) {
    for (const std::size_t size : {5U, 201U, 3'000U}) {
      for (const Form form : {Form::Faces, Form::Whole, Form::Kept}) cases.push_back({family, size, form});
    }
  }
  for (const SpaceFamily family : {SpaceFamily::Random, SpaceFamily::Terrain, SpaceFamily::Duplicates}) {
    for (const Form form : {Form::Whole, Form::Kept}) cases.push_back({family, 50'000, form});
  }
  return cases;
}

std::string SpaceGoldenColumns() {
  return "# name; hashes of the cells with their last points, of the temporary file's bytes or of the tree of sets "
         "with\n"
         "# its lists, of the numbers that points got; tetrahedra left, made in all, faces or tetrahedra in the file;\n"
         "# duplicate points, points lost";
}

std::string GoldenLine(SpaceGoldenCase const& golden) {
  std::vector<Point> points = support::spaceFamily(golden.family, golden.size, 11);
  if (golden.form != Form::Faces) points = support::alongACurve(std::move(points));
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation3D t;
  const bool whole = golden.form == Form::Whole;
  const int code = whole ? t.RunTetraedros(drawing) : t.Link(drawing, golden.form == Form::Faces);
  std::ostringstream line;
  line << golden.Name();
  if (code != kHecho) {
    line << " failed: " << code;
    return line.str();
  }
  const std::string bytes = golden.form == Form::Kept ? std::string() : t.SpilledBytes();
  const std::uint64_t outcome = golden.form == Form::Kept ? HashOfTree(t.setRaiz) : HashOf(bytes);
  line << std::hex << std::setfill('0');
  for (const std::uint64_t hash : {HashOfTree(t.divisiones), outcome, HashOfNumbers(drawing[0])}) {
    line << ' ' << std::setw(16) << hash;
  }
  CResumenEspacial const& summary = t.Resumen();
  line << std::dec << ' ' << summary.enlazados << ' ' << summary.creados << ' ' << bytes.size() / (whole ? 16 : 12)
       << ' ' << summary.duplicados << ' ' << summary.perdidos.size();
  return line.str();
}

}  // namespace Meseta47::test
