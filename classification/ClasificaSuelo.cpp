// The classes of the points, by their height about the surface.
#include <algorithm>
#include <atomic>

#include "classification/CPuntosSuelo.h"
#include "classification/CSuperficieSuelo.h"
#include "classification/FasesSuelo.h"
#include "model/threads/CAvance.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kBloque = 1 << 14;  // points that a thread takes at a time
constexpr unsigned char kSinClasificar = 1;

/// The band about the surface that is ground, by what the surface is like.
class CBanda {
 public:
  CBanda(CConstantesSuelo const& lasK, CDataSuelo const& losDatos)
      : k(lasK),
        data(losDatos),
        ancha{k.bandaBase, k.bandaPendiente, k.bandaRugosidad},
        estrecha{k.estrechaBase, k.estrechaPendiente, k.estrechaRugosidad},
        delLugar{k.lugarBase, 0, k.lugarRugosidad} {}

  /// The class of a point `altura` metres above the surface that had the class `antes`.
  [[nodiscard]] unsigned char Clase(CSuperficieSuelo::CLugar const& lugar, double altura, unsigned char antes) const {
    if (lugar.hay && altura < -k.bandaAbajo * (k.bandaBase + k.bandaAbajoPendiente * lugar.pendiente)) {
      return data.Ruido.GetTipo();
    }
    if (lugar.hay && altura <= Techo(lugar)) return data.Tipo.GetTipo();
    return antes == data.Tipo.GetTipo() ? kSinClasificar : antes;
  }

 private:
  struct CAncho {
    double base, pendiente, rugosidad;
    [[nodiscard]] double En(CSuperficieSuelo::CLugar const& lugar) const {
      return base + pendiente * lugar.pendiente + rugosidad * lugar.rugosidad;
    }
  };

  /// How far above the surface is ground.
  [[nodiscard]] double Techo(CSuperficieSuelo::CLugar const& lugar) const {
    if (data.Banda == CDataSuelo::kBandaAncha) return ancha.En(lugar);
    if (data.Banda == CDataSuelo::kBandaEstrecha) return estrecha.En(lugar);
    return std::min(ancha.En(lugar), delLugar.En(lugar));
  }

  CConstantesSuelo const& k;
  CDataSuelo const& data;
  CAncho ancha, estrecha, delLugar;
};

}  // namespace

int ClasificaPuntos(CPuntosSuelo const& puntos, CMallaSuelo const& malla, CConstantesSuelo const& k,
                    CSuperficieSuelo& superficie, CDataSuelo const& data, CAvance& avance, CResumenSuelo& resumen) {
  superficie.MideFacetas();
  const CBanda banda(k, data);
  // Classes are kept aside until all are known: a cancelled search changes none.
  VectorCrudo<unsigned char> clases(puntos.Total());
  std::atomic<std::uint64_t> aceptados{0}, suelo{0}, ruido{0};
  avance.Pasada(puntos.Total());
  const auto busca = [&](std::size_t desde, std::size_t hasta) {
    std::uint64_t n = 0, s = 0, r = 0;
    puntos.Recorre(desde, hasta, [&](CCoor3D<int> const& p, std::size_t lugar) {
      const CSuperficieSuelo::CLugar donde = superficie.En(p);
      const unsigned char clase = banda.Clase(donde, (p.z - donde.z) * malla.metroZ, p.clasificacion);
      clases[lugar] = clase;
      ++n;
      s += clase == data.Tipo.GetTipo() ? 1U : 0U;
      r += clase == data.Ruido.GetTipo() ? 1U : 0U;
    });
    aceptados += n;
    suelo += s;
    ruido += r;
  };
  if (!Reparte(puntos.Total(), kBloque, busca, [&](std::size_t hechos) { return avance(hechos); })) return kCancelado;
  Reparte(puntos.Total(), kBloque, [&](std::size_t desde, std::size_t hasta) {
    puntos.Recorre(desde, hasta, [&](CCoor3D<int>& p, std::size_t lugar) { p.clasificacion = clases[lugar]; });
  });
  resumen.aceptados = aceptados;
  resumen.suelo = suelo;
  resumen.ruido = ruido;
  return kHecho;
}

}  // namespace Meseta47
