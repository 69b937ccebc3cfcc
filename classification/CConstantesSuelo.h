#pragma once

namespace Meseta47 {

/// The constants of the ground search: lengths in metres, slopes as rise over run; `sp` is the mean spacing of the
/// minima. One set serves every cloud. They come from labelled samples, all of them at once, and lie on plateaus: a
/// tenth more or less changes little (docs/classifying.md tells what each step is worth; `bench_accuracy --ground`
/// measures it). Programs have no business with them but to measure.
struct CConstantesSuelo {
  // --- minima
  double celdaMinima = 1.0;      ///< least side of a cell
  double celdaEspaciado = 0.54;  ///< side of a cell in mean spacings of the points
  double escalonCelda = 0.25;    ///< sides are multiples of it, so that neighbouring tiles agree on theirs
  double mayorEspaciado = 3.0;   ///< cells: the spacing of the minima is not taken for more
  unsigned dosel = 40;           ///< points of a block of 2 x 2 cells from which a canopy is looked for
  double parteDosel = 0.30;      ///< with so many of them above `alturaDosel`, only the block's lowest is trusted
  double alturaDosel = 2.0;      ///< above the block's lowest

  // --- openings
  double ruidoBajo = 10.0;      ///< sides of a cell: a single cell so far below all around it is noise
  double saltoApertura = 0.05;  ///< what an opening takes off beyond this, and beyond its radius times the slope of
                                ///< CDataSuelo, is an object

  // --- pits
  bool pozos = true;
  double alturaPozo = 2.0;     ///< a basin is looked at up to this depth
  unsigned verticesPozo = 12;  ///< one with more vertices is land

  // --- growth
  unsigned rondas = 7;
  double radioPlano = 2.7;                           ///< sp: neighbours of a plane
  double radioVecinos = 2.3;                         ///< sp: neighbours with a vote
  double pendienteVecinos = 2.8;                     ///< steeper pairs have none
  double cresta = 0.001;                             ///< sp^2: keeps a plane level across where its points lie in line
  double arribaBase = 0.08, arribaPendiente = 0.10;  ///< a candidate may stand above a plane by so much at a distance
  double abajoBase = 0.20, abajoPendiente = 2.00;    ///< and below it: an upper terrace speaks for the slope beneath
  unsigned votosMinimos = 2;
  double parteVotos = 0.15;
  bool atajos =
      true;  ///< from round to round only what may come out otherwise is looked at; without, all, to the same end

  // --- pruning
  bool poda = true;
  double podaBase = 0.14, podaPendiente = 0.07;
  double partePoda = 0.20;
  unsigned vecinosPoda = 3;

  // --- components of what grew
  bool componentes = true;
  double enlaceComponentes = 1.6;  ///< sp
  unsigned miembrosComponente = 6;
  double escalonBase = 0.30, escalonPendiente = 0.25;
  double parteEscalones = 0.75;  ///< of the pairs across its rim: more steps down than this make a roof of it

  // --- the final band: its wide form, its tight one, and the one of the place, which is never wider than the wide one
  double bandaBase = 0.25, bandaPendiente = 1.0, bandaRugosidad = 0.3;
  double estrechaBase = 0.10, estrechaPendiente = 0.3, estrechaRugosidad = 0.5;
  double lugarBase = 0.10;      ///< five standard deviations of a scanner's range: the lowest of a cell and the highest
  double lugarRugosidad = 2.0;  ///< 1.6 standard deviations, where minima are scattered normally about their planes
  double parteFaceta = 0.5;     ///< of the slope that the facet has; the rest: its corners'
  double bandaAbajo = 5.0, bandaAbajoPendiente = 1.2;  ///< farther below than this is noise
  double mayorRadio = 50;  ///< of the circle of a triangle: beyond it the nearest plane takes its place
  double mayorPendiente = 2.0, mayorRugosidad = 1.5;  ///< neither widens the band beyond these
};

}  // namespace Meseta47
