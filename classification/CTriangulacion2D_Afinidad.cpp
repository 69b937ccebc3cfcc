// Growth of a class by affinity: while the mesh is made, and over what is left of it until nothing changes.
#include "classification/CBusquedaPasadas.h"
#include "classification/CBusquedaPuntos.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "platform/CWinApp.h"
#include "run/Fases.h"
#include "run/Recorrido.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeRegistra = 19020;
constexpr unsigned kMensajeBusca = 19045;
constexpr unsigned kMensajeIteracion = 12104;

CString TextoDeIteracion(unsigned iteracion, unsigned cantidad) {
  CWinApp const* programa = AfxGetApp();
  CString formato = programa != nullptr ? programa->TextoMensaje(kMensajeIteracion) : CString();
  if (formato.IsEmpty()) formato = L"%d %d";
  CString texto;
  texto.Format(formato.GetString(), static_cast<int>(iteracion), static_cast<int>(cantidad));
  return texto;
}

}  // namespace

int CTriangulacion2D::RunPuntosPorAfinidad(CDibujo<int>& dibujo, unsigned int& cantidad, CRango const* rangoZ,
                                           CRango const* rangoIntensidad, CRango const* rangoDistancia,
                                           CRango const* rangoPendiente, CInfoClasificacion const& tipo1,
                                           CInfoClasificacion const& tipo2, std::vector<CDibujo<int>*>* otros,
                                           std::vector<CPosicionEntidad> const* seleccion, unsigned int* iteracion,
                                           int mostrar, int* progreso) {
  dibujo.PonNumerosACero();
  if (otros != nullptr) BorraNumeros(*otros);
  const CFuentes fuentes{dibujo, otros, seleccion};
  CEnlace enlace{.modo = CHiloSalvaTriangulosEnlazados::AFINIDAD,
                 .contador = progreso,
                 .clasifica = &dibujo,
                 .tipoA = &tipo1,
                 .tipoB = &tipo2,
                 .alturas = rangoZ,
                 .intensidades = rangoIntensidad,
                 .distancias = rangoDistancia,
                 .pendientes = rangoPendiente,
                 .cuenta = &cantidad};
  const auto cuentaIteracion = [&] {
    afinidad.Vacia();
    IPorcentaje* porcentaje = Progreso();
    if (porcentaje == nullptr || mostrar == 0 || iteracion == nullptr) return kHecho;
    CString texto = TextoDeIteracion((*iteracion)++, cantidad);
    porcentaje->Mensaje(1, &texto, 1);
    return kHecho;
  };
  return Corre({{resumen.segundosRellena, [&] { return Rellena(fuentes); }},
                {resumen.segundosEnlaza, [&] { return Enlaza(fuentes, enlace); }},
                {resumen.segundosBusca, cuentaIteracion}});
}

int CTriangulacion2D::RunAfinidadCompleta(CDibujo<int>& dibujo, CReglasAfinidad const& reglas, unsigned& cantidad,
                                          unsigned& rondas, std::vector<CDibujo<int>*>* otros,
                                          std::vector<CPosicionEntidad> const* seleccion) {
  dibujo.PonNumerosACero();
  if (otros != nullptr) BorraNumeros(*otros);
  const CFuentes fuentes{dibujo, otros, seleccion};
  const CInfoClasificacion crece(reglas.crece, 0.0, CString()), barrera(reglas.barrera, 0.0, CString());
  CEnlace enlace{.modo = CHiloSalvaTriangulosEnlazados::AFINIDAD,
                 .clasifica = &dibujo,
                 .tipoA = &crece,
                 .tipoB = &barrera,
                 .alturas = reglas.alturas,
                 .intensidades = reglas.intensidades,
                 .distancias = reglas.distancias,
                 .pendientes = reglas.pendientes,
                 .cuenta = &cantidad,
                 .guarda = true};
  return Corre({{resumen.segundosRellena, [&] { return Rellena(fuentes); }},
                {resumen.segundosEnlaza, [&] { return Enlaza(fuentes, enlace); }},
                {resumen.segundosBusca, [&] {
                   const int codigo = TerminaAfinidad(fuentes, rondas);
                   if (codigo == kHecho) PonClases(fuentes, enlace);
                   afinidad.Vacia();
                   return codigo;
                 }}});
}

/// Reads the triangles that are left until nothing changes in them.
int CTriangulacion2D::TerminaAfinidad(CFuentes const& fuentes, unsigned& rondas) {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeRegistra);
  divisiones.clear();  // the search needs the memory
  CBusquedaPuntos puntos(cantidadPuntos);
  CMarcha marcha(porcentaje, mensajes, cantidadPuntos);
  int codigo = fuentes.Recorre([&](short, CDibujo<int> const& d, std::vector<CPosicionEntidad> const* elegidos) {
    return RecorrePuntos(d, Filtro(d), elegidos, marcha, [&](CLinea<int> const& e, unsigned, unsigned k) {
      CCoor3D<int>* p = PuntoDeRun(e, k);
      if (p->num > 0) puntos.Anade(p);
    });
  });
  if (codigo != kHecho) return codigo;

  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeBusca);
  CBusquedaPasadas pasadas(2, ficheroTemporal.Fichero()->GetLength(), 1);
  pasadas.pasada = 1;  // the pass that is run again
  codigo = RecorrePasadas(ficheroTemporal.Ruta(), pasadas, porcentaje, mensajes, [&](CTriple const& t) {
    CCoor3D<int> const* const v[3] = {puntos.Punto(t[0]), puntos.Punto(t[1]), puntos.Punto(t[2])};
    if (v[0] == nullptr || v[1] == nullptr || v[2] == nullptr) return;  // a damaged file
    bool cambio = false;
    CreceEnTriangulo(afinidad.reglas, afinidad, v, cambio);
    if (cambio) pasadas.Halla();
  });
  rondas = 1 + static_cast<unsigned>(pasadas.longitud == 0 ? 0 : pasadas.acumulado / pasadas.longitud);
  return codigo;
}

}  // namespace Meseta47
