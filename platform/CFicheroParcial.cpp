#include "platform/CFicheroParcial.h"

#include <system_error>
#include <utility>

#include "platform/Sistema.h"

namespace {

/// "NAME.part", "NAME.2.part" ...; a name that leaves no room for that is cut.
CString NombreParcial(CString const& destino, unsigned numero) {
  CString final(L".part");
  if (numero > 1) final.Format(L".%u.part", numero);
  const int corte = destino.ReverseFind(sistema::kSeparador) + 1;
  CString nombre = destino.Mid(corte);
  while (nombre.Utf8().size() + final.Utf8().size() > sistema::kMayorNombre) {
    nombre = nombre.Left(nombre.GetLength() - 1);
  }
  return destino.Left(corte) + nombre + final;
}

}  // namespace

CString CarpetaDe(CString const& ruta) {
  const int corte = ruta.ReverseFind(sistema::kSeparador);
  return corte == -1 ? CString(L".") : ruta.Left(corte + 1);
}

CString DestinoFinal(CString const& ruta) {
  constexpr int kMayorCadena = 40;  // as many as the system itself follows
  CString hasta = ruta, siguiente;
  for (int i = 0; i <= kMayorCadena; ++i) {
    if (!sistema::SigueEnlace(hasta, siguiente)) return hasta;
    hasta = siguiente;
  }
  return ruta;
}

CFicheroParcial::CFicheroParcial(CString const& laRuta)
    : ruta(laRuta), destino(DestinoFinal(laRuta)), reemplaza(sistema::Existe(destino)) {
  try {
    Crea();
  } catch (...) {  // memory gave out, perhaps with the file there already: no destructor will follow
    pendiente = fichero.IsOpen();
    Descarta();
    throw;
  }
}

void CFicheroParcial::Crea() {
  const unsigned privado = reemplaza ? unsigned{CFile::modePrivado} : 0U;
  fichero.Empieza(destino, CFile::modeReadWrite);
  if (CString otro; sistema::SigueEnlace(destino, otro)) {
    fichero.Falla(static_cast<int>(std::errc::too_many_symbolic_link_levels), "write");
    return;
  }
  const auto nombre = [this](unsigned numero) { return NombreParcial(destino, numero); };
  if (!fichero.Falla(sistema::AbreNumerado(nombre, CFile::modeCreate | CFile::modeReadWrite | privado, provisional,
                                           fichero.descriptor_),
                     "write")) {
    return;
  }
  pendiente = true;
  cerrojo = sistema::Duplica(fichero.descriptor_);
  if (reemplaza) sistema::HeredaPermisos(fichero.descriptor_, destino);
  fichero.PonSincroniza(reemplaza);
}

bool CFicheroParcial::Cierra() { return fichero.Close(); }

bool CFicheroParcial::Confirma() {
  if (!Cierra() || !pendiente) return false;
  codigoNombre = sistema::Renombra(provisional, destino);
  if (codigoNombre != 0) return false;
  pendiente = false;
  if (reemplaza) sistema::SincronizaCarpeta(CarpetaDe(destino));
  Descarta();
  return true;
}

void CFicheroParcial::Descarta() {
  fichero.Close();
  if (std::exchange(pendiente, false)) sistema::Borra(provisional);
  sistema::Suelta(std::exchange(cerrojo, sistema::kSinFichero));
}

CString CFicheroParcial::Error() const {
  CString texto;
  if (codigoNombre != 0) {
    texto.Format("cannot put a new file in the place of %s: %s", ruta.Utf8().c_str(), Causa().Utf8().c_str());
    return texto;
  }
  return fichero.Error(ruta);
}

CString CFicheroParcial::Causa() const { return CodigoError() == 0 ? CString() : sistema::TextoError(CodigoError()); }

CCerrojoCarpeta::CCerrojoCarpeta(CString const& carpeta)
    : carpeta_(sistema::BloqueaCarpeta(carpeta.IsEmpty() ? CString(L".") : carpeta)) {}

CCerrojoCarpeta::~CCerrojoCarpeta() { sistema::Suelta(carpeta_); }
