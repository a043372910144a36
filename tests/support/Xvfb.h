// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A private X server for tests that need a display: without other clients, and with a display number that it chooses.
#pragma once

#include <sys/types.h>

#include <string>

/// An X server that runs from the constructor to the destructor.
class PrivateXvfb {
public:
  /// Returns when the server accepts connections. `screen` is WIDTHxHEIGHTxDEPTH.
  explicit PrivateXvfb(const std::string &screen = "1280x1024x24");
  ~PrivateXvfb();
  PrivateXvfb(const PrivateXvfb &) = delete;
  PrivateXvfb &operator=(const PrivateXvfb &) = delete;

  /// The display's name (":7"); empty when no server could be started.
  const std::string &display() const { return display_; }

private:
  std::string display_;
  pid_t server_ = -1;
};
