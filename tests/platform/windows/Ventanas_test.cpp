// What only real windows show: where they stand.
#include <gtest/gtest.h>
#include <windows.h>

#include "support/DrivenDialog.h"

namespace {

constexpr unsigned kTemplate = 12103;

RECT PlaceOf(HWND window) {
  RECT place{};
  ::GetWindowRect(window, &place);
  return place;
}

RECT Screen() {
  RECT place{};
  ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &place, 0);
  return place;
}

void ExpectInTheMiddle(RECT const& inner, RECT const& outer) {
  EXPECT_NEAR(inner.left + inner.right, outer.left + outer.right, 2);
  EXPECT_NEAR(inner.top + inner.bottom, outer.top + outer.bottom, 2);
}

TEST(CenterWindow, MovesADialogToTheMiddleOfTheScreen) {
  Driven<CDialog> dialog(kTemplate);
  dialog.steps = {[](auto& d) {
    ::SetWindowPos(d.m_hWnd, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    d.CenterWindow();
    ExpectInTheMiddle(PlaceOf(d.m_hWnd), Screen());
  }};
  EXPECT_EQ(dialog.DoModal(), std::intptr_t{orden::kCancela});
}

TEST(CenterWindow, MovesADialogToTheMiddleOfItsParent) {
  Driven<CDialog> parent(20117);
  parent.steps = {[](auto& p) {
    ::SetWindowPos(p.m_hWnd, nullptr, 40, 30, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    Driven<CDialog> child(kTemplate, &p);
    child.steps = {[&](auto& c) {
      c.CenterWindow();
      ExpectInTheMiddle(PlaceOf(c.m_hWnd), PlaceOf(p.m_hWnd));
    }};
    EXPECT_EQ(child.DoModal(), std::intptr_t{orden::kCancela});
  }};
  EXPECT_EQ(parent.DoModal(), std::intptr_t{orden::kCancela});
}

}  // namespace
