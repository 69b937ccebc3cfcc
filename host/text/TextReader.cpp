#include "host/text/TextReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fmt/format.h>
#include <limits>
#include <set>
#include <utility>

#include "host/Failure.h"
#include "host/FileError.h"

namespace Meseta47::host {

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20;
constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kQuoted = 60;  // of an offending text: a line for a person stays one line

constexpr int kLargestExponent = 400;  // of a double, with room: zero may be written with any

constexpr double kHighest = 30000;  // no land is as high, in feet either

std::string_view trimmed(std::string_view text, std::string_view what = kBlanks) {
  const std::size_t first = text.find_first_not_of(what);
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(what) + 1 - first);
}

std::string quoted(std::string_view text) {
  std::string shown(text.substr(0, kQuoted));
  std::replace_if(
      shown.begin(), shown.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f || c >= 0x80; }, '?');
  return '"' + shown + (text.size() > kQuoted ? "...\"" : "\"");
}

std::string lowered(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lower;
}

std::optional<double> numberIn(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
  }
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

constexpr std::array<std::string_view, 8> kFieldNames{"x", "y", "z", "intensity", "class", "red", "green", "blue"};

// Place in kFieldNames of what a column is called.
std::optional<std::size_t> fieldNamed(std::string_view name) {
  static constexpr std::pair<std::string_view, std::size_t> kNames[] = {
      {"x", 0},         {"e", 0},        {"easting", 0},        {"east", 0},
      {"y", 1},         {"n", 1},        {"northing", 1},       {"north", 1},
      {"z", 2},         {"h", 2},        {"elevation", 2},      {"height", 2},
      {"altitude", 2},  {"eastings", 0}, {"northings", 1},      {"elev", 2},
      {"rl", 2},        {"este", 0},     {"norte", 1},          {"cota", 2},
      {"intensity", 3}, {"class", 4},    {"classification", 4}, {"r", 5},
      {"red", 5},       {"g", 6},        {"green", 6},          {"b", 7},
      {"blue", 7}};
  const std::string wanted = lowered(trimmed(name.substr(0, name.find_first_of("([")), " \t\"'/"));
  auto const* const found =
      std::find_if(std::begin(kNames), std::end(kNames), [&](auto& n) { return n.first == wanted; });
  return found == std::end(kNames) ? std::nullopt : std::optional(found->second);
}

// A line without what stands in quotes; all of it where a quote is not closed, as that of inches is not.
std::string withoutQuoted(std::string_view line) {
  std::string bare;
  bool within = false;
  for (const char c : line) {
    if (c == '"') within = !within;
    if (!within) bare += c;
  }
  return within ? std::string(line) : bare;
}

// Where the column that begins at a place ends. One that begins with a quote goes on to the quote that closes it.
std::size_t endOfColumn(std::string_view line, std::size_t from, char separator) {
  const std::size_t first = line.find_first_not_of(kBlanks, from);
  if (first != std::string_view::npos && line[first] == '"') {
    for (std::size_t close = line.find('"', first + 1); close != std::string_view::npos;
         close = line.find('"', close + 1)) {
      if (line.substr(close + 1).starts_with('"')) {  // two are a quote in the text
        ++close;
        continue;
      }
      const std::size_t next = std::min(line.find_first_not_of(kBlanks, close + 1), line.size());
      if (next == line.size() || line[next] == separator) return next;
    }
  }
  return std::min(line.find(separator, from), line.size());
}

std::string_view unquoted(std::string_view text) {
  const bool isQuoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return isQuoted ? trimmed(text.substr(1, text.size() - 2)) : text;
}

// What begins like a number is meant as one, even where it is none: its line gets that message, and is no line of
// names.
bool beginsLikeNumber(std::string_view text) {
  return text.empty() || std::string_view("0123456789+-.").find(text.front()) != std::string_view::npos;
}

bool isWholeNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// A point's name, and its coordinates behind it: no line of names, though it begins like one.
bool isNumberedLine(std::vector<std::string_view> const& columns) {
  return columns.size() >= 4 && numberIn(columns[1]) && numberIn(columns[2]) && numberIn(columns[3]);
}

}  // namespace

