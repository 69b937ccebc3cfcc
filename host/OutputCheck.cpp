#include "host/OutputCheck.h"

#include <fmt/format.h>

#include "host/FileError.h"
#include "host/OutputFile.h"
#include "host/vector/VectorOutput.h"
#include "platform/CFicheroParcial.h"
#include "platform/Ficheros.h"

namespace Meseta47::host {

namespace {

/// A file with those that belong to it.
std::vector<std::string> familyOf(std::string const& name) {
  std::vector<std::string> family = VectorOutput::companionsOf(name);
  family.insert(family.begin(), name);
  return family;
}

void requireApart(std::string const& output, std::string const& other, std::string_view what) {
  const std::vector<std::string> others = familyOf(other);
  for (std::string const& mine : familyOf(replacedBy(output))) {
    for (std::string const& its : others) {
      if (!SonElMismoFichero(CString::DesdeUtf8(mine), CString::DesdeUtf8(its))) continue;
      const std::string name = its == other ? other : fmt::format("{}, which belongs to {},", its, other);
      throw FileError(output, fmt::format("would replace {} {}: give another name", name, what));
    }
  }
}

/// Most outputs are opened when all the work is done: a folder that is missing or somebody else's is told before it.
void requireFolder(std::string const& output) {
  CString why;
  if (CarpetaEscribible(CarpetaDe(DestinoFinal(CString::DesdeUtf8(output))), &why)) return;
  throw FileError(output, fmt::format("cannot be written: {}: {}", why.Utf8(), helpFor(0)));
}

}  // namespace

void requireOutputs(std::vector<std::string> const& outputs, std::vector<std::string> const& inputs) {
  for (auto output = outputs.begin(); output != outputs.end(); ++output) {
    if (output->empty()) continue;
    requireReplaceable(*output);
    requireFolder(*output);
    for (std::string const& input : inputs) requireApart(*output, input, "that this run reads");
    for (auto other = outputs.begin(); other != output; ++other) {
      if (!other->empty()) requireApart(*output, *other, "that this run writes too");
    }
  }
}

}  // namespace Meseta47::host
