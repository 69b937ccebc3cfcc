#include "shell/CMostrarTriangulosDlg.h"

#include "platform/CDataExchange.h"
#include "platform/CWinApp.h"
#include "shell/IconoDialogo.h"

namespace Meseta47 {

CMostrarTriangulosDlg::CMostrarTriangulosDlg(double& laDistancia, int& elInterruptor, CWnd* padre)
    : CDialog(kPlantilla, padre), distancia(&laDistancia), interruptor(&elInterruptor) {}

CMostrarTriangulosDlg::~CMostrarTriangulosDlg() = default;

CRuntimeClass const* CMostrarTriangulosDlg::GetThisClass() {
  static const CRuntimeClass clase{"CMostrarTriangulosDlg", CDialog::GetThisClass()};
  return &clase;
}

CRuntimeClass const* CMostrarTriangulosDlg::GetRuntimeClass() const { return GetThisClass(); }

AFX_MSGMAP const* CMostrarTriangulosDlg::GetThisMessageMap() {
  using Yo = CMostrarTriangulosDlg;
  static constexpr AFX_MSGMAP_ENTRY entradas[] = {
      mapa::Ayuda<Yo, &Yo::OnHelpInfo>(),
      mapa::Orden<Yo, &Yo::OnHelp>(orden::kAyuda),
      mapa::Orden<Yo, &Yo::OnHelp>(orden::kAyudaPrograma),
  };
  static const AFX_MSGMAP mapa{CDialog::GetThisMessageMap(), entradas};
  return &mapa;
}

AFX_MSGMAP const* CMostrarTriangulosDlg::GetMessageMap() const { return GetThisMessageMap(); }

void CMostrarTriangulosDlg::DoDataExchange(CDataExchange* pDX) {
  CDialog::DoDataExchange(pDX);
  DDX_Check(pDX, kInterruptor, *interruptor);
  DDX_Text(pDX, kDistancia, textoDistancia);
}

bool CMostrarTriangulosDlg::OnInitDialog() {
  CDialog::OnInitDialog();
  CenterWindow();
  PonIconoDialogo(*this, kIcono);
  textoDistancia.Format(L"%.3lf", *distancia);
  UpdateData(false);
  return true;
}

void CMostrarTriangulosDlg::OnOK() {
  UpdateData(true);
  *distancia = RealDe(textoDistancia);
  CDialog::OnOK();
}

void CMostrarTriangulosDlg::OnHelp() {
  constexpr unsigned kPorContexto = 15;  // the command of the help system that opens the page with a number
  if (CWinApp* const aplicacion = AfxGetApp()) {
    aplicacion->HtmlHelp(kContextoAyuda, kPorContexto);
  }
}

bool CMostrarTriangulosDlg::OnHelpInfo(HELPINFO*) {
  OnHelp();
  return true;
}

}  // namespace Meseta47
