#include "host/Program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <fmt/format.h>
#include <new>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "host/Failure.h"
#include "host/HostApp.h"
#include "host/verbs/Verbs.h"
#include "platform/Proceso.h"

namespace Meseta47::host {

namespace {

/// Asks for no memory: it may be the memory that gave out.
int complain(ExitCode code, std::string_view text) noexcept {
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    static_cast<void>(std::fprintf(stderr, "urdimbre: %.*s\n", static_cast<int>(line.size()), line.data()));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
  }
  return code;
}

int complainOfMemory() noexcept {
  return complain(kFailed, "not enough memory: take fewer files at a time, or a smaller part of them with --bounds");
}

/// What was printed is handed on only now, and a summary that nobody gets is a failure.
int flushed() noexcept {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return kDone;
  return complain(kFailed, "the summary could not be written to the standard output: is its disk full?");
}

int run(Work const& work, CommonOptions const& common) {
  HostApp app(common);
  DevuelveMemoriaLibre();
  try {
    work(app);
    return flushed();
  } catch (Cancelled const&) {
    app.clearProgress();
    return complain(kCancelled, "cancelled; nothing was written");
  } catch (UsageError const& error) {
    app.clearProgress();
    return complain(kUsage, error.what());
  } catch (std::exception const& error) {
    app.clearProgress();
    // A vector asked for more than any memory has says so in its own way.
    const bool memory = dynamic_cast<std::bad_alloc const*>(&error) != nullptr ||
                        dynamic_cast<std::length_error const*>(&error) != nullptr;
    if (memory) return complainOfMemory();
    if (auto const* refusal = dynamic_cast<std::system_error const*>(&error);
        refusal != nullptr && refusal->code() == std::errc::resource_unavailable_try_again) {
      return complain(kFailed,
                      "the system gives no more threads or locks: take fewer --threads, or end other programs");
    }
    return complain(kFailed, error.what());
  }
}

void addOptions(CLI::App& program, CommonOptions& common) {
  program.set_version_flag("--version", "urdimbre " URDIMBRE_VERSION);
  program.require_subcommand(1);
  program.fallthrough();
  program.add_flag("--quiet", common.quiet, "No progress, no summary");
  program.add_flag("--json", common.json, "Summary as JSON on stdout");
  program.add_option("--threads", common.threads, "Processors to use; 0 is all (the result does not depend on it)")
      ->capture_default_str()
      ->check(CLI::Range(0, 1024));
  program.add_option("--temp-dir", common.tempDir, "Folder for temporary files (default: the system's)");
}

void addVerbs(CLI::App& program, CommonOptions const& common, Work& chosen) {
  addTin(program, common, chosen);
  addRender(program, common, chosen);
  addClassify(program, common, chosen);
  addContour(program, common, chosen);
  addInfo(program, common, chosen);
  addCheck(program, common, chosen);
  addGenerate(program, common, chosen);
}

int parseAndRun(int argc, char const* const* argv) {
  CLI::App program("Terrain triangulation for lidar clouds and survey lines", "urdimbre");
  CommonOptions common;
  Work chosen;
  addOptions(program, common);
  addVerbs(program, common, chosen);
  try {
    program.parse(argc, argv);
  } catch (CLI::Success const& success) {
    return program.exit(success);
  } catch (CLI::ParseError const& error) {
    return complain(kUsage, fmt::format("{} (see urdimbre --help)", error.what()));
  } catch (UsageError const& error) {
    return complain(kUsage, error.what());
  }
  return run(chosen, common);
}

}  // namespace

int runProgram(int argc, char const* const* argv) {
  try {
    return parseAndRun(argc, argv);
  } catch (std::bad_alloc const&) {
    return complainOfMemory();
  } catch (std::exception const& error) {
    return complain(kFailed, error.what());
  }
}

}  // namespace Meseta47::host
