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

struct Mistake {
  std::vector<std::string> arguments;
  const char *line;
};

const Mistake mistakes[] = {
    {{"paint", "a.pdf"}, "\"paint\" is neither a command nor a document (see tavrel --help)"},
    {{"render", "a.pdf", "h.xml", "more", "most"}, "\"more\" is one argument too many (see tavrel render --help)"},
    {{"hits", "--passwort", "x"}, "there is no option --passwort (see tavrel hits --help)"},
    {{"--dip"}, "there is no option --dip (see tavrel --help)"},
    {{"render", "a.pdf", "h.xml", "--dpi"}, "--dpi has no value (see tavrel render --help)"},
    {{"render", "a.pdf", "h.xml", "--dpi", "9", "--dpi", "10"},
     "--dpi is given more than once (see tavrel render --help)"},
    {{"render", "a.pdf", "h.xml", "--pages", "some"},
     "--pages: \"some\" is not all or hits (see tavrel render --help)"},
    {{"hits", "a.pdf", "x", "--mode", "y"}, "--mode: \"y\" is not active (see tavrel hits --help)"},
    {{"hits", "a.pdf", "x", "--password", "y", "--password-file", "/proc/version"},
     "--password cannot be given together with --password-file (see tavrel hits --help)"},
    {{"render", "a.pdf"}, "HITS is required (see tavrel render --help)"},
};

TEST(CommandLine, AMistakeIsNamedInTheWordsOfTheCommand) {
  for (const Mistake &mistake : mistakes)
    EXPECT_EQ(run(mistake.arguments).err, std::string("tavrel: ") + mistake.line + "\n");
}

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
