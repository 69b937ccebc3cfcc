#include "platform/CRecursosTexto.h"

#include <algorithm>
#include <charconv>
#include <mutex>
#include <string>

namespace {

struct Registro {
  std::mutex cerrojo;
  std::vector<CRecursosTexto const*> modulos;
};

Registro& ElRegistro() {
  static Registro registro;
  return registro;
}

bool EsDePalabra(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

/// A word, a number with its sign, a text in quotes or a single sign of the script.
struct Pieza {
  enum class EClase { Final, Palabra, Numero, Texto, Signo };
  EClase clase = EClase::Final;
  std::string texto;
  int numero = 0;
};

/// Takes a script to pieces, and keeps count of the lines.
class Lector {
 public:
  explicit Lector(std::string_view guion) : resto_(guion) { Avanza(); }

  [[nodiscard]] Pieza const& Actual() const { return actual_; }
  [[nodiscard]] unsigned Linea() const { return linea_; }
  [[nodiscard]] bool Bien() const { return bien_; }
  void Falla() {
    if (bien_) lineaMala_ = linea_;
    bien_ = false;
  }
  /// Where it went wrong first; 0 when nothing has.
  [[nodiscard]] unsigned LineaMala() const { return lineaMala_; }

  void Avanza() {
    SaltaBlancos();
    actual_ = {};
    linea_ = siguienteLinea_;
    if (resto_.empty()) {
      return;
    }
    if (resto_[0] == '"') {
      LeeTexto();
    } else if (EsDePalabra(resto_[0]) || (resto_[0] == '-' && resto_.size() > 1 && EsDePalabra(resto_[1]))) {
      LeePalabra();
    } else {
      actual_ = {Pieza::EClase::Signo, std::string(1, resto_[0]), 0};
      Quita(1);
    }
  }

  bool EsPalabra(std::string_view palabra) const {
    return actual_.clase == Pieza::EClase::Palabra && actual_.texto == palabra;
  }
  bool EsComa() const { return actual_.clase == Pieza::EClase::Signo && actual_.texto == ","; }

  /// The next piece, which has to be of this kind; a comma behind it goes too.
  int Numero() { return Toma(Pieza::EClase::Numero).numero; }
  CString Texto() { return CString::DesdeUtf8(Toma(Pieza::EClase::Texto).texto); }
  std::string Palabra() { return Toma(Pieza::EClase::Palabra).texto; }

  /// The words of a sum of styles, up to a comma or the end of a line. "NOT WS_VISIBLE" is one word, with a blank.
  std::vector<std::string> Estilos(unsigned linea) {
    std::vector<std::string> estilos;
    while (linea_ == linea && actual_.clase != Pieza::EClase::Final && !EsComa()) {
      const bool negado = EsPalabra("NOT");
      if (negado) {
        Avanza();
      }
      estilos.push_back((negado ? "NOT " : "") + actual_.texto);
      Avanza();
    }
    if (EsComa()) {
      Avanza();
    }
    return estilos;
  }
  void SaltaLinea(unsigned linea) {
    while (linea_ == linea && actual_.clase != Pieza::EClase::Final) {
      Avanza();
    }
  }

 private:
  Pieza Toma(Pieza::EClase clase) {
    Pieza pieza = actual_;
    if (pieza.clase != clase) {
      Falla();
      return {};
    }
    Avanza();
    if (EsComa()) {
      Avanza();
    }
    return pieza;
  }

  void Quita(std::size_t cuantos) {
    siguienteLinea_ +=
        static_cast<unsigned>(std::count(resto_.begin(), resto_.begin() + static_cast<std::ptrdiff_t>(cuantos), '\n'));
    resto_.remove_prefix(cuantos);
  }
  void QuitaHasta(std::string_view final, std::size_t cola) {
    const std::size_t lugar = resto_.find(final);
    Quita(lugar == std::string_view::npos ? resto_.size() : lugar + cola);
  }
  void SaltaBlancos() {
    constexpr std::string_view kBlancos = " \t\r\n";
    for (;;) {
      Quita(std::min(resto_.find_first_not_of(kBlancos), resto_.size()));
      if (resto_.starts_with("//") || resto_.starts_with('#')) {
        QuitaHasta("\n", 0);
      } else if (resto_.starts_with("/*")) {
        QuitaHasta("*/", 2);
      } else {
        return;
      }
    }
  }
  void LeeTexto() {
    actual_.clase = Pieza::EClase::Texto;
    std::size_t i = 1;
    for (; i < resto_.size() && resto_[i] != '\n'; ++i) {
      if (resto_[i] == '"') {
        if (i + 1 == resto_.size() || resto_[i + 1] != '"') {
          break;
        }
        ++i;  // two quotes are one
      }
      actual_.texto += resto_[i];
    }
    if (i == resto_.size() || resto_[i] != '"') Falla();
    Quita(std::min(i + 1, resto_.size()));
  }
  void LeePalabra() {
    std::size_t largo = 1;
    while (largo < resto_.size() && EsDePalabra(resto_[largo])) {
      ++largo;
    }
    actual_ = {Pieza::EClase::Palabra, std::string(resto_.substr(0, largo)), 0};
    std::string_view cifras = actual_.texto;
    const bool hexadecimal = cifras.starts_with("0x");
    cifras.remove_prefix(hexadecimal ? 2 : 0);
    const auto [hasta, error] =
        std::from_chars(cifras.data(), cifras.data() + cifras.size(), actual_.numero, hexadecimal ? 16 : 10);
    if (error == std::errc{} && hasta == cifras.data() + cifras.size()) {
      actual_.clase = Pieza::EClase::Numero;
    }
    Quita(largo);
  }

  std::string_view resto_;
  Pieza actual_;
  unsigned linea_ = 1;
  unsigned siguienteLinea_ = 1;
  unsigned lineaMala_ = 0;
  bool bien_ = true;
};

using EClaseControl = CPlantillaControl::EClase;

/// What is written `palabra "text", id, place, styles`.
bool ClaseConTexto(std::string_view palabra, EClaseControl& clase) {
  constexpr std::pair<std::string_view, EClaseControl> kClases[] = {
      {"LTEXT", EClaseControl::Texto},         {"CTEXT", EClaseControl::Texto},
      {"RTEXT", EClaseControl::Texto},         {"PUSHBUTTON", EClaseControl::Boton},
      {"DEFPUSHBUTTON", EClaseControl::Boton}, {"AUTOCHECKBOX", EClaseControl::Casilla},
      {"GROUPBOX", EClaseControl::Marco}};
  auto const* const hallada = std::ranges::find(kClases, palabra, [](auto const& par) { return par.first; });
  if (hallada == std::end(kClases)) {
    return false;
  }
  clase = hallada->second;
  return true;
}

bool Contiene(std::vector<std::string> const& estilos, std::string_view estilo) {
  return std::ranges::find(estilos, estilo) != estilos.end();
}

void PonEstilos(CPlantillaControl& control, std::vector<std::string> const& estilos) {
  control.visible = control.visible && !Contiene(estilos, "NOT WS_VISIBLE");
  control.admite = control.admite && !Contiene(estilos, "WS_DISABLED");
  control.soloLectura = control.soloLectura || Contiene(estilos, "ES_READONLY");
}

void PonLugar(Lector& lector, CPlantillaControl& control) {
  control.x = lector.Numero();
  control.y = lector.Numero();
  static_cast<void>(lector.Numero());  // lines of text are as wide and as high as they are
  static_cast<void>(lector.Numero());
}

/// CONTROL "text", id, "class", styles, place
void LeeControlLargo(Lector& lector, CPlantillaControl& control) {
  control.texto = lector.Texto();
  control.id = lector.Numero();
  const CString clase = lector.Texto();
  const std::vector<std::string> estilos = lector.Estilos(lector.Linea());
  const bool casilla = Contiene(estilos, "BS_AUTOCHECKBOX");
  control.clase = clase == L"Edit"                   ? EClaseControl::Edicion
                  : clase != L"Button"               ? EClaseControl::Texto
                  : casilla                          ? EClaseControl::Casilla
                  : Contiene(estilos, "BS_GROUPBOX") ? EClaseControl::Marco
                                                     : EClaseControl::Boton;
  PonEstilos(control, estilos);
  PonLugar(lector, control);
}

CPlantillaControl LeeControl(Lector& lector) {
  CPlantillaControl control;
  const std::string palabra = lector.Palabra();
  if (palabra == "CONTROL") {
    LeeControlLargo(lector, control);
    return control;
  }
  if (palabra == "EDITTEXT") {
    control.clase = EClaseControl::Edicion;
  } else if (ClaseConTexto(palabra, control.clase)) {
    control.texto = lector.Texto();
  } else {
    lector.Falla();
    return control;
  }
  control.id = lector.Numero();
  PonLugar(lector, control);
  return control;
}

/// Behind the word DIALOGEX: its place, its lines, and its controls between BEGIN and END.
CPlantillaDialogo LeeDialogo(Lector& lector, unsigned id) {
  CPlantillaDialogo dialogo;
  dialogo.id = id;
  for (int i = 0; i < 4; ++i) {
    static_cast<void>(lector.Numero());
  }
  while (lector.Bien() && !lector.EsPalabra("BEGIN")) {
    const unsigned linea = lector.Linea();
    const std::string palabra = lector.Palabra();
    if (palabra == "CAPTION") {
      dialogo.titulo = lector.Texto();
    } else if (palabra == "STYLE" || palabra == "EXSTYLE" || palabra == "FONT") {
      lector.SaltaLinea(linea);
    } else {
      lector.Falla();
    }
  }
  lector.Avanza();
  while (lector.Bien() && !lector.EsPalabra("END")) {
    const unsigned linea = lector.Linea();
    dialogo.controles.push_back(LeeControl(lector));
    PonEstilos(dialogo.controles.back(), lector.Estilos(linea));
    lector.SaltaLinea(linea);
  }
  lector.Avanza();
  return dialogo;
}

}  // namespace

CRecursosTexto::CRecursosTexto(std::string_view guion) {
  Lector lector(guion);
  while (lector.Bien() && lector.Actual().clase != Pieza::EClase::Final) {
    const auto id = static_cast<unsigned>(lector.Numero());
    const std::string palabra = lector.Palabra();
    if (palabra == "ICON") {
      const CString fichero = lector.Texto();
      if (lector.Bien()) iconos_.push_back({id, fichero});
    } else if (palabra == "DIALOGEX") {
      CPlantillaDialogo dialogo = LeeDialogo(lector, id);
      if (lector.Bien()) dialogos_.push_back(std::move(dialogo));
    } else {
      lector.Falla();
    }
  }
  lineaMala_ = lector.LineaMala();
  const std::scoped_lock cerrojo(ElRegistro().cerrojo);
  ElRegistro().modulos.push_back(this);
}

CRecursosTexto::~CRecursosTexto() {
  const std::scoped_lock cerrojo(ElRegistro().cerrojo);
  std::erase(ElRegistro().modulos, this);
}

HINSTANCE CRecursosTexto::Modulo() const {
  return reinterpret_cast<HINSTANCE>(const_cast<CRecursosTexto*>(this));  // a name: nobody writes through it
}

CRecursosTexto const* CRecursosTexto::De(HINSTANCE modulo) {
  const std::scoped_lock cerrojo(ElRegistro().cerrojo);
  auto const* const buscado = reinterpret_cast<CRecursosTexto const*>(modulo);
  return std::ranges::find(ElRegistro().modulos, buscado) == ElRegistro().modulos.end() ? nullptr : buscado;
}

std::vector<HINSTANCE> CRecursosTexto::Modulos() {
  const std::scoped_lock cerrojo(ElRegistro().cerrojo);
  std::vector<HINSTANCE> modulos;
  for (CRecursosTexto const* const modulo : ElRegistro().modulos) {
    modulos.push_back(modulo->Modulo());
  }
  std::ranges::reverse(modulos);
  return modulos;
}

CPlantillaDialogo const* CRecursosTexto::Dialogo(unsigned id) const {
  const auto hallado = std::ranges::find(dialogos_, id, &CPlantillaDialogo::id);
  return hallado == dialogos_.end() ? nullptr : &*hallado;
}

CPlantillaIcono const* CRecursosTexto::Icono(unsigned id) const {
  const auto hallado = std::ranges::find(iconos_, id, &CPlantillaIcono::id);
  return hallado == iconos_.end() ? nullptr : &*hallado;
}
