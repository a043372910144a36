// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Starts Xvfb and waits for the display number that it writes: the server picks a free one itself, so that tests run
// side by side, and writes it once it listens.
#include "tests/support/Xvfb.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// The bytes up to a line feed or the end.
std::string lineFrom(int descriptor) {
  std::string line;
  char c = 0;
  while (read(descriptor, &c, 1) == 1 && c != '\n')
    line += c;
  return line;
}

/// Runs in the child. Calls only functions that are safe between fork and exec.
[[noreturn]] void becomeServer(const char *displayDescriptor, const char *screen) {
  prctl(PR_SET_PDEATHSIG, SIGTERM); // a test that crashes leaves no server running
  const int quiet = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(quiet, STDOUT_FILENO);
  dup2(quiet, STDERR_FILENO);
  // Without -noreset the server resets when its last client disconnects, and refuses connections meanwhile.
  execlp("Xvfb", "Xvfb", "-displayfd", displayDescriptor, "-screen", "0", screen, "-nolisten", "tcp", "-noreset",
         nullptr);
  _exit(127);
}

} // namespace

PrivateXvfb::PrivateXvfb(const std::string &screen) {
  int ends[2];
  if (pipe(ends) != 0) return;
  fcntl(ends[0], F_SETFD, FD_CLOEXEC);
  const std::string descriptor = std::to_string(ends[1]);
  server_ = fork();
  if (server_ == 0) becomeServer(descriptor.c_str(), screen.c_str());
  close(ends[1]);
  const std::string number = lineFrom(ends[0]); // ends without a number when the server does not start
  close(ends[0]);
  if (!number.empty()) display_ = ":" + number;
}

PrivateXvfb::~PrivateXvfb() {
  if (server_ <= 0) return;
  kill(server_, SIGTERM);
  waitpid(server_, nullptr, 0);
}
