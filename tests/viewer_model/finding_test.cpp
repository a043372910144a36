// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The find dialog's work. The window is 400 by 300 pixels, a page is as wide as that and 600 pixels high.
#include <gmock/gmock.h>

#include "Sessions.h"

namespace viewer {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr uint32_t white = 0xFFFFFFFF, everyMatch = 0xFFD8E6FF, currentMatch = 0xFF8FB8FF;
constexpr const char *fromStart = "Reached the end, continued from the start";
constexpr const char *fromEnd = "Reached the start, continued from the end";

// "lamp" is at the top and at the bottom of the second page, and at the top of the fourth.
std::vector<test::PdfPage> lamps() {
  std::vector<test::PdfPage> pages = test::numberedPages(5);
  pages[1].texts = {{.x = 50, .y = 550, .text = "lamp"}, {.x = 50, .y = 50, .text = "lamp"}};
  pages[3] = test::pageWith("lamp");
  return pages;
}

struct FindingTest : test::Sessions {
  void SetUp() override { openPages(lamps()); }
  int y() { return session().documents.window()->scrollY(); }
  bool finishes() {
    return until([&] { return !session().finding.searching(); });
  }
  void find(const std::string &text, bool backwards = false) {
    session().finding.find({text, {}}, backwards);
    ASSERT_TRUE(finishes());
  }
  void next() {
    session().finding.findAgain(false);
    ASSERT_TRUE(finishes());
  }
  void previous() {
    session().finding.findAgain(true);
    ASSERT_TRUE(finishes());
  }
  // How many pixels of a colour are visible.
  ptrdiff_t count(uint32_t color) {
    EXPECT_TRUE(draws());
    return std::ranges::count(drawing().image.pixels, color);
  }
};

TEST_F(FindingTest, TurnsToTheFirstPageThatHasIt) {
  session().finding.find({"lamp", {}}, false);
  EXPECT_TRUE(session().finding.searching());
  EXPECT_EQ(session().finding.message(), "Searching");
  ASSERT_TRUE(finishes());
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_THAT(session().finding.message(), IsEmpty());
}

TEST_F(FindingTest, StepsOnAPageWithoutSearching) {
  find("lamp");
  session().finding.findAgain(false);
  EXPECT_FALSE(session().finding.searching());
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_GT(y(), 0);
}

TEST_F(FindingTest, StepsBackOnAPage) {
  find("lamp");
  next();
  session().finding.findAgain(true);
  EXPECT_FALSE(session().finding.searching());
  EXPECT_EQ(y(), 0);
}

TEST_F(FindingTest, AfterTheLastMatchOfAPageComesTheNextPage) {
  find("lamp");
  next();
  next();
  EXPECT_EQ(session().documents.page(), 3);
}

TEST_F(FindingTest, BeforeTheFirstMatchOfAPageComesTheLastOfThePreviousPage) {
  session().moving.goToPage(3);
  find("lamp");
  previous();
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_GT(y(), 0);
}

TEST_F(FindingTest, ContinuesFromTheStartWithAMessage) {
  session().moving.goToPage(3);
  find("lamp");
  next();
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_EQ(session().finding.message(), fromStart);
  EXPECT_EQ(session().status.message(), fromStart);
}

TEST_F(FindingTest, ContinuesFromTheEndWithAMessage) {
  find("lamp");
  previous();
  EXPECT_EQ(session().documents.page(), 3);
  EXPECT_EQ(session().finding.message(), fromEnd);
}

TEST_F(FindingTest, TheMessageIsRemovedByTheNextStep) {
  session().moving.goToPage(3);
  find("lamp");
  next();
  next();
  EXPECT_THAT(session().finding.message(), IsEmpty());
}

TEST_F(FindingTest, OnTheLastPageItContinuesAtOnce) {
  openPages({test::pageWith("lamp")}, "one.pdf");
  find("lamp");
  next();
  EXPECT_EQ(session().finding.message(), fromStart);
  previous();
  EXPECT_EQ(session().finding.message(), fromEnd);
}

TEST_F(FindingTest, AnotherTextStartsASearchFromThePageShown) {
  find("lamp");
  find("page 3");
  EXPECT_EQ(session().documents.page(), 2);
  EXPECT_EQ(session().finding.request().text, "page 3");
}

TEST_F(FindingTest, OtherOptionsStartASearch) {
  find("LAMP");
  session().finding.find({"LAMP", {.matchCase = true}}, false);
  EXPECT_TRUE(session().finding.searching());
  ASSERT_TRUE(finishes());
  EXPECT_THAT(session().finding.message(), HasSubstr("is not in the document"));
}

TEST_F(FindingTest, AReaderWhoTurnsIsFollowed) {
  find("lamp");
  session().moving.goToPage(2);
  next();
  EXPECT_EQ(session().documents.page(), 3);
}

TEST_F(FindingTest, ATextThatIsNotFoundIsReported) {
  session().moving.goToPage(2);
  find("cellar");
  EXPECT_EQ(session().finding.message(), "\u201Ccellar\u201D is not in the document");
  EXPECT_EQ(session().status.message(), session().finding.message());
  EXPECT_EQ(session().documents.page(), 2);
}

TEST_F(FindingTest, ATextThatIsNotFoundRemovesTheMarks) {
  find("lamp");
  EXPECT_GT(count(currentMatch), 0);
  find("cellar");
  EXPECT_EQ(count(currentMatch), 0);
}

TEST_F(FindingTest, NoTextIsNotSearched) {
  session().finding.find({}, false);
  EXPECT_FALSE(session().finding.searching());
}

TEST_F(FindingTest, ATextThatIsNoUtf8IsReported) {
  find("\xC3(");
  EXPECT_THAT(session().finding.message(), HasSubstr("UTF-8"));
}

TEST_F(FindingTest, ARemovedFileIsSearchedAsItWas) {
  std::filesystem::remove(session().documents.front()->file);
  find("lamp");
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_THAT(session().finding.message(), IsEmpty());
}

TEST_F(FindingTest, ADamagedPageIsSkipped) {
  open(folder.write("damaged.pdf", test::withDamagedPages({test::pageWith("first"), test::pageWith("lamp")}, 2)));
  session().moving.goToPage(2);
  find("lamp");
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_EQ(session().finding.message(), fromStart);
}

TEST_F(FindingTest, PagesThatCouldNotBeReadAreToldWhereNothingIsFound) {
  open(folder.write("damaged.pdf", test::withDamagedPages({test::pageWith("first"), test::pageWith("lamp")}, 1)));
  find("cellar");
  EXPECT_EQ(session().finding.message(), "\u201Ccellar\u201D is not in the document; page 3 could not be read");
  open(folder.write("damaged2.pdf", test::withDamagedPages({test::pageWith("first"), test::pageWith("lamp")}, 2)));
  find("cellar");
  EXPECT_EQ(session().finding.message(), "\u201Ccellar\u201D is not in the document; 2 pages could not be read");
}

TEST_F(FindingTest, SpacesAloneAreNotFound) {
  find("  ");
  EXPECT_THAT(session().finding.message(), HasSubstr("is not in the document"));
}

TEST_F(FindingTest, TheNumberOfSearchedPagesIsShownMeanwhile) {
  session().finding.find({"cellar", {}}, false);
  std::vector<std::string> messages;
  ASSERT_TRUE(until([&] {
    messages.push_back(session().finding.message());
    return !session().finding.searching();
  }));
  EXPECT_THAT(messages, testing::Contains(testing::MatchesRegex("Searching, [1-4] of 5 pages")));
}

TEST_F(FindingTest, AReplacedSearchTurnsNoPage) {
  session().finding.find({"lamp", {}}, false);
  find("page 3");
  EXPECT_EQ(session().documents.page(), 2);
  EXPECT_THAT(session().finding.message(), IsEmpty());
}

TEST_F(FindingTest, SearchesBackwardsFromThePageShown) {
  session().moving.goToPage(2);
  find("page", true);
  EXPECT_EQ(session().documents.page(), 2);
  session().moving.goToPage(1);
  find("page 5", true);
  EXPECT_EQ(session().documents.page(), 4);
  EXPECT_EQ(session().finding.message(), fromEnd);
}

TEST_F(FindingTest, AnEncryptedDocumentIsSearched) {
  open(test::locked(write("secret.pdf", {test::pageWith("hidden")})), {}, "user");
  find("hidden");
  EXPECT_THAT(session().finding.message(), IsEmpty());
}

// ---- marks ----

TEST_F(FindingTest, TheMatchIsMarkedWhereItIs) {
  find("lamp"); // 24 points wide, its base line 50 points below the upper edge
  ASSERT_TRUE(draws());
  const std::span<const uint32_t> row(drawing().image.row(47), width);
  EXPECT_EQ(std::ranges::count(row, white), width - 24);
  EXPECT_EQ(std::ranges::count(row.subspan(50, 24), white), 0);
}

TEST_F(FindingTest, TheOtherMatchesOfThePageAreMarkedLighter) {
  session().moving.setFit(viewer::Fit::page);
  find("lamp");
  EXPECT_GT(count(currentMatch), 0);
  EXPECT_GT(count(everyMatch), 0);
}

TEST_F(FindingTest, AStepMovesTheMark) {
  session().moving.setFit(viewer::Fit::page);
  find("lamp");
  ASSERT_TRUE(draws());
  const std::vector<uint32_t> before = drawing().image.pixels;
  next();
  ASSERT_TRUE(draws());
  EXPECT_NE(drawing().image.pixels, before);
}

TEST_F(FindingTest, ARotatedPageIsMarkedWhereTheTextIs) {
  test::PdfPage page = test::pageWith("lamp", 300, 500);
  page.rotate = 90;
  openPages({page}, "sideways.pdf"); // shown 600 points wide: two thirds of a pixel per point
  find("lamp");
  EXPECT_GT(count(currentMatch), 0);
  // The base line runs down the page, 500 points from its left edge, from 300 points below the upper edge.
  EXPECT_EQ(pixel(337, 205), currentMatch);
}

TEST_F(FindingTest, AMatchThatIsNotVisibleIsScrolledToTheMiddle) {
  session().moving.setZoom(2); // 1067 by 1600 pixels
  find("lamp");
  const double dpi = session().documents.window()->dpi(), middle = (600 - 550) * dpi / 72;
  next(); // at the bottom, 50 points above the lower edge
  EXPECT_NEAR(y() + height / 2.0, session().documents.window()->pageHeight() - middle, 150);
  EXPECT_GT(count(currentMatch), 0);
}

TEST_F(FindingTest, AMatchInTheMiddleOfThePageIsScrolledToTheMiddleOfTheWindow) {
  openPages({test::pageWith("lamp", 200, 300)}, "middle.pdf");
  session().moving.setZoom(4);
  find("lamp");
  const double scale = session().documents.window()->dpi() / 72;
  EXPECT_NEAR(session().documents.window()->scrollX() + width / 2.0, 212 * scale, 2 * scale);
  EXPECT_NEAR(y() + height / 2.0, 300 * scale, 8 * scale);
}

TEST_F(FindingTest, AVisibleMatchDoesNotScroll) {
  session().moving.goToPage(1);
  session().documents.window()->scrollTo(0, 20);
  find("lamp");
  EXPECT_EQ(y(), 20);
}

TEST_F(FindingTest, EndingRemovesTheMarksAndTheMessage) {
  find("lamp");
  EXPECT_GT(count(currentMatch), 0);
  session().finding.end();
  EXPECT_EQ(count(currentMatch), 0);
  EXPECT_THAT(session().finding.message(), IsEmpty());
}

TEST_F(FindingTest, EndingKeepsTheText) {
  find("lamp");
  session().finding.end();
  EXPECT_EQ(session().finding.request().text, "lamp");
  next();
  EXPECT_EQ(session().documents.page(), 1);
}

// ---- what happens meanwhile ----

TEST_F(FindingTest, AnEndedSearchTurnsNoPage) {
  session().finding.find({"lamp", {}}, false);
  session().finding.end();
  find("page 1"); // when this is found, the ended search is over
  EXPECT_EQ(session().documents.page(), 0);
}

TEST_F(FindingTest, ClosingEndsTheSearchOfTheDocument) {
  session().finding.find({"cellar", {}}, false);
  session().documents.closeFront();
  EXPECT_FALSE(session().finding.searching());
  EXPECT_NE(session().finding.message(), "Searching");
}

TEST_F(FindingTest, AnotherDocumentInFrontIsNotTurned) {
  openPages(test::numberedPages(5), "other.pdf");
  session().documents.bringToFront(0);
  session().finding.find({"lamp", {}}, false);
  session().documents.bringToFront(1);
  ASSERT_TRUE(finishes());
  EXPECT_EQ(session().documents.page(), 0);
}

TEST_F(FindingTest, ASearchThatAnotherDocumentEndedIsNotUnderWayForTheDialog) {
  openPages(test::numberedPages(5), "other.pdf");
  session().documents.bringToFront(0);
  session().finding.find({"lamp", {}}, false);
  session().documents.bringToFront(1);
  ASSERT_TRUE(finishes());
  EXPECT_NE(session().finding.message(), "Searching");
}

TEST_F(FindingTest, ADocumentThatArrivesDuringASearchIsNotTurned) {
  session().opener.open({write("other.pdf", test::numberedPages(5)), {}});
  session().finding.find({"lamp", {}}, false);
  ASSERT_TRUE(until([&] { return !session().opener.opening() && !session().finding.searching(); }));
  EXPECT_EQ(session().documents.page() == 0, session().documents.front()->file.filename() == "other.pdf");
}

TEST_F(FindingTest, ReloadingForgetsTheMatchesOfTheOldFile) {
  find("lamp");
  session().opener.reload();
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  EXPECT_EQ(count(currentMatch), 0);
  next();
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_GT(count(currentMatch), 0);
}

TEST_F(FindingTest, ReloadingADocumentInTheBackgroundKeepsTheMatchesInFront) {
  openPages(test::numberedPages(1), "other.pdf");
  session().documents.bringToFront(0);
  find("lamp");
  session().documents.bringToFront(1);
  session().opener.reload();
  session().documents.bringToFront(0);
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  EXPECT_GT(count(currentMatch), 0);
}

TEST_F(FindingTest, ClosingAnotherDocumentDoesNotEndASearch) {
  openPages(test::numberedPages(1), "other.pdf");
  session().documents.bringToFront(0);
  session().finding.find({"lamp", {}}, false);
  session().documents.bringToFront(1);
  session().documents.closeFront();
  EXPECT_TRUE(session().finding.searching());
  ASSERT_TRUE(finishes());
  EXPECT_EQ(session().documents.page(), 1);
}

TEST_F(FindingTest, TheMarksComeBackWithTheirDocument) {
  find("lamp");
  openPages(test::numberedPages(1), "other.pdf");
  session().documents.bringToFront(0);
  find("lamp");
  session().documents.bringToFront(1);
  EXPECT_EQ(count(currentMatch), 0);
  session().documents.bringToFront(0);
  EXPECT_GT(count(currentMatch), 0);
}

TEST_F(FindingTest, EndsWhileItSearches) {
  openPages(test::numberedPages(300), "long.pdf");
  session().finding.find({"cellar", {}}, false);
  endSession();
  EXPECT_EQ(app.front(), nullptr);
}

} // namespace
} // namespace viewer
