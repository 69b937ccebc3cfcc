#include "shell/CTextosMensajes.h"

#include <gtest/gtest.h>

using Meseta47::CTextosMensajes;

TEST(CTextosMensajes, EveryPhaseAndCodeOfARunHasAText) {
  const CTextosMensajes textos;
  for (const unsigned id : {1U, 2U, 12104U, 12105U, 12106U, 15055U, 15059U, 15065U, 15105U, 19018U, 19020U, 19021U,
                            19022U, 19026U, 19029U, 19045U, 39102U}) {
    EXPECT_FALSE(textos.Texto(id).IsEmpty()) << id;
  }
}

TEST(CTextosMensajes, AnUnknownIdentifierHasAnEmptyText) { EXPECT_TRUE(CTextosMensajes().Texto(7).IsEmpty()); }

TEST(CTextosMensajes, AHostCanReplaceAText) {
  CTextosMensajes textos;
  textos.Sustituye(19021, L"Enlazando");
  EXPECT_EQ(textos.Texto(19021), L"Enlazando");
}

TEST(CTextosMensajes, TheTextOfARefusedPointTakesItsNumberAndPosition) {
  CString texto;
  texto.Format(CTextosMensajes().Texto(12105).GetString(), 7, -1, 2, 3);
  EXPECT_GE(texto.Find(L"Point 7 (X -1, Y 2, Z 3)"), 0);
}
