#pragma once

#include "platform/CFile.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

/// The file that one written under a name stands in for: the name itself, or where symbolic links lead from there, be
/// there a file or none yet. A ring of links leads back to the name.
[[nodiscard]] URDIMBRE_API CString DestinoFinal(CString const& ruta);

/// The folder that a path leads through, with its separator; "." for a name alone.
[[nodiscard]] URDIMBRE_API CString CarpetaDe(CString const& ruta);

/// A file in the making: it stands beside the one whose place it takes, with ".part" behind its name, until Confirma()
/// gives it the name in one step. One that is destroyed before is deleted, and whatever had the name is as it was.
///
/// Two in the making for one name never meet, in this process or others: the second is "NAME.2.part", and the last to
/// be confirmed stays. Whatever else has such a name, a link or a pipe, is left alone; only what a process that was
/// killed left there is deleted. Links to `ruta` are followed once, at the beginning.
///
/// The new file has the owner, the group and the permissions of the one that it replaces, where this user may give
/// them, and is on the disk itself before that one goes. Used by one thread at a time.
class URDIMBRE_API CFicheroParcial {
 public:
  explicit CFicheroParcial(CString const& ruta);
  CFicheroParcial(CFicheroParcial const&) = delete;
  CFicheroParcial& operator=(CFicheroParcial const&) = delete;
  ~CFicheroParcial() { Descarta(); }

  /// Whether it could be made.
  [[nodiscard]] bool EstaAbierto() const { return pendiente_; }
  [[nodiscard]] CFile& Fichero() { return fichero_; }
  /// Hands everything to the disk: of all that may fail, only the name is left. Nothing may be written afterwards.
  /// False when the disk refuses, now or before.
  [[nodiscard]] bool Cierra();
  /// Closes and renames. False when the disk refuses, now or before.
  [[nodiscard]] bool Confirma();
  /// Closes and deletes it, unless it has its name.
  void Descarta();

  /// What went wrong first: a sentence for a person, with the name that the file was to have, and its cause alone.
  /// Empty when nothing has.
  [[nodiscard]] CString Error() const;
  [[nodiscard]] CString Causa() const;
  [[nodiscard]] int CodigoError() const { return codigoNombre_ != 0 ? codigoNombre_ : fichero_.CodigoError(); }

 private:
  void Crea();

  CString ruta_, destino_, provisional_;
  CFile fichero_;
  std::ptrdiff_t cerrojo_ = -1;  // holds the lock until the name is taken: closing the file would give it up
  int codigoNombre_ = 0;         // of the renaming
  bool pendiente_ = false;       // a ".part" of ours stands on the disk
  bool reemplaza_ = false;
};

/// The lock of a folder, for what takes several short steps there: it waits until no other process has it, ten seconds
/// at most, and gives it up at the end. Where folders have no locks it does nothing.
class URDIMBRE_API CCerrojoCarpeta {
 public:
  explicit CCerrojoCarpeta(CString const& carpeta);
  CCerrojoCarpeta(CCerrojoCarpeta const&) = delete;
  CCerrojoCarpeta& operator=(CCerrojoCarpeta const&) = delete;
  ~CCerrojoCarpeta();

 private:
  std::ptrdiff_t carpeta_;
};
