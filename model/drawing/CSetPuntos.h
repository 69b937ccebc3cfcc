#pragma once

#include <cstddef>
#include <vector>

#include "model/drawing/CLinea.h"
#include "model/drawing/tipoAero3.h"

namespace Meseta47 {

/// A set of points with nothing between them, such as a lidar cloud. Survey data stand beside the coordinates, and cost
/// nothing while no point has any.
template <class T>
class CSetPuntos : public CLinea<T> {
 public:
  CSetPuntos() : CSetPuntos(CString()) {}
  explicit CSetPuntos(CString const& elCodigo) : CLinea<T>(ENTIDAD_SETPUNTOS, elCodigo) {}
  CSetPuntos(CSetPuntos const& o);
  CSetPuntos(CSetPuntos&& o) noexcept;
  CSetPuntos& operator=(CSetPuntos const&) = default;
  CSetPuntos& operator=(CSetPuntos&&) noexcept = default;
  ~CSetPuntos() override = default;

  /// The entity as a set of points; null when it is of another kind.
  [[nodiscard]] static CSetPuntos const* De(CLinea<T> const& e) {
    return e.EsSetPuntos() ? static_cast<CSetPuntos const*>(&e) : nullptr;
  }
  [[nodiscard]] static CSetPuntos* De(CLinea<T>& e) { return e.EsSetPuntos() ? static_cast<CSetPuntos*>(&e) : nullptr; }

  /// Appends a point with its survey data. O(1) in the mean.
  void Inserta(CCoor3D<T> const& p, tipoAero3 const& dato);
  /// Survey data of a point; a zero record when none were given.
  [[nodiscard]] tipoAero3 const& Info(unsigned int i) const { return i < infos.size() ? infos[i] : kSinInfo; }
  [[nodiscard]] bool TieneInfos() const { return !infos.empty(); }

  /// Takes over points and survey data without a copy. The data are as many as the points, or none; else false, with
  /// nothing changed.
  bool Asigna(std::vector<CCoor3D<T>>&& nuevos, std::vector<tipoAero3>&& datos);

  using CLinea<T>::ModificaPunto;
  bool ModificaPunto(int i, CCoor3D<T> const& p, bool caja) {
    return ModificaPunto(static_cast<unsigned int>(i), p, caja);
  }

  /// Exchanges the points with a vector. The survey data, which belong to the old ones, are dropped.
  void swap(std::vector<CCoor3D<T>>& otros);

  void Clear() override;
  bool ReadDigi(CFile* fichero, double factor, unsigned short version, CTipoFichero tipo) override;
  void OnPaint(ILienzo& lienzo, CTransformacion const& vista) const override;
  using CLinea<T>::Asigna;
  void Asigna(CEntidadDigi<T> const& o) override;
  void Asigna(CEntidadDigi<OtraForma<T>> const& o) override;
  void swap(CEntidadDigi<OtraForma<T>>& o) override;
  void swap(CEntidadDigi<T>& o) override;
  CSetPuntos& operator<<(CCoor3D<T> const& p) override;
  int BorraPunto(int primero, int cuantos) override;
  void Voltea() override;
  int BorraPuntosDobles(int espacio) override;
  int Filtra(std::vector<bool> const& quedan) override;

 protected:
  bool WriteDigi(CFile* fichero, CTipoFichero tipo) const override;

 private:
  static constexpr tipoAero3 kSinInfo{};

  std::vector<tipoAero3> infos;  ///< as many as points, or none
};

URDIMBRE_INSTANCIA_DE(CSetPuntos<int>);
URDIMBRE_INSTANCIA_DE(CSetPuntos<double>);

}  // namespace Meseta47
