#include "shell/CUrdimbreApp.h"

namespace {

CUrdimbreApp laAplicacion;

}  // namespace

CUrdimbreApp& UrdimbreApp() { return laAplicacion; }
