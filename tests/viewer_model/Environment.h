// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A variable of the environment that a test changes.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace test {

/// Sets or, without a value, removes a variable, until the object is destroyed.
class Variable {
public:
  Variable(const char *name, const std::optional<std::string> &value) : name_(name) {
    if (const char *before = std::getenv(name)) before_ = before;
    set(value);
  }
  ~Variable() { set(before_); }
  Variable(const Variable &) = delete;
  Variable &operator=(const Variable &) = delete;

  void set(const std::optional<std::string> &value) {
    if (value)
      setenv(name_, value->c_str(), 1);
    else
      unsetenv(name_);
  }

private:
  const char *name_;
  std::optional<std::string> before_;
};

} // namespace test
