// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A system that confines nothing.
#include <gtest/gtest.h>
#include <linux/landlock.h>
#include <seccomp.h>
#include <sys/prctl.h>

#include <cerrno>
#include <memory>
#include <thread>

#include "host/document/process.h"
#include "host/document/processes.h"
#include "support/pdf.h"

namespace {

using namespace host;

// Has the thread's system calls that confine fail, and those of the processes that it starts.
bool denyConfinement() {
  const std::unique_ptr<void, decltype(&seccomp_release)> filter(seccomp_init(SCMP_ACT_ALLOW), seccomp_release);
  const uint32_t missing = SCMP_ACT_ERRNO(ENOSYS);
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         seccomp_rule_add(filter.get(), missing, SCMP_SYS(landlock_create_ruleset), 0) == 0 &&
         seccomp_rule_add(filter.get(), missing, SCMP_SYS(seccomp), 0) == 0 &&
         seccomp_rule_add(filter.get(), missing, SCMP_SYS(prctl), 1, scmp_arg_cmp{0, SCMP_CMP_EQ, PR_SET_SECCOMP, 0}) ==
             0 &&
         seccomp_load(filter.get()) == 0;
}

TEST(Unconfined, ThatIsSaidOnceAndDocumentsAreRead) {
  const test::ScratchFolder folder;
  const auto file = folder.pdf({{.texts = {{.x = 50, .y = 500, .text = "words"}}}});
  testing::internal::CaptureStderr();
  std::thread([&] {
    ASSERT_TRUE(denyConfinement());
    Processes processes({documentProgram()});
    for (int times = 0; times < 2; ++times) {
      const auto service = std::make_shared<Service>(file, processes.backend(file));
      int32_t pages = 0;
      const Ticket ticket = service->ask(OpenRequest{file, ""}, Urgency::awaited, [&](Answer &answer) {
        if (const auto *opened = std::get_if<Opened>(&answer.value)) pages = opened->pageCount;
      });
      EXPECT_TRUE(service->await(ticket, Time::max()));
      EXPECT_EQ(pages, 1);
    }
  }).join();
  EXPECT_EQ(
      testing::internal::GetCapturedStderr(),
      "tavrel: nothing confines the processes that read documents: this system has neither Landlock nor seccomp\n");
}

} // namespace
