// The tree of sets in a file, and the three passes that make a mesh of what was read: points, checks, links.
#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <vector>

#include "model/storage/Binario.h"
#include "model/terrain/CSetPuntosMdt.h"
#include "model/threads/CMarcha.h"
#include "model/threads/Codigos.h"
#include "model/threads/IPorcentaje.h"
#include "model/threads/Reparto.h"
#include "platform/Anticipa.h"
#include "platform/CFile.h"
#include "tetrahedral/CSetTetraedros.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeEscribe = 19022;
constexpr int kNivelPropio = 1;             // of a set that is asked without its owner
constexpr unsigned kPorBloque = 1024;       // records taken from the file at a time: 47 KB
constexpr unsigned kPorDelante = 4;         // tetrahedra whose neighbours are on their way from memory
constexpr std::size_t kPorTanda = 1 << 13;  // tetrahedra that a thread takes at a time

/// What stands before the tetrahedra of a node.
struct CCabecera {
  std::uint32_t conHijos, cantidad, nivel;
  std::int32_t centro[3], maximo[3], minimo[3];
};
static_assert(sizeof(CCabecera) == CSetTetraedros::kBytesCabecera);

CCoor3D<int> Punto(std::int32_t const (&c)[3]) { return {c[0], c[1], c[2], 0}; }

}  // namespace

// --- writing

int CSetTetraedros::Write(CFile* fichero, unsigned& valor, unsigned total) {
  CMarcha marcha(BuscaPorcentaje(), kNivelPropio, total, valor);
  if (nivel == 0) {
    int siguiente = 0;
    SetIdentificadores(siguiente);
    static_cast<void>(Escribe(*fichero, CantidadTotal()));
    if (IPorcentaje* porcentaje = BuscaPorcentaje()) porcentaje->Fase(kNivelPropio, kMensajeEscribe);
  }
  const int codigo = EscribeNodo(*fichero, marcha);
  valor = static_cast<unsigned>(marcha.Hechos());
  return codigo;
}

int CSetTetraedros::EscribeNodo(CFile& fichero, CMarcha& marcha) const {
  const CCabecera cabecera{hijos != nullptr ? 1U : 0U,
                           cantidad,
                           nivel,
                           {centro.x, centro.y, centro.z},
                           {maximas.Maximo.x, maximas.Maximo.y, maximas.Maximo.z},
                           {maximas.Minimo.x, maximas.Minimo.y, maximas.Minimo.z}};
  bool bien = Meseta47::Escribe(fichero, cabecera);
  CTetraedro const* luego = primero;
  for (unsigned i = 0; i < kPorDelante && luego != nullptr; ++i) luego = luego->Sig();
  for (CTetraedro const* t = primero; t != nullptr && bien; t = t->Sig()) {
    if (luego != nullptr) {
      for (const std::uint32_t vecino : luego->vecinos) AnticipaLectura(CTetraedro::De(vecino));
      luego = luego->Sig();
    }
    if (!marcha.Avanza()) return kCancelado;
    bien = t->Write(&fichero);
  }
  if (!bien) return kFicheroInaccesible;
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) {
    if (const int codigo = hijos[i].EscribeNodo(fichero, marcha); codigo != kHecho) return codigo;
  }
  return kHecho;
}

// --- reading

/// The head of a node that holds nothing yet. Its own fields follow; `cuantos` are the tetrahedra behind it.
int CSetTetraedros::LeeCabecera(CFile& fichero, unsigned& cuantos, bool& conHijos) {
  CCabecera cabecera;
  if (!Lee(fichero, cabecera)) return kFicheroCortado;
  if (cabecera.conHijos > 1) return kFicheroInaccesible;
  const unsigned esperado = padre != nullptr ? padre->nivel + 1 : 0;
  if (cabecera.nivel != esperado || cabecera.nivel > kNivelMaximo) return kFicheroInconsistente;
  if (nivel != esperado) nivel = esperado;  // not again where it stands: the threads of the children look at it
  maximas.Maximo = Punto(cabecera.maximo);
  maximas.Minimo = Punto(cabecera.minimo);
  centro = Punto(cabecera.centro);
  PonCortes();
  cuantos = cabecera.cantidad;
  conHijos = cabecera.conHijos != 0;
  return kHecho;
}

int CSetTetraedros::LeeTetraedros(CFile& fichero, unsigned cuantos, CMarcha* marcha) {
  std::vector<char> bloque(std::size_t{std::min(cuantos, kPorBloque)} * CTetraedro::kBytes);
  for (unsigned quedan = cuantos; quedan != 0;) {
    const unsigned van = std::min(quedan, kPorBloque);
    if (fichero.Read(bloque.data(), van * CTetraedro::kBytes) != van * CTetraedro::kBytes) return kFicheroCortado;
    for (unsigned i = 0; i < van; ++i) {
      if (marcha != nullptr && !marcha->Avanza()) return kCancelado;
      std::unique_ptr<CTetraedro> t(CTetraedro::PideSitio());
      t->TomaRegistro(bloque.data() + std::size_t{i} * CTetraedro::kBytes);
      AnexaALista(t.get());
      static_cast<void>(t.release());
    }
    quedan -= van;
  }
  actual = inicio = primero;
  return kHecho;
}

