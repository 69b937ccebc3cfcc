// The runs: phases in order, and no temporary file left behind on any way out.
#include "model/terrain/CTIN.h"
#include "model/threads/IPorcentaje.h"
#include "planar/Cronometra.h"
#include "planar/GuardaDeRun.h"

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

/// While it stands, the tolerance is for added points alone.
class CTriangulacion2D::CFijaBase {
 public:
  explicit CFijaBase(CTriangulacion2D& suRun) : run(suRun) { run.baseFija = true; }
  CFijaBase(CFijaBase const&) = delete;
  CFijaBase& operator=(CFijaBase const&) = delete;
  ~CFijaBase() { run.baseFija = false; }

 private:
  CTriangulacion2D& run;
};

int CTriangulacion2D::Run(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo, std::vector<CDibujo<int>*>* otros,
                          bool vaciar, CString*, CRango const* alturas, CRango const* intensidades) {
  dibujo.PonNumerosACero();
  PonNumerosACero(otros);
  dibujo.Sort(kOrdenEspacial, true, -1);
  return RunDibujos(dibujo, tin, ladoMaximo, otros, nullptr, 0, vaciar, alturas, intensidades);
}

int CTriangulacion2D::RunActualiza(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo, CDibujo<int>& extra,
                                   double tolerancia, std::vector<CDibujo<int>*>* otros, bool vaciar, CString*) {
  dibujo.PonNumerosACero();
  PonNumerosACero(otros);
  extra.PonNumerosACero();
  return RunDibujos(dibujo, tin, ladoMaximo, otros, &extra, Trunca(tolerancia * Precision()), vaciar, nullptr, nullptr);
}

int CTriangulacion2D::RunAmplia(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo, CDibujo<int>& extra,
                                double tolerancia, std::vector<CDibujo<int>*>* otros, bool vaciar,
                                CRango const* alturas, CRango const* intensidades) {
  dibujo.PonNumerosACero();
  PonNumerosACero(otros);
  extra.PonNumerosACero();
  dibujo.Sort(kOrdenEspacial, true, -1);
  const CFijaBase base(*this);
  return RunDibujos(dibujo, tin, ladoMaximo, otros, &extra, Trunca(tolerancia * Precision()), vaciar, alturas,
                    intensidades);
}

/// What runs over drawings have in common, once the order of the points and their numbers are as they want them.
int CTriangulacion2D::RunDibujos(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo, std::vector<CDibujo<int>*>* otros,
                                 CDibujo<int>* extra, int tolerancia, bool vaciar, CRango const* alturas,
                                 CRango const* intensidades) {
  const CGuarda guarda(*this);
  double segundos = 0;
  int codigo = Cronometra(segundos, [&] { return Rellena(dibujo, otros, nullptr, extra); });
  resumen.segundosRellena = segundos;
  if (codigo != kHecho) return codigo;
  codigo = Cronometra(resumen.segundosEnlaza, [&] {
    return EnlazaLista(dibujo, otros, nullptr, nullptr, CHiloSalvaTriangulosEnlazados::SALVA, nullptr, nullptr, nullptr,
                       nullptr, extra, tolerancia, nullptr, nullptr, nullptr, nullptr, nullptr);
  });
  if (codigo != kHecho) return codigo;
  codigo = Cronometra(resumen.segundosGenera, [&] {
    return GenerarMDT(dibujo, otros, tin, ladoMaximo, vaciar, nullptr, nullptr, extra, alturas, intensidades);
  });
  return Concluye(codigo, vaciar ? &dibujo : nullptr);
}

int CTriangulacion2D::Run(CTIN& tin, CString* registro) {
  const double limite = tin.longitudMaxima / tin.semilla.Precision();
  const CGuarda guarda(*this);
  tin.LiberaTriangulos();
  for (CPuntoTIN& p : tin.puntos) p.num = 0;
  double segundos = 0;
  int codigo = Cronometra(segundos, [&] { return Rellena(tin); });
  resumen.segundosRellena = segundos;
  if (codigo != kHecho) return codigo;
  codigo = Cronometra(resumen.segundosEnlaza, [&] { return EnlazaLista(tin, 0, registro); });
  if (codigo != kHecho) return codigo;
  codigo = Cronometra(resumen.segundosGenera, [&] { return GenerarMDT(tin, limite, registro, nullptr); });
  return Concluye(codigo, nullptr);
}

int CTriangulacion2D::Concluye(int codigo, CDibujo<int>* porVaciar) {
  BorraFicheroTemporal();
  if (codigo != kHecho) return codigo;
  if (porVaciar != nullptr) porVaciar->Clear();
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Cierra(mensajes, 0);
  return kHecho;
}

}  // namespace Meseta47
