#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

#include "platform/Exporta.h"

/// Wide text. A value: copies are independent, and one object is used by one thread at a time.
///
/// Narrow text is UTF-8 wherever it enters or leaves. A byte that is no UTF-8 (the name of an old file, say) becomes a
/// private code that Utf8() turns back into the same byte, so any path survives the round trip.
class URDIMBRE_API CString {
 public:
  CString() = default;
  CString(wchar_t const* texto);  ///< Null gives an empty text.
  CString(char const* texto);     ///< UTF-8. Null gives an empty text.
  CString(std::wstring texto) : texto_(std::move(texto)) {}
  static CString DesdeUtf8(std::string_view texto);

  /// Replaces the text by a formatted one, as printf does, always with a decimal point whatever the locale. In a wide
  /// format "%s" takes wide text and "%hs" UTF-8; in a narrow one "%s" takes UTF-8 and "%ls" wide text.
  /// An argument may point into this very text. A format that the C library refuses leaves an empty text.
  void Format(wchar_t const* formato, ...);
  void Format(char const* formato, ...) URDIMBRE_FORMATO(2, 3);

  [[nodiscard]] int GetLength() const { return static_cast<int>(texto_.size()); }
  [[nodiscard]] bool IsEmpty() const { return texto_.empty(); }
  void Empty() { texto_.clear(); }
  [[nodiscard]] wchar_t const* GetString() const { return texto_.c_str(); }
  operator wchar_t const*() const { return texto_.c_str(); }
  [[nodiscard]] std::string Utf8() const;

  /// The character at a position from 0 to GetLength(), where the closing zero stands.
  template <std::integral T>
  [[nodiscard]] wchar_t operator[](T posicion) const {
    return texto_[static_cast<std::size_t>(posicion)];
  }

  /// Pieces of the text. Positions and lengths that leave it are cut to it.
  [[nodiscard]] CString Left(int cuantos) const;
  [[nodiscard]] CString Right(int cuantos) const;
  [[nodiscard]] CString Mid(int desde) const;
  [[nodiscard]] CString Mid(int desde, int cuantos) const;

  /// Position of the first occurrence at or after `desde`, or of the last one; -1 when there is none.
  [[nodiscard]] int Find(wchar_t const* buscado, int desde = 0) const;
  [[nodiscard]] int Find(wchar_t buscado, int desde = 0) const;
  [[nodiscard]] int ReverseFind(wchar_t buscado) const;

  /// Negative, 0 or positive, as the C library orders text; the second takes no account of upper and lower case.
  [[nodiscard]] int Compare(wchar_t const* otro) const;
  [[nodiscard]] int CompareNoCase(wchar_t const* otro) const;

  CString& operator+=(CString const& otro);
  CString& operator+=(wchar_t const* otro);
  CString& operator+=(wchar_t otro);

  friend CString operator+(CString izquierda, CString const& derecha) { return std::move(izquierda += derecha); }
  friend CString operator+(CString izquierda, wchar_t const* derecha) { return std::move(izquierda += derecha); }
  friend CString operator+(wchar_t const* izquierda, CString const& derecha) { return CString(izquierda) += derecha; }
  friend CString operator+(CString izquierda, wchar_t derecha) { return std::move(izquierda += derecha); }

  friend bool operator==(CString const& a, CString const& b) { return a.texto_ == b.texto_; }
  friend bool operator==(CString const& a, wchar_t const* b) { return a.Compare(b) == 0; }
  friend std::strong_ordering operator<=>(CString const& a, CString const& b) { return a.Compare(b.GetString()) <=> 0; }
  friend std::strong_ordering operator<=>(CString const& a, wchar_t const* b) { return a.Compare(b) <=> 0; }

 private:
  std::wstring texto_;
};

/// Writes the text as UTF-8.
URDIMBRE_API std::ostream& operator<<(std::ostream& salida, CString const& texto);

/// The integer that a text begins with, after spaces and a sign; 0 when there is none (or the text is null), and the
/// nearest int when the number does not fit.
[[nodiscard]] URDIMBRE_API int EnteroDe(wchar_t const* texto);

/// The real number that a text begins with, after spaces, always with a decimal point; 0.0 when there is none.
[[nodiscard]] URDIMBRE_API double RealDe(wchar_t const* texto);

#if !defined(_WIN32)  // The names that hosts know.
[[nodiscard]] inline int _wtoi(wchar_t const* texto) { return EnteroDe(texto); }
[[nodiscard]] inline double _wtof(wchar_t const* texto) { return RealDe(texto); }
#endif  // On Windows they are the C library's, which has a decimal comma at times.
