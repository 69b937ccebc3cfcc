#pragma once

#include <CLI/CLI.hpp>
#include <nlohmann/json_fwd.hpp>

#include "model/drawing/CDibujo.h"
#include "planar/CTriangulacion2D.h"
#include "platform/CString.h"

namespace Meseta47::host {

/// Where the parameters of a search are kept from one use to the next, in the profile of the application.
struct ProfilePlace {
  CString section;
  CString prefix;
};

/// A search over the points of a cloud that gives a class to those it finds: what one `urdimbre classify NAME` has that
/// the others lack. The frame around it (host/classify/Classify.h) is the same for all.
///
/// The frame calls in this order: addOptions, then once the command line is read settle, the two checks, run, keep.
class CloudSearch {
 public:
  virtual ~CloudSearch() = default;

  /// The word behind `classify`, and a line for --help.
  [[nodiscard]] virtual char const* name() const = 0;
  [[nodiscard]] virtual char const* purpose() const = 0;

  /// Adds the options that are its own, the target class among them.
  virtual void addOptions(CLI::App& verb) = 0;
  /// Settles the parameters: what the command line gave, else what the profile holds, else the defaults.
  virtual void settle(ProfilePlace const* profile) = 0;
  /// Writes the parameters to the profile; false when they can't be read back from it.
  [[nodiscard]] virtual bool keep(ProfilePlace const& profile) const = 0;

  /// Throws UsageError for a parameter that the search can't take on scaled units of that size.
  virtual void requireSense(double unitsAMetre) const = 0;
  /// The highest class that it may give.
  [[nodiscard]] virtual unsigned char highestTarget() const = 0;
  /// The parameters as a summary tells them.
  [[nodiscard]] virtual nlohmann::ordered_json parameters() const = 0;

  /// Searches the drawing and gives the points found their class. `found` takes their number, those that had the class
  /// before included. A code of the library.
  virtual int run(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found) = 0;
};

}  // namespace Meseta47::host
