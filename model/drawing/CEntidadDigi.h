#pragma once

#include "model/drawing/CCabDigi.h"

namespace Meseta47 {

/// An entity of a drawing as a list of points. A line, or a class derived from it, stores them.
template <class T>
class CEntidadDigi : public CCabDigi<T> {
 public:
  using CCabDigi<T>::CCabDigi;
  CEntidadDigi() = default;
  CEntidadDigi(CEntidadDigi const&) = default;
  CEntidadDigi(CEntidadDigi&&) = default;
  CEntidadDigi& operator=(CEntidadDigi const&) = default;
  CEntidadDigi& operator=(CEntidadDigi&&) = default;
  ~CEntidadDigi() override = default;

  /// The point of an index from 0 to NPuntos() - 1, without a check.
  [[nodiscard]] virtual CCoor3D<T> const& Punto(int i) const = 0;
  [[nodiscard]] virtual int NPuntos() const = 0;

  /// Replaces a point, number, class and marks included. The box grows with the new place; with `caja` it also shrinks
  /// from the old one, which costs O(points) when the old place lay on its limits. False for an index out of range.
  virtual bool ModificaPunto(unsigned int i, CCoor3D<T> const& p, bool caja) = 0;
  /// Sets the class of a point. False for an index out of range or a class beyond 0 to 255.
  virtual bool ModificaTipoPunto(unsigned int i, short int clase) = 0;

  using CCabDigi<T>::operator==;
  using CCabDigi<T>::operator!=;
  /// Same kind and code, and the same positions in the same order.
  [[nodiscard]] virtual bool operator==(CEntidadDigi const& o) const = 0;
  [[nodiscard]] virtual bool operator!=(CEntidadDigi const& o) const { return !(*this == o); }

  /// Takes code, mark and points of another entity; the kind stays.
  virtual void Asigna(CEntidadDigi<T> const& o) = 0;
  virtual void Asigna(CEntidadDigi<OtraForma<T>> const& o) = 0;

  /// Order by code, then by box.
  [[nodiscard]] virtual bool operator<(CEntidadDigi const& o) const = 0;

  /// Exchanges code, mark and points, which change their number form where the two have different ones.
  virtual void swap(CEntidadDigi<OtraForma<T>>& o) = 0;
  virtual void swap(CEntidadDigi<T>& o) = 0;

  /// Whether what the entity draws passes within a distance of a place in plan.
  [[nodiscard]] virtual bool Selecciona(CCoor3D<T> const& p, double distancia) const = 0;
  /// Index of the point nearest to a place in plan, no farther than a distance; -1 when there is none. O(points).
  [[nodiscard]] virtual int SeleccionaPunto(CCoor3D<T> const& p, double distancia) const = 0;

  /// Appends a point.
  virtual CEntidadDigi& operator<<(CCoor3D<T> const& p) = 0;
  /// Takes `cuantos` points out, from the index `primero` on; fewer when the entity ends before. Returns how many went.
  virtual int BorraPunto(int primero, int cuantos) = 0;
  /// Turns the order of the points round.
  virtual void Voltea() = 0;

  /// Appends the points of an arc of ellipse: semi-axes `a` and `b`, the first turned by `giro`, from one parameter
  /// angle to another (radians, the second greater for a counter-clockwise arc). The chords stay within `flecha` of the
  /// curve. The height is that of the centre. False, with nothing appended, when a length is not positive.
  virtual bool ArcoElipse(CCoor3D<T> const& centro, double a, double b, double giro, double desde, double hasta,
                          double flecha) = 0;
  /// Appends the arc of circle from the first point to the third through the second, with heights in proportion to the
  /// length along each of its two parts; a straight line when the three are collinear.
  virtual bool Arco(CCoor3D<T> const& p1, CCoor3D<T> const& p2, CCoor3D<T> const& p3, double flecha) = 0;
  /// Appends an arc of circle by centre, radius and angles, as ArcoElipse does.
  virtual bool Arco(CCoor3D<T> const& centro, double radio, double desde, double hasta, double flecha) = 0;

  /// Takes out repeated points, of which the first stays: in plan for `espacio` 0, in space for 1. A line repeats a
  /// point only next to it, a set anywhere. Returns how many went. O(n), O(n log n) for a set.
  virtual int BorraPuntosDobles(int espacio) = 0;
};

}  // namespace Meseta47
