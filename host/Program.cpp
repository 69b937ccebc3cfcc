#include "host/Program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <fmt/format.h>
#include <new>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

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

/// What cannot be printed is told at once by fmt, and at the end by the stream.
bool isRefusedOutput(std::exception const& error) {
  auto const* refusal = dynamic_cast<std::system_error const*>(&error);
  return refusal != nullptr && std::ferror(stdout) != 0;
}

/// The library may have a category of its own beside the program's, as DLLs have: the number tells.
bool isWantOfThreads(std::error_code const& code) {
  return code.value() == static_cast<int>(std::errc::resource_unavailable_try_again);
}

int run(Work const& work, CommonOptions const& common) {
  HostApp app(common);
  DevuelveMemoriaLibre();
  try {
    work(app);
    app.clearProgress();
    app.showMessages();
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
    if (isRefusedOutput(error)) return flushed();
    if (auto const* refusal = dynamic_cast<std::system_error const*>(&error);
        refusal != nullptr && isWantOfThreads(refusal->code())) {
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
  program.allow_windows_style_options(false);  // /data/scan.las is a file on every system
  program.add_flag("--quiet", common.quiet, "No progress, no summary");
  program.add_flag("--json", common.json, "Summary as JSON on stdout");
  program.add_option("--threads", common.threads, "Processors to use; 0 is all (the result does not depend on it)")
      ->capture_default_str()
      ->check(CLI::Range(0, 1024));
  program.add_option("--temp-dir", common.tempDir, "Folder for temporary files (default: the system's)");
  refuseEmptyTexts(program);
}

void addVerbs(CLI::App& program, CommonOptions const& common, Work& chosen) {
  addTin(program, common, chosen);
  addTetra(program, common, chosen);
  addSurface(program, common, chosen);
  addRender(program, common, chosen);
  addClassify(program, common, chosen);
  addContour(program, common, chosen);
  addInfo(program, common, chosen);
  addCheck(program, common, chosen);
  addGenerate(program, common, chosen);
}

/// How many letters must be put in, left out or changed to make one word of the other.
std::size_t editsBetween(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({row[j] + 1, row[j + 1] + 1, changed});
    }
  }
  return row.back();
}

/// What to say of a word that stands where a subcommand is wanted; nothing when none does.
std::optional<std::string> unknownSubcommand(CLI::App const& program, std::vector<std::string> const& words) {
  CLI::App const* at = &program;
  for (std::size_t i = 0; i < words.size(); ++i) {
    std::string const& word = words[i];
    if (word == "--threads" || word == "--temp-dir") ++i;  // their values
    if (word.empty() || word.front() == '-') continue;
    std::vector<CLI::App const*> const all = at->get_subcommands([](CLI::App const*) { return true; });
    if (all.empty()) return std::nullopt;
    const auto named = std::find_if(all.begin(), all.end(), [&](auto* one) { return one->get_name() == word; });
    if (named != all.end()) {
      at = *named;
      continue;
    }
    const auto nearest = std::min_element(all.begin(), all.end(), [&](auto* a, auto* b) {
      return editsBetween(word, a->get_name()) < editsBetween(word, b->get_name());
    });
    std::string names;
    for (CLI::App const* const one : all) names += (names.empty() ? "" : ", ") + one->get_name();
    const bool isNear = editsBetween(word, (*nearest)->get_name()) <= std::max<std::size_t>(word.size() / 2, 1);
    return isNear ? fmt::format("there is no subcommand \"{}\": did you mean \"{}\"? (there are {})", word,
                                (*nearest)->get_name(), names)
                  : fmt::format("there is no subcommand \"{}\": there are {}", word, names);
  }
  return std::nullopt;
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
    program.exit(success);
    return flushed();
  } catch (CLI::ParseError const& error) {
    if (const auto unknown = unknownSubcommand(program, {argv + 1, argv + argc})) return complain(kUsage, *unknown);
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

int runCommandLine(int argc, char const* const* argv) {
  try {
    PonSalidaUtf8();
    const std::vector<std::string> texts = Argumentos(argc, argv);
    std::vector<char const*> words;
    for (std::string const& text : texts) words.push_back(text.c_str());
    return runProgram(static_cast<int>(words.size()), words.data());
  } catch (std::bad_alloc const&) {
    return complainOfMemory();
  }
}

}  // namespace Meseta47::host
