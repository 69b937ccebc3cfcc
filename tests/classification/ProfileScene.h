#pragma once

#include "platform/CWinApp.h"
#include "platform/Environment.h"
#include "support/ScratchFolder.h"

namespace Meseta47::test {

/// A program whose profile lies in a folder of its own.
struct ProfileScene {
  ScratchFolder folder;
  Environment settings{kSettingsVariable, folder.Path().Utf8()};
  CWinApp app{L"persistence"};

  [[nodiscard]] CString Ini() const { return folder.Path("values.ini"); }
};

}  // namespace Meseta47::test
