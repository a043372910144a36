// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The command line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "tools/commands.h"
#include "tools/exit.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

struct Result {
  int status;
  std::string out, err;
};

Result run(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "tavrel");
  std::vector<char *> argv(arguments.size());
  std::transform(arguments.begin(), arguments.end(), argv.begin(),
                 [](std::string &argument) { return argument.data(); });
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  Result result{};
  result.status = tools::runCommands(static_cast<int>(argv.size()), argv.data());
  result.err = testing::internal::GetCapturedStderr();
  result.out = testing::internal::GetCapturedStdout();
  return result;
}

TEST(CommandLine, HelpListsTheExitStatuses) {
  const Result result = run({"--help"});
  EXPECT_EQ(result.status, tools::exitDone);
  EXPECT_THAT(result.out, HasSubstr("\n  7  an output cannot be written\n"));
}

TEST(CommandLine, HelpOfRenderShowsItsDefaults) {
  const Result result = run({"render", "--help"});
  EXPECT_EQ(result.status, tools::exitDone);
  for (const char *text : {"--out TEXT=out", "=100", "{all,hits}=hits", "{yes,no}=no"})
    EXPECT_THAT(result.out, HasSubstr(text));
}

TEST(CommandLine, VersionIsThatOfTheProject) {
  const Result result = run({"--version"});
  EXPECT_EQ(result.status, tools::exitDone);
  EXPECT_THAT(result.out, testing::MatchesRegex("tavrel [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

const std::vector<std::string> invalidArguments[] = {
    {},
    {"paint"},
    {"render"},
    {"render", "a.pdf"},
    {"render", "a.pdf", "h.xml", "--dpi", "many"},
    {"render", "a.pdf", "h.xml", "--dpi", "0"},
    {"render", "a.pdf", "h.xml", "--pages", "some"},
    {"render", "a.pdf", "h.xml", "--answer", "perhaps"},
    {"render", "a.pdf", "h.xml", "more"},
};

TEST(CommandLine, InvalidArgumentsAreReportedInOneLineWithTheirStatus) {
  for (const auto &arguments : invalidArguments) {
    const Result result = run(arguments);
    EXPECT_EQ(result.status, tools::exitUsage);
    EXPECT_THAT(result.err, StartsWith("tavrel: "));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_EQ(result.out, "");
  }
}

} // namespace
