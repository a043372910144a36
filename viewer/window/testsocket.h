// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Reports a running viewer's state to a test: after every change a line of JSON with the state of the model and the
// positions of everything that can be pressed, sent to a socket on which the test listens. It takes no input: tests
// press real buttons and keys.
#pragma once

#include <X11/Intrinsic.h>

#include <filesystem>
#include <string>

namespace viewer {

class MainWindow;

class TestSocket {
public:
  /// Throws host::HostError if nobody listens.
  TestSocket(MainWindow &window, const std::filesystem::path &path);
  ~TestSocket();
  TestSocket(const TestSocket &) = delete;
  TestSocket &operator=(const TestSocket &) = delete;

  /// Sends the state, if it has changed.
  void notify();

private:
  void send();

  MainWindow &window_;
  int socket_;
  std::string last_;      ///< the state that was sent last, or is to be
  std::string unsent_;    ///< lines that the socket has not taken yet, from within the first
  XtInputId waiting_ = 0; ///< for the socket to take more
};

} // namespace viewer
