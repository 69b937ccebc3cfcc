// The runs, and what closes them: a mesh that is kept over points of its own, or a surface of the faces that no long
// edge bounds.
#include <array>
#include <memory>

#include "model/terrain/CModeloDigital.h"
#include "model/threads/CMarcha.h"
#include "model/threads/IPorcentaje.h"
#include "platform/CFile.h"
#include "run/Fases.h"
#include "run/Recorrido.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeGenera = 19029;
constexpr double kSinLimite2 = 2147483647.0;
constexpr int kFasesExporta = 3, kFasesLandXML = 5;
using CCara3 = std::array<std::int32_t, 3>;

}  // namespace

// --- runs

int CTriangulacion3D::Run(CDibujo<int>& dibujo, bool vaciar) {
  const CSiSeRompe guarda([this] { Abandona(kCancelado); });
  dibujo.PonNumerosACero();
  int codigo = Cronometra(resumen.segundosRellena, [&] { return Rellena(dibujo); });
  if (codigo == kHecho) codigo = EnlazaLista(dibujo, 0, false, false);
  if (codigo == kHecho) codigo = GenerarMDT(dibujo);
  if (codigo != kHecho) return codigo;
  if (vaciar) dibujo.Clear();
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Cierra(nivelMensajes, 0);
  return kHecho;
}

int CTriangulacion3D::Run(CDibujo<int>& dibujo, CTIN& tin, double longitudMaxima, bool vaciar,
                          std::vector<CPosicionEntidad>* posiciones, bool todas) {
  const CSiSeRompe guarda([this] { Abandona(kCancelado); });
  dibujo.PonNumerosACero();
  const double longitud = longitudMaxima * Precision();
  longitudLimite2 = Signo(longitudMaxima) > 0 ? longitud * longitud : kSinLimite2;
  int codigo = Rellena(dibujo);
  if (codigo == kHecho) codigo = EnlazaLista(dibujo, 0, true, todas);
  if (codigo == kHecho) codigo = GenerarMDT(dibujo, tin, posiciones);
  if (codigo != kHecho) return codigo;
  tin.longitudMaxima = Trunca(longitud);
  if (vaciar) dibujo.Clear();
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Cierra(nivelMensajes, 0);
  return kHecho;
}

// --- what closes them

/// Copies the points that take part, in the order of models, and numbers the copies by their places. `mapa` tells for
/// each number that the run gave, less 1, the new one.
void CTriangulacion3D::RegistraPuntos(CDibujo<int> const& dibujo, CSetPuntosMdt& destino, std::vector<int>& mapa,
                                      std::vector<CPosicionEntidad>* posiciones) {
  const CFiltroPuntos filtro(datos, Precision(), dibujo, CFiltroPuntos::CPor::CodigosSiempre);
  std::vector<CPosicionEntidad> porNumero(posiciones != nullptr ? cantidadPuntos : 0);
  destino.reserve(std::uint64_t{cantidadPuntos} + destino.reserva, maximas.Minimo.x, maximas.Maximo.x);
  RecorrePuntos(dibujo, filtro, nullptr, [&](CLinea<int> const& e, unsigned entidad, unsigned k) {
    CPuntoTIN punto(*e.PunteroAPunto(static_cast<int>(k)));
    if (CSetPuntos<int> const* nube = CSetPuntos<int>::De(e)) punto.aero = nube->Info(k);
    destino.push_back(punto, false);
    const auto numero = static_cast<std::size_t>(punto.num);
    if (punto.num >= 1 && numero <= porNumero.size()) {
      porNumero[numero - 1] = CPosicionEntidad(static_cast<int>(entidad), static_cast<int>(k));
    }
  });
  divisiones.clear();
  destino.sort(0, true);
  mapa.assign(cantidadPuntos, 0);
  if (posiciones != nullptr) posiciones->assign(cantidadPuntos, CPosicionEntidad());
  int lugar = 0;
  for (CPuntoTIN& p : destino) {
    const auto anterior = static_cast<std::size_t>(p.num);
    p.num = ++lugar;
    if (anterior < 1 || anterior > mapa.size()) continue;
    mapa[anterior - 1] = lugar;
    if (posiciones != nullptr) (*posiciones)[static_cast<std::size_t>(lugar) - 1] = porNumero[anterior - 1];
  }
}