TextReader::TextReader(std::unique_ptr<ByteSource> source, TextColumns const& columns) : source_(std::move(source)) {
  if (source_->size() == 0) {
    throw FileError(name(), "the file is empty (0 bytes): copy it again");
  }
  if (!columns.names.empty()) {
    takeNames(columns.names);
  }
  settleColumns();
}

void TextReader::rewind() {
  block_.clear();
  cursor_ = 0;
  position_ = firstPoint_;
  line_ = firstPointLine_;
}

// Reads up to the first line of numbers, and leaves that one to be read.
void TextReader::settleColumns() {
  const bool given = columnsNeeded_ != 0;
  bool named = false;
  bool counted = false;
  for (;;) {
    const auto line = nextMeaningfulLine();
    if (!line) {
      firstPoint_ = source_->size();
      return;
    }
    chooseSeparator(*line);
    split(*line);
    if (!named && !counted && columns_.size() == 1 && isWholeNumber(columns_[0])) {
      counted = true;
    } else if (!named && !columns_.empty() && !beginsLikeNumber(columns_[0]) && !isNumberedLine(columns_)) {
      if (!given) {
        nameColumns(*line);
      }
      named = true;
    } else {
      startAt(*line);
      if (!named && !given) {
        recogniseColumns(*line);
      }
      return rewind();
    }
  }
}

void TextReader::startAt(std::string_view line) {
  firstPoint_ = position_ - block_.size() + static_cast<std::size_t>(line.data() - block_.data());
  firstPointLine_ = line_ - 1;
}

void TextReader::chooseSeparator(std::string_view line) {
  const std::string bare = withoutQuoted(line);
  separator_ = bare.find(';') != std::string::npos ? ';' : bare.find(',') != std::string::npos ? ',' : ' ';
}

void TextReader::nameColumns(std::string_view line) {
  columnOf_.fill(std::nullopt);
  columnsNeeded_ = 0;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    const auto field = fieldNamed(trimmed(columns_[column], " \t\"'/"));
    if (!field) {
      continue;
    }
    if (columnOf_[*field]) {
      fail(line, fmt::format("two columns are named as {}: give one of them another name", kFieldNames[*field]));
    }
    columnOf_[*field] = column;
    columnsNeeded_ = column + 1;
  }
  for (const Field field : {kX, kY, kZ}) {
    if (!has(field)) {
      fail(line,
           fmt::format("stands where numbers or names of columns are expected, and names no column {}: begin with "
                       "a line such as \"x,y,z,intensity,class\"",
                       kFieldNames[field]));
    }
  }
  columnsFrom_ = "named by its first line";
}

/// What a first column of point numbers, and text behind z, look like over some lines.
struct TextReader::Signs {
  std::size_t lines = 0, fewest = std::numeric_limits<std::size_t>::max();
  bool whole = true, label = true;       ///< all first columns are whole numbers; none of them is a number
  bool decimals = true, numbers = true;  ///< the two behind it have decimals, the three behind it are numbers
  bool beyondHeight = true;              ///< as x, y and z, the height would be one that no land has
  bool description = true;               ///< no fourth column is a number
  std::set<std::string, std::less<>> firsts;

  void add(std::vector<std::string_view> const& columns) {
    ++lines;
    fewest = std::min(fewest, columns.size());
    if (columns.size() < 4) return;
    whole = whole && isWholeNumber(columns[0]);
    label = label && !numberIn(columns[0]);
    firsts.emplace(columns[0]);
    const auto has = [&](std::size_t i) {
      return numberIn(columns[i]) && columns[i].find('.') != std::string_view::npos;
    };
    const auto third = numberIn(columns[2]);
    beyondHeight = beyondHeight && third && std::abs(*third) > kHighest;
    decimals = decimals && has(1) && has(2);
    numbers = numbers && numberIn(columns[1]) && numberIn(columns[2]) && numberIn(columns[3]);
    description = description && !numberIn(columns[3]);
  }
  [[nodiscard]] bool isNumbered() const {
    return fewest >= 4 && numbers && (label || (whole && (beyondHeight || (decimals && firsts.size() == lines))));
  }
};

