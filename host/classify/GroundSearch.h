#pragma once

#include "classification/CDataSuelo.h"
#include "host/classify/CloudSearch.h"

namespace Meseta47::host {

/// The bare earth of an unclassified airborne cloud.
class GroundSearch : public CloudSearch {
 public:
  GroundSearch();

  [[nodiscard]] char const* name() const override { return "ground"; }
  [[nodiscard]] char const* purpose() const override {
    return "The bare earth of an airborne cloud, without buildings, vegetation, bridges and low noise";
  }
  void settle(ProfilePlace const* profile) override;
  void requireSense(CloudUnits const& units) override;
  [[nodiscard]] nlohmann::ordered_json parameters() const override;
  [[nodiscard]] bool needsUnits() const override { return true; }
  [[nodiscard]] bool links() const override { return false; }
  [[nodiscard]] std::uint64_t temporaryBytes(std::uint64_t points) const override;
  int run(CDibujo<int>& drawing, CDataTriangulacion const& filters, bool fillsHull, SearchOutcome& outcome) override;

 private:
  CDataSuelo data_;
  CloudUnits units_;
};

}  // namespace Meseta47::host
