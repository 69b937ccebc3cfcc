#include <algorithm>
#include <system_error>

#include "platform/CFile.h"
#include "platform/Sistema.h"
#include "platform/windows/Win32.h"

// after the header that they are written for
#include <aclapi.h>
#include <sddl.h>

namespace {

using win32::Codigo;
using win32::Manejador;
using win32::Ruta;
using win32::UltimoCodigo;

constexpr DWORD kTodosPueden = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// The system takes no more than this in one transfer.
constexpr std::size_t kMayorTransferencia = 0x7ffff000;

// The byte that stands for the lock of a file: beyond any that is read or written, so that the lock hinders nobody.
constexpr DWORD kBytesCerrojo = 1;
constexpr DWORD kSitioCerrojo = 0x7fffffff;

HANDLE Manejo(sistema::Descriptor fichero) { return reinterpret_cast<HANDLE>(fichero); }

sistema::Descriptor DescriptorDe(HANDLE manejador) { return reinterpret_cast<sistema::Descriptor>(manejador); }

int CodigoDe(BOOL bien) { return bien != 0 ? 0 : UltimoCodigo(); }

DWORD Acceso(unsigned flags) {
  const DWORD nuevo = (flags & CFile::modeNuevo) != 0 ? DELETE | WRITE_DAC : 0;
  const bool vacia = (flags & CFile::modeCreate) != 0 && (flags & CFile::modeNoTruncate) == 0;
  const DWORD acceso = (flags & CFile::modeReadWrite) != 0 ? GENERIC_READ | GENERIC_WRITE
                       : (flags & CFile::modeWrite) != 0   ? GENERIC_WRITE
                                                           : GENERIC_READ | (vacia ? GENERIC_WRITE : 0);
  return acceso | nuevo;
}

bool EsCarpeta(wchar_t const* ruta) {
  const DWORD atributos = ::GetFileAttributesW(ruta);
  return atributos != INVALID_FILE_ATTRIBUTES && (atributos & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// The system says of a folder that access is denied; callers are told what it is.
int CodigoDeRuta(Ruta const& ruta) {
  const DWORD error = ::GetLastError();
  return error == ERROR_ACCESS_DENIED && EsCarpeta(ruta) ? static_cast<int>(std::errc::is_a_directory) : Codigo(error);
}

constexpr int kOcupado = static_cast<int>(std::errc::text_file_busy);

/// Why a file could not take the place of another. Of one that is open the system says, as of a folder, that access is
/// denied; to open it for oneself alone is what tells.
int CodigoDeCambio(Ruta const& destino) {
  const int codigo = CodigoDeRuta(destino);
  if (codigo != static_cast<int>(std::errc::permission_denied)) {
    return codigo;
  }
  HANDLE const solo = ::CreateFileW(destino, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  if (solo == INVALID_HANDLE_VALUE) {
    return ::GetLastError() == ERROR_SHARING_VIOLATION ? kOcupado : codigo;
  }
  ::CloseHandle(solo);
  return codigo;
}

/// Rights for who makes the file, the administrators and the system, and nobody else; none given where those cannot be
/// formed, as the folder's own are what the user chose.
class SoloUsuario {
 public:
  SoloUsuario() {
    constexpr wchar_t const* kDerechos = L"D:P(A;;FA;;;OW)(A;;FA;;;SY)(A;;FA;;;BA)";
    ::ConvertStringSecurityDescriptorToSecurityDescriptorW(kDerechos, SDDL_REVISION_1, &descriptor_, nullptr);
    atributos_.lpSecurityDescriptor = descriptor_;
  }
  SoloUsuario(SoloUsuario const&) = delete;
  SoloUsuario& operator=(SoloUsuario const&) = delete;
  ~SoloUsuario() { ::LocalFree(descriptor_); }
  LPSECURITY_ATTRIBUTES Atributos() { return descriptor_ == nullptr ? nullptr : &atributos_; }

 private:
  PSECURITY_DESCRIPTOR descriptor_ = nullptr;
  SECURITY_ATTRIBUTES atributos_{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
};

HANDLE Crea(Ruta const& ruta, DWORD acceso, DWORD modo, DWORD opciones, bool privado) {
  if (!privado) {
    return ::CreateFileW(ruta, acceso, kTodosPueden, nullptr, modo, opciones, nullptr);
  }
  SoloUsuario solo;
  return ::CreateFileW(ruta, acceso, kTodosPueden, solo.Atributos(), modo, opciones, nullptr);
}

bool Bloquea(HANDLE fichero) {
  OVERLAPPED donde{};
  donde.OffsetHigh = kSitioCerrojo;
  return ::LockFileEx(fichero, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, kBytesCerrojo, 0, &donde) != 0;
}

int Vacia(HANDLE fichero) {
  return ::SetEndOfFile(fichero) != 0 || ::GetFileType(fichero) != FILE_TYPE_DISK ? 0 : UltimoCodigo();
}

int SobreAbierto(HANDLE abierto, unsigned flags) {
  if ((flags & CFile::modeNuevo) != 0) {
    return Bloquea(abierto) ? 0 : static_cast<int>(std::errc::file_exists);
  }
  return (flags & CFile::modeCreate) != 0 && (flags & CFile::modeNoTruncate) == 0 ? Vacia(abierto) : 0;
}

}  // namespace

// A path stays as it is while the plain functions take it; 12 characters less than their limit is what a folder may
// have.
win32::Ruta::Ruta(wchar_t const* path) noexcept : cual_(path) {
  constexpr std::size_t kCorta = 248;
  constexpr std::wstring_view kPrefijo = L"\\\\?\\";
  constexpr std::wstring_view kPrefijoRed = L"\\\\?\\UNC\\";
  const std::wstring_view texto(path);
  if (texto.empty() || texto.starts_with(kPrefijo)) {
    return;
  }
  wchar_t* const hueco = larga_.data() + kPrefijoRed.size();
  const DWORD caben = static_cast<DWORD>(kMayorRuta - kPrefijoRed.size());
  const DWORD largo = ::GetFullPathNameW(path, caben, hueco, nullptr);
  if (largo < kCorta || largo >= caben) {  // short enough; or longer than any path may be, and the system says it
    return;
  }
  const bool red = hueco[0] == L'\\' && hueco[1] == L'\\';
  const std::wstring_view prefijo = red ? kPrefijoRed : kPrefijo;
  wchar_t* const principio = hueco + (red ? 2 : 0) - prefijo.size();
  std::ranges::copy(prefijo, principio);
  cual_ = principio;
}

namespace sistema {

int Abre(CString const& path, unsigned flags, Descriptor& fichero) {
  fichero = kSinFichero;
  if (const int codigo = Consulta(EOperacion::Abre, path); codigo != 0) {
    return codigo;
  }
  const bool nuevo = (flags & CFile::modeNuevo) != 0;
  const DWORD modo = nuevo ? CREATE_NEW : (flags & CFile::modeCreate) != 0 ? OPEN_ALWAYS : OPEN_EXISTING;
  const Ruta ruta(path);
  HANDLE const abierto = Crea(ruta, Acceso(flags), modo, FILE_ATTRIBUTE_NORMAL, (flags & CFile::modePrivado) != 0);
  if (abierto == INVALID_HANDLE_VALUE) {
    return CodigoDeRuta(ruta);
  }
  if (const int codigo = SobreAbierto(abierto, flags); codigo != 0) {
    ::CloseHandle(abierto);
    return codigo;
  }
  fichero = DescriptorDe(abierto);
  return 0;
}

int Lee(Descriptor fichero, CString const& path, void* destino, std::size_t cuantos, std::size_t& movidos) {
  movidos = 0;
  if (const int codigo = Consulta(EOperacion::Lee, path); codigo != 0) {
    return codigo;
  }
  const std::size_t concedidos = std::min(Concedidos(EOperacion::Lee, path, cuantos), kMayorTransferencia);
  DWORD leidos = 0;
  const int codigo = CodigoDe(::ReadFile(Manejo(fichero), destino, static_cast<DWORD>(concedidos), &leidos, nullptr));
  movidos = leidos;
  return codigo == static_cast<int>(std::errc::broken_pipe) ? 0 : codigo;  // the end of a pipe is the end of a file
}

int Escribe(Descriptor fichero, CString const& path, void const* origen, std::size_t cuantos, std::size_t& movidos) {
  movidos = 0;
  if (const int codigo = Consulta(EOperacion::Escribe, path); codigo != 0) {
    return codigo;
  }
  constexpr int kLleno = static_cast<int>(std::errc::no_space_on_device);
  const std::size_t concedidos = std::min(Concedidos(EOperacion::Escribe, path, cuantos), kMayorTransferencia);
  if (concedidos == 0) {
    return kLleno;
  }
  DWORD escritos = 0;
  const BOOL bien = ::WriteFile(Manejo(fichero), origen, static_cast<DWORD>(concedidos), &escritos, nullptr);
  movidos = escritos;
  return bien == 0 ? UltimoCodigo() : escritos == 0 ? kLleno : 0;
}

int Posiciona(Descriptor fichero, CString const& path, long long posicion) {
  if (const int codigo = Consulta(EOperacion::Posiciona, path); codigo != 0) {
    return codigo;
  }
  LARGE_INTEGER donde;
  donde.QuadPart = posicion;
  return CodigoDe(::SetFilePointerEx(Manejo(fichero), donde, nullptr, FILE_BEGIN));
}

int Longitud(Descriptor fichero, CString const& path, long long& bytes) {
  if (const int codigo = Consulta(EOperacion::Longitud, path); codigo != 0) {
    return codigo;
  }
  LARGE_INTEGER largo{};
  const int codigo = CodigoDe(::GetFileSizeEx(Manejo(fichero), &largo));
  bytes = largo.QuadPart;
  return codigo;
}

// By a question that leaves the position where it is.
int Trunca(Descriptor fichero, CString const& path, long long bytes) {
  if (const int codigo = Consulta(EOperacion::Trunca, path); codigo != 0) {
    return codigo;
  }
  FILE_END_OF_FILE_INFO final{};
  final.EndOfFile.QuadPart = bytes;
  return CodigoDe(::SetFileInformationByHandle(Manejo(fichero), FileEndOfFileInfo, &final, sizeof final));
}

int Sincroniza(Descriptor fichero, CString const& path) {
  if (const int codigo = Consulta(EOperacion::Sincroniza, path); codigo != 0) {
    return codigo;
  }
  if (::FlushFileBuffers(Manejo(fichero)) != 0 || ::GetFileType(Manejo(fichero)) != FILE_TYPE_DISK) {
    return 0;  // a pipe or a device: there is no disk to wait for
  }
  return UltimoCodigo();
}

int Cierra(Descriptor fichero, CString const& path) {
  const int negado = Consulta(EOperacion::Cierra, path);
  const int codigo = CodigoDe(::CloseHandle(Manejo(fichero)));
  return negado != 0 ? negado : codigo;
}

// The system takes the file away when the last one closes it or ends; until then the name opens it, as every hold on a
// file here lets others have it too.
int AbreSinNombre(CString const& carpeta, CString const& prefijo, Descriptor& fichero, CString& path) {
  fichero = kSinFichero;
  if (const int codigo = Consulta(EOperacion::Abre, carpeta); codigo != 0) {
    return codigo;
  }
  constexpr int kIntentos = 100;
  for (int i = 0; i < kIntentos; ++i) {
    CString final;
    final.Format(L"%X.tmp", NumeroAlAzar() | 1U);
    path = EnCarpeta(carpeta, prefijo + final);
    HANDLE const abierto = Crea(Ruta(path), GENERIC_READ | GENERIC_WRITE | DELETE, CREATE_NEW,
                                FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, true);
    if (abierto != INVALID_HANDLE_VALUE) {
      fichero = DescriptorDe(abierto);
      return 0;
    }
    if (const DWORD error = ::GetLastError(); error != ERROR_FILE_EXISTS) {
      return Codigo(error);
    }
  }
  return static_cast<int>(std::errc::file_exists);
}

int SueltaNombre(Descriptor, CString&) { return static_cast<int>(std::errc::not_supported); }

Descriptor Duplica(Descriptor fichero) {
  HANDLE copia = INVALID_HANDLE_VALUE;
  HANDLE const yo = ::GetCurrentProcess();
  const BOOL bien = ::DuplicateHandle(yo, Manejo(fichero), yo, &copia, 0, FALSE, DUPLICATE_SAME_ACCESS);
  return bien != 0 ? DescriptorDe(copia) : kSinFichero;
}

void Suelta(Descriptor fichero) {
  if (fichero != kSinFichero) {
    ::CloseHandle(Manejo(fichero));
  }
}

// The owner stays who makes the file, as the system gives it to others only from administrators.
void HeredaPermisos(Descriptor fichero, CString const& modelo) {
  PACL derechos = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  const Manejador original(::CreateFileW(Ruta(modelo), READ_CONTROL, kTodosPueden, nullptr, OPEN_EXISTING, 0, nullptr));
  if (original.get() != INVALID_HANDLE_VALUE &&
      ::GetSecurityInfo(original.get(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &derechos, nullptr,
                        &descriptor) == ERROR_SUCCESS) {
    ::SetSecurityInfo(Manejo(fichero), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, derechos, nullptr);
    ::LocalFree(descriptor);
  }
}

EResto BorraResto(CString const& path) {
  const Ruta ruta(path);
  const DWORD atributos = ::GetFileAttributesW(ruta);
  if (atributos == INVALID_FILE_ATTRIBUTES) {
    const DWORD error = ::GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? EResto::Nada : EResto::EnUso;
  }
  if ((atributos & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) != 0) {
    return EResto::EnUso;
  }
  HANDLE const abierto =
      ::CreateFileW(ruta, GENERIC_READ | DELETE, kTodosPueden, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (abierto == INVALID_HANDLE_VALUE) {
    return ::GetLastError() == ERROR_FILE_NOT_FOUND ? EResto::Nada : EResto::EnUso;
  }
  const Manejador guarda(abierto);
  if (!Bloquea(abierto) || Consulta(EOperacion::Borra, path) != 0) {
    return EResto::EnUso;
  }
  FILE_DISPOSITION_INFO fuera{};
  fuera.DeleteFile = TRUE;
  return ::SetFileInformationByHandle(abierto, FileDispositionInfo, &fuera, sizeof fuera) != 0 ? EResto::Borrado
                                                                                               : EResto::EnUso;
}

int CreaExclusivo(CString const& path) {
  if (const int codigo = Consulta(EOperacion::CreaTemporal, path); codigo != 0) {
    return codigo;
  }
  const Ruta ruta(path);
  HANDLE const abierto = Crea(ruta, GENERIC_WRITE, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, true);
  if (abierto == INVALID_HANDLE_VALUE) {
    return CodigoDeRuta(ruta);
  }
  ::CloseHandle(abierto);
  return 0;
}

bool Existe(CString const& path) { return ::GetFileAttributesW(Ruta(path)) != INVALID_FILE_ATTRIBUTES; }

CDatosFichero Examina(CString const& path) {
  CDatosFichero datos;
  HANDLE const abierto = ::CreateFileW(Ruta(path), FILE_READ_ATTRIBUTES, kTodosPueden, nullptr, OPEN_EXISTING,
                                       FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (abierto == INVALID_HANDLE_VALUE) {
    return datos;
  }
  const Manejador guarda(abierto);
  if (::GetFileType(abierto) != FILE_TYPE_DISK) {
    datos.clase = CDatosFichero::Otro;
    return datos;
  }
  BY_HANDLE_FILE_INFORMATION este{};
  ::GetFileInformationByHandle(abierto, &este);
  const auto une = [](DWORD alto, DWORD bajo) { return static_cast<unsigned long long>(alto) << 32 | bajo; };
  datos.clase =
      (este.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? CDatosFichero::Carpeta : CDatosFichero::Fichero;
  datos.bytes = une(este.nFileSizeHigh, este.nFileSizeLow);
  datos.escrito = static_cast<long long>(une(este.ftLastWriteTime.dwHighDateTime, este.ftLastWriteTime.dwLowDateTime));
  datos.disco = este.dwVolumeSerialNumber;
  datos.numero = une(este.nFileIndexHigh, este.nFileIndexLow);
  return datos;
}

std::vector<CString> Nombres(CString const& carpeta) {
  std::vector<CString> nombres;
  WIN32_FIND_DATAW hallado;
  const CString patron = EnCarpeta(carpeta, L"*");
  HANDLE const busca = ::FindFirstFileExW(Ruta(patron), FindExInfoBasic, &hallado, FindExSearchNameMatch, nullptr, 0);
  if (busca == INVALID_HANDLE_VALUE) {
    return nombres;
  }
  do {
    const CString nombre = hallado.cFileName;
    if (nombre != L"." && nombre != L"..") {
      nombres.push_back(nombre);
    }
  } while (::FindNextFileW(busca, &hallado) != 0);
  ::FindClose(busca);
  return nombres;
}

// A link's target as the system follows it, whatever kind of link it is: to the end of the row in one step. A link to
// nowhere cannot be followed so, and counts as none: what is written then takes its place.
bool SigueEnlace(CString const& path, CString& hasta) {
  const Ruta ruta(path);
  const DWORD atributos = ::GetFileAttributesW(ruta);
  if (atributos == INVALID_FILE_ATTRIBUTES || (atributos & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    return false;
  }
  HANDLE const abierto =
      ::CreateFileW(ruta, 0, kTodosPueden, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (abierto == INVALID_HANDLE_VALUE) {
    return false;
  }
  const Manejador guarda(abierto);
  std::wstring nombre(win32::kMayorRuta, L'\0');
  const DWORD largo = ::GetFinalPathNameByHandleW(abierto, nombre.data(), static_cast<DWORD>(nombre.size()), 0);
  if (largo == 0 || largo >= nombre.size()) {
    return false;
  }
  nombre.resize(largo);
  if (CString(nombre).CompareNoCase(path) == 0) {  // a cloud's placeholder, say: it stands for itself
    return false;
  }
  hasta = nombre;
  return true;
}

// A new file is held for a moment by whatever looks at new files, virus scanners and search indexes among them: what is
// refused for a holder is tried again, for a second altogether.
int Renombra(CString const& desde, CString const& hasta) {
  if (const int codigo = Consulta(EOperacion::Renombra, desde); codigo != 0) {
    return codigo;
  }
  constexpr int kIntentos = 20;
  constexpr DWORD kPausa = 50;  // milliseconds
  const Ruta origen(desde);
  const Ruta destino(hasta);
  for (int intento = 1;; ++intento) {
    if (::MoveFileExW(origen, destino, MOVEFILE_REPLACE_EXISTING) != 0) {
      return 0;
    }
    const int codigo = CodigoDeCambio(destino);
    if (codigo != kOcupado || intento == kIntentos) {
      return codigo;
    }
    ::Sleep(kPausa);
  }
}

int Borra(wchar_t const* path) {
  if (const int codigo = Consulta(EOperacion::Borra, path); codigo != 0) {
    return codigo;
  }
  const Ruta ruta(path);
  return ::DeleteFileW(ruta) != 0 ? 0 : CodigoDeRuta(ruta);
}

int CreaCarpeta(CString const& path) {
  const Ruta ruta(path);
  const int codigo = CodigoDe(::CreateDirectoryW(ruta, nullptr));
  return codigo != 0 && EsCarpeta(ruta) ? 0 : codigo;
}

void SincronizaCarpeta(CString const&) noexcept {}  // the system writes its folders down by itself

Descriptor BloqueaCarpeta(CString const&) { return kSinFichero; }  // folders have no locks here

}  // namespace sistema
