#include "model/terrain/CDataTriangulacion.h"

#include <gtest/gtest.h>

#include "model/geometry/Redondeo.h"
#include "model/terrain/CDataExportarMDT.h"
#include "model/terrain/CDataSacaLimites.h"

using namespace Meseta47;

TEST(CDataTriangulacion, ANewRecordFiltersNothing) {
  const CDataTriangulacion data;
  for (const int z : {-2147483647 - 1, 0, 2147483647}) {
    EXPECT_LE(data.zMin * 1e9, z);
    EXPECT_GE(data.zMax * 1e9, z);
    EXPECT_LE(Trunca(data.zMin * 1000), z);
    EXPECT_GE(Trunca(data.zMax * 1000), z);
  }
  EXPECT_LT(data.pendienteMin, 0);
  EXPECT_EQ(data.pendienteMax, 90);
  EXPECT_EQ(data.entero, 0);
  ASSERT_EQ(data.incluidos.Cantidad(), 1u);
  EXPECT_TRUE(CTipoDat(ENTIDAD_LINEA, L"anything").ComparaCodigo(data.incluidos[0].GetCodigo()));
  EXPECT_EQ(data.excluidos.Cantidad(), 0u);
}

TEST(CDataTriangulacion, MembersStandInTheirOrder) {
  const CDataTriangulacion d;
  void const* const order[] = {&d.zMin,   &d.zMax,      &d.pendienteMin, &d.pendienteMax,
                               &d.entero, &d.incluidos, &d.excluidos};
  EXPECT_TRUE(std::is_sorted(std::begin(order), std::end(order)));
}

TEST(CDataSacaLimites, ANewRecordSetsNoLimit) {
  EXPECT_LT(CDataSacaLimites().distancia, 0);
  EXPECT_LT(CDataSacaLimites().superficieMinima, 0);
}

TEST(CDataExportarMDT, TheFormatCanBeGivenAtOnce) {
  EXPECT_EQ(CDataExportarMDT(FORMATO_LANDXML).formato, 10);
  EXPECT_EQ(CDataExportarMDT(FORMATO_NATIVO).formato, 6);
}
