#include "platform/CWnd.h"

#include "platform/CDataExchange.h"
#include "platform/Ventanas.h"

CWnd::~CWnd() = default;

CRuntimeClass const* CWnd::GetThisClass() {
  static const CRuntimeClass clase{"CWnd", CCmdTarget::GetThisClass()};
  return &clase;
}

CRuntimeClass const* CWnd::GetRuntimeClass() const { return GetThisClass(); }

CWnd* CWnd::GetDlgItem(int id) {
  if (const auto sabido = controles_.find(id); sabido != controles_.end()) {
    return sabido->second.get();
  }
  HWND const control = sistema::BuscaControl(m_hWnd, id);
  return control == nullptr ? nullptr : controles_.emplace(id, std::make_unique<CWnd>(control)).first->second.get();
}

void CWnd::SetWindowTextW(wchar_t const* texto) { sistema::PonTexto(m_hWnd, texto == nullptr ? L"" : texto); }

CString CWnd::GetWindowTextW() const { return sistema::LeeTexto(m_hWnd); }

bool CWnd::EnableWindow(bool admite) { return sistema::Habilita(m_hWnd, admite); }

bool CWnd::IsWindowEnabled() const { return sistema::EstaHabilitada(m_hWnd); }

bool CWnd::ShowWindow(bool visible) { return sistema::Muestra(m_hWnd, visible); }

bool CWnd::IsWindowVisible() const { return sistema::EsVisible(m_hWnd); }

void CWnd::CenterWindow() { sistema::Centra(m_hWnd); }

void CWnd::SetFocus() { sistema::Enfoca(m_hWnd); }

std::intptr_t CWnd::SendMessageW(unsigned numero, std::uintptr_t primero, std::intptr_t segundo) {
  return sistema::Envia(m_hWnd, {numero, primero, segundo});
}

bool CWnd::PostMessageW(unsigned numero, std::uintptr_t primero, std::intptr_t segundo) {
  return sistema::Encola(m_hWnd, {numero, primero, segundo});
}

bool CWnd::UpdateData(bool recoge) {
  CDataExchange intercambio(this, recoge);
  DoDataExchange(&intercambio);
  return !intercambio.HaFallado();
}

std::optional<std::intptr_t> CWnd::WindowProc(CMensaje const& m) { return Despacha(m); }

void CWnd::DoDataExchange(CDataExchange*) {}

void CWnd::OlvidaVentana() {
  controles_.clear();
  m_hWnd = nullptr;
}
