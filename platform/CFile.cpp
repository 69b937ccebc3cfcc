#include "platform/CFile.h"

#include <algorithm>
#include <limits>
#include <new>
#include <system_error>
#include <utility>

#include "platform/Sistema.h"

namespace {

// A block large enough that the system's cost a call vanishes, small enough to stay in a core's second-level cache
// beside the mesh.
constexpr std::size_t kBufer = std::size_t{64} << 10;
// What is read first after a jump: a page, in case that the next thing is another jump.
constexpr std::size_t kPrimerBloque = std::size_t{4} << 10;

constexpr unsigned kAcceso = CFile::modeWrite | CFile::modeReadWrite;
constexpr int kAccesoIndebido = static_cast<int>(std::errc::bad_file_descriptor);

}  // namespace

CFile::CFile() = default;

CFile::CFile(CString const& path, unsigned flags) { Open(path, flags); }

CFile::CFile(CFile&& otro) noexcept { *this = std::move(otro); }

CFile& CFile::operator=(CFile&& otro) noexcept {
  if (this == &otro) {
    return *this;
  }
  Close();
  bufer_ = std::move(otro.bufer_);
  cursor_ = std::exchange(otro.cursor_, 0);
  legibles_ = std::exchange(otro.legibles_, 0);
  validos_ = std::exchange(otro.validos_, 0);
  sucioDesde_ = std::exchange(otro.sucioDesde_, 0);
  sucioHasta_ = std::exchange(otro.sucioHasta_, 0);
  bloque_ = otro.bloque_;
  base_ = std::exchange(otro.base_, 0);
  posicionSistema_ = std::exchange(otro.posicionSistema_, 0);
  descriptor_ = std::exchange(otro.descriptor_, sistema::kSinFichero);
  flags_ = otro.flags_;
  codigo_ = std::exchange(otro.codigo_, 0);
  sincroniza_ = otro.sincroniza_;
  borraAlCerrar_ = std::exchange(otro.borraAlCerrar_, false);
  accion_ = otro.accion_;
  path_ = std::exchange(otro.path_, CString());
  return *this;
}

CFile::~CFile() { Close(); }

bool CFile::Open(CString const& path, unsigned flags) {
  const bool sabido = HayError();
  if (IsOpen() && !Close() && !sabido) {
    return false;
  }
  Empieza(path, flags);
  return Falla(sistema::Abre(path_, flags_, descriptor_), "open");
}

void CFile::Empieza(CString const& path, unsigned flags) {
  path_ = path;
  flags_ = flags;
  codigo_ = 0;
  base_ = posicionSistema_ = 0;
  Olvida();
  bloque_ = kPrimerBloque;
}

bool CFile::AbreTemporal(CString const& carpeta, CString const& prefijo) {
  Close();
  Empieza(carpeta, modeReadWrite);
  if (!Falla(sistema::Consulta(EOperacion::CreaTemporal, carpeta), "write in")) {
    return false;
  }
  if (sistema::AbreSinNombre(carpeta, prefijo, descriptor_, path_) == 0) {
    return true;
  }
  const auto nombre = [&](unsigned numero) {
    CString final;
    final.Format(L"%X.tmp", numero);
    return sistema::EnCarpeta(carpeta, prefijo + final);
  };
  borraAlCerrar_ = true;  // should memory give out in the steps that follow, too
  const int codigo = sistema::AbreNumerado(nombre, modeCreate | modeReadWrite | modePrivado, path_, descriptor_);
  borraAlCerrar_ = codigo == 0 && sistema::SueltaNombre(descriptor_, path_) != 0;
  if (!Falla(codigo, "write in")) {
    return false;
  }
  return true;
}

bool CFile::Close() {
  if (IsOpen()) {
    Flush();
    if (std::exchange(borraAlCerrar_, false)) {
      sistema::Borra(path_);
    }
    const int codigo = sistema::Cierra(std::exchange(descriptor_, sistema::kSinFichero), path_);
    Falla(codigo, "close");
    base_ = posicionSistema_ = 0;
    Olvida();
    bufer_.reset();
  }
  return !HayError();
}

