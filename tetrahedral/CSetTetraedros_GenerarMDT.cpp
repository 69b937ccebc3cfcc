// What becomes of a kept mesh at the end of a run: its vertices are exchanged for those of a point set, and its faces
// become a surface.
#include <algorithm>

#include "model/terrain/CTIN.h"
#include "model/threads/CMarcha.h"
#include "model/threads/Codigos.h"
#include "model/threads/IPorcentaje.h"
#include "platform/Anticipa.h"
#include "tetrahedral/CSetTetraedros.h"

namespace Meseta47 {

int CSetTetraedros::CambiaPunteros(CSetPuntosMdt& puntos, std::vector<int> const& mapa, int* hechos, int* total) {
  IPorcentaje* porcentaje = hechos != nullptr && total != nullptr ? BuscaPorcentaje() : nullptr;
  for (CTetraedro* t = primero; t != nullptr; t = t->Sig()) {
    if (porcentaje != nullptr && porcentaje->Porcentaje(MENSAJES_DETALLE, static_cast<unsigned>(++*hechos),
                                                        static_cast<unsigned>(*total), false) == 0) {
      return kCancelado;
    }
    if (CTetraedro* luego = t->Sig(); luego != nullptr) {
      Anticipa(luego);
      Anticipa(&luego->puntos);
    }
    t->CambiaPuntos(puntos, mapa);
  }
  // A child that was cancelled ends there: each of its brothers asks again.
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) {
    static_cast<void>(hijos[i].CambiaPunteros(puntos, mapa, hechos, total));
  }
  return kHecho;
}

int CSetTetraedros::GenerarMDT(CTIN& tin, int limite, int& contador, int total) {
  CMarcha marcha(BuscaPorcentaje(), MENSAJES_FASES, static_cast<unsigned>(total), static_cast<unsigned>(contador));
  const int codigo = LlevaCaras(tin, limite, marcha);
  contador = static_cast<int>(marcha.Hechos());
  return codigo;
}

int CSetTetraedros::LlevaCaras(CTIN& tin, int limite, CMarcha& marcha) {
  for (CTetraedro const* t = primero; t != nullptr; t = t->Sig()) {
    if (!marcha.Avanza()) return kCancelado;
    t->LlevaCaras(tin, limite);
  }
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) {
    if (const int codigo = hijos[i].LlevaCaras(tin, limite, marcha); codigo != kHecho) return codigo;
  }
  return kHecho;
}

}  // namespace Meseta47
