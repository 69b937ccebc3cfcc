#pragma once

#include <stdexcept>

namespace Meseta47::host {

/// What ends the program. The texts are a line for each fault, nearly always one; they name the cause and the way out,
/// and carry no "urdimbre:" in front.
enum ExitCode : int { kDone = 0, kFailed = 1, kUsage = 2, kCancelled = 130 };

/// The work could not be done.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What was asked for makes no sense.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The person at the program asked it to stop.
class Cancelled : public std::runtime_error {
 public:
  Cancelled() : std::runtime_error("cancelled") {}
};

}  // namespace Meseta47::host
