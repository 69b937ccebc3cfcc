#include "platform/CDataExchange.h"

#include <charconv>
#include <string>
#include <system_error>

#include "platform/CWinApp.h"
#include "platform/Ventanas.h"

namespace {

constexpr unsigned kExclamacion = 0x30;  // a box with a warning sign, as the window system numbers them

/// The number that a whole text says, apart from blanks around it.
template <class T>
bool Convierte(CString const& texto, T& valor) {
  const std::string todo = texto.Utf8();
  constexpr char const* kBlancos = " \t";
  const std::size_t desde = todo.find_first_not_of(kBlancos);
  if (desde == std::string::npos) {
    return false;
  }
  char const* principio = todo.data() + desde;
  char const* const final = todo.data() + todo.find_last_not_of(kBlancos) + 1;
  if (*principio == '+' && final - principio > 1 && principio[1] != '-') {
    ++principio;
  }
  T leido{};
  const auto [hasta, error] = std::from_chars(principio, final, leido);
  if (error != std::errc{} || hasta != final) {
    return false;
  }
  valor = leido;
  return true;
}

template <class T>
void Recoge(CDataExchange& intercambio, CWnd const& control, T& valor, wchar_t const* queja) {
  if (!Convierte(control.GetWindowTextW(), valor)) {
    AfxMessageBox(queja, kExclamacion);
    intercambio.Fail();
  }
}

}  // namespace

CWnd* CDataExchange::PrepareCtrl(int id) {
  if (fallo_) {
    return nullptr;
  }
  ultimo_ = m_pDlgWnd->GetDlgItem(id);
  return ultimo_;
}

void CDataExchange::Fail() {
  fallo_ = true;
  if (ultimo_ != nullptr) {
    ultimo_->SetFocus();
  }
}

void DDX_Text(CDataExchange* pDX, int id, CString& valor) {
  CWnd* const control = pDX->PrepareCtrl(id);
  if (control == nullptr) {
    return;
  }
  if (pDX->m_bSaveAndValidate) {
    valor = control->GetWindowTextW();
  } else {
    control->SetWindowTextW(valor);
  }
}

void DDX_Text(CDataExchange* pDX, int id, double& valor) {
  CWnd* const control = pDX->PrepareCtrl(id);
  if (control == nullptr) {
    return;
  }
  if (pDX->m_bSaveAndValidate) {
    Recoge(*pDX, *control, valor, L"Please enter a number.");
    return;
  }
  CString texto;
  texto.Format(L"%.15g", valor);  // every digit that any double of so many has kept
  control->SetWindowTextW(texto);
}

void DDX_Text(CDataExchange* pDX, int id, unsigned& valor) {
  CWnd* const control = pDX->PrepareCtrl(id);
  if (control == nullptr) {
    return;
  }
  if (pDX->m_bSaveAndValidate) {
    Recoge(*pDX, *control, valor, L"Please enter a positive integer.");
    return;
  }
  CString texto;
  texto.Format(L"%u", valor);
  control->SetWindowTextW(texto);
}

void DDX_Check(CDataExchange* pDX, int id, int& valor) {
  CWnd* const control = pDX->PrepareCtrl(id);
  if (control == nullptr) {
    return;
  }
  if (pDX->m_bSaveAndValidate) {
    valor = sistema::LeeMarca(control->m_hWnd);
  } else {
    sistema::PonMarca(control->m_hWnd, valor < 0 || valor > 2 ? 0 : valor);
  }
}
