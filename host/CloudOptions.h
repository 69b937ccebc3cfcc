#pragma once

#include <CLI/CLI.hpp>
#include <array>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/LoadedCloud.h"
#include "model/drawing/CDibujo.h"
#include "model/drawing/CDigiTab.h"
#include "model/drawing/tipoAero3.h"
#include "model/terrain/CDataTriangulacion.h"

namespace Meseta47::host {

/// What every verb that triangulates lets a user say about its points: the files, which points of them take part, and
/// in which order.
struct CloudOptions {
  std::vector<std::string> inputs;
  std::string z, classes, excludedClasses, bounds;
  std::vector<std::string> columns;
  std::optional<int> precision;  ///< decimals; none for what the files need
  bool partial = false;
  double resolution = 0;  ///< 0 for all levels
  std::string order = "hilbert";
  bool orderGiven = false;  ///< the order was asked for: what could do without it has it too
  std::string border = "hull";
  bool takesVectors = false;  ///< addCloudOptions was called: the following count
  std::string codeField, withoutZ = "refuse", system;
  std::vector<std::string> codes;

  [[nodiscard]] bool hilbert() const { return order == "hilbert"; }
  /// Whether surfaces fill the convex hull of their points: CTriangulacion2D::SinMarco.
  [[nodiscard]] bool fillsHull() const { return border == "hull"; }
  /// The inputs as a message names them.
  [[nodiscard]] std::string what() const;
};

/// Adds these options to a verb, which then takes vector files too. The object must outlive the parsing and the work.
void addCloudOptions(CLI::App& verb, CloudOptions& options);
/// Adds those of them that choose among the points of a file and say in which order they are linked: all but the files'
/// names and the window of heights.
void addPointOptions(CLI::App& verb, CloudOptions& options);
/// Adds the option that says where surfaces end, for a verb that makes one.
void addBorderOption(CLI::App& verb, CloudOptions& options);

/// Adds the option that says what the columns of text are.
void addColumnsOption(CLI::App& verb, std::vector<std::string>& columns);

/// Refuses what chooses among the points of a cloud, says how they are read or linked, beside a model or mesh (`kind`
/// says which), which comes as it is; all but the options named. Throws UsageError.
void requireNoCloudOptions(CLI::App const& verb, CloudOptions const& options, std::string const& kind,
                           std::initializer_list<std::string_view> allowed);

/// Throw UsageError for what can't be understood.
[[nodiscard]] LoadOptions loadOptionsOf(CloudOptions const& options);
[[nodiscard]] CDataTriangulacion filtersOf(CloudOptions const& options);

/// The table of the classes whose answer is true.
[[nodiscard]] CDigiTab classTable(std::array<bool, 256> const& classes);

/// What a drawing keeps beside its points: their colours; nothing where all are black, as they are where a file has
/// none.
[[nodiscard]] std::vector<tipoAero3> surveyData(std::vector<Rgb8> const& colours);

/// What was loaded as a drawing: lines and points of vector files as they came, and behind them the cloud as one point
/// set, along the Hilbert curve or in the order of the files. The loaded cloud is left without points and lines; its
/// places, where it keeps them, come into the same order, and its colours go with the points.
[[nodiscard]] CDibujo<int> drawingOf(LoadedCloud& cloud, bool hilbert, HostApp& app, Ties ties = Ties::asTheyCome,
                                     Halves halves = Halves::asTheyCome);

}  // namespace Meseta47::host
