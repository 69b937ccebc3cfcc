#include "model/terrain/CModeloDigital.h"

#include <algorithm>

#include "model/threads/Codigos.h"
#include "model/threads/IPorcentaje.h"
#include "platform/CFicheroParcial.h"

namespace Meseta47 {

CModeloDigital& CModeloDigital::operator=(CModeloDigital const& otro) {
  auto copia = std::make_unique<CTIN>(*otro.tin);
  CObjetoFichero::operator=(otro);
  tin = std::move(copia);
  return *this;
}

void CModeloDigital::ActualizaCantidades() {
  tin->ActualizaCantidades();
  std::copy(std::begin(tin->cantidades), std::end(tin->cantidades), std::begin(cantidades));
}

void CModeloDigital::Clear() {
  tin->Clear();
  CObjetoFichero::Clear();
}

CNivelMensajes CModeloDigital::Mensajes(CNivelMensajes nivel) {
  tin->Mensajes(nivel);
  return CObjetoFichero::Mensajes(nivel);
}

IPorcentaje* CModeloDigital::Progreso() const { return nivelMensajes > 0 ? BuscaPorcentaje() : nullptr; }

/// The end of every way of writing: the file gets its name, or the failure its number and text.
int CModeloDigital::Entrega(CFicheroParcial& parcial, int codigo) {
  if (codigo == kHecho && !parcial.Confirma()) codigo = kFicheroInaccesible;
  codigoError = codigo == kFicheroInaccesible ? parcial.CodigoError() : 0;
  error = codigo == kFicheroInaccesible ? parcial.Error() : CString();
  return codigo;
}

}  // namespace Meseta47
