#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/CloudPoint.h"
#include "host/las/ByteSource.h"

namespace Meseta47::host {

/// What a person says of the columns of text: names as a first line would give them, in order. None: the text says.
struct TextColumns {
  std::vector<std::string> names;
};

/// Reads points from text, one a line: x, y, z and optionally intensity and class.
///
/// Columns stand apart by semicolons, else by commas, else by blanks and tabs: the first line of numbers settles it for
/// the file, so that a decimal comma is an error and not two columns. Between semicolons or commas a column may stand
/// in quotes, within which either is text. Numbers have a decimal point. Text after a '#' at the start of a line is a
/// comment; empty lines count for nothing; lines end in LF or CRLF.
///
/// Names given, or a first line of names, say which column is which: x, e, easting; y, n, northing; z, h, elevation,
/// height, altitude; intensity; class, classification; r, g, b, red, green, blue (0 to 255). Other names are columns to
/// pass over, and so is a unit in brackets behind a name. Without them the columns are x, y, z, then intensity, then
/// class; with more than five only x, y and z are taken, since the rest can be anything, and text behind z is a
/// description. A first column is the number or name of each point, with x, y and z behind it, when in the first lines
/// it is no number; or when it is whole and, did x begin with it, heights would pass 30,000; or when it is whole and
/// never twice the same while the two columns behind it have decimals. A first line that is one whole number, the count
/// of points that some programs put there, is passed over.
///
/// Whatever cannot be understood is a FileError with the number and the text of the line. Used by one thread at a time.
class TextReader {
 public:
  static constexpr std::size_t kBatch = 65536;

  /// Throws UsageError for names that leave x, y or z without a column, or name two alike.
  explicit TextReader(std::unique_ptr<ByteSource> source, TextColumns const& columns = {});
  explicit TextReader(std::string const& path, TextColumns const& columns = {})
      : TextReader(std::make_unique<FileSource>(path), columns) {}

  /// Replaces `points` by the next ones in the order of the file and returns how many: 0 only at the end.
  std::size_t readBatch(std::vector<CloudPoint>& points, std::size_t max = kBatch);

  /// The next point to be read is the first one again.
  void rewind();

  /// The most decimals that a coordinate was written with, among the points read so far. "1.50" has two.
  [[nodiscard]] int decimals() const { return decimals_; }

  /// What each column was taken for: x, y, z, intensity, class, red, green, blue, number, or "-" for one passed over.
  /// The last is the last one that is not.
  [[nodiscard]] std::vector<std::string> columns() const;
  /// Who said so: "given", "named by its first line" or "recognised".
  [[nodiscard]] std::string const& columnsFrom() const { return columnsFrom_; }

  [[nodiscard]] bool hasIntensity() const { return has(kIntensity); }
  [[nodiscard]] bool hasClass() const { return has(kClass); }
  [[nodiscard]] bool hasColour() const { return has(kRed) && has(kGreen) && has(kBlue); }

  [[nodiscard]] std::string const& name() const { return source_->name(); }

 private:
  enum Field { kX, kY, kZ, kIntensity, kClass, kRed, kGreen, kBlue, kFields };

  [[nodiscard]] bool has(Field field) const { return columnOf_[field].has_value(); }
  struct Signs;

  void settleColumns();
  void chooseSeparator(std::string_view line);
  void nameColumns(std::string_view line);
  void takeNames(std::vector<std::string> const& names);
  void recogniseColumns(std::string_view line);
  void startAt(std::string_view line);
  std::optional<std::string_view> nextLine();
  std::optional<std::string_view> nextMeaningfulLine();
  bool refill();
  std::size_t split(std::string_view line);
  CloudPoint pointOf(std::string_view line);
  double number(std::string_view line, Field field);
  double coordinate(std::string_view line, Field field);
  unsigned whole(std::string_view line, Field field, unsigned most);
  void takeDecimals(std::string_view text);
  [[noreturn]] void fail(std::string_view line, std::string_view what) const;

  std::unique_ptr<ByteSource> source_;
  std::string block_;           // a piece of the file, from the last unread line on
  std::size_t cursor_ = 0;      // of the next line in it
  std::uint64_t position_ = 0;  // of what follows the block in the file
  std::uint64_t line_ = 0;      // number of the last line given, from 1
  std::uint64_t firstPoint_ = 0, firstPointLine_ = 0;
  char separator_ = ' ';
  std::array<std::optional<std::size_t>, kFields> columnOf_;
  std::size_t columnsNeeded_ = 0;
  bool numbered_ = false;  // the first column is the number or name of each point
  std::string columnsFrom_ = "recognised";
  std::vector<std::string_view> columns_;  // of the line at hand
  int decimals_ = 0;
};

}  // namespace Meseta47::host
