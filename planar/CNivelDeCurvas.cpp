#include "planar/CNivelDeCurvas.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "model/drawing/Juntas.h"

namespace Meseta47 {

namespace {

constexpr std::uint32_t kNinguno = std::numeric_limits<std::uint32_t>::max();

/// Of sorted pieces, one of each kind that comes an odd number of times.
void QuitaParejas(std::vector<CSegmento>& segmentos) {
  auto queda = segmentos.begin();
  for (auto i = segmentos.begin(); i != segmentos.end();) {
    const auto otro = std::find_if(i, segmentos.end(), [i](CSegmento const& s) { return s != *i; });
    if ((otro - i) % 2 != 0) *queda++ = *i;
    i = otro;
  }
  segmentos.erase(queda, segmentos.end());
}

}  // namespace

/// Along a contour, place by place, from the end of a piece.
class CNivelDeCurvas::CPaseo {
 public:
  CPaseo(CNivelDeCurvas const& suNivel, CExtremo inicio) : nivel(suNivel), aqui(inicio), sale(inicio) {}

  CLugarPlano const& operator*() const { return nivel.Lugar(aqui); }
  /// To the next place; the contour must go on.
  CPaseo& operator++() {
    aqui = sale ^ 1;
    sale = nivel.pareja[aqui];
    return *this;
  }

