#include "run/CListaPuntos.h"

#include <cstring>

#include "platform/CFile.h"

namespace Meseta47 {

CCoor3DIntLista* CListaPuntos::Inserta(CCoor3D<int> const& p) {
  Nuevo(p);
  auto* nodo = new CCoor3DIntLista(p, primero != nullptr ? ultimo : nullptr);
  if (primero != nullptr) {
    ultimo->SetSig(nodo);
  } else {
    primero = nodo;
  }
  ultimo = actual = nodo;
  ++cantidad;
  return nodo;
}

void CListaPuntos::Elimina(CCoor3DIntLista* nodo) {
  CCoor3DIntLista *anterior = nodo->Ant(), *siguiente = nodo->Sig();
  if (anterior != nullptr) anterior->SetSig(siguiente);
  if (siguiente != nullptr) siguiente->SetAnt(anterior);
  if (nodo == primero) primero = siguiente;
  if (nodo == actual) actual = anterior != nullptr ? anterior : siguiente;  // wherever the host has put it
  if (nodo == ultimo) ultimo = actual = anterior;
  if (primero == nullptr) ultimo = actual = nullptr;
  delete nodo;
  --cantidad;
}

void CListaPuntos::Comparte(CListaPuntos const& otra) {
  Clear();
  CMaximas<int>::operator=(otra);
  cantidad = otra.cantidad;
  primero = otra.primero;
  ultimo = otra.ultimo;
  actual = otra.actual;
  ajena = true;
}

void CListaPuntos::Clear() {
  if (ajena) primero = nullptr;
  ajena = false;
  while (primero != nullptr) {
    CCoor3DIntLista* siguiente = primero->Sig();
    delete primero;
    primero = siguiente;
  }
  cantidad = 0;
}

bool CListaPuntos::Salva(CFile* fichero) {
  constexpr std::int64_t kRegistro = 12;  // bytes: x, y, z
  bool bien = true;
  while (primero != nullptr) {
    // A point without a number has no place; Seek refuses it.
    bien = fichero->Seek((static_cast<std::int64_t>(primero->num) - 1) * kRegistro, CFile::begin) >= 0 &&
           primero->Write(fichero, CDataSemilla(), 0, FICHERO_NATIVO, 0, 3) && bien;
    CCoor3DIntLista* siguiente = primero->Sig();
    delete primero;
    primero = siguiente;
  }
  cantidad = 0;
  ultimo = actual = nullptr;
  return bien;
}

}  // namespace Meseta47
