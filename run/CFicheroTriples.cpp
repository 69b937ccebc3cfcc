#include "run/CFicheroTriples.h"

#include <algorithm>
#include <new>

#include "model/threads/Codigos.h"
#include "platform/Temporales.h"

namespace Meseta47 {

namespace {

/// A name that no other file has, which the system makes by making the file; or one made up here.
CString FormaRuta(unsigned identificador, wchar_t const* deReserva) {
  CString prefijo;
  prefijo.Format(L"%dMD", static_cast<int>(identificador));
  wchar_t carpeta[MAX_PATH], nombre[MAX_PATH];
  const unsigned long largo = GetTempPathW(MAX_PATH, carpeta);
  const bool hayCarpeta = largo != 0 && largo < MAX_PATH;
  if (GetTempFileNameW(hayCarpeta ? carpeta : L".", prefijo, 0, nombre) == 0) return prefijo + deReserva;
  try {
    return nombre;
  } catch (std::bad_alloc const&) {
    DeleteFileW(nombre);  // it is there already
    throw;
  }
}

}  // namespace

int CFicheroTriples::Abre(unsigned identificador, wchar_t const* deReserva) {
  constexpr unsigned kNuevo = CFile::modeCreate | CFile::modeReadWrite | CFile::shareDenyNone | CFile::typeBinary;
  Borra();
  auto nuevo = std::make_unique<CFile>();  // before the name: what it names exists, and goes with the object
  ruta = FormaRuta(identificador, deReserva);
  fichero = std::move(nuevo);
  if (fichero->Open(ruta, kNuevo)) return kHecho;
  Borra();
  return kFicheroInaccesible;
}

void CFicheroTriples::Borra() {
  if (fichero == nullptr) return;
  fichero->Close();
  fichero.reset();
  DeleteFileW(ruta);
}

bool CLectorTriples::Abre(CString const& ruta) {
  return fichero.Open(ruta, CFile::modeRead | CFile::shareDenyNone | CFile::typeBinary);
}

bool CLectorTriples::Situa(unsigned k, unsigned porHilo, std::uint64_t longitud) {
  const std::uint64_t trozo = std::uint64_t{porHilo} * CFicheroTriples::kBytes;
  fichero.Seek(static_cast<long long>(k * trozo), CFile::begin);
  limite = std::min((k + std::uint64_t{1}) * trozo, longitud);
  return !fichero.HayError();
}

std::span<CTriple const> CLectorTriples::Siguiente() {
  constexpr std::uint64_t kBytes = CFicheroTriples::kBytes;
  const std::uint64_t posicion = fichero.GetPosition();
  if (posicion >= limite) return {};
  const auto cuantos =
      static_cast<unsigned>(std::min<std::uint64_t>((limite - posicion + kBytes - 1) / kBytes, porBloque_));
  bloque.resize(cuantos);
  const unsigned leidos = fichero.Read(bloque.data(), cuantos * CFicheroTriples::kBytes);
  return {bloque.data(), leidos / CFicheroTriples::kBytes};
}

}  // namespace Meseta47
