#pragma once

#include "platform/Exporta.h"

/// Characters of the longest path that these functions hand out, with the closing zero.
inline constexpr unsigned long MAX_PATH = 260;

/// Writes the folder for temporary files, with a separator at its end, into `destino`, of `tamano` characters: the
/// current application's, else that of TMPDIR, else the system's. Returns its length; when it does not fit, the
/// characters needed with the closing zero, and `destino` is left alone; 0 on failure. Whether the folder is there is
/// not looked into.
URDIMBRE_API unsigned long GetTempPathW(unsigned long tamano, wchar_t* destino);

/// Names a file in a folder, "FOLDER/PREFIXnumber.tmp" with the number in hexadecimal, into `destino`, of MAX_PATH
/// characters. The whole prefix is kept. With `unico` 0 the number is a new one and the file is made, empty, and for
/// this user alone; with another number the name alone is formed. Returns the number, 0 on failure.
URDIMBRE_API unsigned GetTempFileNameW(wchar_t const* carpeta, wchar_t const* prefijo, unsigned unico,
                                       wchar_t* destino);

/// Deletes a file, also an open one, which lives on unnamed until it is closed. False when it cannot: a folder, a file
/// that is not there. Asks for no memory.
URDIMBRE_API bool DeleteFileW(wchar_t const* path);
