#pragma once

#include <optional>

#include "classification/CDataBuscarPuntos.h"
#include "host/classify/CloudSearch.h"

namespace Meseta47::host {

/// Points that stand above the ground: buildings, vegetation.
class HighSearch : public CloudSearch {
 public:
  [[nodiscard]] char const* name() const override { return "high"; }
  [[nodiscard]] char const* purpose() const override {
    return "Points that rise steeply above their neighbours, and what lies within the outline around them: buildings, "
           "vegetation";
  }
  void addOptions(CLI::App& verb) override;
  void settle(ProfilePlace const* profile) override;
  [[nodiscard]] bool keep(ProfilePlace const& profile) const override;
  void requireSense(CloudUnits const& units) override;
  [[nodiscard]] unsigned char highestTarget() const override { return data_.Tipo1.GetTipo(); }
  [[nodiscard]] nlohmann::ordered_json parameters() const override;
  [[nodiscard]] std::uint64_t temporaryBytes(std::uint64_t points) const override;
  int run(CDibujo<int>& drawing, CDataTriangulacion const& filters, bool fillsHull, SearchOutcome& outcome) override;

 private:
  [[nodiscard]] bool singlePass() const { return data_.Iterar == 0; }

  std::optional<double> distance_, height_;
  std::optional<unsigned> to_;
  std::optional<bool> singlePass_;
  CDataBuscarPuntos data_;
};

}  // namespace Meseta47::host
