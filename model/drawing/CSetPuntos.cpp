#include "model/drawing/CSetPuntos.h"

#include <algorithm>
#include <numeric>

#include "model/storage/Binario.h"

namespace Meseta47 {

namespace {

/// Survey data of an entity of either form; none for what is no set of points.
template <class T>
std::vector<tipoAero3> InfosDe(CEntidadDigi<T> const& e) {
  std::vector<tipoAero3> infos;
  auto const* set = dynamic_cast<CSetPuntos<T> const*>(&e);
  if (set == nullptr || !set->TieneInfos()) return infos;
  infos.reserve(static_cast<std::size_t>(set->NPuntos()));
  for (int i = 0; i < set->NPuntos(); ++i) infos.push_back(set->Info(static_cast<unsigned>(i)));
  return infos;
}

}  // namespace

template <class T>
CSetPuntos<T>::CSetPuntos(CSetPuntos const& o) : CLinea<T>(o), infos(o.infos) {
  this->tipo = ENTIDAD_SETPUNTOS;
}

template <class T>
CSetPuntos<T>::CSetPuntos(CSetPuntos&& o) noexcept : CLinea<T>(std::move(o)), infos(std::move(o.infos)) {
  this->tipo = ENTIDAD_SETPUNTOS;
  o.infos.clear();  // NOLINT(bugprone-use-after-move): the line took what is the line's
}

template <class T>
void CSetPuntos<T>::Inserta(CCoor3D<T> const& p, tipoAero3 const& dato) {
  if (infos.empty() && dato != tipoAero3()) infos.resize(this->puntos.size());
  const bool conInfos = !infos.empty() || dato != tipoAero3();
  const tipoAero3 suyo = dato;  // which may be one of this very set
  if (conInfos && infos.size() == infos.capacity()) infos.reserve(2 * infos.size() + 1);  // before the point is in
  CLinea<T>::operator<<(p);
  if (conInfos) infos.push_back(suyo);
}

template <class T>
CSetPuntos<T>& CSetPuntos<T>::operator<<(CCoor3D<T> const& p) {
  Inserta(p, tipoAero3());
  return *this;
}

template <class T>
bool CSetPuntos<T>::Asigna(std::vector<CCoor3D<T>>&& nuevos, std::vector<tipoAero3>&& datos) {
  if (!datos.empty() && datos.size() != nuevos.size()) return false;
  CLinea<T>::Asigna(std::move(nuevos));
  infos = std::move(datos);
  return true;
}

template <class T>
void CSetPuntos<T>::Asigna(CEntidadDigi<T> const& o) {
  std::vector<tipoAero3> nuevas = InfosDe(o);
  CLinea<T>::Asigna(o);
  infos = std::move(nuevas);
}

template <class T>
void CSetPuntos<T>::Asigna(CEntidadDigi<OtraForma<T>> const& o) {
  CLinea<T>::Asigna(o);
  infos = InfosDe(o);
}

template <class T>
void CSetPuntos<T>::swap(CEntidadDigi<OtraForma<T>>& o) {
  CSetPuntos<OtraForma<T>> copia;
  copia.Asigna(*this);
  Asigna(o);
  o.Asigna(copia);
}

template <class T>
void CSetPuntos<T>::swap(CEntidadDigi<T>& o) {
  CSetPuntos copia;
  copia.Asigna(o);
  o.Asigna(*this);
  Asigna(copia);
}

template <class T>
void CSetPuntos<T>::swap(std::vector<CCoor3D<T>>& otros) {
  this->puntos.swap(otros);
  infos.clear();
  this->CalculaMaximas();
}

template <class T>
void CSetPuntos<T>::Clear() {
  CLinea<T>::Clear();
  std::vector<tipoAero3>().swap(infos);
}

template <class T>
void CSetPuntos<T>::OnPaint(ILienzo& lienzo, CTransformacion const& vista) const {
  if (this->borrado) return;
  for (CCoor3D<T> const& p : this->puntos) lienzo.Punto(vista.Aplica(CCoor3D<double>(p)));
}

template <class T>
void CSetPuntos<T>::Voltea() {
  CLinea<T>::Voltea();
  std::reverse(infos.begin(), infos.end());
}

template <class T>
int CSetPuntos<T>::BorraPunto(int primero, int cuantos) {
  const int van = CLinea<T>::BorraPunto(primero, cuantos);
  if (van > 0 && !infos.empty()) infos.erase(infos.begin() + primero, infos.begin() + primero + van);
  return van;
}

template <class T>
int CSetPuntos<T>::Filtra(std::vector<bool> const& quedan) {
  std::size_t hay = 0;
  for (std::size_t i = 0; i < infos.size(); ++i) {
    if (quedan[i]) infos[hay++] = infos[i];
  }
  infos.resize(hay);
  return CLinea<T>::Filtra(quedan);
}

template <class T>
int CSetPuntos<T>::BorraPuntosDobles(int espacio) {
  std::vector<CCoor3D<T>> const& p = this->puntos;
  const auto antes = [&](std::uint32_t a, std::uint32_t b) {
    if (p[a].x != p[b].x) return p[a].x < p[b].x;
    if (p[a].y != p[b].y) return p[a].y < p[b].y;
    return espacio != 0 && p[a].z < p[b].z;
  };
  std::vector<std::uint32_t> orden(p.size());
  std::iota(orden.begin(), orden.end(), 0u);
  std::stable_sort(orden.begin(), orden.end(), antes);
  std::vector<bool> quedan(p.size(), true);
  for (std::size_t i = 1; i < orden.size(); ++i) quedan[orden[i]] = antes(orden[i - 1], orden[i]);
  return Filtra(quedan);
}

template <class T>
bool CSetPuntos<T>::WriteDigi(CFile* fichero, CTipoFichero tipoFichero) const {
  return CLinea<T>::WriteDigi(fichero, tipoFichero) && Escribe(*fichero, static_cast<std::uint32_t>(infos.size())) &&
         fichero->Write(infos.data(), infos.size() * sizeof(tipoAero3));
}

template <class T>
bool CSetPuntos<T>::ReadDigi(CFile* fichero, double factor, unsigned short version, CTipoFichero) {
  std::vector<CCoor3D<T>> leidos;
  std::uint32_t cuantos = 0;
  std::vector<tipoAero3> datos;
  if (!CLinea<T>::LeePuntos(*fichero, factor, version, leidos) || !Lee(*fichero, cuantos)) return false;
  if (cuantos != 0 && cuantos != leidos.size()) return false;
  return LeeVector(*fichero, cuantos, datos) && Asigna(std::move(leidos), std::move(datos));
}

template class URDIMBRE_API_INSTANCIA CSetPuntos<int>;
template class URDIMBRE_API_INSTANCIA CSetPuntos<double>;

}  // namespace Meseta47
