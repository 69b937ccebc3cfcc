#include <CLI/CLI.hpp>
#include <cstdio>
#include <fmt/format.h>
#include <new>
#include <sstream>

#include "host/Failure.h"
#include "host/HostApp.h"
#include "host/verbs/Verbs.h"

using namespace Meseta47::host;

namespace {

int complain(ExitCode code, std::string const& text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) fmt::print(stderr, "urdimbre: {}\n", line);
  return code;
}

int run(Work const& work, CommonOptions const& common) {
  HostApp app(common);
  try {
    work(app);
    return kDone;
  } catch (Cancelled const&) {
    app.clearProgress();
    return complain(kCancelled, "cancelled; nothing was written");
  } catch (UsageError const& error) {
    app.clearProgress();
    return complain(kUsage, error.what());
  } catch (std::bad_alloc const&) {
    app.clearProgress();
    return complain(kFailed, "not enough memory: take fewer files at a time, or a smaller part of them with --bounds");
  } catch (std::exception const& error) {
    app.clearProgress();
    return complain(kFailed, error.what());
  }
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program("Terrain triangulation for lidar clouds and survey lines", "urdimbre");
  program.set_version_flag("--version", "urdimbre " URDIMBRE_VERSION);
  program.require_subcommand(1);
  program.fallthrough();
  CommonOptions common;
  program.add_flag("--quiet", common.quiet, "No progress, no summary");
  program.add_flag("--json", common.json, "Summary as JSON on stdout");
  program.add_option("--threads", common.threads, "Processors to use; 0 is all (the result does not depend on it)")
      ->capture_default_str()
      ->check(CLI::Range(0, 1024));
  program.add_option("--temp-dir", common.tempDir, "Folder for temporary files (default: the system's)");
  Work chosen;
  addTin(program, common, chosen);
  addRender(program, common, chosen);
  addClassify(program, common, chosen);
  addContour(program, common, chosen);
  addInfo(program, common, chosen);
  addCheck(program, common, chosen);
  addGenerate(program, common, chosen);
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
