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

CString TextoError(int codigo) { return CString::DesdeUtf8(std::generic_category().message(codigo)); }

}  // namespace sistema
