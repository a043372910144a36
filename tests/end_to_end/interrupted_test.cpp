// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A command that is killed while other processes read its document: none of them goes on.
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <ctime>
#include <fstream>
#include <iterator>

#include "support/pdf.h"
#include "viewer_model/TestDocuments.h"

namespace {

namespace fs = std::filesystem;

constexpr int longestWait = 60'000; // milliseconds

// Whether a process has used so much of a processor that it cannot do anything else than read the page.
bool readsThePage(pid_t process) {
  constexpr long longestStart = 500'000'000; // nanoseconds
  clockid_t clock{};
  timespec used{};
  return clock_getcpuclockid(process, &clock) == 0 && clock_gettime(clock, &used) == 0 &&
         (used.tv_sec > 0 || used.tv_nsec > longestStart);
}

// The process of a command that reads the page of its document, once there is one; -1 if there is none.
pid_t reader(pid_t command) {
  const fs::path tasks = "/proc/" + std::to_string(command) + "/task/" + std::to_string(command);
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(longestWait);
  while (std::chrono::steady_clock::now() < end) {
    std::ifstream list(tasks / "children");
    for (auto child = std::istream_iterator<pid_t>(list); child != std::istream_iterator<pid_t>(); ++child)
      if (test::bytesOf("/proc/" + std::to_string(*child) + "/comm") == "tavrel-document\n" && readsThePage(*child))
        return *child;
    poll(nullptr, 0, 1);
  }
  return -1;
}

struct Killed {
  const char *name, *command;
  int signal;
};

void PrintTo(const Killed &killed, std::ostream *out) { *out << killed.name; }

class Interrupted : public testing::TestWithParam<Killed> {
protected:
  pid_t start() {
    const std::string document = folder.write("test.pdf", test::endlesslyRead());
    const std::string hits = folder.write("hits.xml", "<XML><Body><highlights><loc pg=0 pos=0 len=1></highlights>"
                                                      "</Body></XML>");
    const bool isHits = std::string(GetParam().command) == "hits";
    std::vector<std::string> words = {TAVREL,
                                      GetParam().command,
                                      document,
                                      isHits ? "word" : hits,
                                      isHits ? "--output" : "--out",
                                      folder.path() / "out"};
    std::vector<char *> arguments;
    for (std::string &word : words)
      arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t command = -1;
    EXPECT_EQ(posix_spawn(&command, TAVREL, nullptr, nullptr, arguments.data(), environ), 0);
    return command;
  }

  test::ScratchFolder folder;
};

TEST_P(Interrupted, LeavesNoProcess) {
  const pid_t command = start(), child = reader(command);
  ASSERT_GT(child, 0);
  const auto handle = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
  ASSERT_GE(handle, 0);
  EXPECT_EQ(kill(command, GetParam().signal), 0);
  int status = 0;
  ASSERT_EQ(waitpid(command, &status, 0), command);
  EXPECT_TRUE(WIFSIGNALED(status)) << status;
  EXPECT_EQ(WTERMSIG(status), GetParam().signal);
  pollfd ended{handle, POLLIN, 0};
  const bool hasEnded = poll(&ended, 1, longestWait) == 1;
  EXPECT_TRUE(hasEnded) << "the process that reads the document is still there";
  if (!hasEnded) kill(child, SIGKILL);
  close(handle);
}

INSTANTIATE_TEST_SUITE_P(By, Interrupted,
                         testing::Values(Killed{"KeyInHits", "hits", SIGINT}, Killed{"KeyInRender", "render", SIGINT},
                                         Killed{"TermInHits", "hits", SIGTERM},
                                         Killed{"TermInRender", "render", SIGTERM},
                                         Killed{"KillInHits", "hits", SIGKILL}),
                         [](const auto &killed) { return killed.param.name; });

} // namespace
