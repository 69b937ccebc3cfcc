#pragma once

#include <array>
#include <memory>

#include "platform/CString.h"

#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <windows.h>

/// What the sources of this folder share.
namespace win32 {

/// Closes a handle at the end of a block.
struct CierraManejador {
  using pointer = HANDLE;
  void operator()(HANDLE manejador) const { ::CloseHandle(manejador); }
};
using Manejador = std::unique_ptr<void, CierraManejador>;

/// The failure that GetLastError() names, under its number in std::errc where there is one; else beyond those, so that
/// TextoError() can ask the system for its text.
int Codigo(DWORD error);
inline int UltimoCodigo() { return Codigo(::GetLastError()); }
inline constexpr int kSinNumero = 100000;  ///< added to the system's number of a failure that std::errc lacks

/// Wide characters of the longest path that the system takes, with the closing zero.
inline constexpr std::size_t kMayorRuta = 32768;

/// A path as the system takes it, formed without asking for memory: one too long for its plain functions gets the
/// prefix that lifts their limit.
class Ruta {
 public:
  explicit Ruta(wchar_t const* path) noexcept;
  operator wchar_t const*() const noexcept { return cual_; }

 private:
  wchar_t const* cual_;
  std::array<wchar_t, kMayorRuta> larga_;
};

}  // namespace win32
