#include "host/vector/VectorOutput.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <utility>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/OutputFile.h"
#include "host/Parsing.h"
#include "host/Paths.h"
#include "platform/CFicheroParcial.h"

namespace Meseta47::host {

namespace {

VectorFormat const* findFormat(std::string const& name) {
  const std::string extension = extensionOf(name);
  const std::span<VectorFormat const> all = vectorFormats();
  const auto found =
      std::find_if(all.begin(), all.end(), [&](VectorFormat const& format) { return extension == format.extension; });
  return found == all.end() ? nullptr : &*found;
}

/// The extensions that this build writes, as a sentence lists them.
std::string written() {
  std::vector<std::string> names;
  for (VectorFormat const& format : vectorFormats()) {
    if (format.open != nullptr) names.emplace_back(format.extension);
  }
  const std::string last = names.back();
  names.pop_back();
  return fmt::format("{} or {}", fmt::join(names, ", "), last);
}

VectorFormat const& formatOf(std::string const& name) {
  VectorFormat const* const format = findFormat(name);
  const std::string extension = textOf(pathOf(name).extension());
  if (format == nullptr) {
    throw UsageError(fmt::format("{}: no vector format has the extension \"{}\": use {}", name, extension, written()));
  }
  if (format->open == nullptr) {
    throw UsageError(fmt::format("{}: GDAL writes {}, and this urdimbre was built without it: use {}", name,
                                 format->extension, written()));
  }
  if (format->isShapefile && extension != ".shp") {
    throw UsageError(fmt::format("{}: write .shp in small letters: the files beside it have theirs so", name));
  }
  return *format;
}

VectorTarget targetOf(std::string const& name) { return {name, formatOf(name).isShapefile ? replacedBy(name) : name}; }

}  // namespace

void VectorOutput::requireFormat(std::string const& name) {
  const std::string path = targetOf(name).path;
  if (&formatOf(name) == findFormat(path)) return;
  throw FileError(name, fmt::format("leads to {}, which is no name for a shapefile: give that one .shp", path));
}

std::vector<std::string> VectorOutput::companionsOf(std::string const& name) {
  std::vector<std::string> companions;
  if (VectorFormat const* const format = findFormat(name)) {
    const std::string stem = name.substr(0, name.size() - std::string_view(format->extension).size());
    for (char const* const ending : format->sides) companions.push_back(stem + ending);
  }
  return companions;
}

void VectorOutput::requireNoOtherLayers(std::string const& name, std::string const& layer) {
  VectorFormat const& format = formatOf(name);
  if (format.requireNoOtherLayers != nullptr) format.requireNoOtherLayers(name, layer);
}

VectorOutput::VectorOutput(std::string const& name, ReferenceSystem const& system, VectorLayer layer)
    : target_(targetOf(name)), writer_(formatOf(name).open(target_, system, std::move(layer))) {}

void VectorOutput::finish() {
  if (!std::exchange(finished_, true)) writer_->finish();
}

void VectorOutput::commit() {
  finish();
  const std::string replaced = replacedBy(target_.path);
  const CCerrojoCarpeta lock(CarpetaDe(CString::DesdeUtf8(replaced)));
  for (std::string const& side : companionsOf(replaced)) {
    if (!writer_->makes(textOf(pathOf(side).filename()))) BorraFichero(CString::DesdeUtf8(side));
  }
  writer_->commit();
}

}  // namespace Meseta47::host
