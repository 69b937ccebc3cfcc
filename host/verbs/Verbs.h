#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "host/HostApp.h"

namespace Meseta47::host {

/// What a verb does once its arguments are known. Throws what host/Failure.h names.
using Work = std::function<void(HostApp&)>;

/// Each adds its verb to the program. When the command line chooses the verb, `chosen` receives its work.
void addTin(CLI::App& program, CommonOptions const& common, Work& chosen);
void addTetra(CLI::App& program, CommonOptions const& common, Work& chosen);
void addSurface(CLI::App& program, CommonOptions const& common, Work& chosen);
void addRender(CLI::App& program, CommonOptions const& common, Work& chosen);
void addClassify(CLI::App& program, CommonOptions const& common, Work& chosen);
void addContour(CLI::App& program, CommonOptions const& common, Work& chosen);
void addInfo(CLI::App& program, CommonOptions const& common, Work& chosen);
void addCheck(CLI::App& program, CommonOptions const& common, Work& chosen);
void addGenerate(CLI::App& program, CommonOptions const& common, Work& chosen);

}  // namespace Meseta47::host
