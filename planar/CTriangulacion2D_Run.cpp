// The runs: phases in order, and no temporary file left behind on any way out.
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

int CTriangulacion2D::Run(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo, std::vector<CDibujo<int>*>* otros,
                          bool vaciar, CString*, CRango const* alturas, CRango const* intensidades) {
  dibujo.PonNumerosACero();
  PonNumerosACero(otros);
  dibujo.Sort(kOrdenEspacial, true, -1);
  CEnlace enlace;
  return RunDibujos(dibujo, tin, ladoMaximo, otros, nullptr, enlace, vaciar, alturas, intensidades);
}

int CTriangulacion2D::RunActualiza(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo, CDibujo<int>& extra,
                                   double tolerancia, std::vector<CDibujo<int>*>* otros, bool vaciar, CString*) {
  dibujo.PonNumerosACero();
  PonNumerosACero(otros);
  extra.PonNumerosACero();
  CEnlace enlace{.tolerancia = {Trunca(tolerancia * Precision())}};
  return RunDibujos(dibujo, tin, ladoMaximo, otros, &extra, enlace, vaciar, nullptr, nullptr);
}

int CTriangulacion2D::RunAmplia(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo, CDibujo<int>& extra,
                                double tolerancia, std::vector<CDibujo<int>*>* otros, bool vaciar,
                                CRango const* alturas, CRango const* intensidades) {
  dibujo.PonNumerosACero();
  PonNumerosACero(otros);
  extra.PonNumerosACero();
  dibujo.Sort(kOrdenEspacial, true, -1);
  CEnlace enlace{.tolerancia = {Trunca(tolerancia * Precision()), true}};
  return RunDibujos(dibujo, tin, ladoMaximo, otros, &extra, enlace, vaciar, alturas, intensidades);
}

/// What runs over drawings have in common, once the order of the points and their numbers are as they want them.
int CTriangulacion2D::RunDibujos(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo, std::vector<CDibujo<int>*>* otros,
                                 CDibujo<int>* extra, CEnlace& enlace, bool vaciar, CRango const* alturas,
                                 CRango const* intensidades) {
  const CFuentes fuentes{.dibujo = dibujo, .otros = otros, .extra = extra};
  return Corre({{resumen.segundosRellena, [&] { return Rellena(fuentes); }},
                {resumen.segundosEnlaza, [&] { return Enlaza(fuentes, enlace); }},
                {resumen.segundosGenera, [&] {
                   const int codigo = GenerarMDT(dibujo, otros, tin, ladoMaximo, vaciar, nullptr, nullptr, extra,
                                                 alturas, intensidades);
                   if (codigo == kHecho && vaciar) dibujo.Clear();
                   return codigo;
                 }}});
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
