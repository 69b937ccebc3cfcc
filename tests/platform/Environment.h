#pragma once

#include <cstdlib>
#include <optional>
#include <string>

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
  void Set(std::optional<std::string> const& value) {
    if (value) {
      ::setenv(name_, value->c_str(), 1);
    } else {
      ::unsetenv(name_);
    }
  }

  char const* name_;
  std::optional<std::string> old_;
};
