// The runs: phases in order, and no temporary file left behind on any way out.
#include <algorithm>

#include "model/terrain/CTIN.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "run/Fases.h"

namespace Meseta47 {

namespace {

constexpr int kOrdenEspacial = 7;  // sort key of entities: along a space-filling curve

/// Further drawings may hold the numbers of an earlier run; a point that this one does not reach must not keep them.
void PonNumerosACero(std::vector<CDibujo<int>*>* otros) {
  if (otros == nullptr) return;
  for (CDibujo<int>* otro : *otros) {
    if (otro != nullptr) otro->PonNumerosACero();
  }
}

/// Points of a drawing whose number tells that they are in the mesh.
std::uint64_t EnMalla(CDibujo<int> const& dibujo) {
  std::uint64_t suma = 0;
  for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {
    suma += static_cast<std::uint64_t>(
        std::ranges::count_if(dibujo[i].Puntos(), [](CCoor3D<int> const& p) { return p.num != 0; }));
  }
  return suma;
}

}  // namespace

int CTriangulacion2D::Corre(std::initializer_list<CFase> fases) {
  const CSiSeRompe guarda([this] { Abandona(kCancelado); });
  resumen = CResumenPlano();
  int codigo = kHecho;
  for (CFase const& fase : fases) {
    const bool ultima = &fase == fases.end() - 1;
    codigo = Cronometra(fase.segundos, fase.trabajo);
    if (ultima) BorraFicheroTemporal();
    if (codigo != kHecho) return codigo;  // linking that fails leaves no file, or leaves it on purpose
  }
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Cierra(mensajes, 0);
  return codigo;
}

CTriangulacion2D::CEntrada CTriangulacion2D::EntradaDe(CEncargo const& encargo) const {
  return {{Trunca(encargo.tolerancia * Precision()), encargo.extra != nullptr}, true, true};
}

int CTriangulacion2D::Run(CEncargo const& encargo, CTIN& tin) { return Corre(encargo, tin, EntradaDe(encargo)); }

int CTriangulacion2D::Run(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo, std::vector<CDibujo<int>*>* otros,
                          bool vaciar, CString*, CRango const* alturas, CRango const* intensidades) {
  const CEncargo encargo{.dibujo = dibujo,
                         .otros = otros,
                         .ladoMaximo = ladoMaximo,
                         .alturas = alturas,
                         .intensidades = intensidades,
                         .vaciar = vaciar};
  return Corre(encargo, tin, {{}, true, false});
}

int CTriangulacion2D::RunActualiza(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo, CDibujo<int>& extra,
                                   double tolerancia, std::vector<CDibujo<int>*>* otros, bool vaciar, CString*) {
  const CEncargo encargo{.dibujo = dibujo, .otros = otros, .extra = &extra, .ladoMaximo = ladoMaximo, .vaciar = vaciar};
  return Corre(encargo, tin, {{Trunca(tolerancia * Precision())}, false, false});
}

int CTriangulacion2D::Corre(CEncargo const& encargo, CTIN& tin, CEntrada const& entrada) {
  return Corre(encargo, entrada, [&](CGeneracion const& como) { return Genera(como, tin); });
}

int CTriangulacion2D::Corre(CEncargo const& encargo, CEntrada const& entrada,
                            std::function<int(CGeneracion const&)> const& termina) {
  CDibujo<int>& dibujo = encargo.dibujo;
  dibujo.PonNumerosACero();
  PonNumerosACero(encargo.otros);
  if (encargo.extra != nullptr) encargo.extra->PonNumerosACero();
  if (entrada.porOrden) dibujo.Sort(kOrdenEspacial, true, -1);
  const CFuentes fuentes{
      .dibujo = dibujo, .otros = encargo.otros, .extra = encargo.extra, .todasLasSemillas = entrada.todasLasSemillas};
  CEnlace enlace{.tolerancia = entrada.tolerancia};
  const CGeneracion como{fuentes, encargo.vaciar ? encargo.otros : nullptr, encargo.ladoMaximo, encargo.alturas,
                         encargo.intensidades};
  const int codigo = Corre({{resumen.segundosRellena, [&] { return Rellena(fuentes); }},
                            {resumen.segundosEnlaza, [&] { return Enlaza(fuentes, enlace); }},
                            {resumen.segundosGenera, [&] { return termina(como); }}});
  if (encargo.extra != nullptr) resumen.anadidos = EnMalla(*encargo.extra);
  if (codigo == kHecho && encargo.vaciar) dibujo.Clear();
  return codigo;
}

int CTriangulacion2D::Run(CTIN& tin, CString* registro) {
  const double limite = tin.longitudMaxima / tin.semilla.Precision();
  tin.LiberaTriangulos();
  for (CPuntoTIN& p : tin.puntos) p.num = 0;
  return Corre({{resumen.segundosRellena, [&] { return Rellena(tin); }},
                {resumen.segundosEnlaza, [&] { return Enlaza(tin, 0); }},
                {resumen.segundosGenera, [&] { return GenerarMDT(tin, limite, registro, nullptr); }}});
}

}  // namespace Meseta47
