// urdimbre info: what is in the files.
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "host/AsprsClasses.h"
#include "host/CloudInfo.h"
#include "host/Failure.h"
#include "host/FileError.h"
#include "host/verbs/Verbs.h"

namespace Meseta47::host {

namespace {

using Json = nlohmann::ordered_json;

Json toJson(CloudCounts const& counts) {
  Json classes = Json::object(), returns = Json::object();
  for (std::size_t i = 0; i < counts.byClass.size(); ++i) {
    if (counts.byClass[i] != 0) classes[std::to_string(i)] = counts.byClass[i];
  }
  for (std::size_t i = 0; i < counts.byReturn.size(); ++i) {
    if (counts.byReturn[i] != 0) returns[std::to_string(i)] = counts.byReturn[i];
  }
  Json json{
      {"points", counts.points}, {"duplicates", counts.planDuplicates}, {"classes", classes}, {"returns", returns}};
  if (!counts.extent.isEmpty()) json["extent"] = {{"min", counts.extent.min}, {"max", counts.extent.max}};
  return json;
}

Json toJson(CloudFileInfo const& file) {
  Json json{{"file", file.name}};
  if (file.header) {
    LasHeader const& h = *file.header;
    json["format"] = "LAS";
    json["version"] = fmt::format("{}.{}", h.versionMajor, h.versionMinor);
    json["point_format"] = h.pointFormat;
    json["record_length"] = h.recordLength;
    json["scale"] = h.scale;
    json["offset"] = h.offset;
    json["system"] = h.systemId;
    json["software"] = h.software;
    json["records"] = file.vlrs.size();
  } else {
    json["format"] = "text";
  }
  json["precision"] = file.precision;
  json.update(toJson(static_cast<CloudCounts const&>(file)));
  return json;
}

void print(CloudCounts const& counts) {
  fmt::print("  points      {}\n", withThousands(counts.points));
  fmt::print("  duplicates  {} in plan\n", withThousands(counts.planDuplicates));
  if (!counts.extent.isEmpty()) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      fmt::print("  {}           {:.3f} to {:.3f}\n", "xyz"[axis], counts.extent.min[axis], counts.extent.max[axis]);
    }
  }
  for (std::size_t c = 0; c < counts.byClass.size(); ++c) {
    if (counts.byClass[c] != 0) fmt::print("  class {:<5} {} {}\n", c, withThousands(counts.byClass[c]), className(c));
  }
  for (std::size_t r = 0; r < counts.byReturn.size(); ++r) {
    if (counts.byReturn[r] != 0) fmt::print("  return {:<4} {}\n", r, withThousands(counts.byReturn[r]));
  }
}

void print(CloudFileInfo const& file) {
  fmt::print("{}\n", file.name);
  if (file.header) {
    LasHeader const& h = *file.header;
    fmt::print("  format      LAS {}.{}, point format {}, {} bytes a point, {} variable length records\n",
               h.versionMajor, h.versionMinor, h.pointFormat, h.recordLength, file.vlrs.size());
    fmt::print("  scale       {} {} {}\n", h.scale[0], h.scale[1], h.scale[2]);
    fmt::print("  offset      {} {} {}\n", h.offset[0], h.offset[1], h.offset[2]);
    if (!h.systemId.empty() || !h.software.empty()) fmt::print("  made by     {} {}\n", h.systemId, h.software);
  } else {
    fmt::print("  format      text\n");
  }
  fmt::print("  precision   {} decimals\n", file.precision);
  print(static_cast<CloudCounts const&>(file));
}

void runInfo(std::vector<std::string> const& files, CommonOptions const& common, HostApp& app) {
  app.phase("Reading");
  std::uint64_t seen = 0;
  const auto info = gatherInfo(files, [&](std::uint64_t points) {
    app.step(seen = points, 0);
    return true;
  });
  if (!info) throw Cancelled();
  app.clearProgress();
  if (common.json) {
    Json json{{"files", Json::array()}, {"all", toJson(info->all)}};
    for (CloudFileInfo const& file : info->files) json["files"].push_back(toJson(file));
    fmt::print("{}\n", json.dump(2));
    return;
  }
  for (CloudFileInfo const& file : info->files) print(file);
  if (info->files.size() > 1) {
    fmt::print("all {} files\n", info->files.size());
    print(info->all);
  }
}

}  // namespace

void addInfo(CLI::App& program, CommonOptions const& common, Work& chosen) {
  auto files = std::make_shared<std::vector<std::string>>();
  CLI::App* verb = program.add_subcommand("info", "Tell what is in the files: header, extent, classes, duplicates");
  verb->add_option("IN", *files, "LAS or text files")->required();
  verb->callback(
      [files, &common, &chosen] { chosen = [files, &common](HostApp& app) { runInfo(*files, common, app); }; });
}

}  // namespace Meseta47::host
