#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>

#include "host/HostApp.h"

namespace Meseta47::host {

/// What a verb does once its arguments are known. Throws what host/Failure.h names.
using Work = std::function<void(HostApp&)>;

/// An option that is given says something: an empty text is a variable that was never set, and the default is then not
/// what was meant.
void refuseEmptyTexts(CLI::App& app);

/// Has `addOptions` called when the command line names the verb, as a short run would spend longer on the options of
/// all verbs than on its work; none of them takes an empty text.
void addOptionsWhenNamed(CLI::App& verb, std::function<void()> addOptions);

/// A verb of the program. When the command line chooses it, `chosen` receives its work: `run` with what `addOptions`
/// had parsed.
template <class Options>
void addVerb(CLI::App& program, std::string const& name, std::string const& purpose, CommonOptions const& common,
             Work& chosen, void (*addOptions)(CLI::App&, Options&),
             void (*run)(Options const&, CommonOptions const&, HostApp&)) {
  CLI::App* const verb = program.add_subcommand(name, purpose);
  auto options = std::make_shared<Options>();
  addOptionsWhenNamed(*verb, [verb, options, addOptions] { addOptions(*verb, *options); });
  verb->callback([options, run, &common, &chosen] {
    chosen = [options, run, &common](HostApp& app) { run(*options, common, app); };
  });
}

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
