#include "platform/CCmdTarget.h"

bool CRuntimeClass::IsDerivedFrom(CRuntimeClass const* otra) const {
  CRuntimeClass const* clase = this;
  while (clase != nullptr && clase != otra) {
    clase = clase->m_pBaseClass;
  }
  return clase != nullptr;
}

CObject::~CObject() = default;

CRuntimeClass const* CObject::GetThisClass() {
  static constexpr CRuntimeClass clase{"CObject", nullptr};
  return &clase;
}

CRuntimeClass const* CObject::GetRuntimeClass() const { return GetThisClass(); }

CCmdTarget::~CCmdTarget() = default;

CRuntimeClass const* CCmdTarget::GetThisClass() {
  static const CRuntimeClass clase{"CCmdTarget", CObject::GetThisClass()};
  return &clase;
}

CRuntimeClass const* CCmdTarget::GetRuntimeClass() const { return GetThisClass(); }

AFX_MSGMAP const* CCmdTarget::GetThisMessageMap() {
  static constexpr AFX_MSGMAP mapa{nullptr, {}};
  return &mapa;
}

AFX_MSGMAP const* CCmdTarget::GetMessageMap() const { return GetThisMessageMap(); }

std::optional<std::intptr_t> CCmdTarget::Despacha(CMensaje const& m) {
  constexpr std::uintptr_t kNumeroOrden = 0xFFFF;  // above it stands how the control was used
  for (AFX_MSGMAP const* mapa = GetMessageMap(); mapa != nullptr; mapa = mapa->pBase) {
    for (AFX_MSGMAP_ENTRY const& entrada : mapa->lpEntries) {
      if (entrada.nMessage == m.numero && (m.numero != mensaje::kOrden || entrada.nID == (m.primero & kNumeroOrden))) {
        return entrada.pfn(*this, m);
      }
    }
  }
  return std::nullopt;
}
