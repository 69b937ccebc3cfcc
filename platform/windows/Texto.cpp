#include <algorithm>
#include <charconv>
#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <system_error>

#include "platform/Sistema.h"

namespace {

constexpr std::string_view kBanderas = "-+ #0";

/// One conversion of a format: its sign, what stands between it and the percent, and the size of its argument.
struct Conversion {
  std::string delante;  // flags, width and precision, with the numbers of their arguments
  std::string tamano;   // h, l, ll ...
  char letra = 0;
};

/// The system's C library has another locale for each thread, other meanings for "%s" and no way to be asked how long a
/// text becomes. So the text around the conversions, and texts put in, are moved here; only single numbers go through
/// the library, into which a locale enters by nothing but its decimal point.
class Formateador {
 public:
  explicit Formateador(bool ancho, std::va_list argumentos) : ancho_(ancho) { va_copy(argumentos_, argumentos); }
  Formateador(Formateador const&) = delete;
  Formateador& operator=(Formateador const&) = delete;
  ~Formateador() { va_end(argumentos_); }

  /// The whole text in UTF-8; false for a conversion that is none.
  bool Forma(std::string_view formato, std::string& salida) {
    while (!formato.empty()) {
      const std::size_t texto = std::min(formato.find('%'), formato.size());
      salida += formato.substr(0, texto);
      formato.remove_prefix(texto);
      if (formato.empty()) {
        return true;
      }
      formato.remove_prefix(1);
      Conversion conversion;
      if (!Analiza(formato, conversion) || !Agrega(conversion, salida)) {
        return false;
      }
    }
    return true;
  }

 private:
  /// A number of the format, or the argument that stands for it.
  void Numero(std::string_view& formato, std::string& delante) {
    if (!formato.empty() && formato[0] == '*') {
      delante += std::to_string(va_arg(argumentos_, int));
      formato.remove_prefix(1);
      return;
    }
    while (!formato.empty() && formato[0] >= '0' && formato[0] <= '9') {
      delante += formato[0];
      formato.remove_prefix(1);
    }
  }

  bool Analiza(std::string_view& formato, Conversion& conversion) {
    while (!formato.empty() && kBanderas.find(formato[0]) != std::string_view::npos) {
      conversion.delante += formato[0];
      formato.remove_prefix(1);
    }
    Numero(formato, conversion.delante);
    if (!formato.empty() && formato[0] == '.') {
      formato.remove_prefix(1);
      conversion.delante += '.';
      Numero(formato, conversion.delante);
    }
    while (!formato.empty() && std::strchr("hlzjtL", formato[0]) != nullptr) {
      conversion.tamano += formato[0];
      formato.remove_prefix(1);
    }
    if (formato.empty()) {
      return false;
    }
    conversion.letra = formato[0];
    formato.remove_prefix(1);
    return true;
  }

  bool Agrega(Conversion const& conversion, std::string& salida) {
    switch (conversion.letra) {
      case '%':
        salida += '%';
        return true;
      case 's':
      case 'S':
        return AgregaTexto(conversion, salida);
      case 'c':
        return Rellena(conversion, sistema::AUtf8(std::wstring(1, static_cast<wchar_t>(va_arg(argumentos_, int)))),
                       salida);
      case 'd':
      case 'i':
        return AgregaNumero(conversion, "ll", Entero(conversion), salida);
      case 'u':
      case 'o':
      case 'x':
      case 'X':
        return AgregaNumero(conversion, "ll", SinSigno(conversion), salida);
      case 'e':
      case 'E':
      case 'f':
      case 'F':
      case 'g':
      case 'G':
      case 'a':
      case 'A':
        return conversion.tamano == "L" ? AgregaNumero(conversion, "L", va_arg(argumentos_, long double), salida)
                                        : AgregaNumero(conversion, "", va_arg(argumentos_, double), salida);
      case 'p':
        return AgregaNumero(conversion, "", va_arg(argumentos_, void*), salida);
      default:
        return false;
    }
  }

  long long Entero(Conversion const& conversion) {
    std::string const& t = conversion.tamano;
    if (t == "ll" || t == "j" || t == "z" || t == "t") return va_arg(argumentos_, long long);
    if (t == "l") return va_arg(argumentos_, long);
    const int valor = va_arg(argumentos_, int);
    return t == "hh" ? static_cast<signed char>(valor) : t == "h" ? static_cast<short>(valor) : valor;
  }

  unsigned long long SinSigno(Conversion const& conversion) {
    std::string const& t = conversion.tamano;
    if (t == "ll" || t == "j" || t == "z" || t == "t") return va_arg(argumentos_, unsigned long long);
    if (t == "l") return va_arg(argumentos_, unsigned long);
    const unsigned valor = va_arg(argumentos_, unsigned);
    return t == "hh" ? static_cast<unsigned char>(valor) : t == "h" ? static_cast<unsigned short>(valor) : valor;
  }

