// Growth of a class by affinity: while the mesh is made, and over what is left of it until nothing changes.
#include <algorithm>
#include <new>
#include <vector>

#include "classification/BusquedaMensajes.h"
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

constexpr unsigned kMensajeIteracion = 12104;

CString TextoDeIteracion(unsigned iteracion, unsigned cantidad) {
  CWinApp const* programa = AfxGetApp();
  CString formato = programa != nullptr ? programa->TextoMensaje(kMensajeIteracion) : CString();
  if (formato.IsEmpty()) formato = L"%d %d";
  CString texto;
  texto.Format(formato.GetString(), static_cast<int>(iteracion), static_cast<int>(cantidad));
  return texto;
}

/// What is left of a mesh to grow in.
struct CRestoAfin {
  CRestoAfin(CAfinidad& laAfinidad, CBusquedaPuntos const& losPuntos) : afinidad(laAfinidad), puntos(losPuntos) {}

  CAfinidad& afinidad;
  CBusquedaPuntos const& puntos;
  std::vector<CTriple> vivos{};  ///< triangles in which some side lets the class pass to a point that may take it

  void Lee(CTriple const& t) {
    bool cambio = false;
    if (Crece(t, cambio) && PuedeCrecer(t)) vivos.push_back(t);
  }
  /// Goes over them, each time from the other end: a class that goes against their order would gain one a sweep. False
  /// when it was cancelled.
  bool Barre(CMarcha& marcha, bool& cambio) {
    bool sigue = true;
    cambio = false;
    std::reverse(vivos.begin(), vivos.end());
    std::erase_if(vivos, [&](CTriple const& t) {
      sigue = sigue && marcha.Avanza();
      return sigue && !Crece(t, cambio);
    });
    return sigue;
  }

 private:
  /// Grows within one. False when nothing can change in it any more, or the file was damaged.
  bool Crece(CTriple const& t, bool& cambio) {
    CCoor3D<int> const* const v[3] = {puntos.Punto(t[0]), puntos.Punto(t[1]), puntos.Punto(t[2])};
    return v[0] != nullptr && v[1] != nullptr && v[2] != nullptr &&
           CreceEnTriangulo(afinidad.reglas, afinidad, v, cambio);
  }
  [[nodiscard]] bool PuedeCrecer(CTriple const& t) const {
    CReglasAfinidad const& reglas = afinidad.reglas;
    for (unsigned p = 0; p < 3; ++p) {
      CCoor3D<int> const& punto = *puntos.Punto(t[p]);
      if (reglas.EsFija(afinidad.Clase(punto))) continue;
      for (const unsigned n : {(p + 1) % 3, (p + 2) % 3}) {
        CCoor3D<int> const& vecino = *puntos.Punto(t[n]);
        const unsigned char clase = afinidad.Clase(vecino);
        if ((clase == reglas.crece || clase != reglas.barrera) && afinidad.SonAfines(vecino, punto)) return true;
      }
    }
    return false;
  }
};

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
    const unsigned suya = (*iteracion)++;
    try {
      CString texto = TextoDeIteracion(suya, cantidad);
      porcentaje->Mensaje(1, &texto, 1);
    } catch (std::bad_alloc const&) {  // the classes are written: for want of a text nothing has failed
    }
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

/// Reads the triangles that are left, and goes over those that growth may still go through until nothing changes.
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
  CBusquedaPasadas pasadas(1, ficheroTemporal.Fichero()->GetLength());
  CRestoAfin resto(afinidad, puntos);
  codigo =
      RecorrePasadas(ficheroTemporal.Ruta(), pasadas, porcentaje, mensajes, [&](CTriple const& t) { resto.Lee(t); });
  rondas = pasadas.longitud == 0 ? 1 : 2;
  for (bool cambio = !resto.vivos.empty(); codigo == kHecho && cambio; ++rondas) {
    CMarcha vuelta(porcentaje, mensajes, resto.vivos.size());
    if (!resto.Barre(vuelta, cambio)) codigo = kCancelado;
  }
  return codigo;
}

}  // namespace Meseta47
