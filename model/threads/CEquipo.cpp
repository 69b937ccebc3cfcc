#include "model/threads/CEquipo.h"

#include <algorithm>

#include "platform/Manejadores.h"

namespace Meseta47 {

bool CEquipo::Estan() const {
  return std::none_of(manejadores.begin(), manejadores.end(), [](HANDLE m) { return m == nullptr; });
}

bool CEquipo::EsperaTodos(unsigned long milisegundos) {
  return std::all_of(manejadores.begin(), manejadores.end(),
                     [milisegundos](HANDLE m) { return WaitForSingleObject(m, milisegundos) == WAIT_OBJECT_0; });
}

}  // namespace Meseta47
