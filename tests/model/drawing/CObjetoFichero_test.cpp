#include "model/drawing/CObjetoFichero.h"

#include <gtest/gtest.h>

using namespace Meseta47;

namespace {

class Document : public CObjetoFichero {
 public:
  Document() : CObjetoFichero(OBJETO_TRIANGULACION3D) {}
  using CObjetoFichero::operator=;
  [[nodiscard]] CMaximas<double> GetMaximasDouble() const override { return box; }
  void SetMaximasDouble(CMaximas<double> const& m) override { box = m; }

 private:
  CMaximas<double> box;
};

TEST(CObjetoFichero, SettingTheLevelReturnsTheOldOne) {
  Document d;
  EXPECT_EQ(d.Mensajes(), 3);
  EXPECT_EQ(d.Mensajes(MENSAJES_FASES), MENSAJES_NORMALES);
  EXPECT_EQ(d.Mensajes(MENSAJES_DETALLE), MENSAJES_FASES);
  EXPECT_EQ(d.Mensajes(), MENSAJES_DETALLE);
}

TEST(CObjetoFichero, ALevelOutsideTheKnownOnesSilencesTheObject) {
  Document d;
  EXPECT_EQ(d.Mensajes(static_cast<CNivelMensajes>(7)), 3);
  EXPECT_EQ(d.Mensajes(), 0);
  d.Mensajes(static_cast<CNivelMensajes>(-1));
  EXPECT_EQ(d.Mensajes(), 0);
}

TEST(CObjetoFichero, AssigningThroughTheBaseCopiesNameLevelAndCounts) {
  Document a, b;
  a.fichero = L"a.dib";
  a.Mensajes(MENSAJES_DETALLE);
  a.cantidades[1] = 12;
  static_cast<CObjetoFichero&>(b) = a;
  EXPECT_EQ(b.fichero, CString(L"a.dib"));
  EXPECT_EQ(b.Mensajes(), MENSAJES_DETALLE);
  EXPECT_EQ(b.cantidades[1], 12u);
}

TEST(CObjetoFichero, ClearingPutsTheCountsToZeroAndKeepsNameAndLevel) {
  Document d;
  d.fichero = L"a.dib";
  d.Mensajes(MENSAJES_FASES);
  d.cantidades[0] = d.cantidades[1] = d.cantidades[2] = 5;
  d.Clear();
  for (const std::uint32_t count : d.cantidades) EXPECT_EQ(count, 0u);
  EXPECT_EQ(d.fichero, CString(L"a.dib"));
  EXPECT_EQ(d.Mensajes(), MENSAJES_FASES);
  EXPECT_EQ(d.GetTipoObjeto(), 5);
}

TEST(CObjetoFichero, AnObjectThatKnowsNoReferenceSystemRefusesToBeTakenToOne) {
  Document d;
  EXPECT_FALSE(d.Transformacion(CDataHelmertNTV2()));
}

}  // namespace
