#include "classification/CDataBuscarPuntos.h"

#include <gmock/gmock.h>
#include <string>
#include <utility>
#include <vector>

#include "classification/ProfileScene.h"

namespace Meseta47 {
namespace {

using test::ProfileScene;

/// Every field other than at first, doubles with more decimals than are kept.
CDataBuscarPuntos Unusual() {
  CDataBuscarPuntos data;
  data.DistanciaMax = 1.23456789;
  data.AlturaMin = -0.5000004;
  data.Tipo1 = CInfoClasificacion(3, 1.5, L"bushes");
  data.Tipo2 = CInfoClasificacion(255, 0.0, L"");
  data.VecinosAislados = -7;
  data.EsVegetacionBaja = 1;
  data.Iterar = 0;
  data.Seleccion = 2147483647;
  data.PuntosIterar = 12;
  data.Superficie = 0;
  data.SuperficieMin = 1e6;
  data.DifCotaAereos = 1.0 / 3;
  return data;
}

/// All that is persisted, in six decimals.
std::vector<double> Persisted(CDataBuscarPuntos const& d) {
  const auto six = [](double v) { return std::stod(std::to_string(v)); };
  return {six(d.DistanciaMax),
          six(d.AlturaMin),
          six(d.DifCotaAereos),
          static_cast<double>(d.Tipo1.GetTipo()),
          static_cast<double>(d.Tipo2.GetTipo()),
          static_cast<double>(d.EsVegetacionBaja),
          static_cast<double>(d.Iterar),
          static_cast<double>(d.Seleccion),
          static_cast<double>(d.PuntosIterar),
          static_cast<double>(d.Superficie),
          static_cast<double>(d.VecinosAislados),
          six(d.SuperficieMin)};
}

TEST(CDataBuscarPuntos, StartsWithTheUsualValues) {
  const CDataBuscarPuntos data;
  EXPECT_THAT(Persisted(data), testing::ElementsAre(5, 5, 5, 6, 6, 0, 1, 0, 0, 1, 2, 100));
  EXPECT_EQ(data.Tipo1, CInfoClasificacion(6, 0.0, L""));
  EXPECT_EQ(data.Tipo2, CInfoClasificacion(6, 0.0, L""));
}

TEST(CDataBuscarPuntos, CopiesHaveEveryField) {
  const CDataBuscarPuntos data = Unusual();
  const CDataBuscarPuntos copied(data);
  CDataBuscarPuntos assigned;
  assigned = data;
  for (CDataBuscarPuntos const& other : {copied, assigned}) {
    EXPECT_EQ(other.DistanciaMax, data.DistanciaMax);
    EXPECT_EQ(other.Tipo1, data.Tipo1);
    EXPECT_EQ(Persisted(other), Persisted(data));
  }
}

TEST(CDataBuscarPuntos, WhatTheProfileKeptComesBackWithSixDecimals) {
  const ProfileScene scene;
  Unusual().WriteProfile(L"High points", L"Towns");
  CDataBuscarPuntos read;
  read.GetProfile(L"High points", L"Towns");
  EXPECT_EQ(Persisted(read), Persisted(Unusual()));
  EXPECT_EQ(read.DistanciaMax, 1.234568);
  EXPECT_EQ(read.AlturaMin, -0.5);
  EXPECT_EQ(read.DifCotaAereos, 0.333333);
}

TEST(CDataBuscarPuntos, WhatAFileKeptComesBackWithSixDecimals) {
  const ProfileScene scene;
  Unusual().WritePrivateProfile(scene.Ini(), L"Towns");
  CDataBuscarPuntos read;
  read.GetPrivateProfile(scene.Ini(), L"Towns");
  EXPECT_EQ(Persisted(read), Persisted(Unusual()));
  EXPECT_EQ(read.DistanciaMax, 1.234568);
}

TEST(CDataBuscarPuntos, TheProfileHasPrefixedKeysInTheirOrder) {
  const ProfileScene scene;
  Unusual().WriteProfile(L"High points", L"Towns");
  EXPECT_EQ(BytesOf(scene.app.FicheroPerfil()),
            "[High points]\n"
            "TownsDistanciaMax=1.234568\n"
            "TownsAlturaMin=-0.500000\n"
            "TownsDifCotaAereos=0.333333\n"
            "TownsTipo1=3\n"
            "TownsTipo2=255\n"
            "TownsEsVegetacionBaja=1\n"
            "TownsIterar=0\n"
            "TownsSeleccion=2147483647\n"
            "TownsPuntosIterar=12\n"
            "TownsSuperficie=0\n"
            "TownsVecinosAislados=-7\n"
            "TownsSuperficieMin=1000000.000000\n");
}

TEST(CDataBuscarPuntos, AFileHasTheSameKeysWithoutAPrefix) {
  const ProfileScene scene;
  Unusual().WriteProfile(L"Towns", L"");
  Unusual().WritePrivateProfile(scene.Ini(), L"Towns");
  EXPECT_EQ(BytesOf(scene.Ini()), BytesOf(scene.app.FicheroPerfil()));
}

TEST(CDataBuscarPuntos, SetsWithOtherPrefixesLieSideBySideInASection) {
  const ProfileScene scene;
  CDataBuscarPuntos towns, woods;
  towns.AlturaMin = 2.5;
  woods.AlturaMin = 1.5;
  towns.WriteProfile(L"High points", L"Towns");
  woods.WriteProfile(L"High points", L"Woods");
  CDataBuscarPuntos read;
  read.GetProfile(L"High points", L"Towns");
  EXPECT_EQ(read.AlturaMin, 2.5);
  read.GetProfile(L"High points", L"Woods");
  EXPECT_EQ(read.AlturaMin, 1.5);
}

TEST(CDataBuscarPuntos, AbsentKeysOfTheProfileLeaveTheFieldsButCutDoubles) {
  const ProfileScene scene;
  CDataBuscarPuntos data = Unusual();
  data.GetProfile(L"High points", L"");
  EXPECT_EQ(Persisted(data), Persisted(Unusual()));
  EXPECT_EQ(data.Tipo1, Unusual().Tipo1);
  EXPECT_EQ(data.DistanciaMax, 1.234568);
}

TEST(CDataBuscarPuntos, AbsentAndEmptyKeysOfAFileLeaveTheFieldsWhole) {
  const ProfileScene scene;
  PutBytes(scene.Ini(), "[Towns]\nDistanciaMax=\nTipo1=\nIterar=\n");
  for (wchar_t const* section : {L"Towns", L"Woods"}) {
    CDataBuscarPuntos data = Unusual();
    data.GetPrivateProfile(scene.Ini(), section);
    EXPECT_EQ(data.DistanciaMax, 1.23456789);
    EXPECT_EQ(data.DifCotaAereos, 1.0 / 3);
    EXPECT_EQ(data.Tipo1, Unusual().Tipo1);
    EXPECT_EQ(Persisted(data), Persisted(Unusual()));
  }
}

TEST(CDataBuscarPuntos, AClassKeptAs300ReadsBackAs44) {
  ProfileScene scene;
  scene.app.WriteProfileInt(L"Towns", L"Tipo1", 300);
  scene.app.WriteProfileInt(L"Towns", L"Tipo2", -1);
  PutBytes(scene.Ini(), "[Towns]\nTipo1=300\nTipo2=-1\n");
  CDataBuscarPuntos profile, file;
  profile.GetProfile(L"Towns", L"");
  file.GetPrivateProfile(scene.Ini(), L"Towns");
  EXPECT_EQ(profile.Tipo1.GetTipo(), 44);
  EXPECT_EQ(profile.Tipo2.GetTipo(), 255);
  EXPECT_EQ(file.Tipo1.GetTipo(), 44);
  EXPECT_EQ(file.Tipo2.GetTipo(), 255);
}

TEST(CDataBuscarPuntos, NumbersAreReadAsFarAsTheyGo) {
  const ProfileScene scene;
  PutBytes(scene.Ini(), "[Towns]\nDistanciaMax=2.5 metres\nAlturaMin=tall\nIterar=3.9\nVecinosAislados=99999999999\n");
  CDataBuscarPuntos data;
  data.GetPrivateProfile(scene.Ini(), L"Towns");
  EXPECT_EQ(data.DistanciaMax, 2.5);
  EXPECT_EQ(data.AlturaMin, 0.0);
  EXPECT_EQ(data.Iterar, 3);
  EXPECT_EQ(data.VecinosAislados, 2147483647);
}

TEST(CDataBuscarPuntos, WithoutAnApplicationThereIsNoProfile) {
  CDataBuscarPuntos data = Unusual();
  CWinApp* const before = std::exchange(AfxGetModuleState()->m_pCurrentWinApp, nullptr);
  data.WriteProfile(L"High points", L"");
  data.GetProfile(L"High points", L"");
  AfxGetModuleState()->m_pCurrentWinApp = before;
  EXPECT_EQ(data.DistanciaMax, 1.23456789);
  EXPECT_EQ(Persisted(data), Persisted(Unusual()));
}

}  // namespace
}  // namespace Meseta47
