#pragma once

#include <optional>

#include "platform/CMapaMensajes.h"
#include "platform/CObject.h"

/// Base of what receives messages and commands, by the message map of its class.
class URDIMBRE_API CCmdTarget : public CObject {
 public:
  ~CCmdTarget() override;

  [[nodiscard]] static CRuntimeClass const* GetThisClass();
  [[nodiscard]] CRuntimeClass const* GetRuntimeClass() const override;

  /// Calls what the maps of the object's class and its bases have for a message, the most derived first, and returns
  /// its answer; nothing when no entry fits.
  std::optional<std::intptr_t> Despacha(CMensaje const& m);

 protected:
  /// The map of this class, and of the object's: a class with a map of its own overrides the second.
  [[nodiscard]] static AFX_MSGMAP const* GetThisMessageMap();
  [[nodiscard]] virtual AFX_MSGMAP const* GetMessageMap() const;
};
