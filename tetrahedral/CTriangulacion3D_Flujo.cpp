// The run that writes whole tetrahedra: the mesh flows through memory.
#include "model/threads/CMarcha.h"
#include "model/threads/IPorcentaje.h"
#include "run/Fases.h"
#include "run/Recorrido.h"
#include "tetrahedral/CMallaEnFlujo.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeEnlaza = 19021;
constexpr wchar_t kNombreDeReserva[] = L"Triangulacion3D.tmp";

}  // namespace

int CTriangulacion3D::RunTetraedros(CDibujo<int>& dibujo) {
  const CSiSeRompe guarda([this] { Abandona(kCancelado); });
  dibujo.PonNumerosACero();
  int codigo = Cronometra(resumen.segundosRellena, [&] { return Rellena(dibujo); });
  if (codigo == kHecho) codigo = Cronometra(resumen.segundosEnlaza, [&] { return EnlazaEnFlujo(dibujo); });
  if (codigo != kHecho) return codigo;
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Cierra(nivelMensajes, 0);
  return kHecho;
}

int CTriangulacion3D::EnlazaEnFlujo(CDibujo<int>& dibujo) {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(nivelMensajes, kMensajeEnlaza);
  PreparaEnlace();
  divisiones.PreparaDivisiones(0, divisiones.maximas);  // they have told the seeds
  if (const int codigo = ficheroTemporal.Abre(identificador, kNombreDeReserva); codigo != kHecho) return codigo;

  std::vector<CPorVenir::CPunto> porVenir;
  porVenir.reserve(cantidadPuntos);
  const CFiltroPuntos filtro(datos, Precision(), dibujo, CFiltroPuntos::CPor::CodigosSiempre);
  RecorrePuntos(dibujo, filtro, nullptr, [&porVenir](CLinea<int> const& e, unsigned, unsigned k) {
    CCoor3D<int> const& p = *e.PunteroAPunto(static_cast<int>(k));
    porVenir.push_back({{p.x, p.y, p.z}, static_cast<std::uint32_t>(porVenir.size())});
  });
  CMarcha marcha(porcentaje, nivelMensajes, cantidadPuntos, 0);
  CMallaEnFlujo malla(*ficheroTemporal.Fichero());
  malla.Empieza(Marco(), std::move(porVenir));
  cantidadPuntos = 0;  // numbering begins here
  const auto inserta = [&](CCoor3D<int>* p, unsigned, unsigned) {
    p->num = static_cast<int>(++cantidadPuntos);
    Apunta(malla.Inserta(p), *p, 0, nullptr);
  };
  int codigo = InsertaSemillas(dibujo, marcha, inserta);
  if (codigo == kHecho) codigo = InsertaResto(dibujo, marcha, inserta);
  if (codigo != kHecho) return Abandona(codigo);
  balance = malla.Balance();
  resumen.visitados = malla.Visitados();
  resumen.picoVivos = malla.PicoVivos();
  ResumeBalance();
  const bool escrita = malla.Termina();
  CTetraedro::EncogeReserva();
  return escrita && ficheroTemporal.Vuelca() ? kHecho : Abandona(kFicheroInaccesible);
}

}  // namespace Meseta47
