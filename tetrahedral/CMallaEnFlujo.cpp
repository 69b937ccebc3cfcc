#include "tetrahedral/CMallaEnFlujo.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include "platform/Anticipa.h"
#include "platform/CFile.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kRegistros = 4096;  // of 16 bytes, that go to the file at once
constexpr std::size_t kPorDelante = 8;    // tetrahedra of a list that are on their way from memory
constexpr std::size_t kMuestra = 32;      // of a list where a descent begins
constexpr std::size_t kCerca = 64;        // tetrahedra around the end of a descent: the spheres of a few grid cells
constexpr std::size_t kGuardados = 4096;  // places, of 128 bytes: what a leaf lets go of, about
constexpr std::size_t kDeUnaVez = 256;    // tetrahedra given back together: so many lie in a near cache
constexpr std::size_t kTodos = std::numeric_limits<std::size_t>::max();

std::size_t Paso(std::size_t cuantos) { return cuantos / kMuestra + 1; }

}  // namespace

/// Tetrahedra on their way out, a few behind one another: by its turn each has its neighbours and points at hand, which
/// may lie anywhere. Those that stay are spared that.
class CMallaEnFlujo::CSalida {
 public:
  explicit CSalida(CMallaEnFlujo& suya) : malla(suya) {}
  CSalida(CSalida const&) = delete;
  CSalida& operator=(CSalida const&) = delete;
  ~CSalida() {
    for (std::size_t i = 0; i < kPorDelante; ++i) Sale(lugar++);
  }
  void Anade(CTetraedro* t) {
    for (const std::uint32_t vecino : t->vecinos) Anticipa(CNumeros::Direccion<128>(vecino));
    for (CCoor3D<int> const* p : t->puntos) AnticipaLectura(p);
    Sale(lugar);
    fila[lugar++ % kPorDelante] = t;
  }

 private:
  void Sale(std::size_t i) {
    if (CTetraedro* t = std::exchange(fila[i % kPorDelante], nullptr)) malla.Despide(t);
  }
  CMallaEnFlujo& malla;
  std::array<CTetraedro*, kPorDelante> fila{};
  std::size_t lugar = 0;
};

void CMallaEnFlujo::Empieza(std::vector<CTetraedro> const& marco, std::vector<CPorVenir::CPunto> puntos) {
  porVenir.Prepara(std::move(puntos));
  listas.resize(std::max<std::size_t>(porVenir.Hojas(), 1));
  registros.reserve(kRegistros);
  estrella.GuardaHasta(kGuardados);
  std::vector<CTetraedro*> hechos;
  for (CTetraedro const& t : marco) {
    listas[0].reserve(listas[0].size() + 1);
    std::unique_ptr<CTetraedro> propio(CTetraedro::Nuevo(t));
    Anota(propio.get(), propio->Numero(), 0);
    CTetraedro* nuevo = propio.release();  // the list has it
    for (CTetraedro* otro : hechos) {
      for (unsigned cara = 0; cara < 4; ++cara) {
        unsigned const* v = CTetraedro::kVertice[cara];
        const int suya = otro->ContieneCara(nuevo->Num(v[0]), nuevo->Num(v[1]), nuevo->Num(v[2]));
        if (suya == 0) continue;
        nuevo->vecinos[cara] = otro->Numero();
        otro->vecinos[suya - 1] = nuevo->Numero();
      }
    }
    hechos.push_back(nuevo);
  }
  vivos = picoVivos = balance.creados = hechos.size();
}

CMallaEnFlujo::~CMallaEnFlujo() {
  for (auto const& lista : listas) {
    for (const std::uint32_t numero : lista) {
      CTetraedro* t = CTetraedro::De(numero);
      t->clear();
      delete t;
    }
  }
}

int CMallaEnFlujo::Inserta(CCoor3D<int>* p) {
  const std::uint32_t hoja = porVenir.Hoja(*p);
  const int respuesta = Entra(p, hoja);
  if (porVenir.Llega(hoja)) Acaba(hoja);
  return respuesta;
}

int CMallaEnFlujo::Entra(CCoor3D<int>* p, std::uint32_t hoja) {
  ++inserciones;
  CTetraedro* semilla = BuscaSemilla(*p, hoja);
  if (semilla == nullptr) return SIN_ESFERA;
  const bool nuevo = estrella.Crece(*p, semilla, CEstrella::Marca(inserciones));
  balance.esferas = estrella.Esferas();
  balance.exactas = estrella.Exactas();
  if (!nuevo) return REPETIDO;
  viveEstrella = false;
  if (!estrella.Dispone(*p)) return SIN_ESFERA;
  if (!estrella.Calcula(*p)) return COPLANARIO;
  Sustituye(p, hoja);
  return HECHA;
}

