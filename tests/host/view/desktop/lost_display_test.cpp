// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What becomes of a command whose display is lost while its threads are at work.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "host/view/toplevel.h"
#include "support/pdf.h"
#include "tools/output.h"

// Last: X has names and macros that the others use for themselves.
#include <X11/Intrinsic.h>

namespace {

// What a thread of the command works on. The destructors of such objects must not run beside it.
struct Shared {
  ~Shared() {
    if (inUse) std::fputs("destroyed in use\n", stderr);
  }
  std::atomic<bool> inUse = false;
} shared;

[[noreturn]] void loseTheDisplay(const std::filesystem::path &folder) {
  shared.inUse = true;
  std::atexit([] { std::fputs("an exit handler ran\n", stderr); });
  const host::TopLevel top;
  const tools::OutputFile unfinished(folder / "page.png");
  std::thread worker([] {
    while (true)
      pause();
  });
  std::fputs("page 1 of 2\n", stdout);
  ::Display *display = XtDisplay(top.widget());
  shutdown(ConnectionNumber(display), SHUT_RDWR);
  XSync(display, False);
  _exit(EXIT_SUCCESS);
}

TEST(LostDisplay, EndsTheCommandWithoutDestructorsBesideItsThreads) {
  const test::ScratchFolder folder;
  int lines[2];
  ASSERT_EQ(pipe(lines), 0);
  const pid_t child = fork();
  if (child == 0) {
    dup2(lines[1], STDOUT_FILENO);
    dup2(lines[1], STDERR_FILENO);
    close(lines[0]);
    loseTheDisplay(folder.path());
  }
  close(lines[1]);
  std::string printed;
  for (char byte = 0; read(lines[0], &byte, 1) == 1;)
    printed += byte;
  close(lines[0]);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == EXIT_FAILURE);
  EXPECT_EQ(printed, "tavrel: lost the connection to display " + std::string(getenv("DISPLAY")) + "\npage 1 of 2\n")
      << "lines that were written are not lost, and nothing else is done";
  EXPECT_TRUE(std::filesystem::is_empty(folder.path())) << "the unfinished file is removed";
}

} // namespace