int CSetTetraedros::Read(CFile* fichero) {
  unsigned cuantos = 0;
  bool conHijos = false;
  const int codigo = LeeCabecera(*fichero, cuantos, conHijos);
  return codigo == kHecho ? LeeTetraedros(*fichero, cuantos, nullptr) : codigo;
}

int CSetTetraedros::Read(CFile* fichero, std::vector<CTetraedro*>& leidos, unsigned& valor, unsigned total) {
  CMarcha marcha(BuscaPorcentaje(), kNivelPropio, total, valor);
  const int codigo = LeeNodo(*fichero, leidos, marcha, fichero->GetLength());
  valor = static_cast<unsigned>(marcha.Hechos());
  return codigo;
}

int CSetTetraedros::LeeNodo(CFile& fichero, std::vector<CTetraedro*>& leidos, CMarcha& marcha, std::uint64_t fin) {
  unsigned cuantos = 0;
  bool conHijos = false;
  int codigo = LeeCabecera(fichero, cuantos, conHijos);
  if (codigo == kHecho) codigo = LeeTetraedros(fichero, cuantos, &marcha);
  for (CTetraedro* t = primero; codigo == kHecho && t != nullptr; t = t->Sig()) leidos.push_back(t);
  if (codigo != kHecho || !conHijos) return codigo;
  if (fin - fichero.GetPosition() < std::uint64_t{kHijos} * kBytesCabecera) return kFicheroCortado;
  CreaHijos();
  for (unsigned i = 0; i < kHijos && codigo == kHecho; ++i) {
    codigo = hijos[i].LeeNodo(fichero, leidos, marcha, fin);
  }
  return codigo;
}

int CSetTetraedros::ReadCabeceras(CFile* fichero, std::vector<CSetTetraedros*>& sets,
                                  std::vector<unsigned long long>& lugares) {
  std::uint64_t total = 0;
  return LeeCabeceras(*fichero, fichero->GetLength(), sets, lugares, total);
}

int CSetTetraedros::LeeCabeceras(CFile& fichero, std::uint64_t fin, std::vector<CSetTetraedros*>& sets,
                                 std::vector<unsigned long long>& lugares, std::uint64_t& total) {
  sets.push_back(this);
  lugares.push_back(fichero.GetPosition());
  unsigned cuantos = 0;
  bool conHijos = false;
  if (const int codigo = LeeCabecera(fichero, cuantos, conHijos); codigo != kHecho) return codigo;
  const std::uint64_t cuerpo = std::uint64_t{cuantos} * CTetraedro::kBytes;
  const std::uint64_t hijosAlMenos = conHijos ? std::uint64_t{kHijos} * kBytesCabecera : 0;
  if (fin < fichero.GetPosition() || fin - fichero.GetPosition() < cuerpo + hijosAlMenos) return kFicheroCortado;
  total += cuantos;
  if (fichero.Seek(static_cast<long long>(cuerpo), CFile::current) < 0) return kFicheroInaccesible;
  if (!conHijos) return kHecho;
  CreaHijos();
  for (unsigned i = 0; i < kHijos; ++i) {
    const int codigo = hijos[i].LeeCabeceras(fichero, fin, sets, lugares, total);
    if (codigo != kHecho) return codigo;
  }
  return kHecho;
}

// --- from numbers to pointers

int CSetTetraedros::AsignarVecinos(std::vector<CTetraedro*> const& todos, CSetPuntosMdt& puntos, CPuntoTIN* marco,
                                   unsigned& valor, unsigned total) {
  CMarcha marcha(BuscaPorcentaje(), kNivelPropio, total, valor);
  const int codigo = Resuelve(todos, puntos, marco, marcha);
  valor = static_cast<unsigned>(marcha.Hechos());
  return codigo;
}

/// Each pass needs all of the one before: links are compared as they stand in the file, by points that are known.
int CSetTetraedros::Resuelve(std::vector<CTetraedro*> const& todos, CSetPuntosMdt& puntos, CPuntoTIN* marco,
                             CMarcha& marcha) {
  std::atomic<bool> bien{true};
  const auto pasada = [&](auto const& hace) {
    const bool acabada = Reparte(
        todos.size(), kPorTanda,
        [&](std::size_t desde, std::size_t hasta) {
          for (std::size_t i = desde; i < hasta && bien; ++i) {
            if (!hace(*todos[i], i)) bien = false;
          }
        },
        [&marcha](std::size_t) { return marcha.Avanza(); });
    return !acabada ? kCancelado : (bien ? kHecho : kFicheroInconsistente);
  };
  int codigo = pasada([&](CTetraedro& t, std::size_t) { return t.ResuelvePrimero(puntos, marco, todos.size()); });
  if (codigo == kHecho) {
    codigo = pasada([&](CTetraedro& t, std::size_t i) { return t.ConcuerdaConVecinos(todos, i); });
  }
  if (codigo == kHecho) {
    codigo = pasada([&](CTetraedro& t, std::size_t) {
      t.EnlazaPorLugar(todos);
      return true;
    });
  }
  return codigo;
}

}  // namespace Meseta47
