#include "planar/CSetLados2D.h"

#include <algorithm>

#include "platform/CStdioFile.h"
#include "platform/CString.h"

namespace Meseta47 {

void CSetLados2D::BorraDuplicados() {
  std::sort(lados.begin(), lados.end());
  std::size_t quedan = 0;
  for (std::size_t i = 0; i < lados.size();) {
    if (i + 1 < lados.size() && lados[i] == lados[i + 1]) {
      i += 2;
    } else {
      lados[quedan++] = lados[i++];
    }
  }
  lados.resize(quedan);
}

bool CSetLados2D::Comprueba(CStdioFile* fichero) {
  std::sort(lados.begin(), lados.end());
  bool bien = true;
  for (std::size_t i = 0; i < lados.size();) {
    std::size_t fin = i + 1;
    while (fin < lados.size() && lados[fin] == lados[i]) ++fin;
    const std::size_t siguientes = fin - i - 1;
    if (siguientes > 2) {
      bien = false;
      if (fichero != nullptr) {
        CString linea;
        linea.Format(L"error lado [%d] %d %d\n", static_cast<int>(siguientes + 1), lados[fin - 1].N1(),
                     lados[fin - 1].N2());
        fichero->WriteString(linea);
      }
    }
    i = fin;
  }
  return bien;
}

}  // namespace Meseta47