/// Whether a point set among the entities carries survey data: then the file has to hold them too.
bool CTriangulacion3D::TieneInfos(CDibujo<int> const& dibujo) {
  for (unsigned e = 0; e < dibujo.Cantidad(); ++e) {
    CSetPuntos<int> const* nube = CSetPuntos<int>::De(dibujo[e]);
    if (nube != nullptr && nube->TieneInfos()) return true;
  }
  return false;
}

int CTriangulacion3D::GenerarMDT(CDibujo<int> const& dibujo) {
  std::vector<int> mapa;
  CSetPuntosMdt nuevos(0, TieneInfos(dibujo) ? 1 : 0);
  RegistraPuntos(dibujo, nuevos, mapa, nullptr);
  puntos = std::move(nuevos);
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Fase(nivelMensajes, kMensajeGenera);
  int hechos = 0, total = static_cast<int>(CantidadTetraedros());
  const bool avisa = nivelMensajes == MENSAJES_DETALLE;
  return setRaiz.CambiaPunteros(puntos, mapa, avisa ? &hechos : nullptr, avisa ? &total : nullptr);
}

int CTriangulacion3D::GenerarMDT(CDibujo<int> const& dibujo, CTIN& tin, std::vector<CPosicionEntidad>* posiciones) {
  std::vector<int> mapa;
  {
    CSetPuntosMdt nuevos(0, 0);
    RegistraPuntos(dibujo, nuevos, mapa, posiciones);
    tin.SetPuntosMdt(nuevos);
  }
  setRaiz.clear();
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(nivelMensajes, kMensajeGenera);
  int codigo = LlevaCaras(tin, mapa);
  ficheroTemporal.Borra();
  if (codigo == kHecho) codigo = tin.Sort(porcentaje, 0, true);
  if (codigo == kHecho) tin.estado = 1;
  return codigo;
}

/// The faces of the spill file go to the model, one record at a time.
int CTriangulacion3D::LlevaCaras(CTIN& tin, std::vector<int> const& mapa) {
  CFile* escrito = ficheroTemporal.Fichero();
  if (escrito == nullptr || escrito->Seek(0, CFile::begin) != 0) return kFicheroInaccesible;
  const std::uint64_t longitud = escrito->GetLength();
  IPorcentaje* porcentaje = Progreso();
  const auto punto = [&](std::int32_t n) {
    return n >= 1 && static_cast<std::size_t>(n) <= mapa.size()
               ? tin.Punto(static_cast<unsigned>(mapa[static_cast<std::size_t>(n) - 1] - 1))
               : nullptr;
  };
  CCara3 cara;
  for (std::uint64_t lugar = 0;; lugar += sizeof cara) {
    if (porcentaje != nullptr && porcentaje->Porcentaje(nivelMensajes, lugar, longitud, false) == 0) return kCancelado;
    if (escrito->Read(cara.data(), sizeof cara) != sizeof cara) break;
    CTriangulo triangulo(punto(cara[0]), punto(cara[1]), punto(cara[2]), -1, -1, -1);
    if (!triangulo.EsValido()) continue;
    triangulo.ColocaPuntos(false);
    tin.Inserta(triangulo, false, true, false);
  }
  return escrito->HayError() ? kFicheroInaccesible : kHecho;
}

int CTriangulacion3D::GenerarMDT(CTIN& tin, int limite) {
  CSetPuntosMdt copia(puntos);
  tin.SetPuntosMdt(copia);
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(nivelMensajes, kMensajeGenera);
  CMarcha marcha(porcentaje, nivelMensajes, CantidadTetraedros());
  int codigo = setRaiz.LlevaCaras(tin, limite, marcha);
  if (codigo == kHecho) codigo = tin.Sort(porcentaje, 0, true);
  if (codigo == kHecho) tin.estado = 1;
  return codigo;
}

int CTriangulacion3D::Exportar(CString const& ruta, CDataExportarMDT const& como) {
  auto suTin = std::make_unique<CTIN>(0, 0, semilla);
  CTIN& tin = *suTin;
  CModeloDigital modelo(suTin.release());
  modelo.Mensajes(nivelMensajes);
  if (IPorcentaje* porcentaje = Progreso()) {
    porcentaje->Abre(nivelMensajes, como.formato == FORMATO_LANDXML ? kFasesLandXML : kFasesExporta, 0);
  }
  if (const int codigo = GenerarMDT(tin, longitudLimite); codigo != kHecho) return codigo;
  return como.formato == FORMATO_NATIVO ? modelo.Write(ruta, 4) : modelo.Exportar(ruta, como);
}

}  // namespace Meseta47