 private:
  CNivelDeCurvas const& nivel;
  CExtremo aqui, sale;
};

CNivelDeCurvas::CNivelDeCurvas(int laAltura, std::vector<CSegmento> losSegmentos, CLlanos llanos)
    : altura(laAltura), segmentos(std::move(losSegmentos)) {
  std::erase_if(segmentos, [](CSegmento const& s) { return s.a == s.b; });
  for (CSegmento& s : segmentos) {
    if (s.b < s.a) std::swap(s.a, s.b);
  }
  std::sort(segmentos.begin(), segmentos.end());
  if (llanos == CLlanos::ORILLA) {
    QuitaParejas(segmentos);
  } else {
    segmentos.erase(std::unique(segmentos.begin(), segmentos.end()), segmentos.end());
  }
  pareja.assign(2 * segmentos.size(), kNinguno);
  EmparejaExtremos();
  RecogeCadenas();
}

/// Visits the nodes by their places. The lower ends of the pieces stand in that order already; the upper ones are put
/// into it and both merged.
void CNivelDeCurvas::EmparejaExtremos() {
  const auto n = static_cast<std::uint32_t>(segmentos.size());
  std::vector<CExtremo> altos(n);
  for (std::uint32_t i = 0; i < n; ++i) altos[i] = 2 * i + 1;
  std::sort(altos.begin(), altos.end(), [this](CExtremo a, CExtremo b) { return Lugar(a) < Lugar(b); });
  std::vector<CExtremo> nudo;
  for (std::uint32_t i = 0, j = 0; i < n || j < n;) {
    const CLugarPlano lugar = i == n   ? Lugar(altos[j])
                              : j == n ? segmentos[i].a
                                       : std::min(segmentos[i].a, Lugar(altos[j]));
    nudo.clear();
    for (; i < n && segmentos[i].a == lugar; ++i) nudo.push_back(2 * i);
    for (; j < n && Lugar(altos[j]) == lugar; ++j) nudo.push_back(altos[j]);
    if (nudo.size() == 2) {
      Une(nudo[0], nudo[1]);
    } else if (nudo.size() > 2) {
      EmparejaNudo(nudo);
    }
  }
}

void CNivelDeCurvas::EmparejaNudo(std::vector<CExtremo> const& extremos) {
  std::vector<CSalida> salidas;
  for (const CExtremo e : extremos) {
    CLugarPlano const &nudo = Lugar(e), &otro = Lugar(e ^ 1);
    salidas.push_back({static_cast<std::int64_t>(otro.x) - nudo.x, static_cast<std::int64_t>(otro.y) - nudo.y, e});
  }
  std::sort(salidas.begin(), salidas.end(), [this](CSalida const& a, CSalida const& b) {
    const int giro = a.ComparaGiro(b);
    return giro != 0 ? giro < 0 : Lugar(a.cual ^ 1) < Lugar(b.cual ^ 1);
  });
  CNudo(salidas).Empareja([this](CExtremo a, CExtremo b) { Une(a, b); });
}

void CNivelDeCurvas::Une(CExtremo a, CExtremo b) {
  pareja[a] = b;
  pareja[b] = a;
}

/// The contours: first those that begin at an end without a partner, then what is left, which are rings.
void CNivelDeCurvas::RecogeCadenas() {
  std::vector<bool> hecho(segmentos.size(), false);
  std::vector<CExtremo> camino;  // the end of each piece that is met first
  const auto recorre = [&](CExtremo desde) {
    camino.clear();
    CExtremo e = desde;
    do {
      hecho[e / 2] = true;
      camino.push_back(e);
      e = pareja[e ^ 1];
    } while (e != kNinguno && e != desde);
    cadenas.push_back(e == desde ? Anillo(camino) : Abierta(camino));
  };
  for (CExtremo e = 0; e < pareja.size(); ++e) {
    if (pareja[e] == kNinguno && !hecho[e / 2]) recorre(e);
  }
  for (CExtremo e = 0; e < pareja.size(); e += 2) {
    if (!hecho[e / 2]) recorre(e);
  }
  std::sort(cadenas.begin(), cadenas.end(), [this](CCadena const& a, CCadena const& b) { return Compara(a, b) < 0; });
}

/// In the sense that comes first.
CNivelDeCurvas::CCadena CNivelDeCurvas::Abierta(std::vector<CExtremo> const& camino) const {
  const auto puntos = static_cast<std::uint32_t>(camino.size() + 1);
  const CCadena ida{camino.front(), puntos}, vuelta{camino.back() ^ 1, puntos};
  return Compara(vuelta, ida) < 0 ? vuelta : ida;
}

/// In the turn and sense that come first. Backwards, a piece is entered by the end at which it was left.
CNivelDeCurvas::CCadena CNivelDeCurvas::Anillo(std::vector<CExtremo> const& camino) const {
  const std::size_t n = camino.size();
  const auto puntos = static_cast<std::uint32_t>(n + 1);
  std::vector<CLugarPlano> lugares(n);
  std::transform(camino.begin(), camino.end(), lugares.begin(), [this](CExtremo e) { return Lugar(e); });
  const CCadena ida{camino[PrimerGiro(lugares)], puntos};
  std::reverse(lugares.begin(), lugares.end());
  const std::size_t atras = n - 1 - PrimerGiro(lugares);  // in the path as it was walked
  const CCadena vuelta{camino[(atras + n - 1) % n] ^ 1, puntos};
  return Compara(vuelta, ida) < 0 ? vuelta : ida;
}

/// -1, 0 or 1: the order of two contours by their places, one after another.
int CNivelDeCurvas::Compara(CCadena const& a, CCadena const& b) const {
  CPaseo p(*this, a.inicio), q(*this, b.inicio);
  for (std::uint32_t i = 0;;) {
    if (*p != *q) return *p < *q ? -1 : 1;
    if (++i == std::min(a.puntos, b.puntos)) break;
    ++p;
    ++q;
  }
  return a.puntos == b.puntos ? 0 : (a.puntos < b.puntos ? -1 : 1);
}

CLinea<int> CNivelDeCurvas::Linea(std::size_t i) const {
  std::vector<CCoor3D<int>> puntos;
  puntos.reserve(cadenas[i].puntos);
  CPaseo paso(*this, cadenas[i].inicio);
  for (;;) {
    puntos.emplace_back((*paso).x, (*paso).y, altura, 0);
    if (puntos.size() == cadenas[i].puntos) break;
    ++paso;
  }
  CLinea<int> linea(L"nuevo");
  linea.Asigna(std::move(puntos));
  return linea;
}

}  // namespace Meseta47
