#include "platform/CStdioFile.h"

#include <string>

CStdioFile::~CStdioFile() = default;

bool CStdioFile::WriteString(CString const& texto) {
  const std::string bytes = texto.Utf8();
  return Write(bytes.data(), bytes.size());
}

bool CStdioFile::ReadString(CString& linea) {
  std::string bytes;
  char c = 0;
  bool algo = false;
  while (Read(&c, 1) == 1 && c != '\n') {
    bytes += c;
    algo = true;
  }
  if (!bytes.empty() && bytes.back() == '\r') {
    bytes.pop_back();
  }
  linea = CString::DesdeUtf8(bytes);
  return algo || c == '\n';
}
