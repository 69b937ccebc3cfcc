#include "platform/Ventanas.h"

#include "platform/CDialog.h"
#include "platform/windows/Win32.h"

namespace {

CDialog* DialogoDe(HWND ventana) { return reinterpret_cast<CDialog*>(::GetWindowLongPtrW(ventana, DWLP_USER)); }

/// Hands the messages of a dialog to its object, which the first one brings.
INT_PTR CALLBACK Procedimiento(HWND ventana, UINT numero, WPARAM primero, LPARAM segundo) {
  const CMensaje m{numero, primero, segundo};
  if (numero == WM_INITDIALOG) {
    ::SetWindowLongPtrW(ventana, DWLP_USER, segundo);
    DialogoDe(ventana)->m_hWnd = ventana;
    return DialogoDe(ventana)->WindowProc({numero, primero, 0}).value_or(1);
  }
  CDialog* const dialogo = DialogoDe(ventana);
  const auto respuesta = dialogo == nullptr ? std::nullopt : dialogo->WindowProc(m);
  if (!respuesta) {
    return FALSE;
  }
  ::SetWindowLongPtrW(ventana, DWLP_MSGRESULT, *respuesta);
  return TRUE;
}

HINSTANCE EsteModulo() {
  HINSTANCE modulo = nullptr;
  constexpr DWORD kDeDireccion = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  ::GetModuleHandleExW(kDeDireccion, reinterpret_cast<LPCWSTR>(&EsteModulo), &modulo);
  return modulo;
}

LPCWSTR Nombre(unsigned id) { return MAKEINTRESOURCEW(id); }

RECT Area(HWND ventana) {
  RECT area{};
  if (ventana != nullptr) {
    ::GetWindowRect(ventana, &area);
  } else {
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  }
  return area;
}

}  // namespace

namespace sistema {

std::intptr_t CorreDialogo(CDialog& dialogo, HINSTANCE modulo, unsigned plantilla, HWND padre) {
  return ::DialogBoxParamW(modulo, Nombre(plantilla), padre, Procedimiento, reinterpret_cast<LPARAM>(&dialogo));
}

void AcabaDialogo(HWND dialogo, std::intptr_t respuesta) { ::EndDialog(dialogo, respuesta); }

HWND BuscaControl(HWND dialogo, int id) { return dialogo == nullptr ? nullptr : ::GetDlgItem(dialogo, id); }

void PonTexto(HWND ventana, wchar_t const* texto) { ::SetWindowTextW(ventana, texto); }

CString LeeTexto(HWND ventana) {
  std::wstring texto(static_cast<std::size_t>(::GetWindowTextLengthW(ventana)) + 1, L'\0');
  texto.resize(static_cast<std::size_t>(::GetWindowTextW(ventana, texto.data(), static_cast<int>(texto.size()))));
  return texto;
}

void PonMarca(HWND ventana, int estado) { ::SendMessageW(ventana, BM_SETCHECK, static_cast<WPARAM>(estado), 0); }

int LeeMarca(HWND ventana) { return static_cast<int>(::SendMessageW(ventana, BM_GETCHECK, 0, 0)); }

bool Habilita(HWND ventana, bool admite) {
  const bool admitia = EstaHabilitada(ventana);
  ::EnableWindow(ventana, admite ? TRUE : FALSE);
  return admitia;
}

bool EstaHabilitada(HWND ventana) { return ventana != nullptr && ::IsWindowEnabled(ventana) != 0; }

bool Muestra(HWND ventana, bool visible) {
  const bool veia = ventana != nullptr && (::GetWindowLongPtrW(ventana, GWL_STYLE) & WS_VISIBLE) != 0;
  ::ShowWindow(ventana, visible ? SW_SHOW : SW_HIDE);
  return veia;
}

bool EsVisible(HWND ventana) { return ventana != nullptr && ::IsWindowVisible(ventana) != 0; }

void Centra(HWND ventana) {
  if (ventana == nullptr) {
    return;
  }
  const RECT suya = Area(ventana);
  const RECT donde = Area(::GetWindow(ventana, GW_OWNER));
  const LONG x = (donde.left + donde.right - (suya.right - suya.left)) / 2;
  const LONG y = (donde.top + donde.bottom - (suya.bottom - suya.top)) / 2;
  ::SetWindowPos(ventana, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void Enfoca(HWND ventana) {
  if (ventana != nullptr) ::SetFocus(ventana);
}

std::intptr_t Envia(HWND ventana, CMensaje const& m) {
  return ventana == nullptr ? 0 : ::SendMessageW(ventana, m.numero, m.primero, m.segundo);
}

bool Encola(HWND ventana, CMensaje const& m) {
  return ventana != nullptr && ::PostMessageW(ventana, m.numero, m.primero, m.segundo) != 0;
}

std::vector<HINSTANCE> ModulosConRecursos() { return {::GetModuleHandleW(nullptr), EsteModulo()}; }

bool TieneRecurso(HINSTANCE modulo, unsigned id, unsigned tipo) {
  return ::FindResourceW(modulo, Nombre(id), Nombre(tipo)) != nullptr;
}

HICON LeeIcono(HINSTANCE modulo, unsigned id) { return modulo == nullptr ? nullptr : ::LoadIconW(modulo, Nombre(id)); }

// The help viewer is a part of the system that may be missing, so it is looked for when it is wanted.
bool AbreAyuda(CString const& fichero, std::uintptr_t dato, unsigned orden) {
  using Visor = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);
  static const HMODULE modulo = ::LoadLibraryW(L"hhctrl.ocx");
  FARPROC const funcion = modulo == nullptr ? nullptr : ::GetProcAddress(modulo, "HtmlHelpW");
  return funcion != nullptr &&
         reinterpret_cast<Visor>(reinterpret_cast<void*>(funcion))(nullptr, fichero, orden, dato) != nullptr;
}

}  // namespace sistema
