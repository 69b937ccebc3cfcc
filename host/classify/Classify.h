#pragma once

#include <cstdint>
#include <string>

#include "host/CloudOptions.h"
#include "host/HostApp.h"
#include "host/PhaseTimes.h"
#include "host/classify/ClassChanges.h"
#include "host/classify/CloudSearch.h"

namespace Meseta47::host {

/// What every search lets a user say.
struct ClassifyOptions {
  CloudOptions cloud;  ///< of one LAS file
  std::string output;  ///< may be the input under any of its names
  bool dryRun = false;
  std::string profile;  ///< empty: none is read nor written
};

struct ClassifyReport {
  std::uint64_t pointsRead = 0;
  SearchOutcome outcome;  ///< accepted: within the bounds, and of a class that takes part
  ClassChanges changes;
  PhaseTimes seconds;
};

/// Adds the options that every search takes.
void addClassifyOptions(CLI::App& verb, ClassifyOptions& options);

/// Runs a search over a LAS file and writes a copy in which the points found have their new class and nothing else
/// differs. The input is untouched unless it is the output as well, which takes its place in one step when it is whole.
/// Throws what host/Failure.h names and FileError; nothing has been written then, but for a Failure about the profile,
/// which is written last.
ClassifyReport classify(ClassifyOptions const& options, CloudSearch& search, HostApp& app);

}  // namespace Meseta47::host
