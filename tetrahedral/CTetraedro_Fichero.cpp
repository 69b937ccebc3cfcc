// One tetrahedron in a file: 47 bytes, as docs/formats.md gives them.
#include <cstring>

#include "model/geometry/Redondeo.h"
#include "model/terrain/CSetPuntosMdt.h"
#include "platform/CFile.h"
#include "tetrahedral/CTetraedro.h"

namespace Meseta47 {

void CTetraedro::PonRegistro(char (&registro)[kBytes]) const {
  std::int32_t campos[11] = {Redondea(cx), Redondea(cy), Redondea(cz)};
  for (unsigned i = 0; i < 4; ++i) {
    CTetraedro const* vecino = Vecino(i);
    campos[3 + i] = Num(i);
    campos[7 + i] = vecino != nullptr ? vecino->identificador : -1;
  }
  std::memcpy(registro, &marcas, kBytesMarcas);  // bits 0 to 23: where the element lives is nobody else's business
  std::memcpy(registro + kBytesMarcas, campos, sizeof campos);
}

void CTetraedro::TomaRegistro(char const* registro) {
  std::int32_t campos[11];
  std::uint32_t leidas = 0;
  std::memcpy(&leidas, registro, kBytesMarcas);
  std::memcpy(campos, registro + kBytesMarcas, sizeof campos);
  marcas = (marcas & kMascaraSitio) | leidas;
  cx = campos[0];
  cy = campos[1];
  cz = campos[2];
  for (unsigned i = 0; i < 4; ++i) {
    puntos[i] = reinterpret_cast<CCoor3D<int>*>(static_cast<std::intptr_t>(campos[3 + i]));
    vecinos[i] = static_cast<std::uint32_t>(campos[7 + i]);
  }
  distanciaMaxima = 0;
}

bool CTetraedro::Write(CFile* fichero) const {
  char registro[kBytes];
  PonRegistro(registro);
  return fichero->Write(registro, sizeof registro);
}

int CTetraedro::Read(CFile* fichero) {
  char registro[kBytes] = {};
  fichero->Read(registro, sizeof registro);
  TomaRegistro(registro);
  return 1;
}

/// What the file says of faces and edges is dropped, and so is a mark: it means something while a point goes in alone.
void CTetraedro::OlvidaEstados() {
  constexpr std::uint32_t kCaras = 15U << kBitGrabado, kAristas = 1023U << kBitArista[0] | 3U << kBitArista[5];
  marcas = (marcas & ~(kBorrado | kCaras | kAristas)) | kDesconocidas;
}

bool CTetraedro::ResuelvePuntos(CSetPuntosMdt& deLaMalla, CPuntoTIN* marco) {
  bool bien = true;
  for (CCoor3D<int>*& punto : puntos) {
    const auto numero = reinterpret_cast<std::intptr_t>(punto);
    CPuntoTIN* suyo = nullptr;
    if (numero > 0) suyo = deLaMalla.at(static_cast<unsigned>(numero - 1));
    if (numero < 0 && numero >= -kEsquinas) suyo = &marco[-numero - 1];
    bien = bien && suyo != nullptr && suyo->num == numero;
    punto = suyo;
  }
  return bien;
}

bool CTetraedro::ResuelvePrimero(CSetPuntosMdt& deLaMalla, CPuntoTIN* marco, std::size_t total) {
  if (!ResuelvePuntos(deLaMalla, marco)) return false;
  for (const std::uint32_t vecino : vecinos) {
    const auto lugar = static_cast<std::int32_t>(vecino);
    if (lugar < -1 || (lugar >= 0 && vecino >= total)) return false;
  }
  OrdenaPuntos();
  for (unsigned i = 1; i < 4; ++i) {
    if (puntos[i - 1]->num >= puntos[i]->num) return false;
  }
  OlvidaEstados();
  ActualizaMaxMin();
  static_cast<void>(Numero());  // given now, so that threads that link to it only read
  return true;
}

bool CTetraedro::ConcuerdaConVecinos(std::span<CTetraedro* const> todos, std::size_t lugar) const {
  for (unsigned cara = 0; cara < 4; ++cara) {
    if (static_cast<std::int32_t>(vecinos[cara]) < 0) continue;
    CTetraedro const* vecino = todos[vecinos[cara]];
    unsigned const* v = kVertice[cara];
    const int suya = vecino->ContieneCara(Num(v[0]), Num(v[1]), Num(v[2]));
    if (vecino == this || suya == 0 || vecino->vecinos[suya - 1] != lugar) return false;
  }
  return true;
}

void CTetraedro::EnlazaPorLugar(std::span<CTetraedro* const> todos) {
  for (std::uint32_t& vecino : vecinos) {
    vecino = static_cast<std::int32_t>(vecino) < 0 ? 0 : todos[vecino]->Numero();
  }
}

}  // namespace Meseta47