unsigned CFile::LeeDelDisco(void* destino, unsigned cuantos) {
  if (HayError() || cuantos == 0) {
    return 0;
  }
  if (!IsOpen() || (flags_ & kAcceso) == modeWrite) {
    Falla(kAccesoIndebido, "read");
    return 0;
  }
  auto* const salida = static_cast<char*>(destino);
  std::size_t leidos = 0;
  while (leidos < cuantos) {
    const std::size_t faltan = cuantos - leidos;
    if (cursor_ < validos_) {
      const std::size_t trozo = std::min(faltan, validos_ - cursor_);
      std::memcpy(salida + leidos, bufer_.get() + cursor_, trozo);
      cursor_ += trozo;
      leidos += trozo;
    } else if (faltan >= kBufer) {
      const std::size_t trozo = LeeBloque(salida + leidos, faltan);
      if (trozo == 0) {
        break;
      }
      leidos += trozo;
    } else if (!Rellena()) {
      break;
    }
  }
  return static_cast<unsigned>(leidos);
}

// Puts the window at the position and fills it. False at the end of the file and on a failure.
bool CFile::Rellena() {
  if (!ReservaBufer()) {
    return false;
  }
  const bool sigue = validos_ != 0;
  MueveVentana(static_cast<long long>(GetPosition()));
  bloque_ = sigue ? std::min(bloque_ * 2, kBufer) : bloque_;
  if (HayError() || !Situa(base_)) {
    return false;
  }
  std::size_t movidos = 0;
  if (!Falla(sistema::Lee(descriptor_, path_, bufer_.get(), bloque_, movidos), "read")) {
    return false;
  }
  posicionSistema_ += static_cast<long long>(movidos);
  PonValidos(movidos);
  return movidos != 0;
}

// A large read goes straight to its destination and leaves an empty window behind it.
std::size_t CFile::LeeBloque(char* destino, std::size_t cuantos) {
  MueveVentana(static_cast<long long>(GetPosition()));
  std::size_t movidos = 0;
  if (HayError() || !Situa(base_) || !Falla(sistema::Lee(descriptor_, path_, destino, cuantos, movidos), "read")) {
    return 0;
  }
  posicionSistema_ += static_cast<long long>(movidos);
  base_ += static_cast<long long>(movidos);
  bloque_ = kBufer;
  return movidos;
}

bool CFile::Write(void const* origen, std::size_t cuantos) {
  if (HayError()) {
    return false;
  }
  if (!IsOpen() || (flags_ & kAcceso) == modeRead) {
    return Falla(kAccesoIndebido, "write");
  }
  if (cuantos == 0) {
    return true;
  }
  const bool seguido = sucioDesde_ == sucioHasta_ || (cursor_ >= sucioDesde_ && cursor_ <= sucioHasta_);
  if (!seguido || cuantos >= kBufer - cursor_) {
    MueveVentana(static_cast<long long>(GetPosition()));
  }
  if (HayError() || !ReservaBufer()) {
    return false;
  }
  if (cuantos >= kBufer) {
    const bool bien = EscribeBloque(static_cast<char const*>(origen), cuantos);
    base_ += bien ? static_cast<long long>(cuantos) : 0;
    return bien;
  }
  if (sucioDesde_ == sucioHasta_) {
    sucioDesde_ = sucioHasta_ = cursor_;
  }
  std::memcpy(bufer_.get() + cursor_, origen, cuantos);
  cursor_ += cuantos;
  sucioHasta_ = std::max(sucioHasta_, cursor_);
  PonValidos(std::max(validos_, cursor_));
  return true;
}

bool CFile::Flush() {
  if (!IsOpen() || HayError()) {
    return !HayError();
  }
  const bool escribe = (flags_ & kAcceso) != modeRead;
  return Vuelca() && (!escribe || !sincroniza_ || Falla(sistema::Sincroniza(descriptor_, path_), "write"));
}

long long CFile::Seek(long long distancia, unsigned desde) {
  if (HayError() || !IsOpen()) {
    return -1;
  }
  const auto origen = desde == begin ? 0ULL : desde == current ? GetPosition() : GetLength();
  if (HayError()) {
    return -1;
  }
  const auto lugar = static_cast<long long>(origen);
  if (distancia > std::numeric_limits<long long>::max() - lugar || lugar + distancia < 0) {
    return -1;
  }
  const long long destino = lugar + distancia;
  if (destino >= base_ && destino <= base_ + static_cast<long long>(validos_)) {
    cursor_ = static_cast<std::size_t>(destino - base_);
  } else {
    MueveVentana(destino);
    bloque_ = kPrimerBloque;
  }
  return HayError() ? -1 : destino;
}

