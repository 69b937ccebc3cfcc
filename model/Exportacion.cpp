#include "model/Exportacion.h"

#include <charconv>
#include <cmath>

#include "model/Reparto.h"
#include "platform/CFile.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kPorBloque = 1 << 15;  // things put into one piece of memory, by one thread
constexpr std::size_t kBloques = 16;         // pieces between two visits to the file
constexpr std::size_t kDigitos = 20;         // of the greatest 64-bit number

std::int64_t Potencia10(int exponente) {
  std::int64_t p = 1;
  while (exponente-- > 0) p *= 10;
  return p;
}

}  // namespace

CEjeReal::CEjeReal(int precision, double elOrigen)
    : origen(elOrigen), decimales(std::max(precision, 0)), escala(std::pow(10.0, precision)) {
  // Below 10^18 with the integers themselves, which have ten digits: 64 bits hold it.
  constexpr int kMasDecimales = 9;
  entero = std::abs(precision) <= kMasDecimales && std::floor(origen) == origen && std::abs(origen) < 8e8;
  if (!entero) return;
  unidad = static_cast<std::uint64_t>(Potencia10(decimales));
  factor = Potencia10(-precision);
  desplazamiento = static_cast<std::int64_t>(origen) * Potencia10(decimales);
}

double CEjeReal::Valor(int v) const {
  if (entero) return static_cast<double>(Entero(v)) / static_cast<double>(unidad);
  return v / escala + origen;
}

char* CEjeReal::Escribe(char* destino, int v) const {
  if (!entero) {
    return std::to_chars(destino, destino + Ancho(), Valor(v), std::chars_format::fixed, decimales).ptr;
  }
  const std::int64_t n = Entero(v);
  if (n < 0) *destino++ = '-';
  const auto absoluto = static_cast<std::uint64_t>(n < 0 ? -n : n);
  destino = Pon(destino, absoluto / unidad);
  if (decimales == 0) return destino;
  *destino++ = '.';
  std::uint64_t resto = absoluto % unidad;
  for (int i = decimales - 1; i >= 0; --i, resto /= 10) destino[i] = static_cast<char>('0' + resto % 10);
  return destino + decimales;
}

CSuperficieExportada::CSuperficieExportada(CTIN const& elTin)
    : x(elTin.semilla.precision, elTin.semilla.origen[0]),
      y(elTin.semilla.precision, elTin.semilla.origen[1]),
      z(elTin.semilla.precision, elTin.semilla.origen[2]),
      tin(elTin),
      numero(elTin.puntos.size(), 0) {
  for (std::uint32_t i = 0; i < tin.Cantidad(); ++i) {
    for (const std::uint32_t p : tin.Vertices(i)) numero[p] = 1;
  }
  for (std::uint32_t p = 0; p < numero.size(); ++p) {
    if (numero[p] == 0) continue;
    numero[p] = static_cast<std::uint32_t>(usados.size());
    usados.push_back(p);
  }
}

int EscribeCosas(CFile& fichero, std::size_t cuantas, std::size_t ancho,
                 std::function<char*(std::size_t, char*)> const& forma, CAvance& avance) {
  struct Bloque {
    VectorCrudo<char> bytes;
    std::size_t lleno = 0;
  };
  std::vector<Bloque> bloques(std::min(kBloques, (cuantas + kPorBloque - 1) / kPorBloque));
  for (Bloque& bloque : bloques) bloque.bytes.resize(std::min(kPorBloque, cuantas) * ancho);
  avance.Pasada(cuantas);
  for (std::size_t hechas = 0; hechas < cuantas; hechas += kBloques * kPorBloque) {
    const std::size_t tanda = std::min(kBloques * kPorBloque, cuantas - hechas);
    Reparte(tanda, kPorBloque, [&](std::size_t desde, std::size_t hasta) {
      Bloque& bloque = bloques[desde / kPorBloque];
      char* fin = bloque.bytes.data();
      for (std::size_t i = desde; i < hasta; ++i) fin = forma(hechas + i, fin);
      bloque.lleno = static_cast<std::size_t>(fin - bloque.bytes.data());
    });
    for (std::size_t i = 0; i * kPorBloque < tanda; ++i) {
      if (!fichero.Write(bloques[i].bytes.data(), bloques[i].lleno)) return kFicheroInaccesible;
    }
    if (!avance(hechas + tanda)) return kCancelado;
  }
  return kHecho;
}

bool EscribeTexto(CFile& fichero, std::string const& texto) { return fichero.Write(texto.data(), texto.size()); }

char* Pon(char* destino, std::uint64_t numero) { return std::to_chars(destino, destino + kDigitos, numero).ptr; }

}  // namespace Meseta47
