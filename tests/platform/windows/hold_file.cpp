// Keeps a file open, as another program would that shares it with nobody, until it is told a line or its input ends:
// hold_file FILE. Says "held" first.
#include <cstdio>
#include <windows.h>

int main() {
  int count = 0;
  wchar_t** const words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  if (words == nullptr || count != 2) return 2;
  HANDLE const file = ::CreateFileW(words[1], GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return 1;
  std::puts("held");
  std::fflush(stdout);
  static_cast<void>(std::getchar());
  return 0;
}
