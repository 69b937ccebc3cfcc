#include "host/vector/TextVectorWriter.h"

#include <fmt/format.h>
#include <iterator>

namespace Meseta47::host {

void TextVectorWriter::putNumber(double value) {
  const std::size_t begin = text_.size();
  fmt::format_to(std::back_inserter(text_), "{:.{}f}", value, decimals_);
  if (decimals_ == 0) text_ += ".0";
  std::size_t end = text_.size();
  while (text_[end - 1] == '0' && text_[end - 2] != '.') --end;
  text_.resize(end);
  if (std::string_view(text_).substr(begin) == "-0.0") text_.erase(begin, 1);
}

void TextVectorWriter::flush() {
  constexpr std::size_t kBlock = 65536;
  if (text_.size() < kBlock) return;
  file_.write(text_);
  text_.clear();
}

void TextVectorWriter::finish() {
  text_ += tail();
  file_.write(text_);
  file_.close();
}

}  // namespace Meseta47::host
