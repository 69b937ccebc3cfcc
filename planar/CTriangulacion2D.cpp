#include "planar/CTriangulacion2D.h"

#include <algorithm>

#include "model/threads/CMarcha.h"
#include "platform/CWinApp.h"
#include "platform/Manejadores.h"

namespace Meseta47 {

CTriangulacion2D::CTriangulacion2D(int, CDataSemilla const& laSemilla, CDataTriangulacion const& losDatos,
                                   unsigned elIdentificador)
    : semilla(laSemilla), datos(losDatos), identificador(elIdentificador) {}

CTriangulacion2D::CTriangulacion2D(int, CDataSemilla const& laSemilla, unsigned elIdentificador)
    : semilla(laSemilla), identificador(elIdentificador) {}

CTriangulacion2D::CTriangulacion2D(CTriangulacion2D& otra, unsigned elIdentificador)
    : mensajes(otra.mensajes),
      cantidadPuntos(otra.cantidadPuntos),
      duplicados(otra.duplicados),
      semilla(otra.semilla),
      paramCurvaB(otra.paramCurvaB),
      paramPicoA(otra.paramPicoA),
      paramPicoB(otra.paramPicoB),
      maximas(otra.maximas),
      datos(otra.datos),
      reservado(otra.reservado),
      identificador(elIdentificador),
      sinMarco(otra.sinMarco) {
  divisiones.Comparte(otra.divisiones);
}

CTriangulacion2D::~CTriangulacion2D() {
  hiloSalva.Stop();
  if (evento != nullptr) {
    CloseHandle(evento);
  } else {
    BorraFicheroTemporal();  // a run that got no event ended there; any other deletes its own, or leaves it on purpose
  }
}

void CTriangulacion2D::Clear() {
  mensajes = MENSAJES_NORMALES;
  cantidadPuntos = 0;
  reservado = 0;
  maximas.Borra();
}

CNivelMensajes CTriangulacion2D::Mensajes(CNivelMensajes nivel) {
  const CNivelMensajes anterior = mensajes;
  mensajes = nivel >= 4 ? MENSAJES_NINGUNO : nivel;
  return anterior;
}

IPorcentaje* CTriangulacion2D::Progreso() const {
  if (mensajes < 1) return nullptr;
  return aviso != nullptr ? aviso : BuscaPorcentaje();
}

void CTriangulacion2D::BorraFicheroTemporal() { ficheroTemporal.Borra(); }

void CTriangulacion2D::EstableceDivisiones(unsigned n, CMaximas<int> const& caja) {
  maximas = caja;
  if (n != 0) {
    resumen.ancho = std::int64_t{caja.Maximo.x} - caja.Minimo.x;
    resumen.alto = std::int64_t{caja.Maximo.y} - caja.Minimo.y;
  }
  divisiones.EstableceDivisiones(n, caja);
}

void CTriangulacion2D::EstableceDivisiones(CDivisiones& celda, CSetTriangulos2D& set) { celda.Empareja(set); }

void CTriangulacion2D::ColocaIndices(CCoor3D<int> const& p, short lista, unsigned entidad, unsigned punto,
                                     bool registra) {
  const bool primera = divisiones.ColocaIndices(p, {lista, static_cast<int>(entidad), static_cast<int>(punto)});
  if (primera && registra) primerosPuntos.emplace_back(static_cast<unsigned>(lista), entidad, punto);
}

bool CTriangulacion2D::Inserta(CCoor3D<int> const& p, CCoor3DIntLista**, short lista, unsigned entidad, unsigned punto,
                               CDivisiones** celda) {
  CCoor3D<int> copia(p);
  return Inserta(&copia, lista, entidad, punto, celda);
}

bool CTriangulacion2D::Inserta(CCoor3D<int>* p, short lista, unsigned entidad, unsigned punto, CDivisiones** celda) {
  p->num = static_cast<int>(++cantidadPuntos);
  return divisiones.Inserta(*p, {lista, static_cast<int>(entidad), static_cast<int>(punto)}, *celda);
}

void CTriangulacion2D::Salva(CDivisiones* celda) {
  CSetTriangulos2D* set = celda->setAsociado;
  const unsigned triangulos = set->QuitaTrianguloActual();
  resumen.picoVivos = std::max(resumen.picoVivos, balance.creados - balance.condenados - setsCerrados.Liberados());
  setsCerrados.Anade(set, triangulos);
  hiloSalva.Atiende();
}

bool CTriangulacion2D::EsperaAlHilo(CMarcha const& marcha) {
  return !hiloSalva.EstaEnMarcha() || setsCerrados.EsperaSitio([&marcha] { return marcha.Sigue(); });
}

void CTriangulacion2D::ImprimeLista(CDivisiones const& celda) const {
  if (celda.hijos == nullptr) return;
  for (unsigned i = 0; i < CDivisiones::kHijos; ++i) ImprimeLista(celda.hijos[i]);
}

bool CTriangulacion2D::CompruebaTrianguloNuevo(CTriangulo2D& t, CCoor3D<int> const* p) {
  std::vector<int> posicion(divisiones.CantidadNiveles());
  for (CListaPuntos* lista = divisiones.PrimeraLista(posicion); lista != nullptr;
       lista = divisiones.SiguienteLista(posicion)) {
    for (CCoor3DIntLista* q = lista->primero; q != nullptr; q = q->Sig()) {
      if (q == p) return true;
      if (q == t.P1() || q == t.P2() || q == t.P3() || !t.Dentro(*q)) continue;
      const auto numero = [](CCoor3D<int> const* v) { return v == nullptr ? 0 : v->num; };
      CString texto;
      texto.Format(L"error punto dentro %d %d %d %d\n", q->num, numero(t.P1()), numero(t.P2()), numero(t.P3()));
      AfxMessageBox(texto);
      std::vector<CTriangulo2D*> alrededor;
      setRaiz.GetTriangulosDePunto(q, alrededor);
      for (CTriangulo2D* otro : alrededor) {
        if (otro->P1() != p && otro->P2() != p && otro->P3() != p) otro->Dentro(*p);  // leaves its stamp, no more
      }
      return false;
    }
  }
  return true;
}

}  // namespace Meseta47
