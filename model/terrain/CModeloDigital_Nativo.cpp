#include <algorithm>

#include "model/storage/CFicheroSumado.h"
#include "model/terrain/CModeloDigital.h"
#include "model/threads/Codigos.h"
#include "model/threads/IPorcentaje.h"
#include "platform/CFicheroParcial.h"

namespace Meseta47 {

namespace {

constexpr int kVersion = 4;
constexpr char kMagia[16] = "Urdimbre-MDT-04";
constexpr unsigned kMensajeLee = 19018, kMensajeEscribe = 19022;
constexpr std::size_t kPorPaso = 1 << 16;  // triangles between two reports

/// What stands at the beginning of the file, field by field and without gaps.
template <class Seccion, class Campo>
void PonCabecera(Seccion& seccion, CTIN const& tin, Campo enlazado) {
  seccion.Pon(kMagia, sizeof kMagia);
  seccion.Pon(tin.semilla.precision);
  for (const double origen : tin.semilla.origen) seccion.Pon(origen);
  seccion.Pon(tin.estado);
  seccion.Pon(enlazado);
  seccion.Pon(tin.longitudMaxima);
}

int LeeCabecera(CFile& fichero, CTIN& tin, bool& enlazado) {
  CSeccionEntrada seccion(fichero);
  char magia[sizeof kMagia];
  if (!seccion.Toma(magia, sizeof magia)) return kFicheroCortado;
  if (!std::equal(std::begin(magia), std::end(magia), std::begin(kMagia))) return kFicheroInconsistente;
  unsigned char marca = 0;
  bool va = seccion.Toma(tin.semilla.precision);
  for (double& origen : tin.semilla.origen) va = va && seccion.Toma(origen);
  va = va && seccion.Toma(tin.estado) && seccion.Toma(marca) && seccion.Toma(tin.longitudMaxima);
  enlazado = marca != 0;
  return va ? seccion.Cierra() : kFicheroCortado;
}

/// Progress over points and triangles together.
struct Avance {
  IPorcentaje* porcentaje;
  CNivelMensajes nivel;
  unsigned valor = 0, total = 0;

