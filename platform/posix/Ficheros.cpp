#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/CFile.h"
#include "platform/Sistema.h"

namespace {

/// Makes an interrupted call again; its answer, with errno set when that is -1.
template <typename Llamada>
auto Insiste(Llamada llamada) {
  auto respuesta = llamada();
  while (respuesta == -1 && errno == EINTR) {
    respuesta = llamada();
  }
  return respuesta;
}

int CodigoDe(long respuesta) { return respuesta == -1 ? errno : 0; }

int Opciones(unsigned flags) {
  int opciones = O_CLOEXEC | O_NOCTTY;
  opciones |= (flags & CFile::modeReadWrite) != 0 ? O_RDWR : (flags & CFile::modeWrite) != 0 ? O_WRONLY : O_RDONLY;
  if ((flags & CFile::modeCreate) != 0) {
    opciones |= O_CREAT | ((flags & CFile::modeNoTruncate) != 0 ? 0 : O_TRUNC);
  }
  if ((flags & CFile::modeNuevo) != 0) {
    opciones |= O_CREAT | O_EXCL | O_NOFOLLOW;
  }
  return opciones;
}

/// A path as the system takes it, formed without asking for memory.
class Ruta {
 public:
  explicit Ruta(wchar_t const* path) noexcept {
    if (sistema::AUtf8(path, nombre_)) return;
    nombre_.fill('x');  // longer than any path may be: so is this, and the system says it
    nombre_.back() = 0;
  }
  operator char const*() const noexcept { return nombre_.data(); }

 private:
  std::array<char, PATH_MAX> nombre_;
};

constexpr mode_t kTodosSegunMascara = 0666;
constexpr mode_t kSoloUsuario = 0600;

// The system takes no more than this in one transfer.
constexpr std::size_t kMayorTransferencia = 0x7ffff000;

/// Whether an open file is the one that has the name.
bool TieneNombre(int abierto, char const* nombre) {
  struct stat este {
  }, otro{};
  return ::fstat(abierto, &este) == 0 && ::lstat(nombre, &otro) == 0 && este.st_dev == otro.st_dev &&
         este.st_ino == otro.st_ino;
}

/// Locks a file just made. Between the two, another process may have taken it for one that nobody has open: then it is
/// lost, and the name is in use. Where the disk has no locks, nobody can take it for that.
int BloqueaNuevo(int abierto, char const* nombre) {
  const bool niega = Insiste([&] { return ::flock(abierto, LOCK_EX | LOCK_NB); }) == -1 && errno == EWOULDBLOCK;
  return niega || !TieneNombre(abierto, nombre) ? EEXIST : 0;
}

CString NombreDeDescriptor(int abierto) {
  CString path;
  path.Format(L"/proc/self/fd/%d", abierto);
  return path;
}

bool PuedeAbrirse(CString const& path) { return ::access(path.Utf8().c_str(), R_OK | W_OK) == 0; }

}  // namespace

