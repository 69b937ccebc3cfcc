#pragma once

#include <cstddef>

#include "platform/CString.h"
#include "platform/Exporta.h"

/// What the framework layer is about to ask of the operating system.
enum class EOperacion {
  Abre,
  Lee,
  Escribe,
  Posiciona,
  Longitud,
  Trunca,
  Sincroniza,
  Cierra,
  Renombra,
  Borra,
  CreaTemporal,
  CreaEvento,
  CreaHilo,
  CreaSeccion,
};

/// A guard that tests put between the framework layer and the operating system, to see what a program does when a disk
/// fills or a thread cannot be made. None stands there in normal use, and files ask it once a block, not once a record.
///
/// Any thread may call it, several at a time.
class URDIMBRE_API IVigilante {
 public:
  virtual ~IVigilante();

  /// Asked before each operation; false makes it fail as the system would (a full disk for a write, a lack of
  /// permission for whatever makes a file, a lack of memory for threads, events and locks, a failing device for the
  /// rest). `path` is empty for operations without a file. A refused close still gives the file back.
  virtual bool Permite(EOperacion operacion, CString const& path) = 0;

  /// How many of `bytes` one single read or write may move. Fewer is a short transfer, which the caller continues;
  /// 0 is the end of the file for a read and a full disk for a write.
  virtual std::size_t Concede(EOperacion operacion, CString const& path, std::size_t bytes);
};

/// Sets the guard (null for none) and returns the one that stood before, which must outlive the calls already in it.
URDIMBRE_API IVigilante* PonVigilante(IVigilante* vigilante);
