#pragma once

#include "platform/CDialog.h"
#include "platform/CString.h"

namespace Meseta47 {

class CTetraedro;

/// Shows one tetrahedron: its vertices, its number, its area and its volume. A modal dialog of the thread that makes
/// it. Its template has the controls whose numbers stand here; those that it lacks are passed over.
class URDIMBRE_API CInfoTetraedroDlg : public CDialog {
 public:
  static constexpr unsigned kPlantilla = 20117;
  static constexpr unsigned kIcono = 104;
  static constexpr int kX[4] = {14108, 14110, 14112, 14114};
  static constexpr int kY[4] = {14109, 14111, 14113, 14115};
  static constexpr int kZ[4] = {14099, 14100, 14101, 14102};
  static constexpr int kIdentificador = 14116;
  static constexpr int kArea = 18089;
  static constexpr int kVolumen = 20257;

  /// `elTetraedro` has its four points, those of the frame among them like any other, and outlives the dialog; its
  /// coordinates are taken now. `laEscala`: scaled units in a metre.
  CInfoTetraedroDlg(CTetraedro& elTetraedro, unsigned elIdentificador, double laEscala, CWnd* padre = nullptr);
  ~CInfoTetraedroDlg() override;

  [[nodiscard]] static CRuntimeClass const* GetThisClass();
  [[nodiscard]] CRuntimeClass const* GetRuntimeClass() const override;

  double x[4];  ///< of the vertices in their order, in metres, as are y and z
  double y[4];
  double z[4];
  CTetraedro* tetraedro;  ///< not owned
  double escala;
  unsigned identificador;
  CString area;     ///< as CTetraedro::Area gives it, with two decimals; empty until the dialog is shown
  CString volumen;  ///< the same of CTetraedro::Volumen

 protected:
  [[nodiscard]] static AFX_MSGMAP const* GetThisMessageMap();
  [[nodiscard]] AFX_MSGMAP const* GetMessageMap() const override;
  void DoDataExchange(CDataExchange* pDX) override;
  bool OnInitDialog() override;
};

}  // namespace Meseta47
