// The system's header before the library's, as programs for Windows and newer releases of CLI11 have it.
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <windows.h>

// after the header whose macros they meet
#include <gtest/gtest.h>

#include "classification/CBusquedaSuelo.h"
#include "classification/CHiloBuscaPuntosAltos.h"
#include "classification/CHiloPuntosPorAfinidad.h"
#include "planar/CHiloGenerarMDT.h"
#include "planar/CTriangulacion2D.h"
#include "shell/CInfoTetraedroDlg.h"
#include "shell/CMostrarTriangulosDlg.h"
#include "shell/CUrdimbreApp.h"
#include "tetrahedral/CHiloLeerTetraedros.h"
#include "tetrahedral/CHiloLiberarTetraedros.h"
#include "tetrahedral/CHiloSalvaTetraedrosEnlazados.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace {

TEST(WindowsHeader, LeavesTheProfileItsNames) {
  const CWinApp app(L"a program that has never run");
  EXPECT_EQ(app.GetProfileString(L"section", L"key", L"default"), L"default");
  EXPECT_EQ(app.GetProfileInt(L"section", L"key", 7), 7);
}

TEST(WindowsHeader, HasTheHandlesOfEventsAndThreadsByTheSameType) {
  const CEvent event;
  const HANDLE handle = event;
  EXPECT_NE(handle, nullptr);
}

}  // namespace
