#pragma once

#include <exception>

#include "planar/CTriangulacion2D.h"

namespace Meseta47 {

/// When an exception (no memory, a host's own) leaves a run, the worker is stopped and the temporary file deleted.
class CTriangulacion2D::CGuarda {
 public:
  explicit CGuarda(CTriangulacion2D& suRun) : run(suRun) {}
  CGuarda(CGuarda const&) = delete;
  CGuarda& operator=(CGuarda const&) = delete;
  ~CGuarda() {
    if (std::uncaught_exceptions() > antes) run.Abandona(kCancelado);
  }

 private:
  CTriangulacion2D& run;
  int antes = std::uncaught_exceptions();
};

}  // namespace Meseta47
