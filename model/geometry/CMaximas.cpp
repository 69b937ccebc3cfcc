#include "model/geometry/CMaximas.h"

namespace Meseta47 {

template class CMaximas<int>;
template class CMaximas<double>;

}  // namespace Meseta47