/// From the best of those made last; where some of them have gone, of what the last leaf to end has left. A descent may
/// end beside tetrahedra that share a sphere, and then the cavity is near; or at the gap that those leave which have
/// gone. What waits for the point's own leaf lies on its side of all gaps, and so does what the point lies in: that is
/// still there.
CTetraedro* CMallaEnFlujo::BuscaSemilla(CCoor3D<int> const& p, std::uint32_t hoja) {
  CTetraedro* t = viveEstrella ? estrella.MasCercano(p) : nullptr;
  if (!viveEstrella) {
    for (std::size_t i = 0; i < movidos.size(); i += Paso(movidos.size())) t = CEstrella::MasCercano(p, t, movidos[i]);
  }
  if (t != nullptr && (t = Baja(p, t, kCerca)) != nullptr) return t;
  std::vector<std::uint32_t> const& lista = listas[hoja];
  const auto desdeLista = [&](std::size_t paso, std::size_t cuantos) {
    for (std::size_t i = 0; i < lista.size(); i += paso) t = CEstrella::MasCercano(p, t, CTetraedro::De(lista[i]));
    visitados += lista.size() / paso;
    return t != nullptr && (t = Baja(p, t, cuantos)) != nullptr;
  };
  if (desdeLista(Paso(lista.size()), kCerca) || desdeLista(1, kTodos)) return t;
  for (const std::uint32_t numero : lista) {
    if ((t = Recorre(p, CTetraedro::De(numero), kTodos)) != nullptr) return t;
  }
  return BuscaEntreTodos(p, hoja);
}

/// Downhill, and around the end. Null when that leads to none whose sphere holds the point.
CTetraedro* CMallaEnFlujo::Baja(CCoor3D<int> const& p, CTetraedro* desde, std::size_t cuantos) {
  bool dentro = false;
  CTetraedro* t = CEstrella::Desciende(p, desde, balance.pasos, dentro);
  return dentro ? t : Recorre(p, t, cuantos);
}

/// Breadth-first to the first sphere that holds the point, of so many at most. Given up early, it leaves no stamps.
CTetraedro* CMallaEnFlujo::Recorre(CCoor3D<int> const& p, CTetraedro* desde, std::size_t cuantos) {
  const std::int32_t marca = CEstrella::Marca(inserciones);
  cola.clear();
  const auto anade = [&](CTetraedro* t) {
    if (t == nullptr || t->identificador == marca) return;
    t->identificador = marca;
    cola.push_back(t);
  };
  const auto olvida = [&](std::size_t i) {
    for (; i < cola.size(); ++i) cola[i]->identificador = 0;
  };
  anade(desde);
  for (std::size_t i = 0; i < cola.size(); ++i) {
    CTetraedro* t = cola[i];
    if (i == cuantos) {
      olvida(0);
      return nullptr;
    }
    if (t->EnEsfera(p)) {
      olvida(i + 1);  // those behind it have not been looked at
      return t;
    }
    ++visitados;
    for (unsigned cara = 0; cara < 4; ++cara) anade(t->Vecino(cara));
  }
  return nullptr;
}

CTetraedro* CMallaEnFlujo::BuscaEntreTodos(CCoor3D<int> const& p, std::uint32_t hoja) {
  CTetraedro* hallado = nullptr;
  porVenir.PorCercania(hoja, [&](std::uint32_t otra) {
    for (const std::uint32_t numero : listas[otra]) {
      ++visitados;
      CTetraedro* t = CTetraedro::De(numero);
      if (!t->EnEsfera(p)) continue;
      hallado = t;
      return true;
    }
    return false;
  });
  return hallado;
}

void CMallaEnFlujo::Sustituye(CCoor3D<int>* p, std::uint32_t hoja) {
  const std::size_t condenados = estrella.Condenados(), nuevos = estrella.Cantidad();
  std::vector<std::uint32_t>& lista = listas[hoja];
  if (lista.capacity() < lista.size() + nuevos) lista.reserve(lista.size() + lista.size() / 2 + nuevos);
  estrella.PideSitios();
  // Nothing throws from here on. A place keeps its entry where it is in the right list already.
  const std::size_t propios = std::min(condenados, nuevos);
  for (std::size_t i = 0; i < condenados; ++i) {
    CTetraedro* t = estrella.Condenado(i);
    if (i >= propios || t->ant != hoja) Tacha(t);
    if (i < propios && t->ant != hoja) Anota(t, estrella.NumeroDeCondenado(i), hoja);
  }
  estrella.Construye(p);
  movidos.clear();  // some of them may have gone with the cavity
  for (std::size_t i = propios; i < nuevos; ++i) Anota(estrella.Nuevo(i), estrella.Nuevo(i)->Numero(), hoja);
  viveEstrella = true;
  balance.condenados += condenados;
  balance.creados += nuevos;
  vivos += nuevos;
  vivos -= condenados;
  picoVivos = std::max(picoVivos, vivos);
}

