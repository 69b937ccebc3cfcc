#include "classification/CHiloPuntosPorAfinidad.h"

#include <atomic>
#include <exception>

#include "planar/CTriangulacion2D.h"
#include "platform/CSingleLock.h"

using namespace Meseta47;

void CHiloPuntosPorAfinidad::Start(unsigned int k, CEvent* elEvento, CDibujo<int>* elDibujo, CRango const* elRangoZ,
                                   CRango const* elRangoIntensidad, CRango const* elRangoDistancia,
                                   CRango const* elRangoPendiente, CInfoClasificacion const* elTipo1,
                                   CInfoClasificacion const* elTipo2, int elArgumento,
                                   CDataTriangulacion const* losDatos, CCriticalSection* laSeccion, int* elCancelar,
                                   unsigned int* losTerminados, std::vector<CDibujo<int>*>* losOtros,
                                   std::vector<CPosicionEntidad> const* laSeleccion, int siMostrar) {
  indice = k;
  evento = elEvento;
  dibujo = elDibujo;
  rangoZ = elRangoZ;
  rangoIntensidad = elRangoIntensidad;
  rangoDistancia = elRangoDistancia;
  rangoPendiente = elRangoPendiente;
  tipo1 = elTipo1;
  tipo2 = elTipo2;
  argumento = elArgumento;
  datos = losDatos;
  seccion = laSeccion;
  cancelar = elCancelar;
  terminados = losTerminados;
  otros = losOtros;
  seleccion = laSeleccion;
  mostrar = siMostrar;
  if (hilo != nullptr) return;
  codigo = 0;
  if (!Arranca(&Rutina, this)) codigo = kFicheroInconsistente;
}

unsigned long CHiloPuntosPorAfinidad::Rutina(void* yo) {
  static_cast<CHiloPuntosPorAfinidad*>(yo)->Run();
  return 0;
}

void CHiloPuntosPorAfinidad::Run() {
  iteracion = cantidad = 0;
  progreso = 0;
  codigo = 0;
  try {
    Corre();
  } catch (std::exception const&) {
    // No memory, or no lock: nothing has changed. What is told of a run that has answered may be lost with it.
    if (codigo == 0) codigo = kFicheroInconsistente;
  }
  if (codigo == kCancelado) std::atomic_ref<int>(*cancelar).store(1);
  const CSingleLock cerrojo(seccion, true);
  std::atomic_ref<unsigned>(*terminados).fetch_add(1);
}

void CHiloPuntosPorAfinidad::Corre() {
  CTriangulacion2D triangulacion(argumento, dibujo->semilla, *datos, indice);
  triangulacion.Mensajes(MENSAJES_FASES);
  codigo =
      triangulacion.RunPuntosPorAfinidad(*dibujo, cantidad, rangoZ, rangoIntensidad, rangoDistancia, rangoPendiente,
                                         *tipo1, *tipo2, otros, seleccion, &iteracion, mostrar, &progreso);
  texto.Format(L"T %d - %d %s", static_cast<int>(indice), static_cast<int>(triangulacion.identificador),
               triangulacion.ficheroTemporal.Ruta().GetString());
}

void CHiloPuntosPorAfinidad::Stop() {
  if (cancelar != nullptr) std::atomic_ref<int>(*cancelar).store(1);
  CHilo::Stop();
}
