// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The private display, and the removal of the display and of an unfinished file when the program is killed.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "support/pdf.h"
#include "tools/display.h"
#include "tools/failure.h"
#include "tools/output.h"

namespace {

namespace fs = std::filesystem;

std::string variable(const char *name) {
  const char *value = getenv(name);
  return value == nullptr ? "" : value;
}

// The socket of a display such as ":3".
fs::path socketOf(const std::string &display) { return "/tmp/.X11-unix/X" + display.substr(1); }

// Waits for all children and returns how many there were. Sockets do not identify servers: display numbers are reused.
int endedChildren() {
  int count = 0;
  while (waitpid(-1, nullptr, 0) > 0)
    ++count;
  return count;
}

struct PrivateDisplay : testing::Test {
  PrivateDisplay() { unsetenv("DISPLAY"); }
  ~PrivateDisplay() override { unsetenv("DISPLAY"); }
};

TEST_F(PrivateDisplay, ExistsWhileItIsNeeded) {
  {
    tools::Display display;
    display.await();
    EXPECT_TRUE(fs::exists(socketOf(variable("DISPLAY"))));
  }
  EXPECT_EQ(endedChildren(), 0) << "the server has been waited for";
}

TEST_F(PrivateDisplay, IsStartedAlsoIfTheVariableIsEmpty) {
  setenv("DISPLAY", "", 1);
  tools::Display display;
  display.await();
  EXPECT_EQ(variable("DISPLAY").substr(0, 1), ":");
}

TEST_F(PrivateDisplay, IsNotStartedIfThereIsADisplay) {
  setenv("DISPLAY", ":4711", 1);
  tools::Display display;
  display.await();
  EXPECT_EQ(variable("DISPLAY"), ":4711");
}

TEST_F(PrivateDisplay, NamesThePackageIfXvfbIsMissing) {
  const std::string path = variable("PATH");
  setenv("PATH", "/nowhere", 1);
  std::string line;
  try {
    tools::Display display;
  } catch (const tools::CommandFailure &failure) {
    EXPECT_EQ(failure.status, tools::exitHostFailure);
    line = failure.what();
  }
  setenv("PATH", path.c_str(), 1);
  EXPECT_EQ(line, "no DISPLAY is set, and there is no Xvfb to make one (package xvfb)");
}

struct Killed : PrivateDisplay, testing::WithParamInterface<int> {
  test::ScratchFolder folder;
};

// The child has a display and half a file. It writes the display's name and waits to be killed.
TEST_P(Killed, LeavesNeitherDisplayNorHalfAFile) {
  struct sigaction before = {};
  ASSERT_EQ(sigaction(GetParam(), nullptr, &before), 0);
  if (before.sa_handler == SIG_IGN) GTEST_SKIP() << "the tests were started with the signal ignored, as by nohup";
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  int pipeEnds[2];
  ASSERT_EQ(pipe(pipeEnds), 0);
  const pid_t child = fork();
  if (child == 0) {
    tools::Display display;
    display.await();
    const tools::OutputFile file(folder.path() / "page.png");
    const std::string name = variable("DISPLAY");
    if (write(pipeEnds[1], name.data(), name.size()) > 0)
      while (true)
        pause();
    _exit(1);
  }
  close(pipeEnds[1]);
  char name[32] = {};
  ASSERT_GT(read(pipeEnds[0], name, sizeof name - 1), 0);
  EXPECT_FALSE(fs::is_empty(folder.path()));
  kill(child, GetParam());
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == GetParam()) << "it dies of the signal itself";
  EXPECT_TRUE(fs::is_empty(folder.path()));
  EXPECT_EQ(endedChildren(), 1) << "the server, which is ours now";
  close(pipeEnds[0]);
}

INSTANTIATE_TEST_SUITE_P(By, Killed, testing::Values(SIGINT, SIGTERM, SIGHUP, SIGPIPE),
                         [](const auto &signal) { return std::string(sigabbrev_np(signal.param)); });

} // namespace
