#pragma once

#include "platform/CWinApp.h"
#include "shell/CTextosMensajes.h"

/// The module's own application object: current as long as the program around the library constructs none. It
/// implements no progress interface, so that runs go without one until a program brings its own.
class URDIMBRE_API CUrdimbreApp : public CWinApp {
 public:
  CUrdimbreApp() : CWinApp(L"urdimbre") {}

  /// True.
  bool InitInstance() override { return CWinApp::InitInstance(); }
  /// From the module's table. Programs that have a table of their own are asked first.
  [[nodiscard]] CString TextoMensaje(unsigned id) const override { return textos.Texto(id); }

  Meseta47::CTextosMensajes textos;  ///< a host replaces here what it wants said otherwise
};

/// The one object of the class, constructed when the library is loaded.
[[nodiscard]] URDIMBRE_API CUrdimbreApp& UrdimbreApp();
