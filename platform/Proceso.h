#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "platform/Exporta.h"

/// The process as its own program sees it.

/// Physical memory that the process holds now, and the most that it has held, in bytes; 0 when the system does not
/// tell.
[[nodiscard]] URDIMBRE_API unsigned long long MemoriaResidente();
[[nodiscard]] URDIMBRE_API unsigned long long MemoriaResidenteMaxima();

/// Asks the heap to give large blocks back to the system as soon as they are freed, instead of keeping them for later:
/// for a program whose phases need much memory each, and one after another. To be called before there are threads.
URDIMBRE_API void DevuelveMemoriaLibre();

/// The opposite: asks the heap to keep what is freed, whatever its size and whichever thread had it, and to hand it out
/// again: for a program whose phases need about as much memory each, so that only the first one pays for pages from the
/// system. To be called before there are threads.
URDIMBRE_API void GuardaMemoriaLibre();

/// The program's arguments, its own name first, in UTF-8: main's own, or on Windows those that the system keeps, as
/// main's have lost there what the code page lacks.
[[nodiscard]] URDIMBRE_API std::vector<std::string> Argumentos(int cuantos, char const* const* argumentos);

/// From here on what is written to the standard streams is UTF-8, and reaches a file or a pipe byte for byte. A
/// terminal shows it so, until the process ends.
URDIMBRE_API void PonSalidaUtf8();

/// Whether a standard stream (stdout, stderr) is a terminal, and how many columns it has then, 80 when it does not
/// tell.
[[nodiscard]] URDIMBRE_API bool EsTerminal(std::FILE* salida);
[[nodiscard]] URDIMBRE_API unsigned ColumnasTerminal(std::FILE* salida);

/// From here on the first request to end the process (Ctrl-C, a polite kill, a closed terminal) only makes
/// Interrumpido() true, and a second one ends it at once; and a reader that goes away, or a file over the allowed size,
/// is a failed write instead of the end of the process.
URDIMBRE_API void PonManejadorInterrupcion();

/// Whether the process has been asked to end. Cheap; from any thread.
[[nodiscard]] URDIMBRE_API bool Interrumpido();

/// Takes note that the request has been dealt with, for a program that goes on after it.
URDIMBRE_API void OlvidaInterrupcion();
