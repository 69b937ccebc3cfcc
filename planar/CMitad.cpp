#include "planar/CMitad.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <utility>

#include "planar/CSetTriangulos2D_Obra.h"

namespace Meseta47 {

/// A turn, given back at the end of the block.
class CMitad::CTurno {
 public:
  CTurno(CTurnos& losTurnos, unsigned laMitad) : turnos(losTurnos), mitad(laMitad) {}
  CTurno(CTurno const&) = delete;
  CTurno& operator=(CTurno const&) = delete;
  ~CTurno() {
    if (!tomado) return;
    if (std::uncaught_exceptions() > antes) turnos.Para();  // what the other half would see is not whole
    turnos.Suelta(mitad);
  }
  /// False: the work is to end.
  bool Toma() {
    if (tomado) return true;
    antes = std::uncaught_exceptions();
    tomado = turnos.Toma(mitad);
    return tomado;
  }
  [[nodiscard]] bool Tomado() const { return tomado; }

 private:
  CTurnos& turnos;
  unsigned mitad;
  bool tomado = false;
  int antes = 0;
};

namespace {

/// The triangles of a list, which is empty from then on.
CTriangulo2D* Saca(CSetTriangulos2D& set) {
  set.ultimo = set.actual = set.inicio = nullptr;
  set.cantidad = 0;
  return std::exchange(set.primero, nullptr);
}

/// Whether one thread would have filed `a` before `b`: by the point that made it, and the side that it was made on.
bool VaAntes(CTriangulo2D const* a, CTriangulo2D const* b) {
  if (a == nullptr || b == nullptr) return a != nullptr && b == nullptr;
  const auto lado = [](CTriangulo2D const& t) { return CLado2D::Clave(t.N2(), t.N3()); };
  return a->N1() < b->N1() || (a->N1() == b->N1() && lado(*a) < lado(*b));
}

}  // namespace

struct CMitad::CCortes {
  std::vector<CSetTriangulos2D::CObra::CCorteDeSet> sets;
};

CMitad::CMitad(unsigned laMitad, CEnMitades const& laObra, int elNumero)
    : mitad(laMitad),
      obra(laObra),
      mia(std::make_unique<CSetTriangulos2D::CObra>(obra.raiz, inicio)),
      cortes(std::make_unique<CCortes>()),
      numero(elNumero),
      inicio(obra.raiz.inicio) {
  enRaiz.padre = &obra.raiz;
  auto const& corte = obra.raiz.cortes[obra.reparto.eje == &CCoor3D<int>::x ? 0 : 1];
  auto& marco = mia->propia.marco = obra.raiz.paso;
  auto& limite = obra.reparto.eje == &CCoor3D<int>::x ? (mitad == 0 ? marco.maxX : marco.minX)
                                                      : (mitad == 0 ? marco.maxY : marco.minY);
  limite = mitad == 0 ? corte.bajo : corte.alto;
}

CMitad::~CMitad() = default;

void CMitad::Comparte(CMitad& una, CMitad& otra) noexcept {
  CSetTriangulos2D& raiz = una.obra.raiz;
  for (CMitad* mitad : {&una, &otra}) mitad->mia->propia.enRaiz = &mitad->enRaiz;
  for (CTriangulo2D *t = Saca(raiz), *siguiente = nullptr; t != nullptr; t = siguiente) {
    siguiente = t->Sig();
    CMitad* suya = una.mia->propia.Tiene(t->circulo) ? &una : &otra;
    const bool deAmbas = !suya->mia->propia.Tiene(t->circulo);
    (deAmbas ? raiz : suya->enRaiz).AnexaALista(t);
    t->Comparte(deAmbas);
  }
}

void CMitad::Une(CMitad& una, CMitad& otra) noexcept {
  CSetTriangulos2D& raiz = una.obra.raiz;
  raiz.Obra().OlvidaCamino();
  for (CSetTriangulos2D::CObra* obra : {una.mia.get(), otra.mia.get(), &raiz.Obra()}) obra->propia.enRaiz = &raiz;
  if (una.enRaiz.cantidad + otra.enRaiz.cantidad == 0) return;
  CTriangulo2D* listas[] = {Saca(raiz), Saca(una.enRaiz), Saca(otra.enRaiz)};
  for (;;) {
    CTriangulo2D** primera = &listas[0];
    for (CTriangulo2D*& lista : listas) primera = VaAntes(lista, *primera) ? &lista : primera;
    CTriangulo2D* t = *primera;
    if (t == nullptr) return;
    *primera = t->Sig();
    raiz.AnexaALista(t);
  }
}

bool CMitad::Inserta(CCoor3D<int>* p, CLugarEnLista const& lugar, int suNumero, CMitad& laOtra) {
  using CObra = CSetTriangulos2D::CObra;
  // What this half has come to matters to sets that the other one closes in between.
  if (suNumero != numero + 1) Anota(nullptr, 0, {});
  if (!obra.turnos.Empieza(mitad, suNumero)) return false;
  const int anterior = std::exchange(numero, suNumero);
  p->num = numero;
  CDivisiones2D* celda = nullptr;
  const bool esUltimo = obra.divisiones.Inserta(*p, lugar, celda, hoja);
  if (numero != anterior + 1) inicioCierto = false;
  CTurno turno(obra.turnos, mitad);
  const bool aSolas = obra.turnos.EstaUnoSolo() && DeAntes(laOtra).inicioCierto;
  int respuesta = aSolas ? ASolas(p, *celda, laOtra) : PorSuCuenta(p, *celda);
  if (respuesta == CObra::AJENA) {
    if (!turno.Toma()) return false;
    respuesta = EnTurno(p, *celda, laOtra);
    ++enTurno;
  }
  if (respuesta == CSetTriangulos2D::REPETIDO) {
    p->num = 0;
    ++duplicados;
    return true;
  }
  if (respuesta != CSetTriangulos2D::HECHA) return Abandona();
  return !esUltimo || Cierra(*celda->setAsociado, turno, laOtra);
}

/// All that follows would be of no use.
bool CMitad::Abandona() {
  tarde = true;
  obra.turnos.Para();
  return false;
}

void CMitad::Cuenta(unsigned suyosAceptados, unsigned suyosRechazados) {
  aceptados += suyosAceptados;
  rechazados += suyosRechazados;
}

/// What a point leaves as a start is known unless it is what comes next in the root's list, of which each half has a
/// part: a triangle below the root, the one that was there before, or the last one that the point itself has filed
/// there.
void CMitad::AsientaInicio(CTriangulo2D const* elDeAntes, bool trasCerrar) {
  inicioCierto =
      inicio != nullptr && (inicio == elDeAntes || inicio->set->nivel != 0 || (!trasCerrar && inicio->N1() == numero));
  if (!inicioCierto) inicio = nullptr;
}

/// AJENA unless the point touches nothing but its half's own. Then nothing has changed.
int CMitad::PorSuCuenta(CCoor3D<int>* p, CDivisiones2D const& celda) {
  using CObra = CSetTriangulos2D::CObra;
  CSetTriangulos2D* cerca = SetCercano(*p, celda);
  CTriangulo2D* desde = cerca != nullptr ? Inicio(*cerca) : nullptr;
  if (desde == nullptr) return CObra::AJENA;
  CTriangulo2D* const inicioAntes = inicio;
  unsigned suyosAceptados = 0, suyosRechazados = 0;
  const int respuesta =
      mia->InsertaPunto<CAcceso::PROPIO>(p, *cerca, desde, {}, suyosAceptados, suyosRechazados, balance);
  if (respuesta == CObra::AJENA) {
    inicio = inicioAntes;
    return respuesta;
  }
  AsientaInicio(desde);
  Cuenta(suyosAceptados, suyosRechazados);
  return respuesta;
}

/// The same where one thread has both halves, and knows what the point before has left as a start: as if there had
/// never been two.
int CMitad::ASolas(CCoor3D<int>* p, CDivisiones2D const& celda, CMitad const& laOtra) {
  CSetTriangulos2D& raiz = obra.raiz;
  raiz.inicio = DeAntes(laOtra).inicio;
  CSetTriangulos2D* cerca = SetCercano(*p, celda);
  CTriangulo2D* desde = cerca != nullptr ? Inicio(*cerca) : nullptr;
  if (desde == nullptr) desde = raiz.GetActual(true);
  unsigned suyosAceptados = 0, suyosRechazados = 0;
  const int respuesta =
      raiz.InsertaPunto(p, cerca != nullptr ? *cerca : raiz, desde, {}, suyosAceptados, suyosRechazados, balance);
  inicio = raiz.inicio;
  inicioCierto = true;
  Cuenta(suyosAceptados, suyosRechazados);
  return respuesta;
}

/// The same with the whole mesh, while the other half stands still.
int CMitad::EnTurno(CCoor3D<int>* p, CDivisiones2D const& celda, CMitad const& laOtra) {
  using CObra = CSetTriangulos2D::CObra;
  CSetTriangulos2D& raiz = obra.raiz;
  CMitad const& deAntes = DeAntes(laOtra);  // it has left a start
  const bool haySuInicio = deAntes.inicioCierto && deAntes.inicio != nullptr;
  CSetTriangulos2D* cerca = SetCercano(*p, celda);
  CTriangulo2D* desde = cerca != nullptr ? Inicio(*cerca) : nullptr;
  if (desde == nullptr && haySuInicio) desde = deAntes.inicio;
  if (desde == nullptr) return CObra::TARDIA;
  if (cerca == nullptr) cerca = &raiz;
  mia->ajena = {laOtra.cortes->sets, obra.reparto.eje, obra.reparto.medio, mitad == 0};
  unsigned suyosAceptados = 0, suyosRechazados = 0;
  int respuesta = mia->InsertaPunto<CAcceso::EN_TURNO>(p, *cerca, desde, {}, suyosAceptados, suyosRechazados, balance);
  if (respuesta == CObra::LARGA) {
    CObra& suya = raiz.Obra();
    suya.OlvidaCamino();  // sets have been closed without its knowledge
    suya.ajena = mia->ajena;
    suya.propia = mia->propia;
    respuesta = suya.InsertaPunto<CAcceso::EN_TURNO>(p, *cerca, desde, {}, suyosAceptados, suyosRechazados, balance);
    suya.abiertos.clear();  // none of them need be there at the next turn
    inicio = raiz.inicio;
  }
  AsientaInicio(desde);
  Cuenta(suyosAceptados, suyosRechazados);
  return respuesta;
}

/// The deepest open set near the point, below the root; null where the root alone is open.
CSetTriangulos2D* CMitad::SetCercano(CCoor3D<int> const& p, CDivisiones2D const& celda) const {
  CDivisiones2D const* abierta = &celda;
  while (abierta != nullptr && abierta->setAsociado->cerrado) abierta = abierta->padre;
  if (abierta == nullptr) return nullptr;
  CSetTriangulos2D* set = abierta->setAsociado;
  for (int hijo = set->BuscaHijo(p); hijo >= 0 && !set->hijos[hijo].cerrado; hijo = set->BuscaHijo(p)) {
    set = &set->hijos[hijo];
  }
  return set != &obra.raiz ? set : nullptr;
}

/// What CTriangulacion2D::TrianguloInicial finds below the root.
CTriangulo2D* CMitad::Inicio(CSetTriangulos2D const& set) const {
  for (CSetTriangulos2D const* s = &set; s != &obra.raiz; s = s->padre) {
    if (s->cerrado) continue;
    if (s->inicio != nullptr) return s->inicio;
    for (unsigned i = 0; s->hijos != nullptr && i < CSetTriangulos2D::kHijos; ++i) {
      if (!s->hijos[i].cerrado && s->hijos[i].inicio != nullptr) return s->hijos[i].inicio;
    }
  }
  return nullptr;
}

/// Closes the set, in turn where that changes links of shared triangles.
bool CMitad::Cierra(CSetTriangulos2D& set, CTurno& turno, CMitad& laOtra) {
  CSetTriangulos2D& raiz = obra.raiz;
  const bool solo = obra.turnos.EstaUnoSolo();
  if (!solo && (&set == &raiz || TocaLoCompartido(set)) && !turno.Toma()) return false;
  if (&set == &raiz) Une(*this, laOtra);
  const int otra = obra.turnos.Numero(1 - mitad);
  std::erase_if(cortes->sets, [otra](auto const& corte) { return corte.numero < otra; });
  cortes->sets.push_back({numero, set.paso});
  CTriangulo2D const* const inicioAntes = inicio;
  const unsigned triangulos = set.Cierra(mia.get(), inicio);
  if (solo) {
    raiz.Obra().OlvidaCamino();
  } else {
    AsientaInicio(inicioAntes, true);
  }
  std::vector<std::int32_t> registros;
  try {
    registros.reserve(std::size_t{3} * triangulos);
    Recoge(set, registros);
  } catch (std::bad_alloc const&) {
    obra.mezcla.FaltaMemoria();
  }
  Anota(&set, triangulos, std::move(registros));
  return true;
}

bool CMitad::TocaLoCompartido(CSetTriangulos2D const& set) {
  const auto compartido = [](CTriangulo2D const* v) { return v != nullptr && v->EsCompartido(); };
  for (CTriangulo2D const* t = set.primero; t != nullptr; t = t->Sig()) {
    if (compartido(t->GetVecino12()) || compartido(t->GetVecino23()) || compartido(t->GetVecino31())) return true;
  }
  for (unsigned i = 0; set.hijos != nullptr && i < CSetTriangulos2D::kHijos; ++i) {
    if (!set.hijos[i].cerrado && TocaLoCompartido(set.hijos[i])) return true;
  }
  return false;
}

/// Takes the records of a closed set and of those below it, and frees their triangles.
void CMitad::Recoge(CSetTriangulos2D& set, std::vector<std::int32_t>& registros) {
  set.RecogeNumeros(registros, obra.conBorde ? &borde : nullptr, &medidas);
  const std::unique_ptr<CSetTriangulos2D[]> susHijos(std::exchange(set.hijos, nullptr));
  for (unsigned i = 0; susHijos != nullptr && i < CSetTriangulos2D::kHijos; ++i) Recoge(susHijos[i], registros);
}

void CMitad::Anota(CSetTriangulos2D* set, unsigned triangulos, std::vector<std::int32_t> registros) {
  const auto vivos = static_cast<std::int64_t>(balance.creados - balance.condenados);
  obra.mezcla.Anade(mitad, {numero, vivos, set, triangulos, std::move(registros)});
  if (set != nullptr) obra.mezcla.Vierte(obra.turnos.HechoHasta());
  if (obra.mezcla.FaltoMemoria()) obra.turnos.Para();
}

void CMitad::Acaba() {
  Anota(nullptr, 0, {});
  obra.turnos.Acaba(mitad);
}

}  // namespace Meseta47
