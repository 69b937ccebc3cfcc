#include "shell/CInfoTetraedroDlg.h"

#include <gtest/gtest.h>

#include "platform/Recursos.h"
#include "support/DrivenDialog.h"
#include "tetrahedral/CTetraedro.h"

namespace {

using Meseta47::CCoor3D;
using Meseta47::CInfoTetraedroDlg;
using Meseta47::CTetraedro;

/// A tetrahedron in millimetres, the corner of a box of 3 x 4 x 12 metres; its first vertex is one of the frame's.
class TetrahedronDialog : public testing::Test {
 protected:
  CCoor3D<int> points[4] = {
      {1000, 2000, -500, -3}, {4000, 2000, -500, 1}, {1000, 6000, -500, 2}, {1000, 2000, 11500, 3}};
  CTetraedro tetrahedron{&points[0], &points[1], &points[2], &points[3]};
};

TEST_F(TetrahedronDialog, HoldsItsVerticesInMetresFromTheStart) {
  const CInfoTetraedroDlg dialog(tetrahedron, 7, 1000.0);
  EXPECT_EQ(dialog.tetraedro, &tetrahedron);
  EXPECT_EQ(dialog.identificador, 7U);
  EXPECT_EQ(dialog.escala, 1000.0);
  for (unsigned i = 0; i < 4; ++i) {
    EXPECT_EQ(dialog.x[i], points[i].x / 1000.0);
    EXPECT_EQ(dialog.y[i], points[i].y / 1000.0);
    EXPECT_EQ(dialog.z[i], points[i].z / 1000.0);
  }
  EXPECT_TRUE(dialog.area.IsEmpty());
}

TEST_F(TetrahedronDialog, CoordinatesAreTakenAtOnceAndAreaAndVolumeWhenItIsShown) {
  Driven<CInfoTetraedroDlg> dialog(tetrahedron, 7, 1000.0);
  points[3].z = 500;
  CString area;
  area.Format(L"%.2lf", tetrahedron.Area(1000.0));
  dialog.steps = {[&](auto& d) {
    EXPECT_EQ(d.Shown(14102), L"11.5");
    EXPECT_EQ(d.Shown(18089), area);
  }};
  dialog.DoModal();
}

TEST_F(TetrahedronDialog, EachVertexStandsInItsOwnBoxesThoseOfTheFrameToo) {
  Driven<CInfoTetraedroDlg> dialog(tetrahedron, 4294967295U, 1000.0);
  dialog.steps = {[](auto& d) {
    EXPECT_EQ(d.Shown(14108), L"1");
    EXPECT_EQ(d.Shown(14109), L"2");
    EXPECT_EQ(d.Shown(14099), L"-0.5");
    EXPECT_EQ(d.Shown(14110), L"4");
    EXPECT_EQ(d.Shown(14111), L"2");
    EXPECT_EQ(d.Shown(14100), L"-0.5");
    EXPECT_EQ(d.Shown(14112), L"1");
    EXPECT_EQ(d.Shown(14113), L"6");
    EXPECT_EQ(d.Shown(14101), L"-0.5");
    EXPECT_EQ(d.Shown(14114), L"1");
    EXPECT_EQ(d.Shown(14115), L"2");
    EXPECT_EQ(d.Shown(14102), L"11.5");
    EXPECT_EQ(d.Shown(14116), L"4294967295");
  }};
  EXPECT_EQ(dialog.DoModal(), std::intptr_t{orden::kCancela});
}

TEST_F(TetrahedronDialog, AreaAndVolumeHaveTwoDecimals) {
  Driven<CInfoTetraedroDlg> dialog(tetrahedron, 1, 1000.0);
  CString area;
  CString volume;
  area.Format(L"%.2lf", tetrahedron.Area(1000.0));
  volume.Format(L"%.2lf", tetrahedron.Volumen(1000.0));
  dialog.steps = {[&](auto& d) {
    EXPECT_EQ(d.Shown(18089), area);
    EXPECT_EQ(d.Shown(20257), volume);
  }};
  dialog.DoModal();
  EXPECT_EQ(dialog.area, area);
  EXPECT_EQ(area.Right(3)[0], L'.');
}

TEST_F(TetrahedronDialog, TheHeightsAreHiddenInTheTemplateAndSeenInTheDialog) {
  Driven<CDialog> plain(CInfoTetraedroDlg::kPlantilla);
  plain.steps = {[](auto& d) {
    for (const int id : CInfoTetraedroDlg::kZ) EXPECT_FALSE(d.GetDlgItem(id)->IsWindowVisible()) << id;
  }};
  plain.DoModal();
  Driven<CInfoTetraedroDlg> dialog(tetrahedron, 1, 1000.0);
  dialog.steps = {[](auto& d) {
    d.ShowWindow();  // a system may show a dialog only once it has nothing else to do
    for (const int id : CInfoTetraedroDlg::kZ) EXPECT_TRUE(d.GetDlgItem(id)->IsWindowVisible()) << id;
  }};
  dialog.DoModal();
}

TEST_F(TetrahedronDialog, OkReadsTheBoxesBackAndLeavesTheTetrahedronAlone) {
  Driven<CInfoTetraedroDlg> dialog(tetrahedron, 1, 1000.0);
  dialog.steps = {[](auto& d) { d.Type(14108, L"123.5"); }, [](auto& d) { d.Press(orden::kAcepta); }};
  EXPECT_EQ(dialog.DoModal(), std::intptr_t{orden::kAcepta});
  EXPECT_EQ(dialog.x[0], 123.5);
  EXPECT_EQ(dialog.z[3], 11.5);
  EXPECT_EQ(points[0].x, 1000);
}

TEST_F(TetrahedronDialog, CoordinatesSurviveTheBoxesToTheLastUnit) {
  points[0].x = 2147483647;
  points[0].y = -2147483647;
  Driven<CInfoTetraedroDlg> dialog(tetrahedron, 1, 1000.0);
  dialog.steps = {[](auto& d) { d.Press(orden::kAcepta); }};
  EXPECT_EQ(dialog.DoModal(), std::intptr_t{orden::kAcepta});
  EXPECT_EQ(dialog.x[0], 2147483.647);
  EXPECT_EQ(dialog.y[0], -2147483.647);
}

TEST_F(TetrahedronDialog, IsGivenTheModulesIcon) {
  HICON const icon = CargaIcono(AfxFindResourceHandle(104, recurso::kIcono), 104);
  ASSERT_NE(icon, nullptr);
  Driven<CInfoTetraedroDlg> dialog(tetrahedron, 1, 1000.0);
  dialog.steps = {
      [&](auto& d) { EXPECT_EQ(d.SendMessageW(mensaje::kPonIcono, 0, 0), reinterpret_cast<std::intptr_t>(icon)); }};
  dialog.DoModal();
}

TEST_F(TetrahedronDialog, HasInformationOfItsOwn) {
  const CInfoTetraedroDlg dialog(tetrahedron, 1, 1000.0);
  EXPECT_STREQ(dialog.GetRuntimeClass()->m_lpszClassName, "CInfoTetraedroDlg");
  EXPECT_TRUE(dialog.IsKindOf(CWnd::GetThisClass()));
}

}  // namespace
