// One point into the mesh: its cavity gives way to a fan of new triangles, linked by construction.
#include <algorithm>

#include "planar/CSetTriangulos2D_Obra.h"

namespace Meseta47 {

namespace {

/// Places for `n` triangles, to be made in them; none is taken when it throws for want of memory.
void PideSitios(CTriangulo2D** sitios, std::size_t n) {
  std::size_t i = 0;
  try {
    for (; i < n; ++i) sitios[i] = static_cast<CTriangulo2D*>(CTriangulo2D::operator new(sizeof(CTriangulo2D)));
  } catch (...) {
    while (i-- > 0) CTriangulo2D::operator delete(sitios[i], sizeof(CTriangulo2D));
    throw;
  }
}

}  // namespace

int CSetTriangulos2D::InsertaPunto(CCoor3D<int>* p, CSetTriangulos2D& cerca, CTriangulo2D* desde,
                                   CTolerancia tolerancia, unsigned& aceptados, unsigned& rechazados,
                                   CBalance& balance) {
  return Obra().InsertaPunto(p, cerca, desde, tolerancia, aceptados, rechazados, balance);
}

template <CAcceso kAcceso>
int CSetTriangulos2D::CObra::InsertaPunto(CCoor3D<int>* p, CSetTriangulos2D& cerca, CTriangulo2D* desde,
                                          CTolerancia tolerancia, unsigned& aceptados, unsigned& rechazados,
                                          CBalance& balance) {
  constexpr bool kPropio = kAcceso == CAcceso::PROPIO, kEnTurno = kAcceso == CAcceso::EN_TURNO;
  CTriangulo2D* semilla = nullptr;
  if (const int fallo = BuscaSemilla<kAcceso>(raiz, *p, aceptados, rechazados, desde, semilla); fallo != HECHA) {
    if (kEnTurno && ajeno) return TARDIA;
    if (kPropio) DeshaceBusqueda();
    return kPropio ? AJENA : fallo;
  }
  const bool repetido = semilla->TieneVerticeEn(*p);
  const bool porAnillo = !repetido && CreceContorno<kAcceso>(*p, semilla, aceptados, rechazados);
  if (kEnTurno && ajeno) return TARDIA;
  if ((kPropio || (kEnTurno && this != raiz.obra.get())) && !porAnillo && !repetido) {
    DeshaceBusqueda();
    return kPropio ? AJENA : LARGA;
  }
  const int respuesta =
      porAnillo ? JuzgaAltura(p, tolerancia) : MarcaCavidad(p, aceptados, rechazados, semilla, tolerancia);
  if (respuesta != HECHA) return respuesta;
  if (porAnillo) {
    CalculaAbanico(*p, cerca);
    if (kPropio && !QuedaEnMitad()) {
      DeshaceVisitas();
      DeshaceBusqueda();
      return AJENA;
    }
    if (kEnTurno && InvadeOtroCuadrante(*p)) return TARDIA;
    balance.condenados += condenados;
    balance.creados += abanico.Cantidad();
    SustituyeCavidad<kAcceso>(p);
  } else {
    balance.condenados += condenados;
    SustituyePorBusqueda<kAcceso>(p, balance);
    if (kEnTurno && ajeno) return TARDIA;
  }
  return HECHA;
}

int CSetTriangulos2D::CObra::JuzgaAltura(CCoor3D<int>* p, CTolerancia tolerancia) {
  if (tolerancia.unidades == 0) return HECHA;
  p->num += kSegundaMarca;
  if (!AdmiteAltura(*p, tolerancia)) return POR_ALTURA;
  p->num -= kSegundaMarca;
  return HECHA;
}

/// Doubles the room. A cavity of n triangles looks at 2 n + 1 neighbours and has n + 2 sides.
void CSetTriangulos2D::CObra::Amplia() {
  constexpr std::size_t kPrimera = 32;
  cabida = std::max(kPrimera, 2 * cabida);
  const std::size_t sitio = 2 * cabida + 4;
  if (cavidad.size() < sitio) cavidad.resize(sitio);
  entrada.resize(sitio);
  visitas.resize(sitio);
  abanico.Amplia(sitio);
}

void CSetTriangulos2D::CObra::Condena(CTriangulo2D* t) {
  if (condenados == cavidad.size()) cavidad.resize(2 * condenados + 1);
  cavidad[condenados++] = t;
}

/// Takes back the stamps of the last growth.
void CSetTriangulos2D::CObra::DeshaceVisitas() {
  while (visitadas != 0) {
    CVisita const& v = visitas[--visitadas];
    v.triangulo->ultimoPunto = v.marca;
  }
  condenados = 0;
}

/// A cavity that grows from its first triangle, and the ring of sides around it.
template <CAcceso kAcceso>
class CSetTriangulos2D::CObra::CCrecimiento {
 public:
  CCrecimiento(CObra& laObra, CCoor3D<int> const& p)
      : b(laObra), x(p.x), y(p.y), primeraMarca(p.num), segundaMarca(p.num + kSegundaMarca) {
    if (b.cabida == 0) b.Amplia();
    ApuntaAListas(0);
  }

