#pragma once

#include "platform/CDialog.h"
#include "platform/CString.h"

namespace Meseta47 {

/// Asks for a distance and a switch, which go into the caller's variables when the user accepts. A modal dialog of the
/// thread that makes it.
class URDIMBRE_API CMostrarTriangulosDlg : public CDialog {
 public:
  static constexpr unsigned kPlantilla = 12103;
  static constexpr unsigned kIcono = 104;
  static constexpr int kInterruptor = 1004;
  static constexpr int kDistancia = 18298;
  static constexpr unsigned long kContextoAyuda = 143175;

  /// Both variables outlive the dialog. A distance is shown with three decimals, and what is accepted is the text as it
  /// then stands: with it, 0.0 for an empty one. Cancelled, the distance stays as it was.
  CMostrarTriangulosDlg(double& laDistancia, int& elInterruptor, CWnd* padre = nullptr);
  ~CMostrarTriangulosDlg() override;

  [[nodiscard]] static CRuntimeClass const* GetThisClass();
  [[nodiscard]] CRuntimeClass const* GetRuntimeClass() const override;

  double* distancia;  ///< the caller's
  int* interruptor;   ///< the caller's: 0 off, 1 on
  CString textoDistancia;

 protected:
  [[nodiscard]] static AFX_MSGMAP const* GetThisMessageMap();
  [[nodiscard]] AFX_MSGMAP const* GetMessageMap() const override;
  void DoDataExchange(CDataExchange* pDX) override;
  bool OnInitDialog() override;
  void OnOK() override;
  /// Asks the application for its help on this dialog.
  virtual void OnHelp();
  /// F1: OnHelp(). True.
  bool OnHelpInfo(HELPINFO* informacion);
};

}  // namespace Meseta47
