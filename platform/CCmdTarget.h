#pragma once

#include "platform/CObject.h"

/// Base of what receives commands: a link in the chain of classes that applications inherit.
class URDIMBRE_API CCmdTarget : public CObject {
 public:
  ~CCmdTarget() override;
};
