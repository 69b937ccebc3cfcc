#pragma once

#include <cstdint>
#include <vector>

#include "platform/CString.h"
#include "platform/Recursos.h"

class CDialog;
struct HWND__;
using HWND = HWND__*;
struct CMensaje;

/// The seam between dialogs and what shows them, one implementation a system: real windows, or windows in memory that
/// somebody works by lines of text. Internal. A null window is answered as one that is gone.
namespace sistema {

/// Shows a dialog until AcabaDialogo(); its answer, or -1 when it cannot be shown. Sets the dialog's m_hWnd before the
/// first message.
std::intptr_t CorreDialogo(CDialog& dialogo, HINSTANCE modulo, unsigned plantilla, HWND padre);
void AcabaDialogo(HWND dialogo, std::intptr_t respuesta);

HWND BuscaControl(HWND dialogo, int id);
void PonTexto(HWND ventana, wchar_t const* texto);
CString LeeTexto(HWND ventana);
void PonMarca(HWND ventana, int estado);
int LeeMarca(HWND ventana);
bool Habilita(HWND ventana, bool admite);
bool EstaHabilitada(HWND ventana);
bool Muestra(HWND ventana, bool visible);
bool EsVisible(HWND ventana);
void Centra(HWND ventana);
void Enfoca(HWND ventana);
std::intptr_t Envia(HWND ventana, CMensaje const& m);
bool Encola(HWND ventana, CMensaje const& m);

/// The modules that may have resources, in the order in which they are asked.
std::vector<HINSTANCE> ModulosConRecursos();
bool TieneRecurso(HINSTANCE modulo, unsigned id, unsigned tipo);
HICON LeeIcono(HINSTANCE modulo, unsigned id);

/// Opens a help file at a place; false when nothing can show it.
bool AbreAyuda(CString const& fichero, std::uintptr_t dato, unsigned orden);

}  // namespace sistema
