#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "model/drawing/CEntidadDigi.h"
#include "model/drawing/CInfoClasificacion.h"

namespace Meseta47 {

/// A line: its points follow one another, and the last one repeats the first when it is closed. A point keeps its place
/// in memory until points are added or taken out, so that meshes can hold pointers to it.
template <class T>
class CLinea : public CEntidadDigi<T> {
 public:
  CLinea() : CLinea(CString()) {}
  explicit CLinea(CString const& elCodigo) : CLinea(ENTIDAD_LINEA, elCodigo) {}
  /// A list of points of another kind than a line, such as the place of a text; a set of points is none.
  explicit CLinea(CTipoDat const& dato) : CLinea(dato.GetTipo(), dato.GetCodigo()) { NoEsSet(); }
  CLinea(CLinea const& o);
  CLinea(CLinea&& o) noexcept;
  CLinea& operator=(CLinea const&) = default;
  CLinea& operator=(CLinea&& o) noexcept;
  ~CLinea() override = default;

  [[nodiscard]] CCoor3D<T> const& Punto(int i) const override { return puntos[static_cast<std::size_t>(i)]; }
  [[nodiscard]] int NPuntos() const override { return static_cast<int>(puntos.size()); }
  /// The stored point itself, without a check. Whoever moves it calls CalculaMaximas.
  [[nodiscard]] CCoor3D<T>* PunteroAPunto(int i) { return puntos.data() + i; }
  [[nodiscard]] CCoor3D<T> const* PunteroAPunto(int i) const { return puntos.data() + i; }
  [[nodiscard]] std::vector<CCoor3D<T>> const& Puntos() const { return puntos; }

  /// Room for so many points, so that appending them moves none.
  void Reserva(std::size_t cuantos) { puntos.reserve(cuantos); }
  /// Takes over all the points, without a copy. At most 2^31 - 1 of them.
  void Asigna(std::vector<CCoor3D<T>>&& nuevos);
  /// Sets the class byte of a point to the type given, without a check of the index.
  void SetClasificacion(CInfoClasificacion const& info, int i) {
    puntos[static_cast<std::size_t>(i)].clasificacion = info.GetTipo();
  }
  /// Whether the line ends where it begins, in space, and encloses something: four points or more.
  [[nodiscard]] bool EsCerrada() const { return puntos.size() > 3 && puntos.front() == puntos.back(); }
  /// Twice the signed area in plan, counter-clockwise positive, of the line closed by its last point; 0 for fewer than
  /// three points.
  [[nodiscard]] double DobleArea() const;

  void Clear() override;
  bool Read(CFile* fichero, double factor, CTipoFichero tipo) override;
  bool ReadDigi(CFile* fichero, double factor, unsigned short version, CTipoFichero tipo) override;
  void Mover(int dx, int dy, int dz) override;
  bool Write(CFile* fichero, CDataSemilla const& semilla, int a, CTipoFichero tipo) const override;
  void ZetaCero() override { ZFija(0); }
  void ZFija(int z) override;
  void PonNumerosACero() override;
  void OnPaint(ILienzo& lienzo, CTransformacion const& vista) const override;
  void CalculaMaximas() override;
  [[nodiscard]] bool DentroCursor(CTransformacion const& vista, CMaximas<double> const& cursor) const override;
  [[nodiscard]] bool DentroCursor(CMaximas<double> const& cursor) const override;
  bool Helmert(CMatrizCuadrada const& matriz) override;
  bool Helmert(CTransformacion const& mapa) override;
  bool HelmertInverso(CMatrizCuadrada const& matriz) override;
  bool HelmertInverso(CTransformacion const& mapa) override;
  void Escalar(double fx, double fy, double fz) override;
  bool ModificaPunto(unsigned int i, CCoor3D<T> const& p, bool caja) override;
  bool ModificaTipoPunto(unsigned int i, short int clase) override;
  using CEntidadDigi<T>::operator==;
  using CEntidadDigi<T>::operator!=;
  [[nodiscard]] bool operator==(CEntidadDigi<T> const& o) const override;
  [[nodiscard]] bool operator==(CLinea const& o) const { return *this == static_cast<CEntidadDigi<T> const&>(o); }
  void Asigna(CEntidadDigi<T> const& o) override;
  void Asigna(CEntidadDigi<OtraForma<T>> const& o) override;
  [[nodiscard]] bool operator<(CEntidadDigi<T> const& o) const override;
  void swap(CEntidadDigi<OtraForma<T>>& o) override;
  void swap(CEntidadDigi<T>& o) override;
  [[nodiscard]] bool Selecciona(CCoor3D<T> const& p, double distancia) const override;
  [[nodiscard]] int SeleccionaPunto(CCoor3D<T> const& p, double distancia) const override;
  CLinea& operator<<(CCoor3D<T> const& p) override;
  int BorraPunto(int primero, int cuantos) override;
  void Voltea() override;
  bool ArcoElipse(CCoor3D<T> const& centro, double a, double b, double giro, double desde, double hasta,
                  double flecha) override;
  bool Arco(CCoor3D<T> const& p1, CCoor3D<T> const& p2, CCoor3D<T> const& p3, double flecha) override;
  bool Arco(CCoor3D<T> const& centro, double radio, double desde, double hasta, double flecha) override;
  int BorraPuntosDobles(int espacio) override;
  /// Keeps of the points those whose mark is set; there are as many marks as points. Returns how many went.
  virtual int Filtra(std::vector<bool> const& quedan);

 protected:
  CLinea(CTipoEntidad elTipo, CString const& elCodigo) : CEntidadDigi<T>(elTipo, elCodigo) {}

  /// The points after the head, and what derived kinds keep beside them.
  virtual bool WriteDigi(CFile* fichero, CTipoFichero tipo) const;
  /// Reads what CLinea::WriteDigi wrote. False on a short read or an unknown version.
  static bool LeePuntos(CFile& fichero, double factor, unsigned short version, std::vector<CCoor3D<T>>& leidos);

  std::vector<CCoor3D<T>> puntos;

 private:
  template <class Mapa>
  void Transforma(Mapa const& mapa);
  template <class Mapa>
  [[nodiscard]] bool Toca(Mapa const& mapa, CMaximas<double> const& cursor) const;
  bool Anade(std::vector<CCoor3D<double>> const& nuevos);
  // Sets of points alone carry that kind: a copy of the base of one is a line.
  void NoEsSet() {
    if (this->tipo == ENTIDAD_SETPUNTOS) this->tipo = ENTIDAD_LINEA;
  }
};

URDIMBRE_INSTANCIA_DE(CLinea<int>);
URDIMBRE_INSTANCIA_DE(CLinea<double>);

}  // namespace Meseta47