  void Crece(CTriangulo2D* semilla) {
    Siembra(semilla);
    for (std::size_t i = 1; i < condenados; ++i) {
      if (i == b.cabida) [[unlikely]] {
        const std::ptrdiff_t vistas = visita - b.visitas.data();
        b.Amplia();
        ApuntaAListas(vistas);
      }
      AbreLado(cavidad[i], entrada[i]);
      if (kAcceso != CAcceso::TODO && b.ajeno) break;
    }
    b.condenados = condenados;
    b.visitadas = static_cast<std::size_t>(visita - b.visitas.data());
  }

  [[nodiscard]] unsigned Lados() const { return lados; }
  /// Triangles found outside that the walk had not met.
  [[nodiscard]] unsigned Ajenos() const { return vistos - static_cast<unsigned>(condenados - 1); }
  /// Whether the cavity closes around a vertex, or the mesh ends at a side of it.
  [[nodiscard]] bool Rodea() const { return rodeado != 0; }
  [[nodiscard]] bool Termina() const { return termina; }

 private:
  void ApuntaAListas(std::ptrdiff_t vistas) {
    cavidad = b.cavidad.data();
    entrada = b.entrada.data();
    visita = b.visitas.data() + vistas;
    anillo = b.abanico.Lados();
  }
  void Siembra(CTriangulo2D* semilla) {
    cavidad[0] = semilla;
    *visita++ = {semilla, semilla->ultimoPunto};
    semilla->ultimoPunto = segundaMarca;
    for (unsigned k = 0; k < 3; ++k) {
      anillo[k].siguiente = (k + 1) % 3;
      Mira(semilla, k, k);
    }
  }
  /// The side behind which a triangle was found gives way to its two others, which are looked at in their order.
  void AbreLado(CTriangulo2D* t, unsigned viejo) {
    const unsigned k = t->LadoHacia(anillo[viejo].condenado), nuevo = lados++;
    anillo[nuevo].siguiente = anillo[viejo].siguiente;
    anillo[viejo].siguiente = nuevo;
    // On the ring P3P1 follows P2P3; in the triangle P1P2 comes before it.
    constexpr unsigned kPrimero[3] = {1, 0, 0}, kSegundo[3] = {2, 2, 1}, kCruza[3] = {0, ~0U, 0};
    const unsigned cambio = (viejo ^ nuevo) & kCruza[k];
    Mira(t, kPrimero[k], viejo ^ cambio);
    Mira(t, kSegundo[k], nuevo ^ cambio);
  }
  /// Puts a side in the ring and asks what lies behind it. Each neighbour is tested as often as it is met: that costs
  /// less than a branch on whether it has been tested.
  void Mira(CTriangulo2D* t, unsigned k, unsigned lado) {
    CTriangulo2D* v = t->*CTriangulo2D::CLados::kVecino[k];
    CAbanico::CLado& suyo = anillo[lado];
    suyo.a = t->*CTriangulo2D::CLados::kPunto[k];
    suyo.condenado = t;
    suyo.fuera = v;
    if (v == nullptr) {
      termina = true;
      return;
    }
    if constexpr (kAcceso == CAcceso::PROPIO) {
      if (v->EsCompartido()) {
        b.ajeno = true;
        return;
      }
    }
    const int marca = v->ultimoPunto;
    const auto enPrimera = static_cast<unsigned>(marca == primeraMarca);  // the walk has found it outside
    const auto enSegunda = static_cast<unsigned>(marca == segundaMarca);
    const unsigned dentro = static_cast<unsigned>(v->EnCirculo(x, y)) & ~enPrimera;
    *visita++ = {v, marca};
    v->ultimoPunto = enPrimera != 0 ? primeraMarca : segundaMarca;
    vistos += 1 & ~enPrimera & ~enSegunda;
    rodeado |= dentro & enSegunda;
    cavidad[condenados] = v;
    entrada[condenados] = lado;
    condenados += dentro & ~enSegunda;
  }

