#include "platform/CString.h"

#include <algorithm>
#include <cstdarg>
#include <cwchar>
#include <cwctype>
#include <limits>
#include <ostream>

#include "platform/Sistema.h"

namespace {

wchar_t const* SinNulo(wchar_t const* texto) { return texto == nullptr ? L"" : texto; }

bool EsBlanco(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }

}  // namespace

CString::CString(wchar_t const* texto) : texto_(SinNulo(texto)) {}

CString::CString(char const* texto) : texto_(sistema::DesdeUtf8(texto == nullptr ? "" : texto)) {}

CString CString::DesdeUtf8(std::string_view texto) { return sistema::DesdeUtf8(texto); }

std::string CString::Utf8() const { return sistema::AUtf8(texto_); }

void CString::Format(wchar_t const* formato, ...) {
  std::wstring nuevo;
  std::va_list argumentos;
  va_start(argumentos, formato);
  if (!sistema::Formatea(nuevo, formato, argumentos)) {
    nuevo.clear();
  }
  va_end(argumentos);
  texto_ = std::move(nuevo);
}

void CString::Format(char const* formato, ...) {
  std::string nuevo;
  std::va_list argumentos;
  va_start(argumentos, formato);
  if (!sistema::Formatea(nuevo, formato, argumentos)) {
    nuevo.clear();
  }
  va_end(argumentos);
  texto_ = sistema::DesdeUtf8(nuevo);
}

CString CString::Left(int cuantos) const { return Mid(0, cuantos); }

CString CString::Right(int cuantos) const { return Mid(GetLength() - std::clamp(cuantos, 0, GetLength())); }

CString CString::Mid(int desde) const { return Mid(desde, GetLength()); }

CString CString::Mid(int desde, int cuantos) const {
  const int inicio = std::clamp(desde, 0, GetLength());
  return texto_.substr(static_cast<std::size_t>(inicio), static_cast<std::size_t>(std::max(cuantos, 0)));
}

int CString::Find(wchar_t const* buscado, int desde) const {
  const auto posicion = texto_.find(SinNulo(buscado), static_cast<std::size_t>(std::max(desde, 0)));
  return posicion == std::wstring::npos ? -1 : static_cast<int>(posicion);
}

int CString::Find(wchar_t buscado, int desde) const {
  const auto posicion = texto_.find(buscado, static_cast<std::size_t>(std::max(desde, 0)));
  return posicion == std::wstring::npos ? -1 : static_cast<int>(posicion);
}

int CString::ReverseFind(wchar_t buscado) const {
  const auto posicion = texto_.rfind(buscado);
  return posicion == std::wstring::npos ? -1 : static_cast<int>(posicion);
}

int CString::Compare(wchar_t const* otro) const { return texto_.compare(SinNulo(otro)); }

int CString::CompareNoCase(wchar_t const* otro) const {
  wchar_t const* a = GetString();
  wchar_t const* b = SinNulo(otro);
  for (; *a != 0 || *b != 0; ++a, ++b) {
    const auto x = std::towlower(static_cast<std::wint_t>(*a));
    const auto y = std::towlower(static_cast<std::wint_t>(*b));
    if (x != y) {
      return x < y ? -1 : 1;
    }
  }
  return 0;
}

CString& CString::operator+=(CString const& otro) {
  texto_ += otro.texto_;
  return *this;
}

CString& CString::operator+=(wchar_t const* otro) {
  texto_ += SinNulo(otro);
  return *this;
}

CString& CString::operator+=(wchar_t otro) {
  texto_ += otro;
  return *this;
}

std::ostream& operator<<(std::ostream& salida, CString const& texto) { return salida << texto.Utf8(); }

int EnteroDe(wchar_t const* texto) {
  texto = SinNulo(texto);
  while (EsBlanco(*texto)) {
    ++texto;
  }
  const bool negativo = *texto == L'-';
  if (negativo || *texto == L'+') {
    ++texto;
  }
  constexpr long long kTope = std::numeric_limits<int>::max();
  long long valor = 0;
  for (; *texto >= L'0' && *texto <= L'9'; ++texto) {
    valor = std::min(valor * 10 + (*texto - L'0'), kTope + 1);
  }
  return static_cast<int>(negativo ? -valor : std::min(valor, kTope));
}

double RealDe(wchar_t const* texto) { return sistema::ConvierteReal(SinNulo(texto)); }
