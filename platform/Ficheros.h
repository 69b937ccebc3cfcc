#pragma once

#include <vector>

#include "platform/CString.h"
#include "platform/Exporta.h"

/// Files and folders as a whole. Where `error` is given, a failure writes a sentence for a person into it.

/// Gives a file another name on the same disk, in one step; what stood under that name is replaced. On failure both
/// files are as they were.
bool URDIMBRE_API RenombraFichero(CString const& desde, CString const& hasta, CString* error = nullptr);

/// Deletes a file. False for a folder and for what is not there.
bool URDIMBRE_API BorraFichero(CString const& path, CString* error = nullptr);

/// Makes a folder and those above it that are missing. True when it stands there in the end.
bool URDIMBRE_API CreaCarpeta(CString const& path, CString* error = nullptr);

/// Whether files can be made in a folder. It makes one, which goes at once: permissions alone do not tell.
[[nodiscard]] bool URDIMBRE_API CarpetaEscribible(CString const& path, CString* error = nullptr);

/// Bytes that this user may still write on the disk that holds a file or folder; -1 when it cannot be told.
[[nodiscard]] long long URDIMBRE_API EspacioLibre(CString const& path);

/// What stands under a name, links followed.
struct CDatosFichero {
  enum EClase { Nada, Fichero, Carpeta, Otro };  ///< Otro: a pipe, a device

  EClase clase = Nada;
  unsigned long long bytes = 0;
  long long escrito = 0;                     ///< when it was last written, as the system counts
  unsigned long long disco = 0, numero = 0;  ///< what tells it from every other one; 0 where the disk does not say

  [[nodiscard]] bool EsFichero() const { return clase == Fichero; }
  [[nodiscard]] bool EsCarpeta() const { return clase == Carpeta; }
  [[nodiscard]] bool EsOtro() const { return clase == Otro; }
};
[[nodiscard]] URDIMBRE_API CDatosFichero ExaminaFichero(CString const& path);

/// Whether two names lead to one file, be it there already or not: then they are the same name in the same folder.
[[nodiscard]] URDIMBRE_API bool SonElMismoFichero(CString const& uno, CString const& otro);

/// The names of what a folder holds, in no order; none of a folder that cannot be read. An empty path is the folder
/// that the process is in.
[[nodiscard]] URDIMBRE_API std::vector<CString> NombresEnCarpeta(CString const& path);