  CObra& b;
  const double x, y;
  const int primeraMarca, segundaMarca;
  CTriangulo2D** cavidad = nullptr;
  unsigned* entrada = nullptr;
  CVisita* visita = nullptr;  // where the next one goes
  CAbanico::CLado* anillo = nullptr;
  std::size_t condenados = 1;
  unsigned lados = 3, vistos = 0, rodeado = 0;
  bool termina = false;
};

/// Condemns the triangles that `CreceCavidad` would, in its order, and has the ring of sides around them. False, with
/// the mesh as it was and nothing counted, when the ring alone does not tell all that a search through the open list
/// would find.
template <CAcceso kAcceso>
bool CSetTriangulos2D::CObra::CreceContorno(CCoor3D<int> const& p, CTriangulo2D* semilla, unsigned& aceptados,
                                            unsigned& rechazados) {
  CCrecimiento<kAcceso> crecimiento(*this, p);
  crecimiento.Crece(semilla);
  if ((kAcceso != CAcceso::TODO && ajeno) || crecimiento.Rodea() || !abanico.Dispone(p, crecimiento.Lados()) ||
      (crecimiento.Termina() && HayAbiertoSinEnlazar())) {
    DeshaceVisitas();
    return false;
  }
  aceptados += static_cast<unsigned>(condenados);
  rechazados += crecimiento.Ajenos();
  return true;
}

/// Whether a triangle around the cavity lies, unlinked, across a side where the mesh ends. It has two corners of the
/// ring already, so it can only be behind the side before or after.
bool CSetTriangulos2D::CObra::HayAbiertoSinEnlazar() const {
  const std::size_t n = abanico.Cantidad();
  for (std::size_t i = 0; i < n; ++i) {
    if (abanico.Lado(i).fuera != nullptr) continue;
    for (const std::size_t j : {i == 0 ? n - 1 : i - 1, i + 1 == n ? 0 : i + 1}) {
      CTriangulo2D const* fuera = abanico.Lado(j).fuera;
      if (fuera != nullptr && fuera->ContieneLado(abanico.B(i)->num, abanico.A(i)->num) != 0) return true;
    }
  }
  return false;
}

void CSetTriangulos2D::CObra::CalculaAbanico(CCoor3D<int> const& p, CSetTriangulos2D& cerca) {
  camino.Pon(cerca);
  abanico.Calcula(p);
  abanico.Situa(camino.marcos);
}

/// Whether all triangles of the fan are the half's own: they go to a set below the root, in the quadrant of the point,
/// or cross the line between the two quadrants of the half and no other.
bool CSetTriangulos2D::CObra::QuedaEnMitad() const {
  const std::size_t bajoLaRaiz = camino.sets[0]->nivel;
  if (abanico.DejanMenosDe(std::min(bajoLaRaiz, CCamino::kNiveles))) return true;
  bool queda = true;
  for (std::size_t i = 0; i < abanico.Cantidad(); ++i) queda &= propia.Tiene(abanico.Circulo(i));
  return queda;
}

/// Whether a triangle with this circle would go to another quadrant than that of the point, which no circle through the
/// point does: one of three points on a line, whose place is the origin.
bool CSetTriangulos2D::CObra::InvadeOtroCuadrante(CCirculo const& c, CCoor3D<int> const& p) const {
  const int hijo = raiz.HijoAbiertoPara({c.x - c.radio, c.y - c.radio, c.x + c.radio, c.y + c.radio});
  return c.radio2 == 0 || (hijo >= 0 && hijo != raiz.BuscaHijo(p));
}

bool CSetTriangulos2D::CObra::InvadeOtroCuadrante(CCoor3D<int> const& p) const {
  bool invade = false;
  for (std::size_t i = 0; i < abanico.Cantidad(); ++i) invade |= InvadeOtroCuadrante(abanico.Circulo(i), p);
  return invade;
}

//            A
//          / | \               P sees the side A-B of its cavity. The new triangle (P, A, B) turns the same way as the
//     P  <   |   > fuera       condemned one that it replaces and takes over its neighbour. Across P-A and B-P lie the
//          \ | /               new triangles before and after it on the ring.
//            B
template <CAcceso kAcceso>
void CSetTriangulos2D::CObra::SustituyeCavidad(CCoor3D<int>* p) {
  const std::size_t n = abanico.Cantidad();
  // Condemned triangles give their places to new ones, of which there are two more.
  PideSitios(&cavidad[condenados], n - condenados);
  for (CTriangulo2D* t : Condenados()) t->set->QuitaDeLista(t, inicio);
  PonAbanico(p);
  std::size_t i = 0;
  try {
    for (; i < n; ++i) {
      const std::size_t cual = abanico.Orden(i);
      CTriangulo2D* t = cavidad[cual];
      // A triangle without a circle, of three points on a line, has its place at the origin.
      CSetTriangulos2D& suyo =
          t->circulo.radio2 != 0 ? camino.SetPara(*t, abanico.Fuera(cual), inicio) : raiz.SetPara(CajaDe(*t), inicio);
      if (kAcceso != CAcceso::TODO && &suyo == &raiz) {
        ArchivaEnRaiz<kAcceso>(t);
      } else {
        suyo.AnexaALista(t);
      }
    }
  } catch (...) {  // no memory for new leaves: a set that is there takes the rest, as somebody must own them
    CSetTriangulos2D& refugio = kAcceso == CAcceso::PROPIO ? *camino.sets[0] : raiz;
    for (; i < n; ++i) refugio.AnexaALista(cavidad[abanico.Orden(i)]);
    throw;
  }
}

/// What is the half's own there stands apart.
template <CAcceso kAcceso>
void CSetTriangulos2D::CObra::ArchivaEnRaiz(CTriangulo2D* t) {
  const bool esPropio = kAcceso == CAcceso::PROPIO || propia.Tiene(t->circulo);
  (esPropio ? *propia.enRaiz : raiz).AnexaALista(t);
  if (!esPropio) t->Comparte();
  inicio = t;  // as filing in the root does for one thread
}

/// Makes the triangles of the fan in the places that stand in `cavidad`, and links them.
void CSetTriangulos2D::CObra::PonAbanico(CCoor3D<int>* p) {
  const std::size_t n = abanico.Cantidad();
  CTriangulo2D* anterior = cavidad[n - 1];
  for (std::size_t i = 0; i < n; ++i) {
    CTriangulo2D* fuera = abanico.Lado(i).fuera;
    CTriangulo2D* siguiente = cavidad[i + 1 < n ? i + 1 : 0];
    anterior = ::new (cavidad[i]) CTriangulo2D(p, abanico.A(i), abanico.B(i), abanico.Circulo(i), abanico.Indices(i),
                                               {anterior, fuera, siguiente});
    if (fuera != nullptr) fuera->*CTriangulo2D::CLados::kVecino[fuera->LadoDesde(abanico.B(i))] = anterior;
  }
}

template <CAcceso kAcceso>
void CSetTriangulos2D::CObra::SustituyePorBusqueda(CCoor3D<int>* p, CBalance& balance) {
  CSetLados2D& lados = pares;
  lados.lados.clear();
  RecogeLados(lados);
  BorraCavidad();
  lados.BorraDuplicados();
  for (CLado2D const& lado : lados.lados) {
    const CTriangulo2D nuevo(p, lado.P1(), lado.P2());
    if (kAcceso == CAcceso::EN_TURNO) ajeno |= InvadeOtroCuadrante(nuevo.circulo, *p);
    raiz.Inserta(nuevo);
  }
  balance.creados += lados.lados.size();
}

template int CSetTriangulos2D::CObra::InsertaPunto<CAcceso::PROPIO>(CCoor3D<int>*, CSetTriangulos2D&, CTriangulo2D*,
                                                                    CTolerancia, unsigned&, unsigned&, CBalance&);
template int CSetTriangulos2D::CObra::InsertaPunto<CAcceso::EN_TURNO>(CCoor3D<int>*, CSetTriangulos2D&, CTriangulo2D*,
                                                                      CTolerancia, unsigned&, unsigned&, CBalance&);

}  // namespace Meseta47
