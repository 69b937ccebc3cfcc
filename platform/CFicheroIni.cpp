#include "platform/CFicheroIni.h"

#include <algorithm>
#include <system_error>

#include "platform/CFicheroParcial.h"
#include "platform/CStdioFile.h"

namespace {

constexpr wchar_t kMarcaUtf8 = 0xFEFF;

bool EsBlanco(wchar_t c) { return c == L' ' || c == L'\t'; }

CString SinBlancos(CString const& texto) {
  int desde = 0;
  int hasta = texto.GetLength();
  while (desde < hasta && EsBlanco(texto[desde])) {
    ++desde;
  }
  while (hasta > desde && EsBlanco(texto[hasta - 1])) {
    --hasta;
  }
  return texto.Mid(desde, hasta - desde);
}

bool EntreComillas(CString const& texto) {
  const int largo = texto.GetLength();
  return largo >= 2 && (texto[0] == L'"' || texto[0] == L'\'') && texto[largo - 1] == texto[0];
}

CString ValorDe(CString const& escrito) {
  const CString valor = SinBlancos(escrito);
  return EntreComillas(valor) ? valor.Mid(1, valor.GetLength() - 2) : valor;
}

/// A value that reading would trim is kept whole by quotes.
CString Escrito(CString const& valor) {
  return EntreComillas(valor) || SinBlancos(valor) != valor ? L"\"" + valor + L"\"" : valor;
}

/// The name of the section that a line opens.
bool EsCabecera(CString const& linea, CString& nombre) {
  const CString texto = SinBlancos(linea);
  const int cierre = texto.Find(L']');
  if (texto.IsEmpty() || texto[0] != L'[' || cierre == -1) {
    return false;
  }
  nombre = SinBlancos(texto.Mid(1, cierre - 1));
  return true;
}

/// The key and the value of a line that holds them.
bool EsAsignacion(CString const& linea, CString& clave, CString& valor) {
  const int igual = linea.Find(L'=');
  clave = SinBlancos(linea.Left(std::max(igual, 0)));
  if (clave.IsEmpty() || clave[0] == L';' || clave[0] == L'#') {
    return false;
  }
  valor = ValorDe(linea.Mid(igual + 1));
  return true;
}

}  // namespace

int CFicheroIni::Lee(CString const& path) {
  lineas_.clear();
  CStdioFile fichero(path, CFile::modeRead | CFile::shareDenyNone);
  CString linea;
  while (fichero.ReadString(linea)) {
    lineas_.push_back(linea);
  }
  if (!lineas_.empty() && lineas_.front()[0] == kMarcaUtf8) {
    lineas_.front() = lineas_.front().Mid(1);
  }
  return fichero.CodigoError();
}

int CFicheroIni::Escribe(CString const& path) const {
  CFicheroParcial parcial(path);
  parcial.Fichero().PonSincroniza(true);
  for (CString const& linea : lineas_) {
    const std::string texto = linea.Utf8() + '\n';
    parcial.Fichero().Write(texto.data(), texto.size());
  }
  return parcial.Confirma() ? 0 : parcial.CodigoError();
}

bool CFicheroIni::Busca(CString const& seccion, CString const& clave, CString& valor) const {
  const Tramo tramo = BuscaSeccion(seccion);
  const std::size_t lugar = BuscaClave(tramo, clave);
  CString escrita;
  return lugar < tramo.hasta && EsAsignacion(lineas_[lugar], escrita, valor);
}

std::vector<CString> CFicheroIni::Secciones() const {
  std::vector<CString> nombres;
  CString nombre;
  for (CString const& linea : lineas_) {
    if (EsCabecera(linea, nombre)) {
      nombres.push_back(nombre);
    }
  }
  return nombres;
}

std::vector<CString> CFicheroIni::Claves(CString const& seccion) const {
  std::vector<CString> claves;
  const Tramo tramo = BuscaSeccion(seccion);
  CString clave;
  CString valor;
  for (std::size_t i = tramo.desde; i < tramo.hasta; ++i) {
    if (EsAsignacion(lineas_[i], clave, valor)) {
      claves.push_back(clave);
    }
  }
  return claves;
}

void CFicheroIni::Pon(CString const& seccion, CString const& clave, CString const& valor) {
  Tramo tramo = BuscaSeccion(seccion);
  if (!tramo.hay) {
    lineas_.push_back(L"[" + seccion + L"]");
    tramo = {true, lineas_.size(), lineas_.size()};
  }
  const CString linea = clave + L"=" + Escrito(valor);
  const std::size_t lugar = BuscaClave(tramo, clave);
  if (lugar < tramo.hasta) {
    lineas_[lugar] = linea;
  } else {
    lineas_.insert(lineas_.begin() + static_cast<std::ptrdiff_t>(tramo.hasta), linea);
  }
}

void CFicheroIni::BorraClave(CString const& seccion, CString const& clave) {
  const Tramo tramo = BuscaSeccion(seccion);
  const std::size_t lugar = BuscaClave(tramo, clave);
  if (lugar < tramo.hasta) {
    lineas_.erase(lineas_.begin() + static_cast<std::ptrdiff_t>(lugar));
  }
}

void CFicheroIni::BorraSeccion(CString const& seccion) {
  const Tramo tramo = BuscaSeccion(seccion);
  if (tramo.hay) {
    lineas_.erase(lineas_.begin() + static_cast<std::ptrdiff_t>(tramo.desde) - 1,
                  lineas_.begin() + static_cast<std::ptrdiff_t>(tramo.hasta));
  }
}

CFicheroIni::Tramo CFicheroIni::BuscaSeccion(CString const& seccion) const {
  Tramo tramo;
  CString nombre;
  for (std::size_t i = 0; i < lineas_.size(); ++i) {
    if (EsCabecera(lineas_[i], nombre)) {
      if (tramo.hay) {
        break;
      }
      tramo.hay = nombre.CompareNoCase(SinBlancos(seccion)) == 0;
      tramo.desde = tramo.hasta = i + 1;
    } else if (tramo.hay && !SinBlancos(lineas_[i]).IsEmpty()) {
      tramo.hasta = i + 1;
    }
  }
  return tramo.hay ? tramo : Tramo{};
}

std::size_t CFicheroIni::BuscaClave(Tramo const& tramo, CString const& clave) const {
  CString escrita;
  CString valor;
  std::size_t i = tramo.desde;
  while (i < tramo.hasta &&
         !(EsAsignacion(lineas_[i], escrita, valor) && escrita.CompareNoCase(SinBlancos(clave)) == 0)) {
    ++i;
  }
  return i;
}
