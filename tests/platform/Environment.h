#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "SystemNames.h"

/// A variable of the environment that has its old value back at the end of the block.
class Environment {
 public:
  Environment(char const* name, std::optional<std::string> const& value) : name_(name) {
    if (char const* const old = std::getenv(name)) {
      old_ = old;
    }
    Set(value);
  }
  Environment(Environment const&) = delete;
  Environment& operator=(Environment const&) = delete;
  ~Environment() { Set(old_); }

 private:
  void Set(std::optional<std::string> const& value) { SetVariable(name_, value); }

  char const* name_;
  std::optional<std::string> old_;
};