  bool Suma(std::size_t cuantos) {
    valor += static_cast<unsigned>(cuantos);
    return porcentaje == nullptr || porcentaje->Porcentaje(nivel, valor, total, false) != 0;
  }
};

int EscribeTriangulos(CFile& fichero, CTIN const& tin, Avance& avance) {
  CSeccionSalida seccion(fichero);
  const std::uint64_t cuantos = tin.Cantidad();
  seccion.Pon(cuantos);
  for (std::uint64_t i = 0; i < cuantos; i += kPorPaso) {
    const std::size_t van = std::min<std::uint64_t>(kPorPaso, cuantos - i);
    seccion.Pon(&tin.Vertices(static_cast<std::uint32_t>(i)), van * sizeof(Terna));
    if (!seccion.Va()) return kFicheroInaccesible;
    if (!avance.Suma(van)) return kCancelado;
  }
  return seccion.Cierra() ? kHecho : kFicheroInaccesible;
}

bool SonDeEstosPuntos(Terna const& t, std::size_t puntos) {
  return t[0] < puntos && t[1] < puntos && t[2] < puntos && t[0] != t[1] && t[1] != t[2] && t[2] != t[0];
}

int LeeTriangulos(CFile& fichero, std::size_t puntos, VectorCrudo<Terna>& triangulos, Avance& avance) {
  CSeccionEntrada seccion(fichero);
  std::uint64_t cuantos = 0;
  if (!seccion.Toma(cuantos) || !seccion.Caben(cuantos, sizeof(Terna))) return kFicheroCortado;
  triangulos.resize(cuantos);
  for (std::size_t i = 0; i < triangulos.size(); i += kPorPaso) {
    const std::size_t van = std::min(kPorPaso, triangulos.size() - i);
    if (!seccion.Toma(&triangulos[i], van * sizeof(Terna))) return kFicheroCortado;
    if (!avance.Suma(van)) return kCancelado;
  }
  if (const int codigo = seccion.Cierra(); codigo != kHecho) return codigo;
  const bool buenos = std::all_of(triangulos.begin(), triangulos.end(),
                                  [puntos](Terna const& t) { return SonDeEstosPuntos(t, puntos); });
  return buenos ? kHecho : kFicheroInconsistente;
}

bool EscribeLimite(CFile& fichero, CTIN const& tin) {
  CSeccionSalida seccion(fichero);
  seccion.Pon(static_cast<std::uint32_t>(tin.Limite().size()));
  for (std::size_t i = 0; i < tin.Limite().size(); ++i) {
    auto const& anillo = tin.Limite()[i];
    seccion.Pon(static_cast<std::uint32_t>(tin.EsHueco(i)));
    seccion.Pon(static_cast<std::uint32_t>(anillo.size()));
    seccion.Pon(anillo.data(), anillo.size() * sizeof(std::uint32_t));
  }
  return seccion.Cierra();
}

int LeeLimite(CFile& fichero, std::size_t puntos, std::vector<std::vector<std::uint32_t>>& limite,
              std::vector<bool>& huecos) {
  CSeccionEntrada seccion(fichero);
  std::uint32_t anillos = 0;
  if (!seccion.Toma(anillos)) return kFicheroCortado;
  for (std::uint32_t i = 0; i < anillos; ++i) {
    std::uint32_t hueco = 0, cuantos = 0;
    if (!seccion.Toma(hueco) || !seccion.Toma(cuantos)) return kFicheroCortado;
    if (cuantos < 3) return kFicheroInconsistente;
    if (!seccion.Caben(cuantos, sizeof(std::uint32_t))) return kFicheroCortado;
    auto& anillo = limite.emplace_back(cuantos);
    if (!seccion.Toma(anillo.data(), cuantos * sizeof(std::uint32_t))) return kFicheroCortado;
    if (std::any_of(anillo.begin(), anillo.end(), [puntos](std::uint32_t p) { return p >= puntos; })) {
      return kFicheroInconsistente;
    }
    huecos.push_back(hueco != 0);
  }
  if (const int codigo = seccion.Cierra(); codigo != kHecho) return codigo;
  return fichero.GetPosition() == fichero.GetLength() ? kHecho : kFicheroInconsistente;
}

int Escribe(CFile& fichero, CTIN const& tin, Avance& avance) {
  CSeccionSalida cabecera(fichero);
  PonCabecera(cabecera, tin, static_cast<unsigned char>(tin.EstaEnlazado()));
  if (!cabecera.Cierra()) return kFicheroInaccesible;
  int codigo = tin.puntos.Write(&fichero, avance.valor, avance.total, avance.porcentaje, avance.nivel);
  if (codigo == kHecho) codigo = EscribeTriangulos(fichero, tin, avance);
  if (codigo == kHecho && !EscribeLimite(fichero, tin)) codigo = kFicheroInaccesible;
  return codigo;
}

CString TextoDelFallo(int codigo, CString const& ruta) {
  CString texto;
  if (codigo == kFicheroCortado) texto.Format(L"%s: the terrain model is cut short", ruta.GetString());
  if (codigo == kFicheroInconsistente) {
    texto.Format(L"%s: this is no terrain model, or it is damaged", ruta.GetString());
  }
  return texto;
}

}  // namespace

int CModeloDigital::Write(CString const& ruta, int version) {
  error.Empty();
  if (version != kVersion || !tin->EstaOrdenado()) return kFicheroInconsistente;
  Avance avance{Progreso(), nivelMensajes};
  if (avance.porcentaje != nullptr) avance.porcentaje->Fase(nivelMensajes, kMensajeEscribe);
  avance.total = static_cast<unsigned>(tin->puntos.size() + tin->Cantidad());
  CString nombre = ruta;  // copied while it can still fail
  CFicheroParcial parcial(ruta);
  const int codigo =
      Entrega(parcial, parcial.EstaAbierto() ? Escribe(parcial.Fichero(), *tin, avance) : kFicheroInaccesible);
  if (codigo == kHecho) CObjetoFichero::fichero = std::move(nombre);
  return codigo;
}

int CModeloDigital::Read(CString const& ruta) { return Lee(ruta, false); }
int CModeloDigital::ReadPuntos(CString const& ruta) { return Lee(ruta, true); }

int CModeloDigital::Lee(CString const& ruta, bool soloPuntos) {
  error.Empty();
  codigoError = 0;
  CFile abierto;
  if (!abierto.Open(ruta, CFile::modeRead | CFile::shareDenyNone)) {
    error = abierto.Error();
    codigoError = abierto.CodigoError();
    return kFicheroInaccesible;
  }
  auto leido = std::make_unique<CTIN>(0, 0, CDataSemilla());
  leido->Mensajes(nivelMensajes);
  int codigo = LeeSuperficie(abierto, *leido, soloPuntos);
  codigoError = abierto.CodigoError();
  if (abierto.HayError()) codigo = kFicheroInaccesible;
  if (codigo != kHecho) {
    error = codigo == kFicheroInaccesible ? abierto.Error() : TextoDelFallo(codigo, ruta);
    return codigo;
  }
  CString nombre = ruta;  // copied while it can still fail
  tin = std::move(leido);
  fichero = std::move(nombre);
  ActualizaCantidades();
  return kHecho;
}

/// Neighbours are not in the file: finding them takes less time than reading them.
int CModeloDigital::LeeSuperficie(CFile& abierto, CTIN& leido, bool soloPuntos) const {
  Avance avance{Progreso(), nivelMensajes};
  if (avance.porcentaje != nullptr) avance.porcentaje->Fase(nivelMensajes, kMensajeLee);
  bool enlazado = false;
  if (const int codigo = LeeCabecera(abierto, leido, enlazado); codigo != kHecho) return codigo;
  avance.total = static_cast<unsigned>(abierto.GetLength() / sizeof(Terna));  // about so many points and triangles
  const int codigo = leido.puntos.Read(&abierto, avance.valor, avance.total, avance.porcentaje, nivelMensajes);
  if (codigo != kHecho || soloPuntos) return codigo;
  const std::size_t puntos = leido.puntos.size();
  if (const int c = LeeTriangulos(abierto, puntos, leido.triangulos, avance); c != kHecho) return c;
  if (const int c = LeeLimite(abierto, puntos, leido.limite, leido.huecos); c != kHecho) return c;
  return leido.Sort(avance.porcentaje, 0, enlazado);
}

}  // namespace Meseta47
