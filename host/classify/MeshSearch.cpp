#include "host/classify/MeshSearch.h"

#include "planar/CMedidasDeRun.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47::host {

std::uint64_t MeshSearch::temporaryBytes(std::uint64_t points) const {
  const std::uint64_t mesh = spills() ? CMedidasDeRun::BytesDelFichero(points) : 0;
  // The file of the outline comes beside that of the cloud: as large at the worst, much smaller as a rule.
  return drawsOutline() ? mesh + CMedidasDeRun::BytesDelFichero(points) : mesh;
}

int MeshSearch::run(CDibujo<int>& drawing, CDataTriangulacion const& filters, bool fillsHull, SearchOutcome& outcome) {
  CTriangulacion2D triangulation(0, drawing.semilla, filters, 1);
  triangulation.SinMarco(fillsHull);
  unsigned found = 0;
  const int code = search(triangulation, drawing, found, outcome);
  CResumenPlano const& run = triangulation.Resumen();
  outcome.mesh = run;
  outcome.accepted = run.aceptados;
  outcome.found = found;
  outcome.seconds = {{"fill", run.segundosRellena}, {"link", run.segundosEnlaza}};
  if (spills()) outcome.seconds.emplace_back("search", run.segundosBusca - run.segundosContorno);
  if (drawsOutline()) outcome.seconds.emplace_back("outline", run.segundosContorno);
  return code;
}

}  // namespace Meseta47::host
