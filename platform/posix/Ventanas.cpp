#include "platform/Ventanas.h"

#include <algorithm>
#include <utility>

#include "platform/CDialog.h"
#include "platform/posix/VentanaTexto.h"

namespace {

VentanaTexto* De(HWND ventana) { return reinterpret_cast<VentanaTexto*>(ventana); }

HWND Manejador(VentanaTexto* ventana) { return reinterpret_cast<HWND>(ventana); }

std::unique_ptr<VentanaTexto> Crea(CPlantillaDialogo const& plantilla) {
  auto dialogo = std::make_unique<VentanaTexto>();
  dialogo->control.texto = plantilla.titulo;
  dialogo->control.visible = false;
  for (CPlantillaControl const& control : plantilla.controles) {
    auto& hija = *dialogo->hijas.emplace_back(std::make_unique<VentanaTexto>());
    hija.control = control;
    hija.padre = dialogo.get();
  }
  return dialogo;
}

/// What the window system does with a message that the program leaves to it.
std::intptr_t PorDefecto(VentanaTexto& ventana, CMensaje const& m) {
  if (m.numero == mensaje::kPonIcono && ventana.dialogo != nullptr && m.primero < std::size(ventana.iconos)) {
    return std::exchange(ventana.iconos[m.primero], m.segundo);
  }
  if (m.numero == mensaje::kPulsa && ventana.padre != nullptr) {
    ventana.padre->Pulsa(ventana);
    return 0;
  }
  if (m.numero == mensaje::kAyuda && ventana.padre != nullptr) {  // asked of a control, answered by who holds it
    return sistema::Envia(Manejador(ventana.padre), m);
  }
  return 0;
}

/// Carries out what is posted, and then what the user wants, until the dialog is ended.
void Corre(VentanaTexto& dialogo) {
  while (!dialogo.acabada) {
    if (!dialogo.cola.empty()) {
      const CMensaje m = dialogo.cola.front();
      dialogo.cola.pop_front();
      sistema::Envia(Manejador(&dialogo), m);
      continue;
    }
    CPantallaTexto* const pantalla = CPantallaTexto::Actual();
    if (pantalla != nullptr && Atiende(*pantalla, dialogo)) {
      continue;
    }
    sistema::Envia(Manejador(&dialogo), {mensaje::kOrden, orden::kCancela, 0});
    if (!dialogo.acabada &&
        dialogo.cola.empty()) {  // it will not be cancelled, and nobody is there to do another thing
      sistema::AcabaDialogo(Manejador(&dialogo), orden::kCancela);
    }
  }
}

}  // namespace

VentanaTexto* VentanaTexto::Hija(int id) const {
  const auto hallada = std::ranges::find(hijas, id, [](auto const& hija) { return hija->control.id; });
  return hallada == hijas.end() ? nullptr : hallada->get();
}

void VentanaTexto::Pulsa(VentanaTexto& boton) {
  if (boton.control.clase == CPlantillaControl::EClase::Casilla) {
    boton.marca = boton.marca == 0 ? 1 : 0;
  }
  foco = &boton;
  sistema::Envia(Manejador(this), {mensaje::kOrden, static_cast<unsigned>(boton.control.id) & 0xFFFFU, 0});
}

namespace sistema {

std::intptr_t CorreDialogo(CDialog& dialogo, HINSTANCE modulo, unsigned plantilla, HWND) {
  CRecursosTexto const* const recursos = CRecursosTexto::De(modulo);
  CPlantillaDialogo const* const descripcion = recursos == nullptr ? nullptr : recursos->Dialogo(plantilla);
  if (descripcion == nullptr) {
    return -1;
  }
  const auto ventana = Crea(*descripcion);
  ventana->dialogo = &dialogo;
  dialogo.m_hWnd = Manejador(ventana.get());
  Envia(dialogo.m_hWnd, {mensaje::kIniciaDialogo, 0, 0});
  ventana->control.visible = true;
  Corre(*ventana);
  return ventana->respuesta;
}

void AcabaDialogo(HWND dialogo, std::intptr_t respuesta) {
  if (dialogo != nullptr) {
    De(dialogo)->acabada = true;
    De(dialogo)->respuesta = respuesta;
  }
}

HWND BuscaControl(HWND dialogo, int id) { return dialogo == nullptr ? nullptr : Manejador(De(dialogo)->Hija(id)); }

void PonTexto(HWND ventana, wchar_t const* texto) {
  if (ventana != nullptr) De(ventana)->control.texto = texto;
}

CString LeeTexto(HWND ventana) { return ventana == nullptr ? CString() : De(ventana)->control.texto; }

void PonMarca(HWND ventana, int estado) {
  if (ventana != nullptr) De(ventana)->marca = estado;
}

int LeeMarca(HWND ventana) { return ventana == nullptr ? 0 : De(ventana)->marca; }

bool Habilita(HWND ventana, bool admite) {
  return ventana != nullptr && std::exchange(De(ventana)->control.admite, admite);
}

bool EstaHabilitada(HWND ventana) { return ventana != nullptr && De(ventana)->control.admite; }

bool Muestra(HWND ventana, bool visible) {
  return ventana != nullptr && std::exchange(De(ventana)->control.visible, visible);
}

// As in the window system, what stands in a window that is not seen is not seen either.
bool EsVisible(HWND ventana) {
  VentanaTexto const* const v = De(ventana);
  return v != nullptr && v->control.visible && (v->padre == nullptr || v->padre->control.visible);
}

void Centra(HWND) {}  // lines of text have no place

void Enfoca(HWND ventana) {
  if (ventana != nullptr && De(ventana)->padre != nullptr) De(ventana)->padre->foco = De(ventana);
}

std::intptr_t Envia(HWND ventana, CMensaje const& m) {
  if (ventana == nullptr) {
    return 0;
  }
  VentanaTexto& v = *De(ventana);
  const auto respuesta = v.dialogo == nullptr ? std::nullopt : v.dialogo->WindowProc(m);
  return respuesta ? *respuesta : PorDefecto(v, m);
}

bool Encola(HWND ventana, CMensaje const& m) {
  if (ventana == nullptr || De(ventana)->dialogo == nullptr) {
    return false;
  }
  De(ventana)->cola.push_back(m);
  return true;
}

std::vector<HINSTANCE> ModulosConRecursos() { return CRecursosTexto::Modulos(); }

bool TieneRecurso(HINSTANCE modulo, unsigned id, unsigned tipo) {
  CRecursosTexto const* const recursos = CRecursosTexto::De(modulo);
  return recursos != nullptr && ((tipo == recurso::kDialogo && recursos->Dialogo(id) != nullptr) ||
                                 (tipo == recurso::kIcono && recursos->Icono(id) != nullptr));
}

HICON LeeIcono(HINSTANCE modulo, unsigned id) {
  CRecursosTexto const* const recursos = CRecursosTexto::De(modulo);
  CPlantillaIcono const* const icono = recursos == nullptr ? nullptr : recursos->Icono(id);
  return reinterpret_cast<HICON>(const_cast<CPlantillaIcono*>(icono));  // a name: nobody writes through it
}

bool AbreAyuda(CString const&, std::uintptr_t, unsigned) { return false; }

}  // namespace sistema
