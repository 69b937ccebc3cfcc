#include "platform/CDialog.h"

#include "platform/Recursos.h"
#include "platform/Ventanas.h"

CDialog::~CDialog() = default;

CRuntimeClass const* CDialog::GetThisClass() {
  static const CRuntimeClass clase{"CDialog", CWnd::GetThisClass()};
  return &clase;
}

CRuntimeClass const* CDialog::GetRuntimeClass() const { return GetThisClass(); }

AFX_MSGMAP const* CDialog::GetThisMessageMap() {
  static constexpr AFX_MSGMAP_ENTRY entradas[] = {
      mapa::Orden<CDialog, &CDialog::OnOK>(orden::kAcepta),
      mapa::Orden<CDialog, &CDialog::OnCancel>(orden::kCancela),
  };
  static const AFX_MSGMAP mapa{CWnd::GetThisMessageMap(), entradas};
  return &mapa;
}

AFX_MSGMAP const* CDialog::GetMessageMap() const { return GetThisMessageMap(); }

std::intptr_t CDialog::DoModal() {
  HINSTANCE const modulo = AfxFindResourceHandle(plantilla_, recurso::kDialogo);
  if (modulo == nullptr || m_hWnd != nullptr) {  // nobody has the template; or the dialog is on the screen
    return -1;
  }
  const std::intptr_t respuesta =
      sistema::CorreDialogo(*this, modulo, plantilla_, padre_ == nullptr ? nullptr : padre_->m_hWnd);
  OlvidaVentana();
  return respuesta;
}

void CDialog::EndDialog(std::intptr_t respuesta) { sistema::AcabaDialogo(m_hWnd, respuesta); }

std::optional<std::intptr_t> CDialog::WindowProc(CMensaje const& m) {
  return m.numero == mensaje::kIniciaDialogo ? std::intptr_t{OnInitDialog()} : CWnd::WindowProc(m);
}

bool CDialog::OnInitDialog() {
  UpdateData(false);
  return true;
}

void CDialog::OnOK() {
  if (UpdateData(true)) {
    EndDialog(orden::kAcepta);
  }
}

void CDialog::OnCancel() { EndDialog(orden::kCancela); }
