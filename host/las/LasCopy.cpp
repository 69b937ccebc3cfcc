#include "host/las/LasCopy.h"

#include <algorithm>
#include <fmt/format.h>
#include <vector>

#include "host/FileError.h"
#include "host/OutputFile.h"
#include "host/las/LasCodec.h"
#include "host/las/LasReader.h"

namespace Meseta47::host {

namespace {

constexpr std::uint64_t kBlock = std::uint64_t{1} << 20;

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

void copyBytes(ByteSource& from, OutputFile& to, std::uint64_t begin, std::uint64_t end) {
  std::vector<std::uint8_t> block(static_cast<std::size_t>(std::min(kBlock, end - begin)));
  while (begin < end) {
    const std::size_t got = from.read(begin, std::span(block).first(std::min<std::size_t>(block.size(), end - begin)));
    if (got == 0) {
      throw FileError(from.name(), "became shorter while it was copied: wait until it is written");
    }
    to.write(block.data(), got);
    begin += got;
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
  LasReader reader(from);
  requireOneClassEach(reader, classes);
  LasHeader const& header = reader.header();
  FileSource rest(from);
  OutputFile output(to);
  copyBytes(rest, output, 0, header.offsetToPoints);
  std::vector<std::uint8_t> block;
  for (std::uint64_t done = 0; done < header.pointCount; done = reader.position()) {
    if (progress && !progress(done, header.pointCount)) {
      return false;
    }
    const std::size_t count = reader.readRecords();
    block.assign(reader.rawRecords().begin(), reader.rawRecords().end());
    putClasses(block, header, classes.subspan(static_cast<std::size_t>(done), count));
    output.write(block.data(), block.size());
  }
  copyBytes(rest, output, header.offsetToPoints + header.pointCount * header.recordLength, rest.size());
  output.commit();
  return true;
}

}  // namespace Meseta47::host
