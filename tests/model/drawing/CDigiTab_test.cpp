#include "model/drawing/CDigiTab.h"

#include <gtest/gtest.h>

using namespace Meseta47;

namespace {

CElementoDigiTab Row(wchar_t const* code) { return CElementoDigiTab(ENTIDAD_LINEA, code, 70, 70, 70, 0, 0, L"", 1); }

TEST(CDigiTab, RowsKeepTheOrderOfTheirArrival) {
  CDigiTab table;
  EXPECT_EQ(table.Cantidad(), 0u);
  EXPECT_TRUE(table.Inserta(Row(L"b"), false));
  EXPECT_TRUE(table.Inserta(Row(L"a"), false));
  EXPECT_TRUE(table.Inserta(Row(L"b"), false));
  ASSERT_EQ(table.Cantidad(), 3u);
  EXPECT_EQ(table[0].GetCodigo(), CString(L"b"));
  EXPECT_EQ(table[1].GetCodigo(), CString(L"a"));
  EXPECT_EQ(table[2].GetCodigo(), CString(L"b"));
}

TEST(CDigiTab, ARowAskedToBeTheOnlyOneIsNotRepeated) {
  CDigiTab table;
  EXPECT_TRUE(table.Inserta(Row(L"a"), true));
  EXPECT_FALSE(table.Inserta(Row(L"a"), true));
  EXPECT_TRUE(table.Inserta(CElementoDigiTab(ENTIDAD_SETPUNTOS, L"a", 0, 0, 0, 0, 0, L"", 1), true));
  EXPECT_EQ(table.Cantidad(), 2u);
}

TEST(CDigiTab, ClearingLeavesNoRow) {
  CDigiTab table;
  table.Inserta(Row(L"a"), false);
  table.clear();
  EXPECT_EQ(table.Cantidad(), 0u);
}

TEST(CElementoDigiTab, IsBuiltFromATypeOrFromItsParts) {
  const CElementoDigiTab a(CTipoDat(ENTIDAD_LINEA, L"*"), 1, 2, 3, 4, 5, L"all", 0);
  const CElementoDigiTab b(ENTIDAD_LINEA, L"*", 1, 2, 3, 4, 5, L"all", 0);
  for (CElementoDigiTab const* e : {&a, &b}) {
    EXPECT_EQ(e->GetCodigo(), CString(L"*"));
    EXPECT_EQ(e->rojo, 1);
    EXPECT_EQ(e->verde, 2);
    EXPECT_EQ(e->azul, 3);
    EXPECT_EQ(e->grosor, 4);
    EXPECT_EQ(e->trazo, 5);
    EXPECT_EQ(e->texto, CString(L"all"));
    EXPECT_EQ(e->visible, 0);
  }
}

}  // namespace
