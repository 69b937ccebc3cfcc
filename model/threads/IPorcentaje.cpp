#include "model/threads/IPorcentaje.h"

#include "platform/CWinApp.h"

namespace Meseta47 {

IPorcentaje* BuscaPorcentaje() { return dynamic_cast<IPorcentaje*>(AfxGetModuleState()->m_pCurrentWinApp); }

}  // namespace Meseta47
