#include "classification/CEstrellaSuelo.h"

#include <cmath>
#include <tuple>

namespace Meseta47 {

void CEstrellaSuelo::Empieza() {
  envoltura.clear();
  abiertos.clear();
  hecho = 0;
}

/// Looks farther, up to so many spacings.
void CEstrellaSuelo::Amplia(std::size_t i, double espacios) {
  puntos = envoltura;
  Invierte(i, espacios, hecho);
  Envuelve();
  hecho = espacios * static_cast<double>(malla.sp[i]);
  Separa(1 / hecho);
}

/// Adds the minima that are farther away than `desde` and may be corners.
void CEstrellaSuelo::Invierte(std::size_t i, double espacios, double desde) {
  malla.Vecinos(i, espacios, [&](std::size_t j, double dx, double dy, double, double d2) {
    if (d2 <= desde * desde || !malla.EsSuelo(j)) return;
    const CPunto p{dx / d2, dy / d2, j};
    const auto fuera = [&p](auto const& lado) { return Giro(lado.first, lado.second, p) < 0; };
    if (abiertos.empty() || std::any_of(abiertos.begin(), abiertos.end(), fuera)) puntos.push_back(p);
  });
}

/// The hull, counter-clockwise from its western corner: first what lies below it, then what lies above.
void CEstrellaSuelo::Envuelve() {
  std::sort(puntos.begin(), puntos.end(),
            [](CPunto const& a, CPunto const& b) { return std::tie(a.x, a.y) < std::tie(b.x, b.y); });
  envoltura.clear();
  const auto anade = [this](CPunto const& p, std::size_t quedan) {
    while (envoltura.size() > quedan && Giro(envoltura[envoltura.size() - 2], envoltura.back(), p) <= 0) {
      envoltura.pop_back();
    }
    envoltura.push_back(p);
  };
  for (CPunto const& p : puntos) anade(p, 1);
  const std::size_t abajo = envoltura.size();
  for (std::size_t n = puntos.size(); n-- > 1;) anade(puntos[n - 1], abajo);
  if (envoltura.size() > 1) envoltura.pop_back();  // where it began
}

/// Finds the sides of the hull that pass through the circle of that radius about the minimum, and the corners between
/// two others.
void CEstrellaSuelo::Separa(double radio) {
  abiertos.clear();
  vecinos.clear();
  const std::size_t n = envoltura.size();
  if (n < 3) return;
  const auto pasa = [radio](CPunto const& a, CPunto const& b) {
    return a.x * b.y - a.y * b.x < radio * std::hypot(b.x - a.x, b.y - a.y);
  };
  bool antes = pasa(envoltura.back(), envoltura.front());
  for (std::size_t i = 0; i < n; ++i) {
    CPunto const &a = envoltura[i], &b = envoltura[(i + 1) % n];
    const bool ahora = pasa(a, b);
    if (ahora) abiertos.emplace_back(a, b);
    if (!antes && !ahora) vecinos.push_back(a.minimo);
    antes = ahora;
  }
}

}  // namespace Meseta47
