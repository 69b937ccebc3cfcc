#include "shell/CUrdimbreApp.h"

#include <gtest/gtest.h>

#include "model/threads/IPorcentaje.h"

TEST(CUrdimbreApp, IsCurrentWhileTheProgramHasNoApplicationOfItsOwn) {
  EXPECT_EQ(AfxGetModuleState()->m_pCurrentWinApp, &UrdimbreApp());
  EXPECT_TRUE(UrdimbreApp().InitInstance());
}

TEST(CUrdimbreApp, TakesNoProgressSoThatRunsGoWithoutOne) { EXPECT_EQ(Meseta47::BuscaPorcentaje(), nullptr); }

TEST(CUrdimbreApp, LendsItsTextsToAProgramThatHasNone) {
  const CWinApp programa(L"prueba");
  ASSERT_EQ(AfxGetApp(), &programa);
  EXPECT_EQ(AfxGetApp()->TextoMensaje(19021), UrdimbreApp().TextoMensaje(19021));
  EXPECT_FALSE(AfxGetApp()->TextoMensaje(19021).IsEmpty());
}
