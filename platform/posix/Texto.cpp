#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cwchar>
#include <locale.h>
#include <system_error>

#include "platform/Sistema.h"

namespace {

/// While it lives, this thread formats and reads numbers with a decimal point and narrow text as UTF-8, whatever the
/// program's locale.
class LocalNeutro {
 public:
  LocalNeutro() : anterior_(::uselocale(Neutro())) {}
  LocalNeutro(LocalNeutro const&) = delete;
  LocalNeutro& operator=(LocalNeutro const&) = delete;
  ~LocalNeutro() { ::uselocale(anterior_); }

 private:
  static ::locale_t Neutro() {
    static const ::locale_t neutro = [] {
      const ::locale_t utf8 = ::newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
      return utf8 != nullptr ? utf8 : ::newlocale(LC_ALL_MASK, "C", nullptr);
    }();
    return neutro;
  }

  ::locale_t anterior_;
};

/// Turns the framework's wide conversions into the C library's: a bare "s" is wide text and "S" or "hs" narrow.
std::wstring Traducido(wchar_t const* formato) {
  std::wstring traducido;
  while (*formato != 0) {
    traducido += *formato;
    if (*formato++ != L'%') {
      continue;
    }
    while (*formato != 0 && std::wcschr(L"-+ #0123456789.*", *formato) != nullptr) {
      traducido += *formato++;
    }
    if (*formato == L'S' || (formato[0] == L'h' && formato[1] == L's')) {
      formato += *formato == L'h' ? 2 : 1;
      traducido += L's';
    } else if (*formato == L's') {
      traducido += L"ls";
      ++formato;
    } else if (*formato != 0) {
      traducido += *formato++;
    }
  }
  return traducido;
}

// Texts beyond this are taken for a format gone wrong.
constexpr std::size_t kMayorTexto = std::size_t{1} << 26;

/// What bytes that are no UTF-8 become: lone surrogates, which no valid text holds.
constexpr wchar_t kByteSuelto = 0xDC00;
constexpr wchar_t kDesconocido = 0xFFFD;

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

/// Gives the bytes of a text one by one.
template <class F>
void Codifica(std::wstring_view texto, F&& agrega) {
  for (const wchar_t c : texto) {
    if (c >= kByteSuelto + 0x80 && c <= kByteSuelto + 0xFF) {
      agrega(static_cast<char>(c - kByteSuelto));
    } else {
      const bool valido = c >= 0 && c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
      Codifica(static_cast<char32_t>(valido ? c : kDesconocido), agrega);
    }
  }
}

}  // namespace

namespace sistema {

bool Formatea(std::wstring& salida, wchar_t const* formato, va_list argumentos) {
  const std::wstring traducido = Traducido(formato);
  const LocalNeutro local;
  // The C library does not tell how much room a wide text needs: it is asked again with twice as much.
  for (std::size_t hueco = 128; hueco <= kMayorTexto; hueco *= 2) {
    salida.resize(hueco);
    std::va_list copia;
    va_copy(copia, argumentos);
    errno = 0;
    const int escritos = std::vswprintf(salida.data(), hueco, traducido.c_str(), copia);
    va_end(copia);
    if (escritos >= 0) {
      salida.resize(static_cast<std::size_t>(escritos));
      return true;
    }
    if (errno == EILSEQ) {
      return false;
    }
  }
  return false;
}

bool Formatea(std::string& salida, char const* formato, va_list argumentos) {
  const LocalNeutro local;
  std::va_list copia;
  va_copy(copia, argumentos);
  const int largo = std::vsnprintf(nullptr, 0, formato, copia);
  va_end(copia);
  if (largo < 0) {
    return false;
  }
  salida.resize(static_cast<std::size_t>(largo));
  return std::vsnprintf(salida.data(), salida.size() + 1, formato, argumentos) == largo;
}

double ConvierteReal(wchar_t const* texto) {
  const LocalNeutro local;
  return std::wcstod(texto, nullptr);
}

std::wstring DesdeUtf8(std::string_view texto) {
  std::wstring salida;
  salida.reserve(texto.size());
  while (!texto.empty()) {
    char32_t caracter = 0;
    const std::size_t largo = Secuencia(texto, caracter);
    salida += largo != 0 ? static_cast<wchar_t>(caracter)
                         : static_cast<wchar_t>(kByteSuelto + static_cast<unsigned char>(texto[0]));
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

CString TextoError(int codigo) { return CString::DesdeUtf8(std::generic_category().message(codigo)); }

}  // namespace sistema
