#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
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

}  // namespace

namespace sistema {

int Abre(CString const& path, unsigned flags, Descriptor& fichero) {
  fichero = kSinFichero;
  if (const int codigo = Consulta(EOperacion::Abre, path); codigo != 0) {
    return codigo;
  }
  const std::string nombre = path.Utf8();
  const int abierto = Insiste([&] { return ::open(nombre.c_str(), Opciones(flags), kTodosSegunMascara); });
  if (abierto == -1) {
    return errno;
  }
  struct stat datos {};
  const int codigo = ::fstat(abierto, &datos) == -1 ? errno : S_ISDIR(datos.st_mode) ? EISDIR : 0;
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

int CreaExclusivo(CString const& path, CString const* modelo) {
  if (const int codigo = Consulta(EOperacion::CreaTemporal, path); codigo != 0) {
    return codigo;
  }
  struct stat datos {};
  const bool copia = modelo != nullptr && ::stat(modelo->Utf8().c_str(), &datos) == 0;
  const mode_t permisos = modelo == nullptr ? kSoloUsuario : kTodosSegunMascara;
  const std::string nombre = path.Utf8();
  const int abierto =
      Insiste([&] { return ::open(nombre.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, permisos); });
  if (abierto == -1) {
    return errno;
  }
  if (copia) {
    static_cast<void>(::fchmod(abierto, datos.st_mode & 0777));  // at worst the new file is more private than the old
  }
  ::close(abierto);
  return 0;
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

void SincronizaCarpeta(CString const& carpeta) {
  const int abierta = ::open(carpeta.Utf8().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (abierta != -1) {
    ::fsync(abierta);
    ::close(abierta);
  }
}

}  // namespace sistema
