// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Starts and ends a private X server. The render command and the tests of the window system own one each.
#include "tools/display.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tools/cleanup.h"
#include "tools/failure.h"

namespace tools {
namespace {

constexpr int timeout = 20000; // milliseconds; a server on a busy machine takes one second

[[noreturn]] void fail(const std::string &reason) { throw CommandFailure(exitHostFailure, reason); }

// Runs in the child and returns only if the server cannot be run. The server's output is discarded: it has started when
// it writes its display number.
void becomeServer(int number, pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != parent) _exit(EXIT_FAILURE); // the parent has ended already
  setsid();                                     // the terminal's interrupt is the parent's to handle
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    dup2(nowhere, stream);
  fcntl(number, F_SETFD, 0);
  char text[16];
  char *end = text + sizeof text;
  *--end = '\0';
  for (int rest = number; rest > 0 || *end == '\0'; rest /= 10)
    *--end = static_cast<char>('0' + rest % 10);
  // Nothing here draws with GLX, and loading it takes ten times as long as all the rest.
  execlp("Xvfb", "Xvfb", "-displayfd", end, "-nolisten", "tcp", "-noreset", "-extension", "GLX", "-screen", "0",
         "1280x1024x24", static_cast<char *>(nullptr));
}

} // namespace

Display::Display() {
  if (const char *display = std::getenv("DISPLAY"); display != nullptr && *display != '\0') return;
  int number[2], failure[2];
  if (pipe2(number, O_CLOEXEC) != 0) fail(std::string("private display: ") + std::strerror(errno));
  if (pipe2(failure, O_CLOEXEC) != 0) {
    close(number[0]);
    close(number[1]);
    fail(std::string("private display: ") + std::strerror(errno));
  }
  const pid_t parent = getpid();
  server_ = fork();
  if (server_ == 0) {
    becomeServer(number[1], parent);
    const int reason = errno;
    _exit(write(failure[1], &reason, sizeof reason) == sizeof reason ? EXIT_FAILURE : EXIT_FAILURE + 1);
  }
  int reason = server_ < 0 ? errno : 0;
  close(number[1]);
  close(failure[1]);
  number_ = number[0];
  if (server_ > 0) {
    endWhenKilled(server_);
    // The pipe closes when the server runs; otherwise the errno of execlp is read.
    while (read(failure[0], &reason, sizeof reason) < 0 && errno == EINTR) {
    }
  }
  close(failure[0]);
  if (reason == 0) return;
  end();
  if (reason == ENOENT) fail("no DISPLAY is set, and there is no Xvfb to make one (package xvfb)");
  fail(std::string("private display: ") + std::strerror(reason));
}

Display::~Display() { end(); }

void Display::end() {
  if (number_ >= 0) close(number_);
  if (server_ > 0) {
    kill(server_, SIGTERM);
    while (waitpid(server_, nullptr, 0) < 0 && errno == EINTR) {
    }
    endWhenKilled(0);
  }
}

void Display::await() {
  if (number_ < 0) return;
  std::string text = ":";
  while (text.back() != '\n') {
    pollfd ready{number_, POLLIN, 0};
    char byte = 0;
    const int events = poll(&ready, 1, timeout);
    if (events < 0 && errno == EINTR) continue;
    if (events <= 0 || read(number_, &byte, 1) != 1) fail("private display: Xvfb did not start");
    text += byte;
  }
  text.pop_back();
  setenv("DISPLAY", text.c_str(), 1);
  close(number_);
  number_ = -1;
}

} // namespace tools
