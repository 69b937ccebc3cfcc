// The tetrahedra that a run has written, and those that the frame has eaten.
#include <vector>

#include "model/threads/CMarcha.h"
#include "model/threads/IPorcentaje.h"
#include "platform/Anticipa.h"
#include "platform/CFile.h"
#include "run/Recorrido.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeLee = 19018;
constexpr std::size_t kPorBloque = 4096;
constexpr std::size_t kPorDelante = 8;  // tetrahedra whose points are on their way from memory

}  // namespace

int CTriangulacion3D::RecorreTetraedros(CDibujo<int> const& dibujo, bool completa, CRecibeTetraedro const& recibe) {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(nivelMensajes, kMensajeLee);
  CFile lectura;
  if (!ficheroTemporal.EstaAbierto() ||
      !lectura.Open(ficheroTemporal.Ruta(), CFile::modeRead | CFile::shareDenyNone | CFile::typeBinary)) {
    return kFicheroInaccesible;
  }
  std::vector<CCoor3D<int> const*> porNumero(completa ? cantidadPuntos : 0);
  if (completa) {
    const CFiltroPuntos filtro(datos, Precision(), dibujo, CFiltroPuntos::CPor::CodigosSiempre);
    RecorrePuntos(dibujo, filtro, nullptr, [&porNumero](CLinea<int> const& e, unsigned, unsigned k) {
      CCoor3D<int> const* p = e.PunteroAPunto(static_cast<int>(k));
      const auto numero = static_cast<std::size_t>(p->num);
      if (numero >= 1 && numero <= porNumero.size()) porNumero[numero - 1] = p;
    });
  }
  CCascoCompleto casco(porNumero);
  const std::uint64_t total = lectura.GetLength() / sizeof(CCuatro);
  CMarcha marcha(porcentaje, nivelMensajes, total / kPorBloque + 1);
  std::vector<CCuatro> bloque(kPorBloque);
  for (std::uint64_t quedan = total; quedan != 0;) {
    if (!marcha.Avanza()) return kCancelado;
    const auto n = static_cast<std::size_t>(std::min<std::uint64_t>(quedan, kPorBloque));
    if (lectura.Read(bloque.data(), static_cast<unsigned>(n * sizeof(CCuatro))) != n * sizeof(CCuatro)) {
      return kFicheroInaccesible;
    }
    for (std::size_t i = 0; i < n; ++i) {
      if (bloque[i][0] > 0) {
        recibe(bloque[i]);
      } else if (completa) {
        casco.Anade(bloque[i]);
      }
    }
    quedan -= n;
  }
  if (completa && !casco.Completa(recibe, [&marcha] { return marcha.Sigue(); })) return kCancelado;
  return kHecho;
}

void CTriangulacion3D::RecorreMalla(CRecibeTetraedro const& recibe) const {
  std::vector<CTetraedro*> todos;
  setRaiz.RellenaVectorPunteros(todos);
  const std::size_t n = todos.size();
  for (std::size_t i = 0; i < n; ++i) {
    if (i + 2 * kPorDelante < n) AnticipaLectura(todos[i + 2 * kPorDelante]->Puntos());
    if (i + kPorDelante < n) {
      for (unsigned k = 0; k < 4; ++k) AnticipaLectura(todos[i + kPorDelante]->Puntos()[k]);
    }
    CTetraedro const& t = *todos[i];
    recibe({t.N1(), t.N2(), t.N3(), t.N4()});
  }
}

}  // namespace Meseta47
