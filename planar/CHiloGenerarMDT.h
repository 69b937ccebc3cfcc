#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

#include "model/terrain/CLado.h"
#include "planar/CResumenPlano.h"
#include "platform/Manejador.h"
#include "run/CFicheroTriples.h"

class CCriticalSection;
class CEvent;

namespace Meseta47 {

class CPuntoTIN;
class CRango;
class CTIN;
class CTriangulo;

/// Reads its share of the temporary file of triangles, hands those that pass the filters to the model, and keeps the
/// sides of the others that may bound it. Lengths stay squared and are looked at before anything that costs a root.
class URDIMBRE_API CHiloGenerarMDT {
 public:
  static constexpr int P_CRITICAL = 15, P_NORMAL = 0, P_LOWEST = -2, P_IDLE = -15, P_HIGHEST = 2, P_BELOW_NORMAL = -1,
                       P_ABOVE_NORMAL = 1;  ///< as SetThreadPriority takes them

  CHiloGenerarMDT() = default;
  /// A copy has everything but the thread and the file; the sides kept are its own.
  CHiloGenerarMDT(CHiloGenerarMDT const& o);
  CHiloGenerarMDT& operator=(CHiloGenerarMDT const& o);
  ~CHiloGenerarMDT();

  /// Opens the file at the thread's share of records (`parte` each, the thread's being the one of its index) and starts
  /// the thread. The map gives, for a point number less 1, the model's number of the point. `lado2` is the greatest
  /// squared plan length in scaled units; the ranges may be null. At its end the thread adds 1 to `losTerminados` and
  /// sets its event. False, with nothing started, when the file cannot be opened or the system gives no thread.
  bool Start(unsigned elIndice, CEvent* elEvento, CString const& ruta, CTIN* elModelo, std::vector<int> const* elMapa,
             double elLado2, unsigned long long* laLongitud, unsigned parte, CRango const* rangoAlturas,
             CRango const* rangoIntensidades, CRango const* rangoPendientes, CCriticalSection* laSeccion,
             std::atomic<std::uint64_t>* losBytes, std::atomic<long>* losTerminados);
  /// Before Start, of a model whose points stand in order: all triangles without the frame turn clockwise, no filter
  /// leaves one out, and their longest side is known. Then they go into the model without a look at their points, which
  /// takes half the time.
  void Confia() { confia = true; }
  /// After a Start that failed: whether the file is open, so that it was the thread that could not be had.
  [[nodiscard]] bool TieneFichero() const { return lector.EstaAbierto(); }
  /// Waits for the thread without limit. `Abandona`, before it, has the thread leave at its next
  /// handful of records.
  void Stop();
  void Abandona() { abandona = true; }
  void Suspender();
  void Reanudar();
  void SetPriority(int prioridad);

  // What the thread leaves, to be read once it has ended.
  std::vector<CLado> lados;   ///< sides kept, sorted; cancelled pairs are blanks at the beginning
  double ladoMasLargo = 0;    ///< greatest squared length among the triangles that passed the ranges
  CResumenPlano rechazos;     ///< triangles left out, by filter
  bool falloDeDisco = false;  ///< the disk refused a record
  bool faltoMemoria = false;  ///< some triangle could not be kept

 private:
  static constexpr unsigned kTanda = 512;  ///< triples read together: their points fit the nearest caches
  using CPuntos3 = std::array<CPuntoTIN*, 3>;

  static unsigned long Rutina(void* yo);
  void Run();
  bool Procesa(std::span<CTriple const> triples);
  void Procesa(CTriple const& numeros, CPuntos3 const& puntos);
  void Inserta(CPuntos3 puntos);
  void ProcesaDelMarco(CTriple const& numeros, CPuntos3 const& puntos);
  template <class F>
  bool RechazaPorDiferencia(CRango const& rango, CTriangulo const& t, double d12, double d23, double d31, F&& valor);
  void Guarda(CPuntoTIN const* a, CPuntoTIN const* b);
  [[nodiscard]] CPuntoTIN* PuntoDe(std::int32_t numero) const;

  HANDLE hilo = nullptr;
  unsigned indice = 0;
  CEvent* evento = nullptr;
  CLectorTriples lector{kTanda};
  unsigned long long const* longitud = nullptr;  ///< of the file
  CTIN* modelo = nullptr;
  std::vector<int> const* mapa = nullptr;
  double lado2 = 0;
  bool confia = false;
  CRango const* alturas = nullptr;
  CRango const* intensidades = nullptr;
  CRango const* pendientes = nullptr;
  CCriticalSection* seccion = nullptr;
  std::atomic<std::uint64_t>* bytes = nullptr;
  std::atomic<long>* terminados = nullptr;
  std::atomic<bool> abandona{false};
};

/// Blanks both of every two equal neighbours of a sorted list of sides: a side between two rejected triangles bounds
/// nothing. The list is sorted again, so that the blanks come first.
URDIMBRE_API void AnulaLadosRepetidos(std::vector<CLado>& lados);

}  // namespace Meseta47
