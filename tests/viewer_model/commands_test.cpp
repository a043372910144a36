// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Commands, with a window that notes what it is asked for.
#include <gmock/gmock.h>

#include <set>

#include "Sessions.h"
#include "viewer/model/commands.h"

namespace viewer {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct NotingFrontend : Frontend {
  std::vector<std::string> asked;
  void askForFile() override { asked.emplace_back("file"); }
  void askForText() override { asked.emplace_back("text"); }
  void askForPage() override { asked.emplace_back("page"); }
  void showKeys() override { asked.emplace_back("keys"); }
  void toggleSidePanel() override { asked.emplace_back("panel"); }
  void showPlugins() override { asked.emplace_back("plug-ins"); }
  void showAbout() override { asked.emplace_back("about"); }
  void leaveFields() override { asked.emplace_back("leave"); }
  void quit() override { asked.emplace_back("quit"); }
  int pixels(double length) const override { return static_cast<int>(2 * length); }
};

struct CommandsTest : test::Sessions {
  void run(const char *name, const std::string &argument = {}) {
    const Command *command = findCommand(name);
    ASSERT_NE(command, nullptr) << name;
    viewer::run(*command, session().model(), frontend, argument);
  }
  int32_t page() { return session().documents.page(); }
  NotingFrontend frontend;
};

TEST_F(CommandsTest, HaveNamesOfTheirOwnAndSentences) {
  std::set<std::string> names;
  for (const Command &command : commands()) {
    EXPECT_TRUE(names.insert(command.name).second) << command.name;
    EXPECT_STRNE(command.sentence, "") << command.name;
    EXPECT_EQ(findCommand(command.name), &command);
  }
  EXPECT_EQ(findCommand("Nonesuch"), nullptr);
  EXPECT_EQ(findCommand(""), nullptr);
}

TEST_F(CommandsTest, AskForWhatTheyNeed) {
  openPages(test::numberedPages(3));
  for (const char *name :
       {"Open", "FindDialog", "FindAgainDialog", "GoToPage", "Keys", "AboutPlugIns", "About", "SidePanel", "Quit"})
    run(name);
  EXPECT_THAT(frontend.asked,
              ElementsAre("file", "text", "text", "page", "keys", "plug-ins", "about", "panel", "quit"));
}

TEST_F(CommandsTest, AnAddressThatCannotBeOpenedIsReported) {
  testing::internal::CaptureStderr();
  run("Open", "file://elsewhere/paper.pdf");
  EXPECT_EQ(session().status.message(), "file://elsewhere/paper.pdf: is on another machine, elsewhere");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tavrel: file://elsewhere/paper.pdf: is on another machine, elsewhere\n");
}

TEST_F(CommandsTest, AskForNothingThatIsGiven) {
  run("Open", write("paper.pdf", test::numberedPages(3)).string());
  ASSERT_TRUE(until([&] { return session().documents.front() != nullptr; }));
  run("GoToPage", "2");
  EXPECT_EQ(page(), 1);
  run("FindDialog", "page 3");
  EXPECT_TRUE(until([&] { return page() == 2; }));
  EXPECT_THAT(frontend.asked, IsEmpty());
}

TEST_F(CommandsTest, WithAnArgumentThatTheyDoNotTakeAreReportedAndNotRun) {
  openPages(test::numberedPages(3));
  run("NextPage", "2");
  EXPECT_EQ(page(), 0);
  EXPECT_EQ(session().status.message(), "NextPage takes no argument");
}

TEST_F(CommandsTest, AreNotRunWhereTheyAreImpossible) {
  for (const Command &command : commands())
    if (!isPossible(command, session().model())) run(command.name);
  EXPECT_THAT(frontend.asked, IsEmpty());
  EXPECT_FALSE(isPossible(*findCommand("NextPage"), session().model()));
  openPages(test::numberedPages(2));
  EXPECT_TRUE(isPossible(*findCommand("NextPage"), session().model()));
  run("NextPage");
  EXPECT_FALSE(isPossible(*findCommand("NextPage"), session().model()));
}

TEST_F(CommandsTest, NoteThatTheWindowMayHaveToChange) {
  openPages(test::numberedPages(2));
  session().changes.take();
  run("NextPage");
  EXPECT_EQ(session().changes.take(), allParts);
}

TEST_F(CommandsTest, TurnPagesAndZoom) {
  openPages(test::numberedPages(4));
  run("LastPage");
  EXPECT_EQ(page(), 3);
  run("PreviousPage");
  EXPECT_EQ(page(), 2);
  run("FirstPage");
  EXPECT_EQ(page(), 0);
  run("ActualSize");
  EXPECT_DOUBLE_EQ(session().moving.zoom(), 1);
  run("ZoomIn");
  EXPECT_DOUBLE_EQ(session().moving.zoom(), 1.1);
  run("ZoomOut");
  EXPECT_DOUBLE_EQ(session().moving.zoom(), 1);
  run("FitPage");
  EXPECT_EQ(session().moving.fit(), viewer::Fit::page);
  run("FitWidth");
  EXPECT_EQ(session().moving.fit(), viewer::Fit::width);
}

TEST_F(CommandsTest, ScrollByLengthsOfTheScreen) {
  openPages(test::numberedPages(2));
  run("LineDown");
  EXPECT_EQ(session().documents.window()->scrollY(), 96);
  run("LineUp");
  EXPECT_EQ(session().documents.window()->scrollY(), 0);
  run("WheelDown");
  EXPECT_EQ(session().documents.window()->scrollY(), 180);
}

TEST_F(CommandsTest, SidewaysTurnThePageWhereNothingCanBeScrolled) {
  openPages(test::numberedPages(2));
  run("Right");
  EXPECT_EQ(page(), 1);
  run("Left");
  EXPECT_EQ(page(), 0);
  run("ActualSize"); // a page of 400 points is wider than the window of 400 pixels
  run("Right");
  EXPECT_EQ(page(), 0);
  EXPECT_EQ(session().documents.window()->scrollX(), 96);
}

TEST_F(CommandsTest, AnEscapeEndsTheSearchAndLeavesFields) {
  openPages(test::numberedPages(2));
  session().finding.find({"page", {}}, false);
  run("Escape");
  EXPECT_FALSE(session().finding.searching());
  EXPECT_THAT(frontend.asked, ElementsAre("leave"));
}

TEST_F(CommandsTest, ATypedPageIsClampedOrReported) {
  openPages(test::numberedPages(3));
  goToTypedPage(session().model(), "99999999999999999999");
  EXPECT_EQ(page(), 2);
  EXPECT_EQ(session().status.message(), "There are only 3 pages");
  goToTypedPage(session().model(), "-4");
  EXPECT_EQ(page(), 0);
  EXPECT_EQ(session().status.message(), "The first page is page 1");
  goToTypedPage(session().model(), "3");
  EXPECT_EQ(page(), 2);
  EXPECT_EQ(session().status.message(), "");
  goToTypedPage(session().model(), "1");
  for (const char *text : {"", "two", "2x", "2 "}) {
    goToTypedPage(session().model(), text);
    EXPECT_EQ(session().status.message(), std::string("\u201C") + text + "\u201D is no page number");
    EXPECT_EQ(page(), 0);
  }
}

} // namespace
} // namespace viewer
