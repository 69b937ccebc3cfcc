#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/CFile.h"
#include "platform/CString.h"

namespace Meseta47 {

/// Three point numbers, as a finished triangle or face leaves them: 12 bytes, each number 32 bits with its sign,
/// little-endian. Below 0 it is a corner of the frame, 0 none. In a file they follow one another without header or end.
using CTriple = std::array<std::int32_t, 3>;

[[nodiscard]] inline bool TocaElMarco(CTriple const& t) { return t[0] < 0 || t[1] < 0 || t[2] < 0; }

/// The temporary file of a run, into which its worker writes triples while points go in.
///
/// The object is the file's owner: what it has made goes with Borra(). When the object goes first, a file without a
/// name goes with it, and one with a name stays on purpose.
/// The worker has the file for itself until it has ended; then readers open it side by side (CLectorTriples).
class URDIMBRE_API CFicheroTriples {
 public:
  static constexpr unsigned kBytes = sizeof(CTriple);

  /// Makes the file in the folder for temporary files, without a name where the system can do without one
  /// (CFile::AbreTemporal). Elsewhere the name begins with the number and "MD"; where that folder takes no file it is
  /// that and `deReserva`, in the current folder. kHecho; kFicheroInaccesible when it cannot be made, and then nothing
  /// is left. Throws std::bad_alloc.
  int Abre(unsigned identificador, wchar_t const* deReserva);
  /// Closes and deletes it. Nothing happens when there is none.
  void Borra();

  [[nodiscard]] bool EstaAbierto() const { return fichero != nullptr; }
  /// Null when there is none.
  [[nodiscard]] CFile* Fichero() const { return fichero.get(); }
  /// The path by which this process can open it, or could open the last one.
  [[nodiscard]] CString const& Ruta() const { return ruta; }
  /// Hands what is pending to the system. True when all is on its way to the disk, or there is no file.
  bool Vuelca() { return fichero == nullptr || fichero->Flush(); }

 private:
  std::unique_ptr<CFile> fichero;
  CString ruta;
  bool tieneNombre = false;  // one that this object has to delete
};

/// Reads the triples of a file, or of a slice of it, a block at a time. One object a thread.
class URDIMBRE_API CLectorTriples {
 public:
  /// `porBloque` triples are asked of the file at once.
  explicit CLectorTriples(unsigned porBloque = 1024) : cuantosPide(porBloque) {}

  /// Opens the file and takes all the memory that reading will need: threads may not run out of it later. False when
  /// the file can't be opened.
  bool Abre(CString const& ruta);
  [[nodiscard]] bool EstaAbierto() const { return fichero.IsOpen(); }
  /// Goes to slice `k` of slices of `porHilo` triples, in a file of so many bytes. False when the disk refused.
  bool Situa(unsigned k, unsigned porHilo, std::uint64_t longitud);

  /// The next triples of the slice, valid until the next call; none when there is no more. Fewer than the length
  /// promises have come when they end before Limite(): HayError() tells whether the disk refused them.
  [[nodiscard]] std::span<CTriple const> Siguiente();

  /// Where it stands and where its slice ends, in bytes.
  [[nodiscard]] std::uint64_t Posicion() const { return fichero.GetPosition(); }
  [[nodiscard]] std::uint64_t Limite() const { return limite; }
  /// Bytes of the whole file; 0 on a failure.
  [[nodiscard]] std::uint64_t Longitud() { return fichero.GetLength(); }
  [[nodiscard]] bool HayError() const { return fichero.HayError(); }

 private:
  unsigned cuantosPide;
  CFile fichero;
  std::uint64_t limite = 0;
  std::vector<CTriple> bloque;
};

}  // namespace Meseta47
