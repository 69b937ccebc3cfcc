#include <algorithm>
#include <charconv>
#include <istream>
#include <ostream>
#include <string>

#include "platform/Ventanas.h"
#include "platform/posix/VentanaTexto.h"

namespace {

using EClase = CPlantillaControl::EClase;

CPantallaTexto* enUso = nullptr;  // of the thread that shows dialogs

/// A label without the mark of its key.
std::string Etiqueta(CString const& texto) {
  std::string etiqueta = texto.Utf8();
  std::erase(etiqueta, '&');
  return etiqueta;
}

std::string Dibujo(VentanaTexto const& v) {
  const std::string id = std::to_string(v.control.id);
  switch (v.control.clase) {
    case EClase::Edicion:
      return v.control.soloLectura || !v.control.admite ? "(" + v.control.texto.Utf8() + ")"
                                                        : "[" + id + ": " + v.control.texto.Utf8() + "]";
    case EClase::Casilla:
      return (v.marca == 0 ? "[ ] " : v.marca == 1 ? "[x] " : "[-] ") + id + " " + Etiqueta(v.control.texto);
    case EClase::Boton:
      return "<" + id + " " + Etiqueta(v.control.texto) + ">";
    case EClase::Texto:
    case EClase::Marco:
      break;
  }
  return Etiqueta(v.control.texto);
}

/// Controls whose tops are no more than this apart, in dialog units, stand in one row: a label is set two lower than
/// the box beside it.
constexpr int kMismaFila = 4;

void Dibuja(VentanaTexto const& dialogo, std::ostream& salida) {
  std::vector<VentanaTexto const*> vistas;
  for (auto const& hija : dialogo.hijas) {
    if (hija->control.visible) vistas.push_back(hija.get());
  }
  std::ranges::stable_sort(vistas, {}, [](VentanaTexto const* v) { return v->control.y; });
  salida << dialogo.control.texto << '\n';
  for (auto desde = vistas.begin(); desde != vistas.end();) {
    const int tope = (*desde)->control.y + kMismaFila;
    const auto hasta = std::find_if(desde, vistas.end(), [&](VentanaTexto const* v) { return v->control.y > tope; });
    std::stable_sort(desde, hasta, [](auto const* a, auto const* b) { return a->control.x < b->control.x; });
    for (; desde != hasta; ++desde) salida << "  " << Dibujo(**desde);
    salida << '\n';
  }
  salida << "> " << std::flush;
}

std::string SinBlancos(std::string const& texto) {
  const std::size_t desde = texto.find_first_not_of(" \t\r");
  return desde == std::string::npos ? std::string() : texto.substr(desde, texto.find_last_not_of(" \t\r") - desde + 1);
}

/// The control that a line names, if its user could reach it.
VentanaTexto* Alcanzable(VentanaTexto const& dialogo, std::string const& nombre) {
  int id = 0;
  const auto [hasta, error] = std::from_chars(nombre.data(), nombre.data() + nombre.size(), id);
  if (error != std::errc{} || hasta != nombre.data() + nombre.size()) {
    return nullptr;
  }
  VentanaTexto* const hija = dialogo.Hija(id);
  return hija != nullptr && hija->control.visible && hija->control.admite ? hija : nullptr;
}

bool Escribe(VentanaTexto& dialogo, std::string const& nombre, std::string const& texto) {
  VentanaTexto* const caja = Alcanzable(dialogo, nombre);
  if (caja == nullptr || caja->control.clase != EClase::Edicion || caja->control.soloLectura) {
    return false;
  }
  dialogo.foco = caja;
  caja->control.texto = CString::DesdeUtf8(texto);
  return true;
}

bool Pulsa(VentanaTexto& dialogo, std::string const& nombre) {
  VentanaTexto* const boton = Alcanzable(dialogo, nombre);
  if (boton == nullptr || (boton->control.clase != EClase::Boton && boton->control.clase != EClase::Casilla)) {
    return false;
  }
  dialogo.Pulsa(*boton);
  return true;
}

bool Ordena(VentanaTexto& dialogo, CMensaje const& m) {
  VentanaTexto* const donde = dialogo.foco != nullptr && m.numero == mensaje::kAyuda ? dialogo.foco : &dialogo;
  sistema::Envia(reinterpret_cast<HWND>(donde), m);
  return true;
}

bool Cumple(VentanaTexto& dialogo, std::string const& linea) {
  const std::size_t igual = linea.find('=');
  const std::string nombre = SinBlancos(linea.substr(0, igual));
  if (igual != std::string::npos) {
    return Escribe(dialogo, nombre, SinBlancos(linea.substr(igual + 1)));
  }
  return nombre == "ok"       ? Ordena(dialogo, {mensaje::kOrden, orden::kAcepta, 0})
         : nombre == "cancel" ? Ordena(dialogo, {mensaje::kOrden, orden::kCancela, 0})
         : nombre == "f1"     ? Ordena(dialogo, {mensaje::kAyuda, 0, 0})
                              : Pulsa(dialogo, nombre);
}

}  // namespace

CPantallaTexto::CPantallaTexto(std::istream& entrada, std::ostream& salida)
    : entrada_(entrada), salida_(salida), anterior_(enUso) {
  enUso = this;
}

CPantallaTexto::~CPantallaTexto() { enUso = anterior_; }

CPantallaTexto* CPantallaTexto::Actual() { return enUso; }

bool Atiende(CPantallaTexto& pantalla, VentanaTexto& dialogo) {
  Dibuja(dialogo, pantalla.Salida());
  std::string linea;
  if (!std::getline(pantalla.Entrada(), linea)) {
    return false;
  }
  if (!SinBlancos(linea).empty() && !Cumple(dialogo, linea)) {
    pantalla.Salida() << "\"" << SinBlancos(linea)
                      << "\" is not to be done here: NUMBER = TEXT, NUMBER, ok, cancel or f1\n";
  }
  return true;
}
