#pragma once

#include <cstdint>

#include "platform/CString.h"
#include "platform/CWinThread.h"

#if defined(_WIN32)  // macros of <windows.h>, where it came before: they would rename what is declared here
#undef GetProfileString
#undef GetProfileInt
#undef WriteProfileString
#endif

/// The application object: what the library asks of the program around it, and what that program has settled for it.
///
/// The last one constructed is the current one; destroying it brings back the one that it replaced, in whatever order
/// they go. Programs construct it before their first run and destroy it after the last: while runs are on, their
/// threads read it without a lock.
class URDIMBRE_API CWinApp : public CWinThread {
 public:
  explicit CWinApp(CString const& nombre = L"urdimbre");
  CWinApp(CWinApp const&) = delete;
  CWinApp& operator=(CWinApp const&) = delete;
  ~CWinApp() override;

  /// Returns true.
  bool InitInstance() override;

  /// Shows a text and returns the answer. This one drops the text and answers 1 (accepted); programs override it.
  virtual int DoMessageBox(wchar_t const* texto, unsigned tipo, unsigned id);

  /// Shows the program's help: at a place with the number `dato` for the command 15. This one opens the file
  /// m_pszHelpFilePath, and answers false where that is empty or the system has nothing that shows such files.
  virtual bool HtmlHelp(std::uintptr_t dato, unsigned orden = 0x000F);

  /// Text of a message. This one asks the application that it replaced; empty when there is none.
  [[nodiscard]] virtual CString TextoMensaje(unsigned id) const;

  /// The profile: values kept from one use of the program to the next, by section and key, both without regard to case.
  /// It is the file FicheroPerfil(). Reading gives the default for what is absent or cannot be read, and GetProfileInt
  /// for an empty value too; writing answers false when the disk refuses. A null value erases the key, a null key the
  /// whole section. Safe from several threads; each call reads or rewrites the whole file.
  [[nodiscard]] CString GetProfileString(wchar_t const* seccion, wchar_t const* clave,
                                         wchar_t const* defecto = L"") const;
  [[nodiscard]] int GetProfileInt(wchar_t const* seccion, wchar_t const* clave, int defecto) const;
  bool WriteProfileString(wchar_t const* seccion, wchar_t const* clave, wchar_t const* valor);
  bool WriteProfileInt(wchar_t const* seccion, wchar_t const* clave, int valor);

  /// Names the folder of the profile, usually the maker. Without one the profile stands in the user's settings folder.
  void SetRegistryKey(CString const& clave) { clave_ = clave; }

  /// KEY/NAME.ini in the user's settings folder ($XDG_CONFIG_HOME, or else ~/.config; %APPDATA% on Windows); empty
  /// when there is no such folder.
  [[nodiscard]] CString FicheroPerfil() const;

  /// The folder for temporary files; empty, as at first, for the system's. An application that has none set gives that
  /// of the one it replaced.
  void PonCarpetaTemporal(CString const& carpeta) { carpetaTemporal_ = carpeta; }
  [[nodiscard]] CString CarpetaTemporal() const;

  /// How many processors runs may take: 0, as at first, for all. More than the machine has is accepted. An application
  /// that has none set gives that of the one it replaced.
  void PonProcesadores(unsigned cuantos) { procesadores_ = cuantos; }
  [[nodiscard]] unsigned Procesadores() const;

  CString m_pszAppName;       ///< Name of the program, and of its profile.
  CString m_pszHelpFilePath;  ///< The help file (.chm); empty, as at first, for none.

 private:
  CWinApp* anterior_;
  CString clave_;
  CString carpetaTemporal_;
  unsigned procesadores_ = 0;
};

/// What the module knows of the program it is in.
struct AFX_MODULE_STATE {
  CWinApp* m_pCurrentWinApp = nullptr;  ///< Null when no application object exists.
};

/// Never null.
[[nodiscard]] URDIMBRE_API AFX_MODULE_STATE* AfxGetModuleState();

/// The current application, or null.
[[nodiscard]] inline CWinApp* AfxGetApp() { return AfxGetModuleState()->m_pCurrentWinApp; }

/// Shows a text through the current application and returns its answer; 0 when there is no application.
URDIMBRE_API int AfxMessageBox(wchar_t const* texto, unsigned tipo = 0, unsigned id = 0);
