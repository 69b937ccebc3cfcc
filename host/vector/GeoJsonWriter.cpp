#include "host/vector/GeoJsonWriter.h"

#include <fmt/format.h>
#include <utility>

#include "host/FileError.h"

namespace Meseta47::host {

namespace {

int codeOf(ReferenceSystem const& system, std::string const& file) {
  const int code = system.epsg();
  if (code != 0 || !system.isKnown()) return code;
  throw FileError(file, fmt::format("GeoJSON can hold no reference system without an EPSG code, such as {}: write "
                                    ".gpkg or .fgb, or name the system with --a-srs",
                                    system.label()));
}

}  // namespace

std::unique_ptr<VectorWriter> openGeoJson(VectorTarget const& target, ReferenceSystem const& system,
                                          VectorLayer layer) {
  static_cast<void>(codeOf(system, target.name));  // before there is a file
  return std::make_unique<GeoJsonWriter>(target, system, std::move(layer));
}

GeoJsonWriter::GeoJsonWriter(VectorTarget const& target, ReferenceSystem const& system, VectorLayer layer)
    : TextVectorWriter(target, layer.decimals), layer_(std::move(layer)) {
  put(fmt::format("{{\n\"type\": \"FeatureCollection\",\n\"name\": \"{}\",\n", layer_.name));
  if (const int code = codeOf(system, target.name); code != 0) {
    put(fmt::format(
        "\"crs\": {{ \"type\": \"name\", \"properties\": {{ \"name\": \"urn:ogc:def:crs:EPSG::{}\" }} }},\n", code));
  }
  put("\"features\": [");
}

void GeoJsonWriter::addLine(std::span<Place const> places, std::span<double const> values, std::string const&) {
  begin(values, "LineString");
  putPlaces(places);
  end();
}

void GeoJsonWriter::addPolygon(std::span<Ring const> rings, std::span<double const> values, std::string const&) {
  begin(values, "Polygon");
  put("[ ");
  for (Ring const& ring : rings) {
    if (&ring != rings.data()) put(", ");
    putPlaces(ring);
  }
  put(" ]");
  end();
}

void GeoJsonWriter::begin(std::span<double const> values, char const* kind) {
  put(std::exchange(any_, true) ? ",\n" : "\n");
  put("{ \"type\": \"Feature\", \"properties\": { ");
  for (std::size_t i = 0; i < values.size(); ++i) {
    VectorField const& field = layer_.fields[i];
    put(fmt::format("{}\"{}\": ", i == 0 ? "" : ", ", field.name));
    if (field.whole) {
      put(fmt::format("{}", static_cast<long long>(values[i])));
    } else {
      putNumber(values[i]);
    }
  }
  put(fmt::format(" }}, \"geometry\": {{ \"type\": \"{}\", \"coordinates\": ", kind));
}

void GeoJsonWriter::end() {
  put(" } }");
  flush();
}

void GeoJsonWriter::putPlaces(std::span<Place const> places) {
  put("[ ");
  for (Place const& place : places) {
    put(&place == places.data() ? "[ " : ", [ ");
    putNumber(place[0]);
    put(", ");
    putNumber(place[1]);
    put(", ");
    putNumber(place[2]);
    put(" ]");
  }
  put(" ]");
}

}  // namespace Meseta47::host
