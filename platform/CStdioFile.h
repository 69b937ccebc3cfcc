#pragma once

#include "platform/CFile.h"

/// A text file in UTF-8, read and written by lines. Everything else is as in CFile.
class URDIMBRE_API CStdioFile : public CFile {
 public:
  using CFile::CFile;
  ~CStdioFile() override;

  /// Writes the text as it stands: the ends of lines are the caller's.
  bool WriteString(CString const& texto);

  /// Reads a line without its end ("\n" or "\r\n"). False when nothing was left to read; the last line needs no end.
  bool ReadString(CString& linea);
};
