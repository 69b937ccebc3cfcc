#include <cstring>
#include <string>

#include "model/terrain/Exportacion.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kAnchoCara = 64;  // keyword, four numbers of ten digits, separators

template <class T>
char* PonBytes(char* destino, T const& valor) {
  std::memcpy(destino, &valor, sizeof valor);
  return destino + sizeof valor;
}

/// x, y and z with blanks between them.
char* PonPunto(char* destino, CSuperficieExportada const& s, CPuntoTIN const& p) {
  destino = Pon(s.x.Escribe(destino, p.x), " ");
  destino = Pon(s.y.Escribe(destino, p.y), " ");
  return s.z.Escribe(destino, p.z);
}

/// The three numbers of a face, counted from 1, with blanks between them.
char* PonCara(char* destino, Terna const& cara) {
  destino = Pon(Pon(destino, std::uint64_t{cara[0]} + 1), " ");
  destino = Pon(Pon(destino, std::uint64_t{cara[1]} + 1), " ");
  return Pon(destino, std::uint64_t{cara[2]} + 1);
}

std::size_t AnchoPunto(CSuperficieExportada const& s) { return s.x.Ancho() + s.y.Ancho() + s.z.Ancho() + 64; }

}  // namespace

std::string CabeceraPLY(std::size_t puntos, std::size_t caras) {
  return "ply\nformat binary_little_endian 1.0\nelement vertex " + std::to_string(puntos) +
         "\nproperty double x\nproperty double y\nproperty double z\nelement face " + std::to_string(caras) +
         "\nproperty list uchar int vertex_indices\nend_header\n";
}

char* PonPuntoPLY(char* destino, CEjesReales const& ejes, CCoor3D<int> const& p) {
  return PonBytes(PonBytes(PonBytes(destino, ejes.x.Valor(p.x)), ejes.y.Valor(p.y)), ejes.z.Valor(p.z));
}

char* PonCaraPLY(char* destino, Terna const& cara) { return PonBytes(Pon(destino, "\x03"), cara); }

int EscribePLY(CFile& fichero, CSuperficieExportada const& s, CAvance& avance) {
  if (!EscribeTexto(fichero, CabeceraPLY(s.Puntos(), s.Caras()))) return kFicheroInaccesible;
  const auto punto = [&s](std::size_t i, char* destino) { return PonPuntoPLY(destino, s, s.Punto(i)); };
  const auto cara = [&s](std::size_t i, char* destino) { return PonCaraPLY(destino, s.Cara(i)); };
  const int codigo = EscribeCosas(fichero, s.Puntos(), kAnchoPuntoPLY, punto, avance);
  return codigo == kHecho ? EscribeCosas(fichero, s.Caras(), kAnchoCaraPLY, cara, avance) : codigo;
}

int EscribeOBJ(CFile& fichero, CSuperficieExportada const& s, CAvance& avance) {
  const auto punto = [&s](std::size_t i, char* destino) {
    return Pon(PonPunto(Pon(destino, "v "), s, s.Punto(i)), "\n");
  };
  const auto cara = [&s](std::size_t i, char* destino) { return Pon(PonCara(Pon(destino, "f "), s.Cara(i)), "\n"); };
  const int codigo = EscribeCosas(fichero, s.Puntos(), AnchoPunto(s), punto, avance);
  return codigo == kHecho ? EscribeCosas(fichero, s.Caras(), kAnchoCara, cara, avance) : codigo;
}

int Escribe2DM(CFile& fichero, CSuperficieExportada const& s, CAvance& avance) {
  if (!EscribeTexto(fichero, "MESH2D\n")) return kFicheroInaccesible;
  const auto punto = [&s](std::size_t i, char* destino) {
    destino = Pon(Pon(Pon(destino, "ND "), std::uint64_t{i} + 1), " ");
    return Pon(PonPunto(destino, s, s.Punto(i)), "\n");
  };
  const auto cara = [&s](std::size_t i, char* destino) {
    destino = Pon(Pon(Pon(destino, "E3T "), std::uint64_t{i} + 1), " ");
    return Pon(PonCara(destino, s.Cara(i)), " 1\n");  // all of one material
  };
  const int codigo = EscribeCosas(fichero, s.Caras(), kAnchoCara, cara, avance);
  return codigo == kHecho ? EscribeCosas(fichero, s.Puntos(), AnchoPunto(s), punto, avance) : codigo;
}

}  // namespace Meseta47
