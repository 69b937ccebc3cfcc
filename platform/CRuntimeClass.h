#pragma once

#include "platform/Exporta.h"

/// What is known of a class while the program runs: its name and the class it derives from. One constant object a
/// class, which the class's GetThisClass() gives.
struct URDIMBRE_API CRuntimeClass {
  char const* m_lpszClassName;
  CRuntimeClass const* m_pBaseClass;  ///< null for CObject

  /// Whether this is the class `otra`, or derives from it.
  [[nodiscard]] bool IsDerivedFrom(CRuntimeClass const* otra) const;
};
