// One point into the mesh: its cavity gives way to a star of new tetrahedra, linked by construction.
#include <limits>

#include "tetrahedral/CSetTetraedros.h"
#include "tetrahedral/CSetTetraedros_Borrador.h"

namespace Meseta47 {

namespace {

enum CRespuesta { HECHA = 0, SIN_INICIO = 2, REPETIDO = 3, SIN_ESFERA = 4, COPLANARIO = 5 };

}  // namespace

void CSetTetraedros::CBorrador::CCamino::Pon(CSetTetraedros& cerca) {
  if (hoja == &cerca) return;
  hoja = &cerca;
  niveles = 0;
  for (CSetTetraedros* s = &cerca; s != nullptr; s = s->padre) ++niveles;
  unsigned i = niveles;
  for (CSetTetraedros* s = &cerca; s != nullptr; s = s->padre) sets[--i] = s;
  marcos[0] = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL, HUGE_VAL, HUGE_VAL, HUGE_VAL};
  for (unsigned k = 1; k < niveles; ++k) {
    CSetTetraedros const& encima = *sets[k - 1];
    const auto hijo = sets[k] - encima.hijos;
    CEstrella::CMarco m = marcos[k - 1];
    if ((hijo & 1) != 0) {
      m.minX = std::max(m.minX, encima.cortes[0].alto);
    } else {
      m.maxX = std::min(m.maxX, encima.cortes[0].bajo);
    }
    if ((hijo & 2) == 0) {
      m.minY = std::max(m.minY, encima.cortes[1].alto);
    } else {
      m.maxY = std::min(m.maxY, encima.cortes[1].bajo);
    }
    if ((hijo & 4) != 0) {
      m.minZ = std::max(m.minZ, encima.cortes[2].alto);
    } else {
      m.maxZ = std::min(m.maxZ, encima.cortes[2].bajo);
    }
    marcos[k] = m;
  }
}

int CSetTetraedros::InsertaPunto(CCoor3D<int>* p, CSetTetraedros& cerca, CTetraedro* desde, unsigned& implicados,
                                 unsigned& visitados, unsigned& rechazados, CBalance& balance) {
  implicados = visitados = rechazados = 0;
  if (borrador == nullptr) borrador = std::make_unique<CBorrador>();
  posiblesVecinos.clear();
  CTetraedro* semilla = nullptr;
  if (const int fallo = BuscaSemilla(*p, desde, semilla, visitados, balance); fallo != 0) return fallo;

  CEstrella& estrella = borrador->estrella;
  const std::uint64_t esferas = estrella.Esferas(), exactas = estrella.Exactas();
  const bool nuevo = estrella.Crece(*p, semilla, CEstrella::Marca(borrador->inserciones));
  balance.esferas += estrella.Esferas() - esferas;
  balance.exactas += estrella.Exactas() - exactas;
  implicados = static_cast<unsigned>(estrella.Condenados());
  rechazados = static_cast<unsigned>(estrella.Esferas() - esferas) + 1 - implicados;
  if (!nuevo) return REPETIDO;
  if (!estrella.Dispone(*p)) {
    ++balance.porBusqueda;
    return SustituyePorBusqueda(p, semilla, implicados, rechazados, balance);
  }
  if (!estrella.Calcula(*p)) return COPLANARIO;
  estrella.Ordena();
  balance.condenados += estrella.Condenados();
  balance.creados += estrella.Cantidad();
  SustituyeCavidad(p, cerca);
  return HECHA;
}

/// A first tetrahedron of the cavity: downhill from the given start or the last tetrahedron made. Where the way ends,
/// at the border of what lives, the breadth-first walk goes on.
int CSetTetraedros::BuscaSemilla(CCoor3D<int> const& p, CTetraedro* desde, CTetraedro*& semilla, unsigned& visitados,
                                 CBalance& balance) {
  if (desde != nullptr) inicio = desde;
  if (inicio == nullptr || inicio->set->cerrado) return SIN_INICIO;
  ++borrador->inserciones;
  bool dentro = false;
  CTetraedro* cercano = CEstrella::MasCercano(p, inicio, borrador->ultimoHecho);
  semilla = CEstrella::Desciende(p, cercano, balance.pasos, dentro);
  if (dentro) return HECHA;
  inicio = semilla;
  semilla = PrimeroQueContiene(p, CEstrella::Marca(borrador->inserciones), visitados);
  return semilla != nullptr ? HECHA : SIN_ESFERA;
}

