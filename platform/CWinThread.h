#pragma once

#include "platform/CCmdTarget.h"

/// Base of an application: the thread that its first and last steps run on.
class URDIMBRE_API CWinThread : public CCmdTarget {
 public:
  ~CWinThread() override;

  /// First step of a program or module; false keeps it from going on.
  virtual bool InitInstance();
  /// Last step; its answer is the program's exit code.
  virtual int ExitInstance();
};