void TextReader::recogniseColumns(std::string_view line) {
  constexpr std::size_t kLines = 200;
  if (columns_.size() < 3) {
    fail(line, fmt::format("holds {} of the three numbers x, y and z", columns_.size()));
  }
  const std::size_t columns = columns_.size();
  Signs signs;
  for (std::optional<std::string_view> next = line; next && signs.lines < kLines; next = nextMeaningfulLine()) {
    split(*next);
    signs.add(columns_);
  }
  numbered_ = signs.isNumbered();
  const bool more = columns <= 5 && !numbered_ && !(columns > 3 && signs.description);
  const std::size_t first = numbered_ ? 1 : 0, fields = more ? columns : 3;
  for (std::size_t field = 0; field < fields; ++field) {
    columnOf_[field] = first + field;
  }
  columnsNeeded_ = first + fields;
}

void TextReader::takeNames(std::vector<std::string> const& names) {
  columnOf_.fill(std::nullopt);
  for (std::size_t column = 0; column < names.size(); ++column) {
    const auto field = fieldNamed(names[column]);
    if (!field) {
      continue;
    }
    if (columnOf_[*field]) {
      throw UsageError(fmt::format("--columns: two columns are named as {}", kFieldNames[*field]));
    }
    columnOf_[*field] = column;
    columnsNeeded_ = column + 1;
  }
  for (const Field field : {kX, kY, kZ}) {
    if (!has(field)) {
      throw UsageError(
          fmt::format("--columns: names no column {}: give all of them in their order, such as "
                      "number,x,y,z,code",
                      kFieldNames[field]));
    }
  }
  columnsFrom_ = "given";
}

std::vector<std::string> TextReader::columns() const {
  std::vector<std::string> taken(columnsNeeded_, "-");
  for (std::size_t field = 0; field < kFieldNames.size(); ++field) {
    if (columnOf_[field]) {
      taken[*columnOf_[field]] = kFieldNames[field];
    }
  }
  if (numbered_) {
    taken[0] = "number";
  }
  return taken;
}

bool TextReader::refill() {
  block_.erase(0, std::exchange(cursor_, 0));
  const std::size_t kept = block_.size();
  const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(kBlock, source_->size() - position_));
  block_.resize(kept + wanted);
  const std::size_t got =
      source_->read(position_, std::span(reinterpret_cast<std::uint8_t*>(block_.data()) + kept, wanted));
  block_.resize(kept + got);
  position_ += got;
  return got > 0;
}

// The next line without its end; it stays valid until the next call.
std::optional<std::string_view> TextReader::nextLine() {
  std::size_t end = block_.find('\n', cursor_);
  while (end == std::string::npos) {
    const std::size_t searched = block_.size() - cursor_;
    if (searched >= kBlock) {
      ++line_;
      fail(std::string_view(block_).substr(cursor_), "is longer than any line of points: is this a text file?");
    }
    if (!refill()) {
      break;
    }
    end = block_.find('\n', searched);
  }
  if (end == std::string::npos && cursor_ == block_.size()) {
    return std::nullopt;
  }
  ++line_;
  std::string_view line = std::string_view(block_).substr(cursor_, end == std::string::npos ? end : end - cursor_);
  cursor_ += line.size() + (end == std::string::npos ? 0 : 1);
  if (line.ends_with('\r')) {
    line.remove_suffix(1);
  }
  return line;
}

std::optional<std::string_view> TextReader::nextMeaningfulLine() {
  while (auto line = nextLine()) {
    if (line_ == 1 && line->starts_with(kByteOrderMark)) {
      line->remove_prefix(kByteOrderMark.size());
    }
    if (const auto text = trimmed(*line); !text.empty() && text.front() != '#') {
      return text;
    }
  }
  return std::nullopt;
}

