#pragma once

#include <memory>

#include "model/drawing/CObjetoFichero.h"
#include "model/terrain/CDataExportarMDT.h"
#include "model/terrain/CTIN.h"
#include "platform/Exporta.h"

class CFicheroParcial;
class CFile;

namespace Meseta47 {

/// A finished surface as a document: what writes it to files and reads it back.
///
/// Files are written under their name with ".part" behind it and renamed at the end, so that a failure or a
/// cancellation leaves neither half a file nor harms an existing one. Progress goes to the application object unless
/// the message level is 0. The codes are kHecho, kCancelado, kFicheroInaccesible, kFicheroCortado and
/// kFicheroInconsistente.
class URDIMBRE_API CModeloDigital : public CObjetoFichero {
 public:
  /// Owns the surface, which must not be null.
  explicit CModeloDigital(CTIN* suTin) : CObjetoFichero(OBJETO_MODELO_DIGITAL), tin(suTin) {}
  CModeloDigital(CModeloDigital const& otro) : CObjetoFichero(otro), tin(std::make_unique<CTIN>(*otro.tin)) {}
  CModeloDigital& operator=(CModeloDigital const& otro);
  ~CModeloDigital() override = default;

  [[nodiscard]] CTIN& Tin() { return *tin; }
  [[nodiscard]] CTIN const& Tin() const { return *tin; }

  /// Why the last Write, Read or Exportar failed, for a person; empty when it did not, or was cancelled.
  [[nodiscard]] CString const& Error() const { return error; }
  /// The number in std::errc of what the disk refused then; 0 when it refused nothing.
  [[nodiscard]] int CodigoError() const { return codigoError; }

  /// Writes the native binary model, whose form is given in docs/formats.md. 4 is the only version there is; another
  /// one is refused with kFicheroInconsistente. Asks for a sorted surface. The name becomes the object's.
  int Write(CString const& ruta, int version);

  /// Reads that form; the surface is the old one unless it answers kHecho. A file that is damaged or cut is refused,
  /// with no more memory taken than it can fill.
  int Read(CString const& ruta);

  /// Reads the points of that form and nothing else: a surface without triangles, for whoever makes it anew. What
  /// stands behind the points is not looked at. As `Read` otherwise.
  int ReadPuntos(CString const& ruta);

  /// Writes the surface in the format that the record names, faces counter-clockwise seen from above, points that no
  /// triangle uses left out, in metres with the origin put back. Asks for a sorted surface. Bytes do not depend on
  /// threads, time or locale. An unknown format is refused with kFicheroInconsistente.
  int Exportar(CString const& ruta, CDataExportarMDT const& datos);

  using CObjetoFichero::operator=;
  void ActualizaCantidades() override;
  void Clear() override;
  [[nodiscard]] CMaximas<double> GetMaximasDouble() const override { return tin->GetMaximasDouble(); }
  void SetMaximasDouble(CMaximas<double> const& m) override { tin->SetMaximasDouble(m); }
  using CObjetoFichero::Mensajes;
  CNivelMensajes Mensajes(CNivelMensajes nivel) override;

 private:
  [[nodiscard]] IPorcentaje* Progreso() const;
  int Lee(CString const& ruta, bool soloPuntos);
  int LeeSuperficie(CFile& fichero, CTIN& leido, bool soloPuntos) const;
  int Entrega(CFicheroParcial& parcial, int codigo);

  std::unique_ptr<CTIN> tin;
  CString error;
  int codigoError = 0;
};

}  // namespace Meseta47
