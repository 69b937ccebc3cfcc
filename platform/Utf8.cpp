#include <algorithm>
#include <utility>

#include "platform/Sistema.h"

namespace {

/// What bytes that are no UTF-8 become: lone surrogates, which no valid text holds.
constexpr char32_t kByteSuelto = 0xDC00;
constexpr char32_t kDesconocido = 0xFFFD;

/// Length of the valid sequence that the text begins with, and its character; 0 when there is none.
std::size_t Secuencia(std::string_view texto, char32_t& caracter) {
  const auto primero = static_cast<unsigned char>(texto[0]);
  const std::size_t largo = primero < 0x80 ? 1 : primero < 0xC2 ? 0 : primero < 0xE0 ? 2 : primero < 0xF0 ? 3 : 4;
  if (largo == 0 || primero > 0xF4 || texto.size() < largo) {
    return 0;
  }
  caracter = largo == 1 ? primero : primero & (0x7Fu >> largo);
  for (std::size_t i = 1; i < largo; ++i) {
    const auto byte = static_cast<unsigned char>(texto[i]);
    if ((byte & 0xC0u) != 0x80u) {
      return 0;
    }
    caracter = (caracter << 6) | (byte & 0x3Fu);
  }
  constexpr char32_t kMenor[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool valido = caracter >= kMenor[largo] && caracter <= 0x10FFFF && (caracter < 0xD800 || caracter > 0xDFFF);
  return valido ? largo : 0;
}

template <class F>
void Codifica(char32_t c, F&& agrega) {
  const auto cola = [&](unsigned desplaza) { agrega(static_cast<char>(0x80u | ((c >> desplaza) & 0x3Fu))); };
  if (c < 0x80) {
    agrega(static_cast<char>(c));
  } else if (c < 0x800) {
    agrega(static_cast<char>(0xC0u | (c >> 6)));
    cola(0);
  } else if (c < 0x10000) {
    agrega(static_cast<char>(0xE0u | (c >> 12)));
    cola(6);
    cola(0);
  } else {
    agrega(static_cast<char>(0xF0u | (c >> 18)));
    cola(12);
    cola(6);
    cola(0);
  }
}

// Where wide characters have 16 bits, those beyond are two of them: the first from here, the second from kByteSuelto.
constexpr bool kDePares = sizeof(wchar_t) == 2;
constexpr char32_t kPrimeraMitad = 0xD800;
constexpr unsigned kBitsMitad = 10;
constexpr char32_t kMascaraMitad = 0x3FF;
constexpr char32_t kTrasElPlano = 0x10000;

/// The character at the beginning of a text, and how many wide characters it takes.
std::pair<char32_t, std::size_t> Primero(std::wstring_view texto) {
  const auto c = static_cast<char32_t>(texto[0]);
  if (kDePares && texto.size() > 1 && (c & ~kMascaraMitad) == kPrimeraMitad) {
    const auto segunda = static_cast<char32_t>(texto[1]);
    if ((segunda & ~kMascaraMitad) == kByteSuelto) {
      return {kTrasElPlano + ((c & kMascaraMitad) << kBitsMitad | (segunda & kMascaraMitad)), 2};
    }
  }
  return {c, 1};
}

/// Gives the bytes of a text one by one.
template <class F>
void Codifica(std::wstring_view texto, F&& agrega) {
  while (!texto.empty()) {
    const auto [c, largo] = Primero(texto);
    texto.remove_prefix(largo);
    if (c >= kByteSuelto + 0x80 && c <= kByteSuelto + 0xFF) {
      agrega(static_cast<char>(c - kByteSuelto));
    } else {
      const bool valido = c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
      Codifica(valido ? c : kDesconocido, agrega);
    }
  }
}

void Agrega(std::wstring& salida, char32_t c) {
  if (kDePares && c >= kTrasElPlano) {
    salida += static_cast<wchar_t>(kPrimeraMitad + ((c - kTrasElPlano) >> kBitsMitad));
    c = kByteSuelto + ((c - kTrasElPlano) & kMascaraMitad);
  }
  salida += static_cast<wchar_t>(c);
}

}  // namespace

namespace sistema {

std::wstring DesdeUtf8(std::string_view texto) {
  std::wstring salida;
  salida.reserve(texto.size());
  while (!texto.empty()) {
    char32_t caracter = 0;
    const std::size_t largo = Secuencia(texto, caracter);
    Agrega(salida, largo != 0 ? caracter : kByteSuelto + static_cast<unsigned char>(texto[0]));
    texto.remove_prefix(std::max<std::size_t>(largo, 1));
  }
  return salida;
}

std::string AUtf8(std::wstring_view texto) {
  std::string salida;
  salida.reserve(texto.size());
  Codifica(texto, [&](char byte) { salida += byte; });
  return salida;
}

bool AUtf8(std::wstring_view texto, std::span<char> destino) noexcept {
  std::size_t largo = 0;
  Codifica(texto, [&](char byte) {
    if (largo < destino.size()) destino[largo] = byte;
    ++largo;
  });
  if (largo >= destino.size()) return false;
  destino[largo] = 0;
  return true;
}

}  // namespace sistema
