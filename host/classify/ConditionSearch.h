#pragma once

#include <memory>

#include "classification/CDataBuscarPuntos.h"
#include "host/classify/MeshSearch.h"
#include "model/drawing/CCondicionHIntensidad.h"
#include "model/drawing/CCondicionHRGB.h"

namespace Meseta47::host {

/// High points that some condition wants by what they look like, a class for each condition; or a listing of what
/// rises, from which conditions are made.
class ConditionSearch : public MeshSearch {
 public:
  /// Most conditions that a search takes: the library keeps the place of one in a signed byte.
  static constexpr std::size_t kMostConditions = 128;

  void settle(ProfilePlace const* profile) override;
  void requireSense(CloudUnits const& units) override;
  [[nodiscard]] unsigned char highestTarget() const override { return highest_; }
  [[nodiscard]] bool onlyTells() const override { return list_.has_value(); }

 protected:
  /// `form`: how a condition is written, for --help.
  explicit ConditionSearch(std::string const& form);

  [[nodiscard]] bool drawsOutline() const override { return !onlyTells(); }
  int search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found, SearchOutcome& outcome) override;

  /// What every form of a condition ends with.
  struct Tail {
    float height;
    unsigned char target;
  };
  /// Takes the text of one apart: adds it to the conditions, but for its last two fields, which come as `tail`. Throws
  /// UsageError by way of `malformed`.
  virtual void take(std::vector<std::string> const& fields, Tail const& tail) = 0;
  virtual int classify(CTriangulacion2D& triangulation, CDibujo<int>& drawing, double distance, unsigned& found) = 0;
  /// Lists what rises by more than a height into the outcome.
  virtual int list(CTriangulacion2D& triangulation, CDibujo<int>& drawing, double height, SearchOutcome& outcome) = 0;

  /// A whole number of a condition from 0 to `most`.
  [[nodiscard]] int whole(std::string const& field, int most) const;
  [[noreturn]] void malformed() const;

 private:
  void takeOne(std::string const& text);

  std::string form_;
  CDataBuscarPuntos data_;
  std::vector<std::string> when_;
  std::optional<double> list_;
  std::string current_;  ///< the condition that is taken apart
  double highestRise_ = 0;
  unsigned char highest_ = 0;
};

/// High points of a colour.
class ColourSearch : public ConditionSearch {
 public:
  ColourSearch() : ConditionSearch("R,G,B:TOLERANCE:HEIGHT:CLASS") {}

  [[nodiscard]] char const* name() const override { return "colour"; }
  [[nodiscard]] char const* alias() const override { return "color"; }
  [[nodiscard]] char const* purpose() const override {
    return "Points that rise steeply and have the colour of a condition, a class for each condition: green crowns, red "
           "roofs";
  }
  [[nodiscard]] bool needsColour() const override { return true; }
  void requireSeen(LoadedCloud const& cloud, std::string const& input) const override;

 protected:
  void take(std::vector<std::string> const& fields, Tail const& tail) override;
  int classify(CTriangulacion2D& triangulation, CDibujo<int>& drawing, double distance, unsigned& found) override;
  int list(CTriangulacion2D& triangulation, CDibujo<int>& drawing, double height, SearchOutcome& outcome) override;

 private:
  std::vector<CCondicionHRGB> conditions_;
};

/// High points of an intensity.
class IntensitySearch : public ConditionSearch {
 public:
  IntensitySearch() : ConditionSearch("MIN:MAX:HEIGHT:CLASS") {}

  [[nodiscard]] char const* name() const override { return "intensity"; }
  [[nodiscard]] char const* purpose() const override {
    return "Points that rise steeply and have an intensity within the limits of a condition, a class for each "
           "condition";
  }
  void requireSeen(LoadedCloud const& cloud, std::string const& input) const override;

 protected:
  void take(std::vector<std::string> const& fields, Tail const& tail) override;
  int classify(CTriangulacion2D& triangulation, CDibujo<int>& drawing, double distance, unsigned& found) override;
  int list(CTriangulacion2D& triangulation, CDibujo<int>& drawing, double height, SearchOutcome& outcome) override;

 private:
  std::vector<CCondicionHIntensidad> conditions_;
};

/// Throws Failure for a cloud whose intensities are all one: no search by them finds anything.
void requireVaryingIntensity(LoadedCloud const& cloud, std::string const& input);

}  // namespace Meseta47::host
