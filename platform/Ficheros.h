#pragma once

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

/// A path as the system's own functions take it, whatever its length: on Windows one too long for them gets the prefix
/// that lifts their limit, and is then a whole one.
[[nodiscard]] CString URDIMBRE_API RutaSistema(CString const& path);
