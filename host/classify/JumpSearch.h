#pragma once

#include "classification/CDataBuscarPuntos.h"
#include "host/classify/MeshSearch.h"

namespace Meseta47::host {

/// Points whose intensity jumps against their surroundings: paint, water.
class JumpSearch : public MeshSearch {
 public:
  JumpSearch();

  [[nodiscard]] char const* name() const override { return "jumps"; }
  [[nodiscard]] char const* purpose() const override {
    return "Points brighter or darker than their surroundings, and what lies within the outline around them: paint, "
           "signs, water";
  }
  void settle(ProfilePlace const* profile) override;
  void requireSeen(LoadedCloud const& cloud, std::string const& input) const override;

 protected:
  [[nodiscard]] bool drawsOutline() const override { return true; }
  int search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found, SearchOutcome& outcome) override;

 private:
  CDataBuscarPuntos data_;
  int difference_ = 0;
};

}  // namespace Meseta47::host
