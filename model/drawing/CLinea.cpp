#include "model/drawing/CLinea.h"

#include <algorithm>
#include <limits>
#include <string>
#include <type_traits>

#include "model/geometry/Arcos.h"
#include "model/geometry/Cercania.h"
#include "model/storage/Binario.h"

namespace Meseta47 {

namespace {

constexpr std::uint16_t kVersion = 1;

/// What follows the coordinates of a point. Numbers belong to a run and are not kept.
struct CAtributos {
  std::uint16_t intensidad;
  std::uint8_t marcas;
  std::uint8_t clasificacion;
};

struct CCabecera {
  std::int16_t tipo;
  std::uint16_t version;
  std::uint16_t borrado;
  std::uint16_t libre;
  std::uint32_t bytesCodigo;
};

template <class T>
CCoor3D<double> Real(CCoor3D<T> const& p) {
  return CCoor3D<double>(p);
}

template <class T>
CCoor3D<T> EnForma(CCoor3D<double> const& p) {
  return CCoor3D<T>(p);
}

CMaximas<double> Corona(CCoor3D<double> const& p, double distancia) {
  CMaximas<double> caja;
  caja.Nuevo(CCoor3D<double>(p.x - distancia, p.y - distancia, 0, 0));
  caja.Nuevo(CCoor3D<double>(p.x + distancia, p.y + distancia, 0, 0));
  return caja;
}

template <class T>
bool SeTocanEnPlano(CMaximas<T> const& a, CMaximas<double> const& b) {
  return a.Minimo.x <= b.Maximo.x && a.Maximo.x >= b.Minimo.x && a.Minimo.y <= b.Maximo.y && a.Maximo.y >= b.Minimo.y;
}

/// Whether a point on the limits of the box may be what holds them there.
template <class T>
bool EnElBorde(CMaximas<T> const& m, CCoor3D<T> const& p) {
  return p.x == m.Minimo.x || p.x == m.Maximo.x || p.y == m.Minimo.y || p.y == m.Maximo.y || p.z == m.Minimo.z ||
         p.z == m.Maximo.z;
}

}  // namespace

// ---- Life ----

template <class T>
CLinea<T>::CLinea(CLinea const& o) : CEntidadDigi<T>(o), puntos(o.puntos) {
  NoEsSet();
}

template <class T>
CLinea<T>::CLinea(CLinea&& o) noexcept : CEntidadDigi<T>(std::move(o)), puntos(std::move(o.puntos)) {
  NoEsSet();
  o.puntos.clear();  // NOLINT(bugprone-use-after-move): the base took what is the base's
  o.maximas.Borra();
}

template <class T>
CLinea<T>& CLinea<T>::operator=(CLinea&& o) noexcept {
  if (this == &o) return *this;
  CEntidadDigi<T>::operator=(std::move(o));
  puntos = std::move(o.puntos);  // NOLINT(bugprone-use-after-move): the base took what is the base's
  o.puntos.clear();
  o.maximas.Borra();
  return *this;
}

template <class T>
void CLinea<T>::Clear() {
  std::vector<CCoor3D<T>>().swap(puntos);  // gives the memory back: a cloud is cleared to make room
  this->maximas.Borra();
}

template <class T>
void CLinea<T>::Asigna(std::vector<CCoor3D<T>>&& nuevos) {
  puntos = std::move(nuevos);
  CalculaMaximas();
}

template <class T>
void CLinea<T>::Asigna(CEntidadDigi<T> const& o) {
  std::vector<CCoor3D<T>> copia;
  copia.reserve(static_cast<std::size_t>(o.NPuntos()));
  for (int i = 0; i < o.NPuntos(); ++i) copia.push_back(o.Punto(i));
  this->codigo = o.GetCodigo();
  this->borrado = o.EsBorrado();
  Asigna(std::move(copia));
}

template <class T>
void CLinea<T>::Asigna(CEntidadDigi<OtraForma<T>> const& o) {
  std::vector<CCoor3D<T>> copia;
  copia.reserve(static_cast<std::size_t>(o.NPuntos()));
  for (int i = 0; i < o.NPuntos(); ++i) copia.push_back(CCoor3D<T>(o.Punto(i)));
  this->codigo = o.GetCodigo();
  this->borrado = o.EsBorrado();
  Asigna(std::move(copia));
}

template <class T>
void CLinea<T>::swap(CEntidadDigi<OtraForma<T>>& o) {
  CLinea<OtraForma<T>> copia;
  copia.Asigna(*this);
  Asigna(o);
  o.Asigna(copia);
}

template <class T>
void CLinea<T>::swap(CEntidadDigi<T>& o) {
  CLinea copia;
  copia.Asigna(o);
  o.Asigna(*this);
  Asigna(copia);
}

// ---- Queries ----

template <class T>
double CLinea<T>::DobleArea() const {
  double suma = 0;
  for (std::size_t i = 2; i < puntos.size(); ++i) {
    // Relative to the first point: the fan of triangles from it.
    const double ax = static_cast<double>(puntos[i - 1].x) - static_cast<double>(puntos[0].x);
    const double ay = static_cast<double>(puntos[i - 1].y) - static_cast<double>(puntos[0].y);
    const double bx = static_cast<double>(puntos[i].x) - static_cast<double>(puntos[0].x);
    const double by = static_cast<double>(puntos[i].y) - static_cast<double>(puntos[0].y);
    suma += ax * by - ay * bx;
  }
  return suma;
}

template <class T>
bool CLinea<T>::operator==(CEntidadDigi<T> const& o) const {
  if (!this->MismoTipo(o) || NPuntos() != o.NPuntos()) return false;
  for (int i = 0; i < o.NPuntos(); ++i) {
    if (Punto(i) != o.Punto(i)) return false;
  }
  return true;
}

template <class T>
bool CLinea<T>::operator<(CEntidadDigi<T> const& o) const {
  if (this->codigo != o.GetCodigo()) return this->codigo < o.GetCodigo();
  return this->maximas < o.maximas;
}

template <class T>
template <class Mapa>
bool CLinea<T>::Toca(Mapa const& mapa, CMaximas<double> const& cursor) const {
  if (cursor.EstanVacias(true) || puntos.empty()) return false;
  CCoor3D<double> anterior = mapa(Real(puntos[0]));
  for (CCoor3D<T> const& punto : puntos) {
    const CCoor3D<double> p = mapa(Real(punto));
    if (SegmentoTocaCaja(this->EsSetPuntos() ? p : anterior, p, cursor)) return true;
    anterior = p;
  }
  return false;
}

template <class T>
bool CLinea<T>::DentroCursor(CTransformacion const& vista, CMaximas<double> const& cursor) const {
  return Toca([&](CCoor3D<double> const& p) { return vista.Aplica(p); }, cursor);
}

template <class T>
bool CLinea<T>::DentroCursor(CMaximas<double> const& cursor) const {
  if (!SeTocanEnPlano(this->maximas, cursor)) return false;
  return Toca([](CCoor3D<double> const& p) { return p; }, cursor);
}

template <class T>
bool CLinea<T>::Selecciona(CCoor3D<T> const& p, double distancia) const {
  const CCoor3D<double> lugar = Real(p);
  if (puntos.empty() || !SeTocanEnPlano(this->maximas, Corona(lugar, distancia))) return false;
  CCoor3D<double> anterior = Real(puntos[0]);
  for (CCoor3D<T> const& punto : puntos) {
    const CCoor3D<double> q = Real(punto);
    if (DistanciaASegmento(lugar, this->EsSetPuntos() ? q : anterior, q) <= distancia) return true;
    anterior = q;
  }
  return false;
}

template <class T>
int CLinea<T>::SeleccionaPunto(CCoor3D<T> const& p, double distancia) const {
  int mejor = -1;
  double menor2 = distancia * distancia;
  for (int i = 0; i < NPuntos(); ++i) {
    const double d2 = Punto(i).Distancia2(p, 0);
    if (d2 < menor2 || (d2 == menor2 && mejor < 0)) {
      menor2 = d2;
      mejor = i;
    }
  }
  return mejor;
}

template <class T>
void CLinea<T>::OnPaint(ILienzo& lienzo, CTransformacion const& vista) const {
  if (this->borrado || puntos.empty()) return;
  std::vector<CCoor3D<double>> vistos;
  vistos.reserve(puntos.size());
  for (CCoor3D<T> const& p : puntos) vistos.push_back(vista.Aplica(Real(p)));
  lienzo.Linea(vistos);
}

// ---- Changes ----

template <class T>
void CLinea<T>::CalculaMaximas() {
  CMaximas<T> caja;  // one of its own, which the loop keeps in registers
  for (CCoor3D<T> const& p : puntos) caja.Nuevo(p);
  this->maximas = caja;
}

template <class T>
void CLinea<T>::ZFija(int z) {
  for (CCoor3D<T>& p : puntos) p.z = static_cast<T>(z);
  CalculaMaximas();
}

template <class T>
void CLinea<T>::PonNumerosACero() {
  for (CCoor3D<T>& p : puntos) p.num = 0;
}

template <class T>
template <class Mapa>
void CLinea<T>::Transforma(Mapa const& mapa) {
  for (CCoor3D<T>& p : puntos) {
    const CCoor3D<double> q = mapa(Real(p));
    p.Actualiza(q.x, q.y, q.z);
  }
  CalculaMaximas();
}

template <class T>
void CLinea<T>::Mover(int dx, int dy, int dz) {
  Transforma([=](CCoor3D<double> const& p) { return CCoor3D<double>(p.x + dx, p.y + dy, p.z + dz, 0); });
}

template <class T>
void CLinea<T>::Escalar(double fx, double fy, double fz) {
  Transforma([=](CCoor3D<double> const& p) { return CCoor3D<double>(p.x * fx, p.y * fy, p.z * fz, 0); });
}

template <class T>
bool CLinea<T>::Helmert(CMatrizCuadrada const& matriz) {
  if (matriz.Orden() != 3 && matriz.Orden() != 4) return false;
  Transforma([&](CCoor3D<double> const& p) { return matriz.Aplica(p); });
  return true;
}

template <class T>
bool CLinea<T>::Helmert(CTransformacion const& mapa) {
  Transforma([&](CCoor3D<double> const& p) { return mapa.Aplica(p); });
  return true;
}

template <class T>
bool CLinea<T>::HelmertInverso(CMatrizCuadrada const& matriz) {
  CMatrizCuadrada inversa(matriz);
  return inversa.Invierte() && Helmert(inversa);
}

template <class T>
bool CLinea<T>::HelmertInverso(CTransformacion const& mapa) {
  if (!mapa.TieneInversa()) return false;
  Transforma([&](CCoor3D<double> const& p) { return mapa.AplicaInversa(p); });
  return true;
}

template <class T>
bool CLinea<T>::ModificaPunto(unsigned int i, CCoor3D<T> const& p, bool caja) {
  if (i >= puntos.size()) return false;
  const bool encoge = caja && EnElBorde(this->maximas, puntos[i]);
  puntos[i] = p;
  if (encoge) {
    CalculaMaximas();
  } else {
    this->maximas.Nuevo(p);
  }
  return true;
}

template <class T>
bool CLinea<T>::ModificaTipoPunto(unsigned int i, short int clase) {
  if (i >= puntos.size() || clase < 0 || clase > 255) return false;
  puntos[i].clasificacion = static_cast<std::uint8_t>(clase);
  return true;
}

template <class T>
CLinea<T>& CLinea<T>::operator<<(CCoor3D<T> const& p) {
  puntos.push_back(p);
  this->maximas.Nuevo(puntos.back());  // `p` may have been a point of this very line, and moved
  return *this;
}

template <class T>
int CLinea<T>::BorraPunto(int primero, int cuantos) {
  if (primero < 0 || primero >= NPuntos() || cuantos <= 0) return 0;
  const int van = std::min(cuantos, NPuntos() - primero);
  puntos.erase(puntos.begin() + primero, puntos.begin() + primero + van);
  CalculaMaximas();
  return van;
}

template <class T>
void CLinea<T>::Voltea() {
  std::reverse(puntos.begin(), puntos.end());
}

template <class T>
int CLinea<T>::Filtra(std::vector<bool> const& quedan) {
  std::size_t hay = 0;
  for (std::size_t i = 0; i < puntos.size(); ++i) {
    if (quedan[i]) puntos[hay++] = puntos[i];
  }
  const int van = static_cast<int>(puntos.size() - hay);
  puntos.resize(hay);
  CalculaMaximas();
  return van;
}

template <class T>
int CLinea<T>::BorraPuntosDobles(int espacio) {
  std::vector<bool> quedan(puntos.size(), true);
  std::size_t ultimo = 0;
  for (std::size_t i = 1; i < puntos.size(); ++i) {
    quedan[i] = puntos[i].x != puntos[ultimo].x || puntos[i].y != puntos[ultimo].y ||
                (espacio != 0 && puntos[i].z != puntos[ultimo].z);
    if (quedan[i]) ultimo = i;
  }
  return Filtra(quedan);
}

template <class T>
bool CLinea<T>::Anade(std::vector<CCoor3D<double>> const& nuevos) {
  for (CCoor3D<double> const& p : nuevos) *this << EnForma<T>(p);
  return !nuevos.empty();
}

template <class T>
bool CLinea<T>::ArcoElipse(CCoor3D<T> const& centro, double a, double b, double giro, double desde, double hasta,
                           double flecha) {
  return Anade(ArcoDeElipse(Real(centro), a, b, giro, desde, hasta, flecha));
}

template <class T>
bool CLinea<T>::Arco(CCoor3D<T> const& p1, CCoor3D<T> const& p2, CCoor3D<T> const& p3, double flecha) {
  return Anade(ArcoPorTresPuntos(Real(p1), Real(p2), Real(p3), flecha));
}

template <class T>
bool CLinea<T>::Arco(CCoor3D<T> const& centro, double radio, double desde, double hasta, double flecha) {
  return ArcoElipse(centro, radio, radio, 0, desde, hasta, flecha);
}

// ---- File ----

template <class T>
bool CLinea<T>::Write(CFile* fichero, CDataSemilla const&, int, CTipoFichero tipoFichero) const {
  const std::string texto = this->codigo.Utf8();
  const CCabecera cabecera{this->tipo, kVersion, static_cast<std::uint16_t>(this->borrado), 0,
                           static_cast<std::uint32_t>(texto.size())};
  return tipoFichero == FICHERO_NATIVO && Escribe(*fichero, cabecera) && fichero->Write(texto.data(), texto.size()) &&
         WriteDigi(fichero, tipoFichero);
}

template <class T>
bool CLinea<T>::WriteDigi(CFile* fichero, CTipoFichero) const {
  if (!Escribe(*fichero, static_cast<std::uint32_t>(puntos.size()))) return false;
  for (CCoor3D<T> const& p : puntos) {
    const T lugar[3] = {p.x, p.y, p.z};  // whole: the form in which a coordinate writes itself has no decimals
    const CAtributos atributos{p.intensidad, p.marcas, p.clasificacion};
    if (!Escribe(*fichero, lugar) || !Escribe(*fichero, atributos)) return false;
  }
  return true;
}

template <class T>
bool CLinea<T>::Read(CFile* fichero, double factor, CTipoFichero tipoFichero) {
  CCabecera cabecera{};
  std::vector<char> texto;
  if (tipoFichero != FICHERO_NATIVO || !Lee(*fichero, cabecera) || cabecera.tipo != this->tipo) return false;
  if (!LeeVector(*fichero, cabecera.bytesCodigo, texto)) return false;
  CString leido =
      CString::DesdeUtf8({texto.data(), texto.size()});  // first: should memory give out, nothing has changed
  if (!ReadDigi(fichero, factor, cabecera.version, tipoFichero)) return false;
  this->codigo = std::move(leido);
  this->borrado = cabecera.borrado != 0;
  return true;
}

template <class T>
bool CLinea<T>::ReadDigi(CFile* fichero, double factor, unsigned short version, CTipoFichero) {
  std::vector<CCoor3D<T>> leidos;
  if (!LeePuntos(*fichero, factor, version, leidos)) return false;
  Asigna(std::move(leidos));
  return true;
}

template <class T>
bool CLinea<T>::LeePuntos(CFile& fichero, double factor, unsigned short version, std::vector<CCoor3D<T>>& leidos) {
  std::uint32_t cuantos = 0;
  if (version != kVersion || !Lee(fichero, cuantos) || cuantos > std::numeric_limits<std::int32_t>::max()) return false;
  for (std::uint32_t i = 0; i < cuantos; ++i) {
    CCoor3D<T> p;
    T lugar[3];
    CAtributos atributos{};
    if (!Lee(fichero, lugar) || !Lee(fichero, atributos)) return false;
    p.Actualiza(lugar[0] * factor, lugar[1] * factor, lugar[2] * factor);
    p.intensidad = atributos.intensidad;
    p.marcas = atributos.marcas;
    p.clasificacion = atributos.clasificacion;
    leidos.push_back(p);
  }
  return true;
}

template class URDIMBRE_API_INSTANCIA CLinea<int>;
template class URDIMBRE_API_INSTANCIA CLinea<double>;

}  // namespace Meseta47
