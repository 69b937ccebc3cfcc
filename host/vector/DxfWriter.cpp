#include "host/vector/DxfWriter.h"

#include <algorithm>

namespace Meseta47::host {

std::unique_ptr<VectorWriter> openPlainDxf(VectorTarget const& target, ReferenceSystem const&, VectorLayer layer) {
  return std::make_unique<DxfWriter>(target, layer);
}

DxfWriter::DxfWriter(VectorTarget const& target, VectorLayer const& layer) : TextVectorWriter(target, layer.decimals) {
  put("0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1009\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n");
}

void DxfWriter::addLine(std::span<Place const> places, std::span<double const>, std::string const& cadLayer) {
  const bool closed = places.size() > 2 && places.front() == places.back();
  const bool flat = std::ranges::all_of(places, [&](Place const& p) { return p[2] == places.front()[2]; });
  putText("0", "POLYLINE");
  putText("8", cadLayer);
  putText("66", "1");  // vertices follow
  putPlace({0, 0, flat ? places.front()[2] : 0});
  putText("70", flat ? (closed ? "1" : "0") : (closed ? "9" : "8"));
  for (Place const& place : places.first(places.size() - (closed ? 1 : 0))) {
    putText("0", "VERTEX");
    putText("8", cadLayer);
    putPlace(place);
    if (!flat) putText("70", "32");
  }
  putText("0", "SEQEND");
  putText("8", cadLayer);
  flush();
}

void DxfWriter::addPolygon(std::span<Ring const> rings, std::span<double const> values, std::string const& cadLayer) {
  for (Ring const& ring : rings) addLine(ring, values, &ring == rings.data() ? cadLayer : cadLayer + "_hole");
}

void DxfWriter::putText(char const* code, std::string_view value) {
  put(code);
  put("\n");
  put(value);
  put("\n");
}

void DxfWriter::putPlace(Place const& place) {
  constexpr char const* kCodes[] = {"10\n", "20\n", "30\n"};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    put(kCodes[axis]);
    putNumber(place[axis]);
    put("\n");
  }
}

}  // namespace Meseta47::host
