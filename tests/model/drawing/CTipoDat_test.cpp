#include "model/drawing/CTipoDat.h"

#include <gtest/gtest.h>

using namespace Meseta47;

namespace {

TEST(CTipoDat, ALineIsGraphicAndASetOfPointsIsNot) {
  const CTipoDat line(ENTIDAD_LINEA, L"a"), set(ENTIDAD_SETPUNTOS, L"a"), text(ENTIDAD_TEXTO, L"a");
  EXPECT_TRUE(line.EsGrafico());
  EXPECT_FALSE(line.EsSetPuntos());
  EXPECT_FALSE(set.EsGrafico());
  EXPECT_TRUE(set.EsSetPuntos());
  EXPECT_FALSE(text.EsGrafico());
  EXPECT_FALSE(text.EsSetPuntos());
}

TEST(CTipoDat, ACodeMatchesItsOwnRowLetterByLetter) {
  const CTipoDat e(ENTIDAD_LINEA, L"river");
  EXPECT_TRUE(e.ComparaCodigo(L"river"));
  EXPECT_FALSE(e.ComparaCodigo(L"River"));
  EXPECT_FALSE(e.ComparaCodigo(L"rive"));
  EXPECT_FALSE(e.ComparaCodigo(L""));
  EXPECT_EQ(e.GetCodigo(), CString(L"river"));
}

TEST(CTipoDat, TheRowWithAnAsteriskMatchesEveryCode) {
  EXPECT_TRUE(CTipoDat(ENTIDAD_LINEA, L"river").ComparaCodigo(L"*"));
  EXPECT_TRUE(CTipoDat(ENTIDAD_LINEA, L"").ComparaCodigo(L"*"));
  EXPECT_FALSE(CTipoDat(ENTIDAD_LINEA, L"river").ComparaCodigo(L"r*"));
  EXPECT_FALSE(CTipoDat(ENTIDAD_LINEA, L"*").ComparaCodigo(L"river"));
}

TEST(CTipoDat, TheDeletedMarkIsNoPartOfTheType) {
  CTipoDat e(ENTIDAD_LINEA, L"a");
  EXPECT_FALSE(e.EsBorrado());
  e.SetBorrado(true);
  EXPECT_TRUE(e.EsBorrado());
  EXPECT_TRUE(e.MismoTipo(CTipoDat(ENTIDAD_LINEA, L"a")));
  EXPECT_FALSE(e.MismoTipo(CTipoDat(ENTIDAD_SETPUNTOS, L"a")));
  EXPECT_FALSE(e.MismoTipo(CTipoDat(ENTIDAD_LINEA, L"b")));
}

}  // namespace
