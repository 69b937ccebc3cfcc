#pragma once

#include <string>
#include <string_view>

#include "host/OutputFile.h"
#include "host/vector/VectorWriter.h"

namespace Meseta47::host {

/// What the formats that are one file of text share: they are the program's own, and the same bytes in every build.
class TextVectorWriter : public VectorWriter {
 public:
  void finish() override;
  [[nodiscard]] bool makes(std::string const&) const override { return false; }  // none but the file itself
  void commit() override { file_.commit(); }

 protected:
  TextVectorWriter(VectorTarget const& target, int decimals)
      : decimals_(decimals > 0 ? decimals : 0), file_(target.name) {}

  void put(std::string_view text) { text_ += text; }
  /// A number with the layer's decimals, less the zeros at its end but for one behind the point: 12.5, 600.0.
  void putNumber(double value);
  /// To be called between geometries: hands on what has gathered.
  void flush();

 private:
  /// What stands behind the last geometry.
  [[nodiscard]] virtual std::string_view tail() const = 0;

  int decimals_;
  OutputFile file_;
  std::string text_;
};

}  // namespace Meseta47::host
