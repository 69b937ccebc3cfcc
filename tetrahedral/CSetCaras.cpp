#include "tetrahedral/CSetCaras.h"

#include <algorithm>

namespace Meseta47 {

void CSetCaras::BorraDuplicadas() {
  std::sort(begin(), end());
  CSetCaras unicas;
  if (size() > 1) {
    for (std::size_t i = 0; i + 1 < size();) {
      if ((*this)[i] == (*this)[i + 1]) {
        i += 2;
      } else {
        unicas.push_back((*this)[i]);
        ++i;
      }
    }
    if (!((*this)[size() - 2] == back())) unicas.push_back(back());
  }
  swap(unicas);
}

}  // namespace Meseta47
