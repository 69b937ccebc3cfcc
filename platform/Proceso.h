#pragma once

#include <cstdio>

#include "platform/Exporta.h"

/// The process as its own program sees it.

/// Physical memory that the process holds now, and the most that it has held, in bytes; 0 when the system does not
/// tell.
[[nodiscard]] URDIMBRE_API unsigned long long MemoriaResidente();
[[nodiscard]] URDIMBRE_API unsigned long long MemoriaResidenteMaxima();

/// Asks the heap to give large blocks back to the system as soon as they are freed, instead of keeping them for later:
/// for a program whose phases need much memory each, and one after another. To be called before there are threads.
URDIMBRE_API void DevuelveMemoriaLibre();

/// Lets go of the code and constants of other libraries that the process has met so far: linking a hundred of them
/// reads their tables of names, tens of megabytes that are not looked at again. What is needed after all comes back by
/// itself from the system's cache of files, a fault of a microsecond for every sixteen pages. Changes nothing that a
/// program can see; breakpoints of a debugger in those libraries go. From any thread.
URDIMBRE_API void SueltaBibliotecas();

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
