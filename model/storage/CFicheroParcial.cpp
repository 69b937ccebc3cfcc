#include "model/storage/CFicheroParcial.h"

#include "platform/Ficheros.h"

namespace Meseta47 {

CFicheroParcial::CFicheroParcial(CString const& laRuta) : ruta(laRuta), provisional(laRuta + L".part") {
  abierto = fichero.Open(provisional, CFile::modeCreate | CFile::modeWrite);
}

CFicheroParcial::~CFicheroParcial() {
  if (!abierto || confirmado) return;
  fichero.Close();
  BorraFichero(provisional);
}

bool CFicheroParcial::Confirma() {
  confirmado = fichero.Close() && RenombraFichero(provisional, ruta, &error);
  return confirmado;
}

}  // namespace Meseta47
