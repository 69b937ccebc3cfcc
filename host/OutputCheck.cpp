#include "host/OutputCheck.h"

#include <filesystem>
#include <fmt/format.h>
#include <system_error>

#include "host/FileError.h"
#include "host/OutputFile.h"
#include "host/vector/VectorOutput.h"

namespace Meseta47::host {

namespace fs = std::filesystem;

namespace {

/// A file with those that belong to it.
std::vector<std::string> familyOf(std::string const& name) {
  std::vector<std::string> family = VectorOutput::companionsOf(name);
  family.insert(family.begin(), name);
  return family;
}

/// Whether two names lead to one file, be it there already or not.
bool areOne(std::string const& a, std::string const& b) {
  std::error_code error;
  if (fs::equivalent(a, b, error)) return true;
  error.clear();
  const fs::path one = fs::weakly_canonical(a, error), other = fs::weakly_canonical(b, error);
  return !error && one == other;
}

void requireApart(std::string const& output, std::string const& other, std::string_view what) {
  const std::vector<std::string> others = familyOf(other);
  for (std::string const& mine : familyOf(replacedBy(output))) {
    for (std::string const& its : others) {
      if (!areOne(mine, its)) continue;
      const std::string name = its == other ? other : fmt::format("{}, which belongs to {},", its, other);
      throw FileError(output, fmt::format("would replace {} {}: give another name", name, what));
    }
  }
}

}  // namespace

void requireOutputs(std::vector<std::string> const& outputs, std::vector<std::string> const& inputs) {
  for (auto output = outputs.begin(); output != outputs.end(); ++output) {
    if (output->empty()) continue;
    requireReplaceable(*output);
    for (std::string const& input : inputs) requireApart(*output, input, "that this run reads");
    for (auto other = outputs.begin(); other != output; ++other) {
      if (!other->empty()) requireApart(*output, *other, "that this run writes too");
    }
  }
}

}  // namespace Meseta47::host
