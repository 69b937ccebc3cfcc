#pragma once

#include <cstddef>
#include <cstring>
#include <memory>

#include "platform/CString.h"
#include "platform/Exporta.h"

/// A binary file with a buffer in both directions: records cost a copy, and the system is asked a block at a time.
///
/// The first failure of the disk is kept until the file is opened again; from then on nothing is read or written, so
/// that a file never holds a later record without an earlier one. Since a write may fail only when its block goes to
/// the disk, a writer is done when Flush() or Close() has returned true.
///
/// Several objects may have one file open. What one wrote is seen by another that reads there for the first time after
/// Flush() or Close(). One object is used by one thread at a time.
class URDIMBRE_API CFile {
 public:
  enum OpenFlags : unsigned {
    modeRead = 0x0,
    modeWrite = 0x1,
    modeReadWrite = 0x2,
    shareCompat = 0x0,  ///< Sharing is never restricted here: these flags are accepted and change nothing.
    shareExclusive = 0x10,
    shareDenyWrite = 0x20,
    shareDenyRead = 0x30,
    shareDenyNone = 0x40,
    modeNoInherit = 0x80,     ///< No file is ever inherited by a program started from this one.
    modeCreate = 0x1000,      ///< Makes the file, or empties an existing one.
    modeNoTruncate = 0x2000,  ///< With modeCreate, keeps what an existing file holds.
    modeNuevo = 0x10000,      ///< Makes the file, and fails when anything, be it a link to nowhere, has its name.
    modePrivado = 0x20000,    ///< A file made is for this user alone.
    typeText = 0x4000,
    typeBinary = 0x8000,
  };
  enum SeekPosition : unsigned { begin = 0, current = 1, end = 2 };

  CFile();
  /// Opens the file; IsOpen() tells whether that succeeded and Error() why not.
  CFile(CString const& path, unsigned flags);
  CFile(CFile&& otro) noexcept;
  CFile& operator=(CFile&& otro) noexcept;
  CFile(CFile const&) = delete;
  CFile& operator=(CFile const&) = delete;
  /// Closes the file; a failure has nobody to go to here, so writers call Close().
  virtual ~CFile();

  /// Opens a file with a sum of OpenFlags, at position 0, and forgets a failure that earlier calls have told. A file
  /// still open is closed first; should that fail as the first failure of all, nothing is opened and it is kept. A
  /// folder cannot be opened. False on failure.
  bool Open(CString const& path, unsigned flags);

  /// Opens a file of its own for what is too much for memory, empty, to be read and written, in a folder: for this user
  /// alone, and gone when it is closed. It has no name where the system can do without one, and so leaves nothing
  /// however the process ends; elsewhere it is "PREFIXnumber.tmp", and what a process that was killed left under such a
  /// name goes when the next one asks. GetFilePath() tells by what name this process can open it a second time while it
  /// is open.
  bool AbreTemporal(CString const& carpeta, CString const& prefijo);

  /// Writes what is pending and closes. False when that, or anything before it, failed. Closing a file that is not open
  /// succeeds unless a failure is kept.
  bool Close();

  /// Reads up to `cuantos` bytes and returns how many came: fewer at the end of the file or on a failure, which
  /// HayError() tells apart.
  unsigned Read(void* destino, unsigned cuantos) {
    if (cursor_ + cuantos >= legibles_) {
      return LeeDelDisco(destino, cuantos);
    }
    std::memcpy(destino, bufer_.get() + cursor_, cuantos);
    cursor_ += cuantos;
    return cuantos;
  }

  /// Writes all the bytes. False on a failure, now or kept from before. Writing beyond the end fills the gap with
  /// zeros.
  bool Write(void const* origen, std::size_t cuantos);

  /// Hands what is pending to the system. False on a failure, now or kept from before.
  bool Flush();

  /// Moves to a distance from the start, the position or the end, and returns the new position; it may lie beyond the
  /// end. Returns -1 on a failure, and for a place before the start, which leaves the position as it was.
  long long Seek(long long distancia, unsigned desde);
  long long SeekToEnd() { return Seek(0, end); }

  /// Position of the next byte, from 0. No cost.
  [[nodiscard]] unsigned long long GetPosition() const { return static_cast<unsigned long long>(base_) + cursor_; }

  /// Bytes in the file, pending ones included; 0 on a failure. One question to the system a call.
  [[nodiscard]] unsigned long long GetLength();

  /// Cuts the file off at a length, or fills it up with zeros. The position stays, even beyond the new end. False on a
  /// failure, now or kept from before.
  bool SetLength(unsigned long long bytes);

  /// The path as it was given to the last Open().
  [[nodiscard]] CString GetFilePath() const { return path_; }

  [[nodiscard]] bool IsOpen() const { return descriptor_ >= 0; }

  /// The first failure since the last Open(): whether there is one, its number (that of std::errc), a sentence for a
  /// person: "cannot write PATH: No space left on device", and its cause alone, the sentence's end; empty without one.
  [[nodiscard]] bool HayError() const { return codigo_ != 0; }
  [[nodiscard]] int CodigoError() const { return codigo_; }
  [[nodiscard]] CString Error() const { return Error(path_); }
  /// The same with another name for the file: that by which the person knows it.
  [[nodiscard]] CString Error(CString const& nombre) const;
  [[nodiscard]] CString Causa() const;

  /// Asks Flush() and Close() to wait until the data are on the disk itself. Off until asked for; stays through Open().
  void PonSincroniza(bool sincroniza) { sincroniza_ = sincroniza; }

 private:
  friend class CFicheroParcial;

  // The buffer is a window on the file: validos_ bytes from base_, the position at base_ + cursor_, and in it one run
  // of bytes, from sucioDesde_ to sucioHasta_, that the disk has not seen. legibles_ is validos_ in a file that can be
  // read and 0 in one that cannot, so that Read() needs a single comparison.
  unsigned LeeDelDisco(void* destino, unsigned cuantos);
  bool Rellena();
  std::size_t LeeBloque(char* destino, std::size_t cuantos);
  bool Vuelca();
  bool EscribeBloque(char const* origen, std::size_t cuantos);
  bool EscribeEnSistema(char const* origen, std::size_t cuantos);
  void MueveVentana(long long posicion);
  void PonValidos(std::size_t validos);
  bool Situa(long long posicion);
  bool Falla(int codigo, char const* accion);
  void Empieza(CString const& path, unsigned flags);
  bool ReservaBufer();
  void Olvida();

  std::unique_ptr<char[]> bufer_;
  std::size_t cursor_ = 0;
  std::size_t legibles_ = 0;
  std::size_t validos_ = 0;
  std::size_t sucioDesde_ = 0;
  std::size_t sucioHasta_ = 0;
  std::size_t bloque_ = 0;  // bytes of the next read ahead: grows while reading goes straight on
  long long base_ = 0;
  long long posicionSistema_ = 0;
  std::ptrdiff_t descriptor_ = -1;
  unsigned flags_ = 0;
  int codigo_ = 0;
  bool sincroniza_ = false;
  bool borraAlCerrar_ = false;
  char const* accion_ = "";
  CString path_;
};
