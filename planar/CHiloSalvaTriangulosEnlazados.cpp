#include "planar/CHiloSalvaTriangulosEnlazados.h"

#include "planar/CSetTriangulos2D.h"

namespace Meseta47 {

bool CHiloSalvaTriangulosEnlazados::Start(unsigned elIndice, HANDLE* elEvento, CCola& laCola, CFile* elFichero,
                                          unsigned elModo) {
  modo = elModo;
  fichero = elFichero;
  return Empieza(elIndice, elEvento, laCola);
}

void CHiloSalvaTriangulosEnlazados::SinHilo(CCola& laCola, CFile* elFichero, unsigned elModo) {
  modo = elModo;
  fichero = elFichero;
  CHiloCerrados::SinHilo(laCola);
}

bool CHiloSalvaTriangulosEnlazados::Start(unsigned elIndice, HANDLE* elEvento, CCola& laCola, CSegmentos* lasCurvas,
                                          int laEquidistancia, double elLado2) {
  modo = CURVA;
  curvas = lasCurvas;
  equidistancia = laEquidistancia;
  lado2 = elLado2;
  return Empieza(elIndice, elEvento, laCola);
}

bool CHiloSalvaTriangulosEnlazados::Start(unsigned elIndice, HANDLE* elEvento, CCola& laCola,
                                          CAlturasVecinas* lasAlturas, double elLado2, double laPendiente,
                                          int laAltura) {
  modo = PICOS;
  alturas = lasAlturas;
  lado2 = elLado2;
  pendiente = laPendiente;
  altura = laAltura;
  return Empieza(elIndice, elEvento, laCola);
}

bool CHiloSalvaTriangulosEnlazados::Start(unsigned elIndice, HANDLE* elEvento, CCola& laCola, CFile* elFichero,
                                          CAfinidad& laAfinidad) {
  modo = AFINIDAD;
  fichero = elFichero;
  afinidad = &laAfinidad;
  return Empieza(elIndice, elEvento, laCola);
}

void CHiloSalvaTriangulosEnlazados::Trabaja(CSetTriangulos2D& set) {
  switch (modo) {
    case CURVA:
      set.Curva(*curvas, equidistancia, lado2, borde);
      break;
    case AFINIDAD:
      set.ClasificaPorAfinidad(fichero, *afinidad);
      break;
    case PICOS:
      set.BuscaPicos(*alturas, lado2, pendiente, altura);
      break;
    default:
      set.Salva(fichero, borde,
                medidas);  // a refusal of the disk stays with the file, and the driver asks for it at the end
  }
}

}  // namespace Meseta47
