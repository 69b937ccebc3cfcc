#include <string>

#include "model/terrain/Exportacion.h"

namespace Meseta47 {

namespace {

/// Text of an attribute. Characters that XML cannot hold become the replacement character.
std::string Atributo(CString const& texto) {
  std::string salida;
  for (int i = 0; i < texto.GetLength(); ++i) {
    const auto c = static_cast<char32_t>(texto[i]);
    const bool vale = c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c <= 0xD7FF) ||
                      (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
    switch (c) {
      case '&':
        salida += "&amp;";
        break;
      case '<':
        salida += "&lt;";
        break;
      case '>':
        salida += "&gt;";
        break;
      case '"':
        salida += "&quot;";
        break;
      case '\t':
        salida += "&#9;";
        break;
      case '\n':
        salida += "&#10;";
        break;
      case '\r':
        salida += "&#13;";
        break;
      default:
        salida += vale ? texto.Mid(i, 1).Utf8() : "\xEF\xBF\xBD";
    }
  }
  return salida;
}

std::string Unidades(int unidad) {
  if (unidad == UNIDAD_METRO) {
    return "<Metric areaUnit=\"squareMeter\" linearUnit=\"meter\" volumeUnit=\"cubicMeter\" "
           "temperatureUnit=\"celsius\" pressureUnit=\"milliBars\"/>";
  }
  const std::string lineal = unidad == UNIDAD_PIE_TOPOGRAFICO ? "USSurveyFoot" : "foot";
  return "<Imperial areaUnit=\"squareFoot\" linearUnit=\"" + lineal +
         "\" volumeUnit=\"cubicFeet\" temperatureUnit=\"fahrenheit\" pressureUnit=\"inHG\"/>";
}

std::string Sistema(CDataExportarMDT const& datos) {
  if (datos.sistema.IsEmpty() && datos.epsg == 0) return {};
  std::string elemento = "  <CoordinateSystem name=\"" + Atributo(datos.sistema) + "\"";
  if (datos.epsg != 0) elemento += " epsgCode=\"" + std::to_string(datos.epsg) + "\"";
  return elemento + "/>\n";
}

std::string Cabecera(CDataExportarMDT const& datos) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\" "
         "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         "xsi:schemaLocation=\"http://www.landxml.org/schema/LandXML-1.2 "
         "http://www.landxml.org/schema/LandXML-1.2/LandXML-1.2.xsd\" version=\"1.2\" date=\"" +
         Atributo(datos.fecha) + "\" time=\"" + Atributo(datos.hora) + "\">\n  <Units>" + Unidades(datos.unidad) +
         "</Units>\n" + Sistema(datos) + "  <Application name=\"urdimbre\"/>\n  <Surfaces>\n    <Surface name=\"" +
         Atributo(datos.nombre) + "\">\n      <Definition surfType=\"TIN\">\n        <Pnts>\n";
}

}  // namespace

int EscribeLandXML(CFile& fichero, CSuperficieExportada const& s, CDataExportarMDT const& datos, CAvance& avance) {
  const auto punto = [&s](std::size_t i, char* destino) {
    CPuntoTIN const& p = s.Punto(i);
    destino = Pon(Pon(Pon(destino, "<P id=\""), std::uint64_t{i} + 1), "\">");
    destino = Pon(s.y.Escribe(destino, p.y), " ");  // northing comes first
    destino = Pon(s.x.Escribe(destino, p.x), " ");
    return Pon(s.z.Escribe(destino, p.z), "</P>\n");
  };
  const auto cara = [&s](std::size_t i, char* destino) {
    const Terna t = s.Cara(i);
    destino = Pon(Pon(Pon(destino, "<F>"), std::uint64_t{t[0]} + 1), " ");
    destino = Pon(Pon(destino, std::uint64_t{t[1]} + 1), " ");
    return Pon(Pon(destino, std::uint64_t{t[2]} + 1), "</F>\n");
  };
  constexpr std::size_t kAnchoDeCara = 64;
  const std::size_t anchoPunto = s.x.Ancho() + s.y.Ancho() + s.z.Ancho() + 64;
  if (!EscribeTexto(fichero, Cabecera(datos))) return kFicheroInaccesible;
  if (const int c = EscribeCosas(fichero, s.Puntos(), anchoPunto, punto, avance); c != kHecho) return c;
  if (!EscribeTexto(fichero, "        </Pnts>\n        <Faces>\n")) return kFicheroInaccesible;
  if (const int c = EscribeCosas(fichero, s.Caras(), kAnchoDeCara, cara, avance); c != kHecho) return c;
  const bool va =
      EscribeTexto(fichero, "        </Faces>\n      </Definition>\n    </Surface>\n  </Surfaces>\n</LandXML>\n");
  return va ? kHecho : kFicheroInaccesible;
}

}  // namespace Meseta47
