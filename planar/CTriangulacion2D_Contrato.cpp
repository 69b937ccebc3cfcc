// The phases in the form in which derived classes call them: rows of arguments, each handed on to what does the work.
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "run/Recorrido.h"

namespace Meseta47 {

int CTriangulacion2D::Rellena(CDibujo<int> const& dibujo, std::vector<CDibujo<int>*>* otros,
                              std::vector<CPosicionEntidad> const* seleccion, CDibujo<int>* extra) {
  return Rellena(CFuentes{dibujo, otros, seleccion, extra});
}

int CTriangulacion2D::Rellena(short lista, CDibujo<int> const& dibujo, CMaximas<int>& caja, unsigned& cuenta,
                              unsigned& progreso, unsigned total, bool contar,
                              std::vector<CPosicionEntidad> const* seleccion, bool registra) {
  CMarcha marcha(Progreso(), mensajes, total, progreso);
  CCuentaPuntos suya{cuenta, caja};
  const int codigo = contar ? CuentaPuntos(dibujo, Filtro(dibujo), seleccion, marcha, suya)
                            : ColocaPuntos(lista, dibujo, seleccion, marcha, registra);
  cuenta = suya.cuantos;
  caja = suya.caja;
  if (marcha.HayQuienEscuche()) progreso = static_cast<unsigned>(marcha.Hechos());
  return codigo;
}

int CTriangulacion2D::EnlazaLista(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, int* contador, CString*,
                                  unsigned modo, std::vector<CPosicionEntidad> const* seleccion,
                                  CInfoClasificacion const* infoA, CInfoClasificacion const* infoB, unsigned* cuenta,
                                  CDibujo<int>* extra, int tolerancia, CRango const* rango1, CRango const* rango2,
                                  CRango const* rango3, CRango const* rango4, std::vector<CPosicionEntidad>* salida) {
  CEnlace enlace{.modo = modo,
                 .tolerancia = {tolerancia},
                 .contador = contador,
                 .clasifica = &dibujo,
                 .tipoA = infoA,
                 .tipoB = infoB,
                 .alturas = rango1,
                 .intensidades = rango2,
                 .distancias = rango3,
                 .pendientes = rango4,
                 .cuenta = cuenta,
                 .hallados = salida};
  return Enlaza(CFuentes{dibujo, otros, seleccion, extra}, enlace);
}

int CTriangulacion2D::GenerarMDT(CDibujo<int> const& dibujo, std::vector<CDibujo<int>*>* otros, CTIN& tin,
                                 double ladoMaximo, bool vaciar, CString*, CDibujo<int> const*,
                                 CDibujo<int> const* anadido, CRango const* alturas, CRango const* intensidades) {
  const CFuentes fuentes{.dibujo = dibujo, .otros = otros, .extra = anadido};
  return Genera({fuentes, vaciar ? otros : nullptr, ladoMaximo, alturas, intensidades}, tin);
}

int CTriangulacion2D::EnlazaLista(CTIN& tin, int contador, CString*) { return Enlaza(tin, contador); }

bool CTriangulacion2D::TriangulaPunto(CCoor3D<int>* p, short lista, unsigned entidad, unsigned punto, unsigned& a,
                                      unsigned& b, bool salvar, bool curvar, int tolerancia, CInfoClasificacion* info,
                                      std::vector<CInfoClasificacion>* infos, unsigned short* intensidad,
                                      std::vector<unsigned short>* intensidades, CStdioFile*) {
  CInsercion como{.cierra = salvar || curvar, .tolerancia = {tolerancia}};
  como.anota = [&](CCoor3D<int> const& numerado) {
    const auto indice = static_cast<std::size_t>(numerado.num) - 1;
    if (info != nullptr && infos != nullptr) (*infos)[indice] = *info;
    if (intensidad != nullptr && intensidades != nullptr) (*intensidades)[indice] = *intensidad;
  };
  visitados = {};
  const bool sigue = Triangula(p, CPosicion(static_cast<unsigned>(lista), entidad, punto), como);
  a = visitados.aceptados;
  b = visitados.rechazados;
  return sigue;
}

int CTriangulacion2D::InsertaRestoPuntos(short lista, CDibujo<int> const& dibujo, int& contador, unsigned total,
                                         unsigned& a, unsigned& b, unsigned modo,
                                         std::vector<CPosicionEntidad> const* seleccion,
                                         std::vector<CInfoClasificacion>* infos,
                                         std::vector<unsigned short>* intensidades, int tolerancia, CStdioFile*) {
  CInsercion como{.tolerancia = {tolerancia}, .contador = &contador};
  if (modo == CHiloSalvaTriangulosEnlazados::AFINIDAD) {
    como.anota = [=](CCoor3D<int> const& p) {
      const auto indice = static_cast<std::size_t>(p.num) - 1;
      if (infos != nullptr) (*infos)[indice] = CInfoClasificacion(p.clasificacion, 0.0, CString());
      if (intensidades != nullptr) (*intensidades)[indice] = p.intensidad;
    };
  }
  CMarcha marcha(Progreso(), mensajes, total, static_cast<unsigned>(contador));
  visitados = {};
  const int codigo = InsertaResto(lista, dibujo, seleccion, marcha, como);
  a += visitados.aceptados;
  b += visitados.rechazados;
  return codigo;
}

int CTriangulacion2D::InsertaRestoPuntos(CTIN& tin, int& contador, unsigned total, unsigned& a, unsigned& b,
                                         CStdioFile*) {
  CMarcha marcha(Progreso(), mensajes, total, static_cast<unsigned>(contador));
  visitados = {};
  const int codigo = InsertaResto(tin, marcha, {.contador = &contador});
  a += visitados.aceptados;
  b += visitados.rechazados;
  return codigo;
}

}  // namespace Meseta47