std::size_t TextReader::split(std::string_view line) {
  columns_.clear();
  if (separator_ != ' ') {
    for (std::size_t from = 0; from <= line.size();) {
      const std::size_t end = endOfColumn(line, from, separator_);
      columns_.push_back(unquoted(trimmed(line.substr(from, end - from))));
      from = end + 1;
    }
    if (columns_.back().empty()) {
      columns_.pop_back();  // many programs end each line with a separator
    }
    return columns_.size();
  }
  for (std::size_t from = 0; from < line.size();) {
    const std::size_t end = std::min(line.find_first_of(kBlanks, from), line.size());
    columns_.push_back(line.substr(from, end - from));
    from = std::min(line.find_first_not_of(kBlanks, end), line.size());
  }
  return columns_.size();
}

std::size_t TextReader::readBatch(std::vector<CloudPoint>& points, std::size_t max) {
  points.clear();
  while (points.size() < max) {
    const auto line = nextMeaningfulLine();
    if (!line) {
      break;
    }
    points.push_back(pointOf(*line));
  }
  return points.size();
}

CloudPoint TextReader::pointOf(std::string_view line) {
  if (split(line) < columnsNeeded_) {
    fail(line, fmt::format("has {} columns and {} are needed", columns_.size(), columnsNeeded_));
  }
  CloudPoint point;
  point.x = coordinate(line, kX);
  point.y = coordinate(line, kY);
  point.z = coordinate(line, kZ);
  point.intensity = static_cast<std::uint16_t>(whole(line, kIntensity, std::numeric_limits<std::uint16_t>::max()));
  point.classification = static_cast<std::uint8_t>(whole(line, kClass, 255));
  point.r = static_cast<std::uint8_t>(whole(line, kRed, 255));
  point.g = static_cast<std::uint8_t>(whole(line, kGreen, 255));
  point.b = static_cast<std::uint8_t>(whole(line, kBlue, 255));
  return point;
}

double TextReader::number(std::string_view line, Field field) {
  const std::string_view text = columns_[*columnOf_[field]];
  const auto value = numberIn(text);
  if (!value) {
    fail(line, fmt::format("{} is no number for {}: numbers have a decimal point", quoted(text), kFieldNames[field]));
  }
  return *value;
}

double TextReader::coordinate(std::string_view line, Field field) {
  const double value = number(line, field);
  if (!(std::abs(value) <= kFarthestPlace)) {
    fail(line,
         fmt::format("{} leads to no place on Earth as {}", quoted(columns_[*columnOf_[field]]), kFieldNames[field]));
  }
  takeDecimals(columns_[*columnOf_[field]]);
  return value;
}

// A column that the file lacks is 0.
unsigned TextReader::whole(std::string_view line, Field field, unsigned most) {
  if (!has(field)) {
    return 0;
  }
  const std::string_view text = columns_[*columnOf_[field]];
  const double value = std::round(numberIn(text).value_or(-1));
  if (!(value >= 0 && value <= most)) {
    fail(line,
         fmt::format("{} is no number between 0 and {} for {}: if the column is something else, say what they all "
                     "are with --columns, such as number,x,y,z,code",
                     quoted(text), most, kFieldNames[field]));
  }
  return static_cast<unsigned>(value);
}

void TextReader::takeDecimals(std::string_view text) {
  const std::size_t point = text.find('.');
  const std::size_t mantissa = std::min(text.find_first_of("eE"), text.size());
  int decimals = point == std::string_view::npos ? 0 : static_cast<int>(mantissa - point - 1);
  if (mantissa < text.size()) {
    int exponent = 0;
    const std::size_t digits = mantissa + (text.substr(mantissa + 1).starts_with('+') ? 2U : 1U);
    std::from_chars(text.data() + digits, text.data() + text.size(), exponent);
    decimals -= std::clamp(exponent, -kLargestExponent, kLargestExponent);
  }
  decimals_ = std::max(decimals_, decimals);
}

void TextReader::fail(std::string_view line, std::string_view what) const {
  throw FileError(name(), fmt::format("line {}: {}: {}", withThousands(line_), quoted(line), what));
}

}  // namespace Meseta47::host
