#include "platform/CFicheroParcial.h"

#include <system_error>
#include <utility>

#include "platform/Sistema.h"

namespace {

/// "NAME.part", "NAME.2.part" ...; a name that leaves no room for that is cut.
CString NombreParcial(CString const& destino, unsigned numero) {
  CString final(L".part");
  if (numero > 1) final.Format(L".%u.part", numero);
  const int corte = sistema::UltimoSeparador(destino) + 1;
  CString nombre = destino.Mid(corte);
  while (nombre.Utf8().size() + final.Utf8().size() > sistema::kMayorNombre) {
    nombre = nombre.Left(nombre.GetLength() - 1);
  }
  return destino.Left(corte) + nombre + final;
}

}  // namespace

CString CarpetaDe(CString const& ruta) {
  const int corte = sistema::UltimoSeparador(ruta);
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

CFicheroParcial::CFicheroParcial(CString const& ruta)
    : ruta_(ruta), destino_(DestinoFinal(ruta)), reemplaza_(sistema::Existe(destino_)) {
  try {
    Crea();
  } catch (...) {  // memory gave out, perhaps with the file there already: no destructor will follow
    pendiente_ = fichero_.IsOpen();
    Descarta();
    throw;
  }
}

void CFicheroParcial::Crea() {
  const unsigned privado = reemplaza_ ? unsigned{CFile::modePrivado} : 0U;
  fichero_.Empieza(destino_, CFile::modeReadWrite);
  if (CString otro; sistema::SigueEnlace(destino_, otro)) {
    fichero_.Falla(static_cast<int>(std::errc::too_many_symbolic_link_levels), "write");
    return;
  }
  const auto nombre = [this](unsigned numero) { return NombreParcial(destino_, numero); };
  if (!fichero_.Falla(sistema::AbreNumerado(nombre, CFile::modeCreate | CFile::modeReadWrite | privado, provisional_,
                                            fichero_.descriptor_),
                      "write")) {
    return;
  }
  pendiente_ = true;
  cerrojo_ = sistema::Duplica(fichero_.descriptor_);
  if (reemplaza_) sistema::HeredaPermisos(fichero_.descriptor_, destino_);
  fichero_.PonSincroniza(reemplaza_);
}

bool CFicheroParcial::Cierra() { return fichero_.Close(); }

bool CFicheroParcial::Confirma() {
  if (!Cierra() || !pendiente_) return false;
  const CString carpeta = reemplaza_ ? CarpetaDe(destino_) : CString();  // now: behind the renaming nothing may fail
  codigoNombre_ = sistema::Renombra(provisional_, destino_);
  if (codigoNombre_ != 0) return false;
  pendiente_ = false;
  if (reemplaza_) sistema::SincronizaCarpeta(carpeta);
  Descarta();
  return true;
}

void CFicheroParcial::Descarta() {
  fichero_.Close();
  if (std::exchange(pendiente_, false)) sistema::Borra(provisional_);
  sistema::Suelta(std::exchange(cerrojo_, sistema::kSinFichero));
}

CString CFicheroParcial::Error() const {
  CString texto;
  if (codigoNombre_ != 0) {
    texto.Format("cannot put a new file in the place of %s: %s", ruta_.Utf8().c_str(), Causa().Utf8().c_str());
    return texto;
  }
  return fichero_.Error(ruta_);
}

CString CFicheroParcial::Causa() const {
  return codigoNombre_ != 0 ? sistema::TextoError(codigoNombre_) : fichero_.Causa();
}

CCerrojoCarpeta::CCerrojoCarpeta(CString const& carpeta)
    : carpeta_(sistema::BloqueaCarpeta(carpeta.IsEmpty() ? CString(L".") : carpeta)) {}

CCerrojoCarpeta::~CCerrojoCarpeta() { sistema::Suelta(carpeta_); }
