#pragma once

#include <cstdarg>
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/CString.h"
#include "platform/Ficheros.h"
#include "platform/IVigilante.h"

/// The seam between the framework layer and the operating system: the few operations that it is built on, one
/// implementation a system. Internal: programs use the classes made from it.
///
/// Where an int is returned it is 0, or the failure's number (that of std::errc). The guard is asked first in every one
/// that has an EOperacion. Interrupted calls are made again.
namespace sistema {

using Descriptor = std::ptrdiff_t;
inline constexpr Descriptor kSinFichero = -1;

/// Asks the guard, if there is one: 0, or the number of the failure that the operation is to simulate.
int Consulta(EOperacion operacion, CString const& path);
int Consulta(EOperacion operacion, wchar_t const* path);
/// Bytes that the guard grants to one transfer.
std::size_t Concedidos(EOperacion operacion, CString const& path, std::size_t bytes);

/// `flags` are those of CFile. A folder is refused. A file opened as modeNuevo is locked for as long as it, or a
/// duplicate of it, is open: the system gives the lock up when the process ends, whatever way that is.
int Abre(CString const& path, unsigned flags, Descriptor& fichero);
/// A file in a folder, for this user alone, of which nothing is left when the last who has it open closes it or ends:
/// it has no name at all, or else one that begins with `prefijo`. `path` is a name by which this process can open it
/// again. Fails where the system has no such files.
int AbreSinNombre(CString const& carpeta, CString const& prefijo, Descriptor& fichero, CString& path);
/// The same of a file that is open: it gives up its name. Fails, and the name stays, where the system needs it.
int SueltaNombre(Descriptor fichero, CString& path);
/// Another hold on an open file and its lock, for Suelta(); kSinFichero when the system gives none.
Descriptor Duplica(Descriptor fichero);
/// Gives up a hold that nothing is written through. kSinFichero is none.
void Suelta(Descriptor fichero);
/// Gives an open file the owner, the group and the permissions of another one. What this user may not give makes the
/// file more private, never less.
void HeredaPermisos(Descriptor fichero, CString const& modelo);
/// Deletes what a process that has ended left open as modeNuevo; whatever else has the name is left alone.
enum class EResto { Nada, Borrado, EnUso };
EResto BorraResto(CString const& path);
/// Opens, as modeNuevo, the first of a row of names (1, 2, 3 ...) that is free, and deletes what processes that have
/// ended left under the row's names.
int AbreNumerado(std::function<CString(unsigned)> const& nombre, unsigned flags, CString& path, Descriptor& fichero);
/// One transfer at the file's position. A write moves at least a byte or fails.
int Lee(Descriptor fichero, CString const& path, void* destino, std::size_t cuantos, std::size_t& movidos);
int Escribe(Descriptor fichero, CString const& path, void const* origen, std::size_t cuantos, std::size_t& movidos);
int Posiciona(Descriptor fichero, CString const& path, long long posicion);
int Longitud(Descriptor fichero, CString const& path, long long& bytes);
int Trunca(Descriptor fichero, CString const& path, long long bytes);
int Sincroniza(Descriptor fichero, CString const& path);
/// The descriptor is given back also on failure.
int Cierra(Descriptor fichero, CString const& path);

/// Makes an empty file that must not exist, for this user alone.
int CreaExclusivo(CString const& path);
/// The same under a new name, "FOLDER/PREFIXnumber.tmp", until one is free; the number is never 0.
int CreaTemporal(CString const& carpeta, CString const& prefijo, CString& path, unsigned& numero);
/// Whether something, a link for what it is, stands under a name.
bool Existe(CString const& path);
CDatosFichero Examina(CString const& path);
std::vector<CString> Nombres(CString const& carpeta);
/// Where a symbolic link points, from its own folder; false for what is none.
bool SigueEnlace(CString const& path, CString& hasta);
/// Bytes that a step of a path may have.
inline constexpr std::size_t kMayorNombre = 255;
int Renombra(CString const& desde, CString const& hasta);
/// Asks for no memory: it is what cleans up when memory has run out.
int Borra(wchar_t const* path);
int CreaCarpeta(CString const& path);
/// Makes a rename in the folder last through a loss of power. Best effort; asks for no memory, as the renaming has been
/// done.
void SincronizaCarpeta(CString const& carpeta) noexcept;
/// Waits until no other process has the folder's lock, ten seconds at most, and takes it; kSinFichero when it still has
/// it then, or where folders have no locks. Suelta() gives it up.
Descriptor BloqueaCarpeta(CString const& carpeta);

/// The path of a file in a folder.
CString EnCarpeta(CString carpeta, CString const& nombre);

/// A value of the environment; empty when it is not set.
CString Entorno(char const* nombre);
/// The system's folder for temporary files.
CString CarpetaTemporal();
/// The folder of the user's settings; empty when there is none.
CString CarpetaAjustes();
/// A number that other processes and earlier calls are unlikely to have.
unsigned NumeroAlAzar();
#if defined(_WIN32)
inline constexpr wchar_t kSeparador = L'\\';
inline bool EsSeparador(wchar_t c) { return c == kSeparador || c == L'/'; }
inline bool SonElMismoNombre(CString const& uno, CString const& otro) { return uno.CompareNoCase(otro) == 0; }
#else
inline constexpr wchar_t kSeparador = L'/';
inline bool EsSeparador(wchar_t c) { return c == kSeparador; }
inline bool SonElMismoNombre(CString const& uno, CString const& otro) { return uno == otro; }
#endif
/// Position of the last separator in a path; -1 in a name alone.
int UltimoSeparador(CString const& path);

/// The text of a failure.
CString TextoError(int codigo);

/// Formats like printf with a decimal point whatever the locale; false when the C library refuses the format.
bool Formatea(std::wstring& salida, wchar_t const* formato, va_list argumentos);
bool Formatea(std::string& salida, char const* formato, va_list argumentos);
/// The real number that a text begins with, likewise.
double ConvierteReal(wchar_t const* texto);
std::wstring DesdeUtf8(std::string_view texto);
std::string AUtf8(std::wstring_view texto);
/// The same into a buffer, with a closing zero and no memory asked for; false when it does not fit.
bool AUtf8(std::wstring_view texto, std::span<char> destino) noexcept;

/// Starts a detached thread with a stack of so many bytes, 0 for the system's.
int LanzaHilo(std::size_t pila, void (*rutina)(void*), void* argumento);
/// Has a function called when the calling thread ends, after the destructors of thread-local objects that come after
/// this call. False when the system has no memory to take note of it: then it is not called.
bool AlAcabarHilo(void (*rutina)(void*), void* argumento);
/// The calling thread's number in the system.
long NumeroHilo();
/// Sets a living thread's priority, -15 to 15.
bool PonPrioridad(long hilo, int prioridad);

}  // namespace sistema
