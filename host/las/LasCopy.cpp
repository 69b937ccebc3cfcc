#include "host/las/LasCopy.h"

#include <algorithm>
#include <fmt/format.h>
#include <future>
#include <optional>
#include <vector>

#include "host/FileError.h"
#include "host/OutputFile.h"
#include "host/las/LasCodec.h"
#include "host/las/LasNames.h"
#include "host/las/LasReader.h"
#include "host/las/LasSurroundings.h"
#include "host/laz/LazRecordWriter.h"

namespace Meseta47::host {

namespace {

void requireOneClassEach(LasReader const& reader, std::span<std::uint8_t const> classes) {
  LasHeader const& header = reader.header();
  if (classes.size() != header.pointCount) {
    throw FileError(reader.name(), fmt::format("has {} points now and {} classes are to be written: it has changed "
                                               "meanwhile; run again",
                                               withThousands(header.pointCount), withThousands(classes.size())));
  }
  if (!classes.empty()) {
    requireClassFits(reader.name(), header.pointFormat, *std::max_element(classes.begin(), classes.end()));
  }
}

void putClasses(std::span<std::uint8_t> records, LasHeader const& header, std::span<std::uint8_t const> classes) {
  const std::uint8_t mask = lasClassMask(header.pointFormat);
  std::uint8_t* place = records.data() + lasClassByte(header.pointFormat);
  for (const std::uint8_t wanted : classes) {
    *place = static_cast<std::uint8_t>((*place & ~mask) | wanted);
    place += header.recordLength;
  }
}

/// Writes the whole copy into a file that it makes. False when `progress` stops it.
bool copyInto(std::optional<OutputFile>& made, std::string const& from, std::string const& to,
              std::span<std::uint8_t const> classes, CopyProgress const& progress) {
  LasReader reader(from);
  requireOneClassEach(reader, classes);
  LasHeader const& header = reader.header();
  std::optional<LazScheme> scheme;
  if (isNamedLaz(to)) scheme = lazSchemeFor(header.pointFormat, static_cast<unsigned>(reader.extraBytes()));
  FileSource rest(from);
  const LasSurroundings surroundings(reader, rest, scheme);
  OutputFile& output = made.emplace(to);
  surroundings.writeBefore(output);
  std::optional<LazRecordWriter> compressed;
  if (scheme) compressed.emplace(output, *scheme);
  // One block is written while the next one is read.
  std::vector<std::uint8_t> block, ready;
  const auto write = [&] { compressed ? compressed->add(ready) : output.write(ready.data(), ready.size()); };
  std::future<void> writing;
  for (std::uint64_t done = 0; done < header.pointCount; done = reader.position()) {
    if (progress && !progress(done, header.pointCount)) return false;
    const std::size_t count = reader.readRecords();
    block.assign(reader.rawRecords().begin(), reader.rawRecords().end());
    putClasses(block, header, classes.subspan(static_cast<std::size_t>(done), count));
    if (writing.valid()) writing.get();
    block.swap(ready);
    writing = std::async(std::launch::async | std::launch::deferred, write);
  }
  if (writing.valid()) writing.get();
  if (compressed) compressed->finish();
  surroundings.writeAfter(output);
  return true;
}

}  // namespace

void requireClassFits(std::string const& file, unsigned pointFormat, unsigned wanted) {
  if (wanted <= lasClassMask(pointFormat)) {
    return;
  }
  throw FileError(file, fmt::format("class {} does not fit point format {}, which ends at 31: choose a class from 0 to "
                                    "31, or convert the file to format 6",
                                    wanted, pointFormat));
}

bool copyWithClasses(std::string const& from, std::string const& to, std::span<std::uint8_t const> classes,
                     CopyProgress const& progress) {
  std::optional<OutputFile> output;
  if (!copyInto(output, from, to, classes, progress)) return false;
  output->commit();  // when nobody reads the file any more: Windows lets none take the name of an open one
  return true;
}

}  // namespace Meseta47::host
