#pragma once

#include "platform/CRuntimeClass.h"
#include "platform/Exporta.h"

/// Root of the framework's classes.
class URDIMBRE_API CObject {
 public:
  virtual ~CObject();

  /// Information on this class, and on the class of the object: a class that gives none counts as its base. No cost.
  [[nodiscard]] static CRuntimeClass const* GetThisClass();
  [[nodiscard]] virtual CRuntimeClass const* GetRuntimeClass() const;
  [[nodiscard]] bool IsKindOf(CRuntimeClass const* clase) const { return GetRuntimeClass()->IsDerivedFrom(clase); }

 protected:
  CObject() = default;
  CObject(CObject const&) = default;
  CObject& operator=(CObject const&) = default;
};
