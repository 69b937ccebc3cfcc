#include "planar/CHiloSalvaTriangulosEnlazados.h"

#include <new>

#include "planar/CSetTriangulos2D.h"
#include "platform/CSingleLock.h"
#include "platform/Manejadores.h"

namespace Meseta47 {

bool CHiloSalvaTriangulosEnlazados::Start(unsigned elIndice, HANDLE* elEvento, CCola const& laCola, CFile* elFichero,
                                          unsigned elModo) {
  fichero = elFichero;
  curvas = nullptr;
  equidistancia = 0;
  lado2 = 0;
  return Empieza(elIndice, elEvento, laCola, elModo);
}

bool CHiloSalvaTriangulosEnlazados::Start(unsigned elIndice, HANDLE* elEvento, CCola const& laCola,
                                          CSegmentos* lasCurvas, int laEquidistancia, double elLado2) {
  fichero = nullptr;
  curvas = lasCurvas;
  equidistancia = laEquidistancia;
  lado2 = elLado2;
  return Empieza(elIndice, elEvento, laCola, CURVA);
}

bool CHiloSalvaTriangulosEnlazados::Empieza(unsigned elIndice, HANDLE* elEvento, CCola const& laCola, unsigned elModo) {
  indice = elIndice;
  eventoSalida = elEvento;
  cola = laCola;
  modo = elModo;
  hechos = 0;
  faltoMemoria = false;
  return hilo != nullptr || Arranca(&Rutina, this);
}

void CHiloSalvaTriangulosEnlazados::Stop() {
  if (hilo == nullptr) return;
  {
    CSingleLock cerrojo(cola.seccion, true);
    *cola.parar = 1;
  }
  cola.aviso->fetch_add(1);
  cola.aviso->notify_all();
  CHilo::Stop();
}

unsigned long CHiloSalvaTriangulosEnlazados::Rutina(void* yo) {
  static_cast<CHiloSalvaTriangulosEnlazados*>(yo)->Run();
  return 0;
}

void CHiloSalvaTriangulosEnlazados::Run() {
  while (*cola.parar == 0) {
    CompruebaSuspension();
    const unsigned visto = cola.aviso->load();
    const bool ultima = *cola.fin != 0;  // read before the queue: what was queued before the flag went up is not missed
    if (CSetTriangulos2D* set = Siguiente()) {
      try {
        Trabaja(*set);
      } catch (std::bad_alloc const&) {
        faltoMemoria = true;
      }
      hechos.fetch_add(1, std::memory_order_release);
      avance.SetEvent();
    } else if (ultima) {
      break;
    } else {
      EsperaNovedad(visto);
    }
  }
  ResetEvent(*eventoSalida);
}

/// The next set of the queue; null when there is none yet. The stop flag is looked at under the lock: a worker that was
/// told to stop takes nothing that is queued afterwards.
CSetTriangulos2D* CHiloSalvaTriangulosEnlazados::Siguiente() {
  CSingleLock cerrojo(cola.seccion, true);
  const unsigned i = hechos.load(std::memory_order_relaxed);
  return *cola.parar == 0 && i < cola.sets->size() ? (*cola.sets)[i] : nullptr;
}

void CHiloSalvaTriangulosEnlazados::Trabaja(CSetTriangulos2D& set) {
  if (modo == CURVA) {
    set.Curva(*curvas, equidistancia, lado2);
  } else {
    set.Salva(fichero);  // a refusal of the disk stays with the file, and the driver asks for it at the end
  }
}

void CHiloSalvaTriangulosEnlazados::EsperaMasHechosQue(unsigned vistos) {
  constexpr long long kMilisegundos = 40;
  if (Hechos() == vistos) avance.Lock(kMilisegundos);
}

/// Sets come every few microseconds while points go in, so a short spin catches most of them; after it the thread
/// sleeps.
void CHiloSalvaTriangulosEnlazados::EsperaNovedad(unsigned visto) const {
  constexpr int kVueltas = 200;
  for (int i = 0; i < kVueltas; ++i) {
    if (cola.aviso->load(std::memory_order_relaxed) != visto) return;
  }
  cola.aviso->wait(visto);
}

}  // namespace Meseta47
