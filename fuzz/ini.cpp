#include <cwchar>

#include "fuzz/Fuzz.h"
#include "platform/Inicializacion.h"

using namespace Meseta47;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  const CString path = CString::DesdeUtf8(fuzz::fileOf(data, size));
  wchar_t value[64], names[64];  // small: what does not fit is cut, and each name costs a reading of the file
  GetPrivateProfileStringW(nullptr, nullptr, nullptr, names, 64, path.GetString());
  for (wchar_t const* section = names; *section != 0; section += wcslen(section) + 1) {
    wchar_t keys[64];
    GetPrivateProfileStringW(section, nullptr, nullptr, keys, 64, path.GetString());
    fuzz::require(GetPrivateProfileStringW(section, keys, L"", value, 64, path.GetString()) < 64);
  }
  fuzz::require(WritePrivateProfileStringW(L"classify high", L"distance", L"5.5", path.GetString()));
  GetPrivateProfileStringW(L"Classify High", L"DISTANCE", L"", value, 64, path.GetString());
  fuzz::require(CString(value) == L"5.5");
  return 0;
}
