#include "model/geometry/CMaximas.h"

namespace Meseta47 {

template class URDIMBRE_API_INSTANCIA CMaximas<int>;
template class URDIMBRE_API_INSTANCIA CMaximas<double>;

}  // namespace Meseta47
