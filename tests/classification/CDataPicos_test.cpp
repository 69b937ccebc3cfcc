#include "classification/CDataPicos.h"

#include <gtest/gtest.h>

#include "classification/ProfileScene.h"

namespace Meseta47 {
namespace {

using test::ProfileScene;

CDataPicos Unusual() {
  CDataPicos data;
  data.DistanciaMax = 0.12345678;
  data.AlturaMin = -2.25;
  data.pendienteMax = 1e-7;
  data.Tipo = CInfoClasificacion(18, 2.0, L"noise");
  data.Seleccion = 1;
  data.opcionA = 8;
  data.opcionB = 9;
  data.Iterar = 0;
  data.PuntosIterar = -3;
  return data;
}

void ExpectPersisted(CDataPicos const& data) {
  EXPECT_EQ(data.DistanciaMax, 0.123457);
  EXPECT_EQ(data.AlturaMin, -2.25);
  EXPECT_EQ(data.pendienteMax, 0.0) << "beyond the sixth decimal";
  EXPECT_EQ(data.Tipo.GetTipo(), 18);
  EXPECT_EQ(data.Seleccion, 1);
  EXPECT_EQ(data.Iterar, 0);
  EXPECT_EQ(data.PuntosIterar, -3);
}

TEST(CDataPicos, StartsWithTheUsualValues) {
  const CDataPicos data;
  EXPECT_EQ(data.DistanciaMax, 3.0);
  EXPECT_EQ(data.AlturaMin, 1.0);
  EXPECT_EQ(data.pendienteMax, 0.0);
  EXPECT_EQ(data.Tipo, CInfoClasificacion(2, 0.0, L""));
  EXPECT_EQ(data.Seleccion, 0);
  EXPECT_EQ(data.opcionA, 1);
  EXPECT_EQ(data.opcionB, 0);
  EXPECT_EQ(data.Iterar, 1);
  EXPECT_EQ(data.PuntosIterar, 0);
}

TEST(CDataPicos, AFileWithOnlyTheClassLeavesAllOtherValues) {
  const ProfileScene scene;
  PutBytes(scene.Ini(), "[Peaks]\nTipo=7\n");
  CDataPicos data = Unusual();
  data.GetPrivateProfile(scene.Ini(), L"Peaks");
  EXPECT_EQ(data.Tipo, CInfoClasificacion(7, 2.0, L"noise")) << "of a class only the byte is persisted";
  EXPECT_EQ(data.DistanciaMax, 0.12345678);
  EXPECT_EQ(data.AlturaMin, -2.25);
  EXPECT_EQ(data.pendienteMax, 1e-7);
  EXPECT_EQ(data.Seleccion, 1);
  EXPECT_EQ(data.opcionA, 8);
  EXPECT_EQ(data.opcionB, 9);
  EXPECT_EQ(data.Iterar, 0);
  EXPECT_EQ(data.PuntosIterar, -3);
}

TEST(CDataPicos, AClassKeptAs300ReadsBackAs44) {
  ProfileScene scene;
  scene.app.WriteProfileInt(L"Peaks", L"MineTipo", 300);
  PutBytes(scene.Ini(), "[Peaks]\nTipo=300\n");
  CDataPicos profile, file;
  profile.GetProfile(L"Peaks", L"Mine");
  file.GetPrivateProfile(scene.Ini(), L"Peaks");
  EXPECT_EQ(profile.Tipo.GetTipo(), 44);
  EXPECT_EQ(file.Tipo.GetTipo(), 44);
}

TEST(CDataPicos, TheOptionsSurviveACopyAndAreLostAcrossPersistence) {
  const ProfileScene scene;
  const CDataPicos copy(Unusual());
  EXPECT_EQ(copy.opcionA, 8);
  EXPECT_EQ(copy.opcionB, 9);

  Unusual().WriteProfile(L"Peaks", L"Mine");
  Unusual().WritePrivateProfile(scene.Ini(), L"Peaks");
  CDataPicos profile, file;
  profile.GetProfile(L"Peaks", L"Mine");
  file.GetPrivateProfile(scene.Ini(), L"Peaks");
  for (CDataPicos const& read : {profile, file}) {
    ExpectPersisted(read);
    EXPECT_EQ(read.opcionA, 1);
    EXPECT_EQ(read.opcionB, 0);
  }
}

TEST(CDataPicos, KeysStandInTheirOrder) {
  const ProfileScene scene;
  Unusual().WriteProfile(L"Peaks", L"Mine");
  EXPECT_EQ(BytesOf(scene.app.FicheroPerfil()),
            "[Peaks]\n"
            "MineDistanciaMax=0.123457\n"
            "MinependienteMax=0.000000\n"
            "MineAlturaMin=-2.250000\n"
            "MineTipo=18\n"
            "MineSeleccion=1\n"
            "MineIterar=0\n"
            "MinePuntosIterar=-3\n");
}

}  // namespace
}  // namespace Meseta47
