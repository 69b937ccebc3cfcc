#include "shell/CInfoTetraedroDlg.h"

#include "platform/CDataExchange.h"
#include "shell/IconoDialogo.h"
#include "tetrahedral/CTetraedro.h"

namespace Meseta47 {

CInfoTetraedroDlg::CInfoTetraedroDlg(CTetraedro& elTetraedro, unsigned elIdentificador, double laEscala, CWnd* padre)
    : CDialog(kPlantilla, padre), tetraedro(&elTetraedro), escala(laEscala), identificador(elIdentificador) {
  for (unsigned i = 0; i < 4; ++i) {
    CCoor3D<int> const& vertice = *elTetraedro.Puntos()[i];
    x[i] = vertice.x / escala;
    y[i] = vertice.y / escala;
    z[i] = vertice.z / escala;
  }
}

CInfoTetraedroDlg::~CInfoTetraedroDlg() = default;

CRuntimeClass const* CInfoTetraedroDlg::GetThisClass() {
  static const CRuntimeClass clase{"CInfoTetraedroDlg", CDialog::GetThisClass()};
  return &clase;
}

CRuntimeClass const* CInfoTetraedroDlg::GetRuntimeClass() const { return GetThisClass(); }

AFX_MSGMAP const* CInfoTetraedroDlg::GetThisMessageMap() {
  static const AFX_MSGMAP mapa{CDialog::GetThisMessageMap(), {}};  // what its base answers is all that it needs
  return &mapa;
}

AFX_MSGMAP const* CInfoTetraedroDlg::GetMessageMap() const { return GetThisMessageMap(); }

void CInfoTetraedroDlg::DoDataExchange(CDataExchange* pDX) {
  CDialog::DoDataExchange(pDX);
  for (unsigned i = 0; i < 4; ++i) {
    DDX_Text(pDX, kX[i], x[i]);
    DDX_Text(pDX, kY[i], y[i]);
    DDX_Text(pDX, kZ[i], z[i]);
  }
  DDX_Text(pDX, kIdentificador, identificador);
  DDX_Text(pDX, kArea, area);
  DDX_Text(pDX, kVolumen, volumen);
}

bool CInfoTetraedroDlg::OnInitDialog() {
  CDialog::OnInitDialog();
  CenterWindow();
  PonIconoDialogo(*this, kIcono);
  area.Format(L"%.2lf", tetraedro->Area(escala));
  volumen.Format(L"%.2lf", tetraedro->Volumen(escala));
  for (const int id : kZ) {  // hidden in templates that plan triangles are shown with as well
    if (CWnd* const altura = GetDlgItem(id)) altura->ShowWindow();
  }
  UpdateData(false);
  return true;
}

}  // namespace Meseta47