/// The list has room.
void CMallaEnFlujo::Anota(CTetraedro* t, std::uint32_t numero, std::uint32_t hoja) {
  t->ant = hoja;
  t->sig = static_cast<std::uint32_t>(listas[hoja].size());
  listas[hoja].push_back(numero);
}

void CMallaEnFlujo::Tacha(CTetraedro const* t) {
  std::vector<std::uint32_t>& lista = listas[t->ant];
  const std::uint32_t ultimo = lista.back();
  lista[t->sig] = ultimo;
  CTetraedro::De(ultimo)->sig = t->sig;
  lista.pop_back();
}

void CMallaEnFlujo::Acaba(std::uint32_t hoja) {
  movidos.clear();
  if (!porVenir.Quedan()) {
    AcabaTodo(std::exchange(listas[hoja], {}));
    return;
  }
  movidos.reserve(listas[hoja].size());
  vecindad.Pon(porVenir, hoja);
  std::vector<std::uint32_t> lista = std::exchange(listas[hoja], {});
  const std::size_t n = lista.size();
  CSalida salida(*this);
  std::size_t i = 0;
  try {
    for (; i < n; ++i) {
      if (i + kPorDelante < n) {
        CTetraedro* luego = CTetraedro::De(lista[i + kPorDelante]);
        AnticipaLectura(luego);
        Anticipa(&luego->sig);
      }
      CTetraedro* t = CTetraedro::De(lista[i]);
      const std::uint32_t otra = vecindad.Alcanza({t->cx, t->cy, t->cz, t->radio2, t->margen});
      if (otra == CPorVenir::kNinguna) {
        salida.Anade(t);
      } else {
        Anota(t, lista[i], otra);
        movidos.push_back(t);
      }
    }
  } catch (...) {  // this one's owner is this list, and so is that of those behind it
    lista.erase(lista.begin(), lista.begin() + static_cast<std::ptrdiff_t>(i));
    listas[hoja] = std::move(lista);
    throw;
  }
}

/// All that lives is final and waits for the last leaf. Over a closed surface that is most of the mesh, long cold: no
/// link is followed any more, so that of each only the points are fetched.
void CMallaEnFlujo::AcabaTodo(std::vector<std::uint32_t> const& lista) {
  const std::size_t n = lista.size();
  std::array<CTetraedro*, kDeUnaVez> hechos;
  for (std::size_t desde = 0; desde < n; desde += kDeUnaVez) {
    const std::size_t cuantos = std::min(kDeUnaVez, n - desde);
    for (std::size_t i = 0; i < cuantos; ++i) {
      const std::size_t luego = desde + i + kPorDelante;
      if (luego + kPorDelante < n) {
        CTetraedro* t = CTetraedro::De(lista[luego + kPorDelante]);
        AnticipaLectura(t);
        AnticipaLectura(&t->puntos);
      }
      if (luego < n) {
        for (CCoor3D<int> const* p : CTetraedro::De(lista[luego])->puntos) AnticipaLectura(p);
      }
      hechos[i] = CTetraedro::De(lista[desde + i]);
      Registra(*hechos[i]);
    }
    CTetraedro::Destruye({hechos.data(), cuantos});
  }
  viveEstrella = false;
  vivos -= n;
}

void CMallaEnFlujo::Despide(CTetraedro* t) {
  Registra(*t);
  viveEstrella = false;
  t->DejaDeSerVecino();
  estrella.Guarda(t);
  --vivos;
}

inline void CMallaEnFlujo::Registra(CTetraedro const& t) {
  registros.push_back({t.puntos[0]->num, t.puntos[1]->num, t.puntos[2]->num, t.puntos[3]->num});
  if (registros.size() == kRegistros) Vuelca();
}

bool CMallaEnFlujo::Termina() {
  estrella.SueltaLibres();
  return Vuelca();
}

bool CMallaEnFlujo::Vuelca() {
  if (!registros.empty()) bien = fichero.Write(registros.data(), registros.size() * sizeof(registros[0])) && bien;
  registros.clear();
  return bien;
}

}  // namespace Meseta47
