#pragma once

#include "platform/CString.h"
#include "platform/Exporta.h"

/// Initialisation files: "[section]" lines with "key=value" lines below, in UTF-8. Sections and keys do not regard
/// case; blanks around keys and values do not count, unless quotes keep a value's own. Lines that are none of these,
/// comments among them, are left as they are. Safe from several threads of one program.

/// Copies a value into `destino`, of `tamano` characters with the closing zero, cut if need be, and returns its length.
/// What is absent or cannot be read gives `defecto` (null: empty). With a null key the names of the section's keys are
/// listed, with a null section the names of the sections, each with its zero and one more zero at the end; the length
/// then counts all zeros but the last.
URDIMBRE_API unsigned long GetPrivateProfileStringW(wchar_t const* seccion, wchar_t const* clave,
                                                    wchar_t const* defecto, wchar_t* destino, unsigned long tamano,
                                                    wchar_t const* fichero);

/// Sets a value, making file, section and key when they are missing; a null value erases the key, a null key the
/// section. The new file takes the old one's place only once it is whole on the disk. False when the disk refuses, or
/// for names and values that no such file can hold (with ends of lines; an empty name; "]" in a section; "=" in a key).
URDIMBRE_API bool WritePrivateProfileStringW(wchar_t const* seccion, wchar_t const* clave, wchar_t const* valor,
                                             wchar_t const* fichero);
