#include "run/CFicheroTriples.h"

#include <algorithm>

#include "model/threads/Codigos.h"
#include "platform/Temporales.h"

namespace Meseta47 {

int CFicheroTriples::Abre(unsigned identificador, wchar_t const* deReserva) {
  constexpr unsigned kNuevo = CFile::modeCreate | CFile::modeNuevo | CFile::modePrivado | CFile::modeReadWrite;
  Borra();
  CString prefijo;
  prefijo.Format(L"%dMD", static_cast<int>(identificador));
  wchar_t carpeta[MAX_PATH];
  const unsigned long largo = GetTempPathW(MAX_PATH, carpeta);
  auto nuevo = std::make_unique<CFile>();
  bool abierto = nuevo->AbreTemporal(largo != 0 && largo < MAX_PATH ? carpeta : L".", prefijo);
  tieneNombre = !abierto;
  ruta = abierto ? nuevo->GetFilePath() : prefijo + deReserva;
  abierto = abierto || nuevo->Open(ruta, kNuevo);
  if (!abierto) return kFicheroInaccesible;
  fichero = std::move(nuevo);
  return kHecho;
}

void CFicheroTriples::Borra() {
  if (fichero == nullptr) return;
  fichero->Close();
  fichero.reset();
  if (tieneNombre) DeleteFileW(ruta);
}

bool CLectorTriples::Abre(CString const& ruta) {
  bloque.reserve(cuantosPide);
  return fichero.Open(ruta, CFile::modeRead | CFile::shareDenyNone | CFile::typeBinary);
}

bool CLectorTriples::Situa(unsigned k, unsigned porHilo, std::uint64_t longitud) {
  const std::uint64_t trozo = std::uint64_t{porHilo} * CFicheroTriples::kBytes;
  const std::uint64_t comienzo = k * trozo;
  fichero.Seek(static_cast<long long>(comienzo), CFile::begin);
  limite = std::min(comienzo + trozo, longitud);
  return !fichero.HayError();
}

std::span<CTriple const> CLectorTriples::Siguiente() {
  constexpr std::uint64_t kBytes = CFicheroTriples::kBytes;
  const std::uint64_t posicion = fichero.GetPosition();
  if (posicion >= limite) return {};
  const auto cuantos =
      static_cast<unsigned>(std::min<std::uint64_t>((limite - posicion + kBytes - 1) / kBytes, cuantosPide));
  bloque.resize(cuantos);
  const unsigned leidos = fichero.Read(bloque.data(), cuantos * CFicheroTriples::kBytes);
  return {bloque.data(), leidos / CFicheroTriples::kBytes};
}

}  // namespace Meseta47