  /// A bare "s" is of the format's own kind, "hs" narrow, "ls" wide, and "S" of the other kind.
  bool AgregaTexto(Conversion const& conversion, std::string& salida) {
    const bool suyo = conversion.letra == 's' && conversion.tamano.empty();
    const bool ancho = suyo ? ancho_ : conversion.letra == 'S' ? !ancho_ : conversion.tamano == "l";
    if (!ancho) {
      char const* const texto = va_arg(argumentos_, char const*);
      return Rellena(conversion, texto == nullptr ? "(null)" : texto, salida);
    }
    wchar_t const* const texto = va_arg(argumentos_, wchar_t const*);
    if (texto == nullptr) {
      return Rellena(conversion, "(null)", salida);
    }
    const std::string bytes = sistema::AUtf8(texto);
    const bool entero = ancho_ || sistema::DesdeUtf8(bytes) == texto;  // half a character has no narrow form
    return entero && Rellena(conversion, bytes, salida);
  }

  /// Cut to the precision and filled up to the width: in characters of the kind that the format is of.
  bool Rellena(Conversion const& conversion, std::string const& texto, std::string& salida) {
    std::string_view delante = conversion.delante;
    const bool izquierda = delante.find('-') != std::string_view::npos;
    delante.remove_prefix(std::min(delante.find_first_not_of(kBanderas), delante.size()));
    const std::size_t punto = delante.find('.');
    const auto cifras = [](std::string_view numero) {
      std::size_t valor = 0;
      std::from_chars(numero.data(), numero.data() + numero.size(), valor);
      return valor;
    };
    const std::size_t hueco = cifras(delante.substr(0, punto));
    std::wstring piezas = ancho_ ? sistema::DesdeUtf8(texto) : std::wstring(texto.begin(), texto.end());
    if (punto != std::string_view::npos) {
      piezas.resize(std::min(piezas.size(), cifras(delante.substr(punto + 1))));
    }
    const std::string relleno(hueco > piezas.size() ? hueco - piezas.size() : 0, ' ');
    const std::string cuerpo = ancho_ ? sistema::AUtf8(piezas) : texto.substr(0, piezas.size());
    salida += izquierda ? cuerpo + relleno : relleno + cuerpo;
    return true;
  }

  template <class T>
  bool AgregaNumero(Conversion const& conversion, char const* tamano, T valor, std::string& salida) {
    const std::string formato = "%" + conversion.delante + tamano + conversion.letra;
    const int largo = std::snprintf(nullptr, 0, formato.c_str(), valor);
    if (largo < 0) {
      return false;
    }
    std::string numero(static_cast<std::size_t>(largo) + 1, '\0');
    std::snprintf(numero.data(), numero.size(), formato.c_str(), valor);
    numero.pop_back();
    const std::string_view punto = std::localeconv()->decimal_point;
    if (const std::size_t donde = punto == "." ? std::string::npos : numero.find(punto); donde != std::string::npos) {
      numero.replace(donde, punto.size(), ".");
    }
    salida += numero;
    return true;
  }

  std::va_list argumentos_;
  bool ancho_;
};

bool EsBlanco(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }

}  // namespace

namespace sistema {

bool Formatea(std::wstring& salida, wchar_t const* formato, va_list argumentos) {
  std::string texto;
  if (!Formateador(true, argumentos).Forma(AUtf8(formato), texto)) {
    return false;
  }
  salida = DesdeUtf8(texto);
  return true;
}

bool Formatea(std::string& salida, char const* formato, va_list argumentos) {
  return Formateador(false, argumentos).Forma(formato, salida);
}

// Not by the C library: its decimal point is the locale's.
double ConvierteReal(wchar_t const* texto) {
  while (EsBlanco(*texto)) {
    ++texto;
  }
  const bool negativo = *texto == L'-';
  if (negativo || *texto == L'+') {
    ++texto;
  }
  std::string cifras;
  for (; *texto > L' ' && *texto < 0x7F; ++texto) {
    cifras += static_cast<char>(*texto);
  }
  double valor = 0.0;
  const auto [hasta, error] = std::from_chars(cifras.data(), cifras.data() + cifras.size(), valor);
  if (cifras.starts_with('-')) {
    return 0.0;  // a second sign
  }
  if (error == std::errc::result_out_of_range) {  // beyond all numbers, or nearer to 0 than any
    valor = std::strtod(cifras.substr(0, static_cast<std::size_t>(hasta - cifras.data())).c_str(), nullptr);
  }
  return negativo ? -valor : valor;
}

}  // namespace sistema
