#include "model/terrain/Exportacion.h"

#include <atomic>
#include <charconv>
#include <cmath>
#include <condition_variable>
#include <mutex>

#include "model/threads/Reparto.h"
#include "platform/CFile.h"
#include "platform/Procesadores.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kPorBloque = 1 << 14;  // things put into one piece of memory, by one thread
constexpr std::size_t kDigitos = 20;         // of the greatest 64-bit number
constexpr auto kNoHay = static_cast<std::size_t>(-1);

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
    : CEjesReales(elTin.semilla), tin(elTin), numero(elTin.puntos.size(), 0) {
  Reparte(tin.Cantidad(), kPorBloque, [this](std::size_t desde, std::size_t hasta) {
    for (std::size_t i = desde; i < hasta; ++i) {
      for (const std::uint32_t p : tin.Vertices(static_cast<std::uint32_t>(i))) {
        std::atomic_ref<std::uint32_t>(numero[p]).store(1, std::memory_order_relaxed);
      }
    }
  });
  usados.reserve(numero.size());
  for (std::uint32_t p = 0; p < numero.size(); ++p) {
    if (numero[p] == 0) continue;
    numero[p] = static_cast<std::uint32_t>(usados.size());
    usados.push_back(p);
  }
}

namespace {

/// Takes blocks to a file in their order, whichever thread brings them: each waits until those before its own are
/// written, while others form theirs. By a lock and its condition: waiting on an atomic misses wake-ups in the library
/// of GCC 12 where the system has no futexes.
class CEscrituraPorTurno {
 public:
  explicit CEscrituraPorTurno(CFile& elFichero) : fichero(elFichero) {}

  /// `kNoHay` bytes: the block could not be made, and nothing more is written.
  void Escribe(std::size_t bloque, char const* bytes, std::size_t cuantos) {
    std::unique_lock candado(cerrojo);
    siguiente.wait(candado, [&] { return turno == bloque; });
    candado.unlock();  // the turn is this thread's alone
    if (va && (cuantos == kNoHay || !fichero.Write(bytes, cuantos))) va = false;
    candado.lock();
    turno = bloque + 1;
    siguiente.notify_all();
  }
  [[nodiscard]] bool Va() const { return va; }

 private:
  CFile& fichero;
  std::mutex cerrojo;
  std::condition_variable siguiente;
  std::size_t turno = 0;
  std::atomic<bool> va{true};
};

}  // namespace

int EscribeBloques(CFile& fichero, std::size_t cuantas, std::size_t porBloque, std::size_t ancho,
                   CFormaBloque const& forma, CAvance& avance) {
  // A thread has one block at a time, and begins another when all before that one are written: blocks in the making are
  // never further apart than there are threads, and as many pieces of memory go round.
  std::vector<VectorCrudo<char>> piezas(std::min<std::size_t>(NumeroProcesadores(), cuantas / porBloque + 1));
  for (auto& pieza : piezas) pieza.resize(std::min(porBloque, cuantas) * ancho);
  CEscrituraPorTurno escritura(fichero);
  const auto escribe = [&](std::size_t desde, std::size_t hasta) {
    const std::size_t bloque = desde / porBloque, pieza = bloque % piezas.size();
    char* const bytes = piezas[pieza].data();
    char const* const fin = forma(desde, hasta, pieza, bytes);
    escritura.Escribe(bloque, bytes, fin != nullptr ? static_cast<std::size_t>(fin - bytes) : kNoHay);
  };
  avance.Pasada(cuantas);
  const bool todo =
      Reparte(cuantas, porBloque, escribe, [&](std::size_t empezadas) { return escritura.Va() && avance(empezadas); });
  if (!escritura.Va()) return kFicheroInaccesible;
  return todo ? kHecho : kCancelado;
}

int EscribeCosas(CFile& fichero, std::size_t cuantas, std::size_t ancho,
                 std::function<char*(std::size_t, char*)> const& forma, CAvance& avance) {
  const auto deUnaEnUna = [&forma](std::size_t desde, std::size_t hasta, std::size_t, char* destino) {
    for (std::size_t i = desde; i < hasta; ++i) destino = forma(i, destino);
    return destino;
  };
  return EscribeBloques(fichero, cuantas, kPorBloque, ancho, deUnaEnUna, avance);
}

bool EscribeTexto(CFile& fichero, std::string const& texto) { return fichero.Write(texto.data(), texto.size()); }

char* Pon(char* destino, std::uint64_t numero) { return std::to_chars(destino, destino + kDigitos, numero).ptr; }

}  // namespace Meseta47
