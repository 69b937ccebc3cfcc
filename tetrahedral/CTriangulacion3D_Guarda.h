#pragma once

#include <exception>

#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47 {

/// When an exception (no memory, a host's own) leaves a run, the worker is stopped and the temporary file deleted.
class CTriangulacion3D::CGuarda {
 public:
  explicit CGuarda(CTriangulacion3D& suRun) : run(suRun) {}
  CGuarda(CGuarda const&) = delete;
  CGuarda& operator=(CGuarda const&) = delete;
  ~CGuarda() {
    if (std::uncaught_exceptions() == antes) return;
    run.Abandona(kCancelado);
    run.escribeEnteros = false;
  }

 private:
  CTriangulacion3D& run;
  int antes = std::uncaught_exceptions();
};

}  // namespace Meseta47
