#include "host/Inputs.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "host/FileError.h"
#include "host/Paths.h"
#include "host/las/LasNames.h"
#include "host/vector/VectorInput.h"

namespace Meseta47::host {

namespace fs = std::filesystem;

namespace {

bool isPattern(std::string_view text) { return text.find_first_of("*?[") != std::string_view::npos; }

/// Whether a set such as [a-c5] or [!x] has a character. `set` begins behind the bracket; what is behind its end stays.
bool inSet(std::string_view& set, char c) {
  const bool inverted = !set.empty() && (set[0] == '!' || set[0] == '^');
  if (inverted) set.remove_prefix(1);
  bool found = false;
  for (bool first = true; !set.empty() && (first || set[0] != ']'); first = false) {
    const bool range = set.size() > 2 && set[1] == '-' && set[2] != ']';
    found = found || (range ? c >= set[0] && c <= set[2] : c == set[0]);
    set.remove_prefix(range ? 3 : 1);
  }
  if (!set.empty()) set.remove_prefix(1);
  return found != inverted;
}

/// Goes back to the last star alone, so that no pattern takes longer than its length times that of the name.
bool matches(std::string_view pattern, std::string_view name) {
  std::string_view afterStar, triedName;
  bool starred = false;
  while (!name.empty()) {
    std::string_view rest = pattern;
    bool fits = false;
    if (!pattern.empty() && pattern[0] == '*') {
      pattern.remove_prefix(1);
      afterStar = pattern;
      triedName = name;
      starred = true;
      continue;
    }
    if (!rest.empty()) {
      const char wanted = rest[0];
      rest.remove_prefix(1);
      fits = wanted == '?' || (wanted == '[' ? inSet(rest, name[0]) : wanted == name[0]);
    }
    if (fits) {
      pattern = rest;
      name.remove_prefix(1);
    } else if (starred) {
      triedName.remove_prefix(1);
      name = triedName;
      pattern = afterStar;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*') == std::string_view::npos;
}

std::vector<std::string> entriesOf(std::string_view folder) {
  std::vector<std::string> entries;
  for (CString const& name : NombresEnCarpeta(CString::DesdeUtf8(folder))) entries.push_back(name.Utf8());
  std::sort(entries.begin(), entries.end());
  return entries;
}

/// Adds what the rest of a pattern, component by component, matches below a folder.
void expandPattern(fs::path const& folder, fs::path::const_iterator part, fs::path::const_iterator end,
                   std::vector<std::string>& found) {
  const std::string wanted = textOf(*part);
  const bool last = std::next(part) == end;
  const auto take = [&](std::string const& name) {
    const fs::path path = folder / pathOf(name);
    const CDatosFichero here = lookAt(textOf(path));
    if (last && (here.EsFichero() || here.EsOtro())) found.push_back(textOf(path));
    if (!last && here.EsCarpeta()) expandPattern(path, std::next(part), end, found);
  };
  if (!isPattern(wanted)) return take(wanted);
  for (std::string const& name : entriesOf(textOf(folder))) {
    if (name[0] != '.' && matches(wanted, name)) take(name);
  }
}

void expandFolder(std::string const& folder, std::vector<std::string>& found) {
  const std::size_t before = found.size();
  for (std::string const& name : entriesOf(folder)) {
    const std::string path = textOf(pathOf(folder) / pathOf(name));
    if (isNamedLas(name) && !lookAt(path).EsCarpeta()) found.push_back(path);
  }
  if (found.size() == before) throw FileError(folder, "is a folder without a .las or .laz file: name the files");
}

}  // namespace

std::vector<std::string> expandInputs(std::vector<std::string> const& inputs) {
  std::vector<std::string> files;
  for (std::string const& input : inputs) {
    const CDatosFichero here = lookAt(input);
    if (here.EsCarpeta() && !isVectorFile(input)) {
      expandFolder(input, files);
    } else if (isPattern(input) && here.clase == CDatosFichero::Nada) {
      const fs::path pattern = pathOf(input);
      const std::size_t before = files.size();
      expandPattern({}, pattern.begin(), pattern.end(), files);
      if (files.size() == before) throw FileError(input, "no file matches: check the names and the folder");
    } else {
      files.push_back(input);
    }
  }
  return files;
}

}  // namespace Meseta47::host