unsigned long long CFile::GetLength() {
  if (HayError() || !IsOpen()) {
    return 0;
  }
  long long bytes = 0;
  if (!Falla(sistema::Longitud(descriptor_, path_, bytes), "examine")) {
    return 0;
  }
  const long long pendiente = sucioDesde_ == sucioHasta_ ? 0 : base_ + static_cast<long long>(sucioHasta_);
  return static_cast<unsigned long long>(std::max(bytes, pendiente));
}

bool CFile::SetLength(unsigned long long bytes) {
  if (HayError()) {
    return false;
  }
  if (!IsOpen() || (flags_ & kAcceso) == modeRead) {
    return Falla(kAccesoIndebido, "resize");
  }
  if (bytes > static_cast<unsigned long long>(std::numeric_limits<long long>::max())) {
    return Falla(static_cast<int>(std::errc::file_too_large), "resize");
  }
  MueveVentana(static_cast<long long>(GetPosition()));
  return !HayError() && Falla(sistema::Trunca(descriptor_, path_, static_cast<long long>(bytes)), "resize");
}

CString CFile::Error(CString const& nombre) const {
  CString texto;
  if (HayError()) {
    texto.Format("cannot %s %s: %s", accion_, nombre.Utf8().c_str(), Causa().Utf8().c_str());
  }
  return texto;
}

CString CFile::Causa() const { return HayError() ? sistema::TextoError(codigo_) : CString(); }

// Writes the pending run of bytes, which then is part of the window like any other.
bool CFile::Vuelca() {
  if (sucioDesde_ == sucioHasta_) {
    return true;
  }
  const std::size_t desde = std::exchange(sucioDesde_, 0);
  const std::size_t hasta = std::exchange(sucioHasta_, 0);
  return Situa(base_ + static_cast<long long>(desde)) && EscribeEnSistema(bufer_.get() + desde, hasta - desde);
}

bool CFile::EscribeBloque(char const* origen, std::size_t cuantos) {
  return Situa(base_) && EscribeEnSistema(origen, cuantos);
}

bool CFile::EscribeEnSistema(char const* origen, std::size_t cuantos) {
  while (cuantos > 0) {
    std::size_t movidos = 0;
    if (!Falla(sistema::Escribe(descriptor_, path_, origen, cuantos, movidos), "write")) {
      return false;
    }
    posicionSistema_ += static_cast<long long>(movidos);
    origen += movidos;
    cuantos -= movidos;
  }
  return true;
}

// Leaves an empty window at a place, with nothing pending.
void CFile::MueveVentana(long long posicion) {
  if (Vuelca()) {
    base_ = posicion;
    Olvida();
  }
}

// The system's own position is only moved when a transfer needs it elsewhere: going straight on costs no call, and
// pipes, which have no position, work.
bool CFile::Situa(long long posicion) {
  if (posicion == posicionSistema_) {
    return true;
  }
  const bool bien = Falla(sistema::Posiciona(descriptor_, path_, posicion), "seek in");
  posicionSistema_ = bien ? posicion : posicionSistema_;
  return bien;
}

void CFile::PonValidos(std::size_t validos) {
  validos_ = validos;
  legibles_ = (flags_ & kAcceso) == modeWrite ? 0 : validos;
}

void CFile::Olvida() {
  cursor_ = 0;
  sucioDesde_ = sucioHasta_ = 0;
  PonValidos(0);
}

bool CFile::ReservaBufer() {
  if (bufer_ == nullptr) {
    bufer_.reset(new (std::nothrow) char[kBufer]);
  }
  return Falla(bufer_ == nullptr ? static_cast<int>(std::errc::not_enough_memory) : 0, "buffer");
}

// Keeps the first failure, with the window emptied where it is so that Read() has nothing left to give. True when there
// was none.
bool CFile::Falla(int codigo, char const* accion) {
  if (codigo == 0) {
    return true;
  }
  if (codigo_ == 0) {
    codigo_ = codigo;
    accion_ = accion;
    base_ = static_cast<long long>(GetPosition());
    Olvida();
  }
  return false;
}
