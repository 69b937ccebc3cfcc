#include "classification/CDataSuelo.h"

#include <gtest/gtest.h>

#include "classification/ProfileScene.h"

namespace Meseta47 {
namespace {

using test::ProfileScene;

CDataSuelo Unusual() {
  CDataSuelo data;
  data.Ventana = 12.3456789;
  data.Pendiente = 0.25;
  data.Banda = 1;
  data.Tipo = CInfoClasificacion(18, 2.0, L"soil");
  data.Ruido = CInfoClasificacion(19, 2.0, L"noise");
  return data;
}

void ExpectPersisted(CDataSuelo const& data) {
  EXPECT_EQ(data.Ventana, 12.345679);
  EXPECT_EQ(data.Pendiente, 0.25);
  EXPECT_EQ(data.Banda, 1);
  EXPECT_EQ(data.Tipo.GetTipo(), 18);
  EXPECT_EQ(data.Ruido.GetTipo(), 19);
}

TEST(CDataSuelo, StartsWithWhatServesAnyCloud) {
  const CDataSuelo data;
  EXPECT_EQ(data.Ventana, 25.0);
  EXPECT_EQ(data.Pendiente, 0.10);
  EXPECT_EQ(data.Banda, CDataSuelo::kBandaDelLugar);
  EXPECT_EQ(data.Tipo, CInfoClasificacion(2, 0.0, L""));
  EXPECT_EQ(data.Ruido, CInfoClasificacion(7, 0.0, L""));
}

TEST(CDataSuelo, AFileWithOnlyTheWindowLeavesAllOtherValues) {
  const ProfileScene scene;
  PutBytes(scene.Ini(), "[Ground]\nVentana=40\n");
  CDataSuelo data = Unusual();
  data.GetPrivateProfile(scene.Ini(), L"Ground");
  EXPECT_EQ(data.Ventana, 40);
  EXPECT_EQ(data.Pendiente, 0.25);
  EXPECT_EQ(data.Banda, 1);
  EXPECT_EQ(data.Tipo, CInfoClasificacion(18, 2.0, L"soil"));
}

TEST(CDataSuelo, ProfilesAndFilesKeepAllOfIt) {
  const ProfileScene scene;
  Unusual().WriteProfile(L"Ground", L"Mine");
  Unusual().WritePrivateProfile(scene.Ini(), L"Ground");
  CDataSuelo profile, file;
  profile.GetProfile(L"Ground", L"Mine");
  file.GetPrivateProfile(scene.Ini(), L"Ground");
  ExpectPersisted(profile);
  ExpectPersisted(file);
}

TEST(CDataSuelo, KeysStandInTheirOrder) {
  const ProfileScene scene;
  Unusual().WriteProfile(L"Ground", L"Mine");
  EXPECT_EQ(BytesOf(scene.app.FicheroPerfil()),
            "[Ground]\n"
            "MineVentana=12.345679\n"
            "MinePendiente=0.250000\n"
            "MineBanda=1\n"
            "MineTipo=18\n"
            "MineRuido=19\n");
}

}  // namespace
}  // namespace Meseta47
