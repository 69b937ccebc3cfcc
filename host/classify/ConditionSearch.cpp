#include "host/classify/ConditionSearch.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <limits>

#include "host/Failure.h"
#include "host/NumberCheck.h"
#include "host/Parsing.h"
#include "host/classify/RiseList.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47::host {

namespace {

constexpr double kInt32 = 2147483647.0;

std::vector<std::string> fieldsOf(std::string const& text, char between) {
  std::vector<std::string> fields(1);
  for (const char c : text) {
    if (c == between) {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

/// The library cuts the scaled height to a whole number: the float must not lie below what was meant.
float notBelow(double height) {
  const auto nearest = static_cast<float>(height);
  return static_cast<double>(nearest) < height ? std::nextafter(nearest, std::numeric_limits<float>::infinity())
                                               : nearest;
}

}  // namespace

ConditionSearch::ConditionSearch(std::string const& form) : form_(form) {
  table_.texts({"--when", "When",
                form + ": what of this look rises by more than HEIGHT, in units of the input, gets CLASS; may be given "
                       "again, up to 128 times, and the first condition that suits a point takes it"},
               when_);
  table_.length({"--distance", "DistanciaMax",
                 "Longest side of the outline drawn around what a condition finds, in units of the input: what lies "
                 "within is taken too; 0 draws none"},
                data_.DistanciaMax);
  table_.optionalNumber({"--list", "List",
                         "HEIGHT: tell the looks of what rises by more than it, as conditions to choose from, and "
                         "classify nothing"},
                        list_, fromZeroUp());
}

void ConditionSearch::malformed() const {
  throw UsageError(fmt::format("--when {}: give {}, such as {}", current_, form_,
                               form_[0] == 'R' ? "96,110,70:30:2:5" : "0:40:2:5"));
}

int ConditionSearch::whole(std::string const& field, int most) const {
  int value = -1;
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
  if (error != std::errc() || end != field.data() + field.size() || value < 0 || value > most) malformed();
  return value;
}

void ConditionSearch::takeOne(std::string const& text) {
  current_ = text;
  const std::vector<std::string> fields = fieldsOf(text, ':');
  if (fields.size() != 4) malformed();
  double height = -1;
  std::string const& field = fields[2];
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), height);
  if (error != std::errc() || end != field.data() + field.size() || !(height >= 0) || height > kInt32) malformed();
  const auto target = static_cast<unsigned char>(whole(fields[3], 255));
  highest_ = std::max(highest_, target);
  highestRise_ = std::max(highestRise_, height);
  take(fields, {notBelow(height), target});
}

void ConditionSearch::settle(ProfilePlace const* profile) {
  CloudSearch::settle(profile);
  if (onlyTells()) return;
  if (when_.empty()) {
    throw UsageError(fmt::format("nothing to look for: give --when {}, or --list HEIGHT to see what rises", form_));
  }
  if (when_.size() > kMostConditions) {
    throw UsageError(fmt::format("--when: {} conditions, and a search takes {} at most: classify in two runs",
                                 when_.size(), kMostConditions));
  }
  for (std::string const& text : when_) takeOne(text);
}

void ConditionSearch::requireSense(CloudUnits const& units) {
  CloudSearch::requireSense(units);
  const double height = list_.value_or(highestRise_);
  if (height * units.aMetre <= kInt32) return;
  throw UsageError(fmt::format("{} with a height of {:g}: give heights from 0 to {:.0f}, in units of the input",
                               list_ ? "--list" : "--when", height, std::floor(kInt32 / units.aMetre)));
}

int ConditionSearch::search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found,
                            SearchOutcome& outcome) {
  return list_ ? list(triangulation, drawing, *list_, outcome)
               : classify(triangulation, drawing, data_.DistanciaMax, found);
}

// --- by colour ---

void ColourSearch::requireSeen(LoadedCloud const& cloud, std::string const& input) const {
  const bool seen =
      std::any_of(cloud.colours.begin(), cloud.colours.end(), [](Rgb8 const& c) { return (c[0] | c[1] | c[2]) != 0; });
  if (seen || cloud.points.empty()) return;
  throw Failure(
      fmt::format("{}: has no colours, or black alone: colour the cloud first, or search by intensity", input));
}

void ColourSearch::take(std::vector<std::string> const& fields, Tail const& tail) {
  const std::vector<std::string> channels = fieldsOf(fields[0], ',');
  if (channels.size() != 3) malformed();
  const auto byte = [this](std::string const& field) { return static_cast<unsigned char>(whole(field, 255)); };
  conditions_.emplace_back(byte(channels[0]), byte(channels[1]), byte(channels[2]), static_cast<char>(tail.target),
                           tail.height, byte(fields[1]));
}

int ColourSearch::classify(CTriangulacion2D& triangulation, CDibujo<int>& drawing, double distance, unsigned& found) {
  return triangulation.RunPuntosAltosRGB(drawing, asMost(distance), conditions_, found, nullptr, nullptr);
}

int ColourSearch::list(CTriangulacion2D& triangulation, CDibujo<int>& drawing, double height, SearchOutcome& outcome) {
  std::vector<CCondicionHRGB> rises;
  const int code = triangulation.RunListarPuntosAltosRGB(drawing, asMost(height), rises, nullptr, nullptr);
  tellColours(rises, height, outcome);
  return code;
}

// --- by intensity ---

void requireVaryingIntensity(LoadedCloud const& cloud, std::string const& input) {
  auto const& points = cloud.points;
  const bool varies = std::any_of(points.begin(), points.end(),
                                  [&](ScaledPoint const& p) { return p.intensity != points.front().intensity; });
  if (varies || points.empty()) return;
  throw Failure(fmt::format("{}: the intensity of every point is {}: there is nothing to tell points apart by", input,
                            points.front().intensity));
}

void IntensitySearch::requireSeen(LoadedCloud const& cloud, std::string const& input) const {
  requireVaryingIntensity(cloud, input);
}

void IntensitySearch::take(std::vector<std::string> const& fields, Tail const& tail) {
  constexpr int kMost = 65535;
  const int least = whole(fields[0], kMost), most = whole(fields[1], kMost);
  if (least > most) malformed();
  conditions_.emplace_back(least, most, static_cast<char>(tail.target), tail.height);
}

int IntensitySearch::classify(CTriangulacion2D& triangulation, CDibujo<int>& drawing, double distance,
                              unsigned& found) {
  return triangulation.RunPuntosAltosIntensidad(drawing, asMost(distance), conditions_, found, nullptr, nullptr);
}

int IntensitySearch::list(CTriangulacion2D& triangulation, CDibujo<int>& drawing, double height,
                          SearchOutcome& outcome) {
  std::vector<CCondicionHIntensidad> rises;
  const int code = triangulation.RunListarPuntosAltosIntensidad(drawing, asMost(height), rises, nullptr, nullptr);
  tellIntensities(rises, height, outcome);
  return code;
}

}  // namespace Meseta47::host