void CSetTetraedros::SustituyeCavidad(CCoor3D<int>* p, CSetTetraedros& cerca) {
  CBorrador& b = *borrador;
  CEstrella& estrella = b.estrella;
  b.camino.Pon(cerca);
  estrella.PideSitios();
  for (std::size_t i = 0; i < estrella.Condenados(); ++i) {
    CTetraedro* t = estrella.Condenado(i);
    t->set->Quita(t, *this);
  }
  estrella.Construye(p);
  const std::size_t n = estrella.Cantidad();
  std::size_t i = 0;
  try {
    for (; i < n; ++i) {
      const unsigned cual = estrella.Orden(i);
      CTetraedro* t = estrella.Nuevo(cual);
      CSetTetraedros& suyo = b.camino.SetPara(estrella, cual);
      // A full leaf is to be divided; one that just was has its box in a child.
      const bool hoja = &suyo == &cerca && (suyo.cantidad == kCapacidad || suyo.hijos != nullptr);
      CSetTetraedros* s = hoja ? SetParaCaja(t, suyo) : &suyo;
      s->modificado = true;
      s->AnexaALista(t);
    }
  } catch (...) {  // no memory for new leaves: the root takes the rest, as somebody must own them
    for (; i < n; ++i) AnexaALista(estrella.Nuevo(estrella.Orden(i)));
    throw;
  }
  b.ultimoHecho = estrella.Nuevo(estrella.Orden(n - 1));
}

/// A leaf that was divided meanwhile sends a box on to its children.
CSetTetraedros* CSetTetraedros::SetParaCaja(CTetraedro const* t, CSetTetraedros& desde) {
  const CMaximas<int> caja = t->GetMaximasEsfera();
  CSetTetraedros* s = &desde;
  for (;;) {
    if (const int hijo = s->BuscaHijo(caja); hijo >= 0) {
      s = &s->hijos[hijo];
    } else if (s->hijos == nullptr && s->cantidad == kCapacidad && s->nivel < kNivelMaximo) {
      s->Divide();
    } else {
      return s;
    }
  }
}

/// The long way, for a cavity whose boundary does not close by itself: faces are paired by sorting, and neighbours
/// found among the tetrahedra with a free face.
int CSetTetraedros::SustituyePorBusqueda(CCoor3D<int>* p, CTetraedro* semilla, unsigned& implicados,
                                         unsigned& rechazados, CBalance& balance) {
  CSetCaras& caras = borrador->caras;
  std::vector<CTetraedro*>& condenados = borrador->implicados;
  caras.clear();
  condenados.clear();
  unsigned visitados = 0;
  const std::int32_t antes = semilla->identificador;
  semilla->identificador = 0;
  const int respuesta = Implicados(*p, caras, condenados, visitados, rechazados, semilla);
  if (condenados.empty()) semilla->identificador = antes;
  const auto sueltaMarcas = [&condenados] {
    for (CTetraedro* t : condenados) t->SetBorrado(false);
  };
  if (respuesta != 0) {
    sueltaMarcas();
    return respuesta;
  }
  caras.BorraDuplicadas();
  std::vector<CTetraedro> nuevos;
  nuevos.reserve(caras.size());
  for (CCara const& cara : caras) {
    nuevos.emplace_back(cara.P1(), cara.P2(), cara.P3(), p);
    if (nuevos.back().radio == 0.0) {
      sueltaMarcas();
      return COPLANARIO;
    }
    auto* fuera = static_cast<CTetraedro*>(cara.Tetra());
    if (fuera != nullptr && fuera->Borrado()) fuera = nullptr;
    nuevos.back().SetVecino123(fuera, cara.D12(), cara.D13(), cara.D23(), cara.Grabado());
  }
  implicados = static_cast<unsigned>(condenados.size());
  balance.condenados += condenados.size();
  balance.creados += nuevos.size();
  borrador->ultimoHecho = nullptr;
  for (CTetraedro* t : condenados) {
    t->set->Borra(t, false);
    delete t;
  }
  for (CTetraedro& t : nuevos) {
    Inserta(t, t.GetMaximasEsfera(), false, true, true, true, false, false);
    t.clear();  // what is filed is a copy, and the neighbours know that one
  }
  return HECHA;
}

}  // namespace Meseta47
