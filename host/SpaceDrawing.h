#pragma once

#include "host/CloudOptions.h"

namespace Meseta47::host {

/// How many times finer than by itself the library divides space for a cloud of a scan. Its own cells suit clouds that
/// fill a cube; what scanners see are surfaces.
inline constexpr unsigned kFinenessOfScans = 27;

/// What was loaded as a drawing for a run in space, which takes all of it: the points that the filters of the options
/// let through, those of vector files first, and behind them the cloud in the order of SpatialOrder3D.h or of the
/// files; with it go its colours. The loaded cloud is left without points and lines.
///
/// Throws Failure, naming `options.what()`, when the points span no space, or when the frame that a run builds around
/// them does not fit 32 bits.
[[nodiscard]] CDibujo<int> spaceDrawingOf(LoadedCloud& cloud, CloudOptions const& options, HostApp& app);

/// The parameters of a run in space over such a drawing.
[[nodiscard]] CDataTriangulacion everything();

}  // namespace Meseta47::host
