// What becomes of the tetrahedra of a set in the end: records in the spill file, and memory.
#include <memory>
#include <utility>
#include <vector>

#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"
#include "platform/CFile.h"
#include "platform/Procesadores.h"
#include "tetrahedral/CHiloLiberarTetraedros.h"
#include "tetrahedral/CSetTetraedros.h"
#include "tetrahedral/CSetTetraedros_Borrador.h"

namespace Meseta47 {

/// Takes what the set holds out of it, own list first, and writes what `registra` makes of each tetrahedron: one block
/// a set.
template <class F>
bool CSetTetraedros::VaciaEn(CFile* fichero, F const& registra) {
  CSetTetraedros* raiz = GetNivel0();
  // Closing has seen to it already; a set that is spilled without having been closed lets go of the start here.
  if (!cerrado && raiz->inicio != nullptr && raiz->inicio->set == this) {
    raiz->inicio = nullptr;
    for (CSetTetraedros* s = padre; s != nullptr && raiz->inicio == nullptr; s = s->padre) raiz->inicio = s->actual;
  }
  actual = inicio = nullptr;
  bool bien = true;
  if (cantidad != 0) {
    std::vector<std::int32_t> registros;
    for (CTetraedro* t = primero; t != nullptr; t = t->Sig()) registra(*t, registros);
    // Not before: should memory give out above, the set still owns its tetrahedra.
    for (CTetraedro* t = cerrado ? nullptr : primero; t != nullptr; t = t->Sig()) t->BorraMisVecinos();
    VaciaLista();
    if (!registros.empty()) bien = fichero->Write(registros.data(), registros.size() * sizeof(std::int32_t));
  }
  const std::unique_ptr<CSetTetraedros[]> susHijos(std::exchange(hijos, nullptr));
  if (susHijos == nullptr) return bien;
  for (unsigned i = 0; i < kHijos; ++i) bien = susHijos[i].VaciaEn(fichero, registra) && bien;
  return bien;
}

bool CSetTetraedros::Salva(CFile* fichero, double limite, bool todas, std::vector<unsigned short>* intensidades) {
  return VaciaEn(fichero, [=](CTetraedro& t, std::vector<std::int32_t>& registros) {
    t.Salva(registros, limite, todas, intensidades);
  });
}

void CSetTetraedros::VaciaLista() noexcept {
  CTetraedro::DestruyeLista(std::exchange(primero, nullptr));
  ultimo = actual = inicio = nullptr;
  cantidad = 0;
  modificado = true;
}

void CSetTetraedros::VaciaRama() noexcept {
  VaciaLista();
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].VaciaRama();
}

void CSetTetraedros::clear() {
  if (borrador != nullptr) borrador->ultimoHecho = nullptr;
  if (padre == nullptr && nivel == 0 && hijos != nullptr) {
    try {
      std::vector<CSetTetraedros*> sets;
      for (unsigned i = 0; i < kHijos; ++i) hijos[i].RellenaVectorHijos(sets, true);
      if (cantidad != 0) sets.push_back(this);
      // The last one stays out: the root, which is emptied below, or a set that its own destructor empties.
      if (!sets.empty()) sets.pop_back();
      CHiloLiberarTetraedros::Libera(sets);
    } catch (...) {  // no memory for workers, or no lock: a destructor may ask for this, and one thread can do it all
      VaciaRama();
    }
  }
  VaciaLista();
}

}  // namespace Meseta47