namespace sistema {

int Abre(CString const& path, unsigned flags, Descriptor& fichero) {
  fichero = kSinFichero;
  if (const int codigo = Consulta(EOperacion::Abre, path); codigo != 0) {
    return codigo;
  }
  const std::string nombre = path.Utf8();
  const mode_t permisos = (flags & CFile::modePrivado) != 0 ? kSoloUsuario : kTodosSegunMascara;
  const int abierto = Insiste([&] { return ::open(nombre.c_str(), Opciones(flags), permisos); });
  if (abierto == -1) {
    return errno;
  }
  struct stat datos {};
  int codigo = ::fstat(abierto, &datos) == -1 ? errno : S_ISDIR(datos.st_mode) ? EISDIR : 0;
  if (codigo == 0 && (flags & CFile::modeNuevo) != 0) {
    codigo = BloqueaNuevo(abierto, nombre.c_str());
  }
  if (codigo != 0) {
    ::close(abierto);
    return codigo;
  }
  fichero = abierto;
  return 0;
}

int Lee(Descriptor fichero, CString const& path, void* destino, std::size_t cuantos, std::size_t& movidos) {
  movidos = 0;
  if (const int codigo = Consulta(EOperacion::Lee, path); codigo != 0) {
    return codigo;
  }
  const std::size_t concedidos = std::min(Concedidos(EOperacion::Lee, path, cuantos), kMayorTransferencia);
  const ssize_t leidos = Insiste([&] { return ::read(static_cast<int>(fichero), destino, concedidos); });
  movidos = leidos == -1 ? 0 : static_cast<std::size_t>(leidos);
  return CodigoDe(leidos);
}

int Escribe(Descriptor fichero, CString const& path, void const* origen, std::size_t cuantos, std::size_t& movidos) {
  movidos = 0;
  if (const int codigo = Consulta(EOperacion::Escribe, path); codigo != 0) {
    return codigo;
  }
  const std::size_t concedidos = std::min(Concedidos(EOperacion::Escribe, path, cuantos), kMayorTransferencia);
  if (concedidos == 0) {
    return ENOSPC;
  }
  const ssize_t escritos = Insiste([&] { return ::write(static_cast<int>(fichero), origen, concedidos); });
  movidos = escritos == -1 ? 0 : static_cast<std::size_t>(escritos);
  return escritos == 0 ? ENOSPC : CodigoDe(escritos);
}

int Posiciona(Descriptor fichero, CString const& path, long long posicion) {
  const int codigo = Consulta(EOperacion::Posiciona, path);
  return codigo != 0 ? codigo : CodigoDe(::lseek(static_cast<int>(fichero), posicion, SEEK_SET));
}

int Longitud(Descriptor fichero, CString const& path, long long& bytes) {
  if (const int codigo = Consulta(EOperacion::Longitud, path); codigo != 0) {
    return codigo;
  }
  struct stat datos {};
  const int respuesta = ::fstat(static_cast<int>(fichero), &datos);
  bytes = datos.st_size;
  return CodigoDe(respuesta);
}

int Trunca(Descriptor fichero, CString const& path, long long bytes) {
  const int codigo = Consulta(EOperacion::Trunca, path);
  return codigo != 0 ? codigo : CodigoDe(Insiste([&] { return ::ftruncate(static_cast<int>(fichero), bytes); }));
}

int Sincroniza(Descriptor fichero, CString const& path) {
  if (const int codigo = Consulta(EOperacion::Sincroniza, path); codigo != 0) {
    return codigo;
  }
  const int codigo = CodigoDe(Insiste([&] { return ::fsync(static_cast<int>(fichero)); }));
  return codigo == EINVAL || codigo == EROFS ? 0 : codigo;  // a pipe or a device: there is no disk to wait for
}

int Cierra(Descriptor fichero, CString const& path) {
  const int negado = Consulta(EOperacion::Cierra, path);
  const int codigo = CodigoDe(::close(static_cast<int>(fichero)));
  return negado != 0 ? negado : codigo == EINTR ? 0 : codigo;  // interrupted, but closed: it must not be closed again
}

int AbreSinNombre(CString const& carpeta, CString const&, Descriptor& fichero, CString& path) {
  fichero = kSinFichero;
  if (const int codigo = Consulta(EOperacion::Abre, carpeta); codigo != 0) {
    return codigo;
  }
  const std::string nombre = carpeta.Utf8();
  const int abierto =
      Insiste([&] { return ::open(nombre.c_str(), O_TMPFILE | O_EXCL | O_RDWR | O_CLOEXEC, kSoloUsuario); });
  if (abierto == -1) {
    return errno;
  }
  fichero = abierto;  // before its name is made: should memory give out there, the caller closes it
  path = NombreDeDescriptor(abierto);
  if (PuedeAbrirse(path)) {
    return 0;
  }
  ::close(abierto);
  fichero = kSinFichero;
  return ENOENT;
}

int SueltaNombre(Descriptor fichero, CString& path) {
  const CString otra = NombreDeDescriptor(static_cast<int>(fichero));
  if (!PuedeAbrirse(otra)) {
    return ENOENT;
  }
  const int codigo = Borra(path);
  path = codigo == 0 ? otra : path;
  return codigo;
}

Descriptor Duplica(Descriptor fichero) { return ::fcntl(static_cast<int>(fichero), F_DUPFD_CLOEXEC, 0); }

void Suelta(Descriptor fichero) {
  if (fichero != kSinFichero) {
    ::close(static_cast<int>(fichero));
  }
}

void HeredaPermisos(Descriptor fichero, CString const& modelo) {
  struct stat datos {};
  if (::stat(modelo.Utf8().c_str(), &datos) == -1) {
    return;
  }
  const int abierto = static_cast<int>(fichero);
  constexpr auto kElMismo = static_cast<uid_t>(-1);
  mode_t permisos = datos.st_mode & 0777;
  const bool todo = ::fchown(abierto, datos.st_uid, datos.st_gid) == 0;
  if (!todo && ::fchown(abierto, kElMismo, datos.st_gid) == -1) {
    permisos &= ~static_cast<mode_t>(S_IRWXG) | ((permisos & S_IRWXO) << 3);  // another group gets what all have
  }
  static_cast<void>(::fchmod(abierto, permisos));
}

EResto BorraResto(CString const& path) {
  const std::string nombre = path.Utf8();
  struct stat datos {};
  if (::lstat(nombre.c_str(), &datos) == -1) {
    return errno == ENOENT ? EResto::Nada : EResto::EnUso;
  }
  if (!S_ISREG(datos.st_mode) || datos.st_uid != ::geteuid()) {
    return EResto::EnUso;
  }
  const int abierto = Insiste([&] { return ::open(nombre.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); });
  if (abierto == -1) {
    return errno == ENOENT ? EResto::Nada : EResto::EnUso;
  }
  // Who holds the lock of the file that has the name is the only one who may take the name away.
  const bool muerto = ::flock(abierto, LOCK_EX | LOCK_NB) == 0 && TieneNombre(abierto, nombre.c_str());
  const bool borrado = muerto && Borra(path) == 0;
  ::close(abierto);
  return borrado ? EResto::Borrado : EResto::EnUso;
}

int CreaExclusivo(CString const& path) {
  if (const int codigo = Consulta(EOperacion::CreaTemporal, path); codigo != 0) {
    return codigo;
  }
  const std::string nombre = path.Utf8();
  const int abierto =
      Insiste([&] { return ::open(nombre.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kSoloUsuario); });
  if (abierto == -1) {
    return errno;
  }
  ::close(abierto);
  return 0;
}

bool Existe(CString const& path) {
  struct stat datos {};
  return ::lstat(path.Utf8().c_str(), &datos) == 0;
}

CDatosFichero Examina(CString const& path) {
  CDatosFichero datos;
  struct stat este {};
  if (::stat(Ruta(path), &este) != 0) {
    return datos;
  }
  datos.clase = S_ISREG(este.st_mode)   ? CDatosFichero::Fichero
                : S_ISDIR(este.st_mode) ? CDatosFichero::Carpeta
                                        : CDatosFichero::Otro;
  datos.bytes = static_cast<unsigned long long>(este.st_size);
  constexpr long long kNanosegundos = 1'000'000'000;
  datos.escrito = este.st_mtim.tv_sec * kNanosegundos + este.st_mtim.tv_nsec;
  datos.disco = este.st_dev;
  datos.numero = este.st_ino;
  return datos;
}

std::vector<CString> Nombres(CString const& carpeta) {
  std::vector<CString> nombres;
  DIR* const abierta = ::opendir(Ruta(carpeta));
  if (abierta == nullptr) {
    return nombres;
  }
  const std::unique_ptr<DIR, int (*)(DIR*)> guarda(abierta, ::closedir);
  while (dirent const* const entrada = ::readdir(abierta)) {
    const std::string_view nombre = entrada->d_name;
    if (nombre != "." && nombre != "..") {
      nombres.push_back(CString::DesdeUtf8(nombre));
    }
  }
  return nombres;
}

bool SigueEnlace(CString const& path, CString& hasta) {
  std::array<char, PATH_MAX> destino;
  const ssize_t largo = ::readlink(path.Utf8().c_str(), destino.data(), destino.size());
  if (largo <= 0 || static_cast<std::size_t>(largo) >= destino.size()) {
    return false;
  }
  const CString escrito = CString::DesdeUtf8({destino.data(), static_cast<std::size_t>(largo)});
  hasta = escrito[0] == kSeparador ? escrito : path.Left(path.ReverseFind(kSeparador) + 1) + escrito;
  return true;
}

int Renombra(CString const& desde, CString const& hasta) {
  const int codigo = Consulta(EOperacion::Renombra, desde);
  return codigo != 0 ? codigo : CodigoDe(std::rename(desde.Utf8().c_str(), hasta.Utf8().c_str()));
}

int Borra(wchar_t const* path) {
  const int codigo = Consulta(EOperacion::Borra, path);
  return codigo != 0 ? codigo : CodigoDe(::unlink(Ruta(path)));
}

int CreaCarpeta(CString const& path) {
  const std::string nombre = path.Utf8();
  const int codigo = CodigoDe(::mkdir(nombre.c_str(), 0777));
  struct stat datos {};
  return codigo != 0 && ::stat(nombre.c_str(), &datos) == 0 && S_ISDIR(datos.st_mode) ? 0 : codigo;
}

void SincronizaCarpeta(CString const& carpeta) noexcept {
  std::array<char, PATH_MAX> ruta;
  if (!AUtf8(static_cast<wchar_t const*>(carpeta), ruta)) {
    return;
  }
  const int abierta = ::open(ruta.data(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (abierta != -1) {
    ::fsync(abierta);
    ::close(abierta);
  }
}

Descriptor BloqueaCarpeta(CString const& carpeta) {
  const int abierta = ::open(carpeta.Utf8().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (abierta == -1) {
    return kSinFichero;
  }
  // What is done under the lock takes milliseconds: who has it longer stands still, and must not hold others back.
  constexpr int kVueltas = 1000;
  const timespec pausa{0, 10'000'000};
  int bloqueada = ::flock(abierta, LOCK_EX | LOCK_NB);
  for (int i = 0; bloqueada == -1 && (errno == EWOULDBLOCK || errno == EINTR) && i < kVueltas; ++i) {
    ::nanosleep(&pausa, nullptr);
    bloqueada = ::flock(abierta, LOCK_EX | LOCK_NB);
  }
  if (bloqueada == -1) {
    ::close(abierta);
    return kSinFichero;
  }
  return abierta;
}

}  // namespace sistema
