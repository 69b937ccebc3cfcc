#pragma once

#include "platform/Exporta.h"

/// Root of the framework's classes.
class URDIMBRE_API CObject {
 public:
  virtual ~CObject();

 protected:
  CObject() = default;
  CObject(CObject const&) = default;
  CObject& operator=(CObject const&) = default;
};
