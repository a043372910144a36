// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// How many matches there are, and which is the current one.
#include <gmock/gmock.h>

#include "Sessions.h"
#include "host/document/FakeBackend.h"

namespace viewer {
namespace {

// "lamp" is twice on the second page, and once on the fourth; "oil" is once on the third.
std::vector<test::PdfPage> lamps() {
  std::vector<test::PdfPage> pages = test::numberedPages(5);
  pages[1].texts = {{.x = 50, .y = 550, .text = "lamp"}, {.x = 50, .y = 50, .text = "lamp"}};
  pages[2] = test::pageWith("oil");
  pages[3] = test::pageWith("lamp");
  return pages;
}

struct MatchCountTest : test::Sessions {
  void SetUp() override { openPages(lamps()); }
  std::string number() { return session().matchCount.number(); }
  void find(const std::string &text, bool backwards = false) {
    session().finding.find({text, {}}, backwards);
    ASSERT_TRUE(until([&] { return !session().finding.searching(); }));
  }
  bool becomes(const std::string &text) {
    return until([&] { return number() == text; });
  }
};

TEST_F(MatchCountTest, CountsAllPagesFromTheFirst) {
  session().moving.goToPage(3);
  find("lamp");
  EXPECT_TRUE(becomes("3 of 3"));
  find("lamp", true);
  EXPECT_EQ(number(), "2 of 3");
  find("lamp", true);
  EXPECT_EQ(number(), "1 of 3");
}

TEST_F(MatchCountTest, WithoutAMatchThereIsNone) {
  EXPECT_EQ(number(), "");
  find("cellar");
  EXPECT_EQ(number(), "");
  find("lamp");
  ASSERT_TRUE(becomes("1 of 3"));
  session().finding.end();
  EXPECT_EQ(number(), "");
}

TEST_F(MatchCountTest, AnotherTextIsCountedAnew) {
  find("lamp");
  ASSERT_TRUE(becomes("1 of 3"));
  find("oil");
  EXPECT_TRUE(becomes("1 of 1"));
  session().finding.find({"OIL", {.matchCase = true}}, false);
  ASSERT_TRUE(until([&] { return !session().finding.searching(); }));
  EXPECT_EQ(number(), "");
}

TEST_F(MatchCountTest, ADamagedPageHasNoMatches) {
  open(folder.write("damaged.pdf", test::withDamagedPages({test::pageWith("lamp"), test::pageWith("lamp")}, 2)));
  find("lamp");
  EXPECT_TRUE(becomes("1 of 2"));
}

TEST_F(MatchCountTest, IsThatOfTheDocumentInFront) {
  find("lamp");
  ASSERT_TRUE(becomes("1 of 3"));
  openPages({test::pageWith("lamp")}, "other.pdf");
  EXPECT_EQ(number(), "");
  find("lamp");
  EXPECT_TRUE(becomes("1 of 1"));
  session().documents.closeFront();
  EXPECT_EQ(number(), "");
}

TEST_F(MatchCountTest, StaysWhileAnotherDocumentIsInFront) {
  find("lamp");
  ASSERT_TRUE(becomes("1 of 3"));
  openPages({test::pageWith("lamp")}, "other.pdf");
  session().arrivals.collect();
  session().documents.bringToFront(0);
  EXPECT_EQ(number(), "1 of 3");
}

TEST_F(MatchCountTest, KeepsNoClosedDocument) {
  const std::weak_ptr<host::Service> service = session().documents.frontDocument()->service;
  find("lamp");
  ASSERT_TRUE(becomes("1 of 3"));
  session().documents.closeFront();
  EXPECT_TRUE(service.expired());
}

// Two documents of three pages, whose requests a test answers.
struct AnsweredMatchCountTest : testing::Test {
  AnsweredMatchCountTest() {
    open(first, "/first.pdf");
    open(second, "/second.pdf");
    session.documents.bringToFront(0);
  }
  void open(test::Backstage &backstage, const char *file) {
    session.opener.open({file, {}});
    backstage.answer(host::Opened{3, std::vector<host::PageSize>(3, {100, 200})});
    session.arrivals.collect();
  }
  // Answers the oldest request with so many matches on the page.
  void answer(test::Backstage &backstage, size_t matches = 1) {
    ASSERT_FALSE(backstage.asked.empty());
    const auto page = backstage.oldest<host::MatchesRequest>().page;
    backstage.answer(host::PageMatches{page, {matches, {{{0, 10, 10, 0}}}}});
    session.arrivals.collect();
  }

  test::Backstage first, second;
  host::Runtime runtime;
  host::Application app{runtime};
  Session session{app, [this](const std::filesystem::path &file) {
                    test::Backstage &backstage = file == "/first.pdf" ? first : second;
                    return std::make_shared<host::Service>(file, std::make_unique<test::FakeBackend>(backstage));
                  }};
};

TEST_F(AnsweredMatchCountTest, IsMadeAnewForATextThatIsFoundAtOnce) {
  session.finding.find({"lamp", {}}, false);
  for (int i = 0; i < 4; ++i) // one finds the match
    answer(first);
  ASSERT_EQ(session.matchCount.number(), "1 of 3");
  session.finding.find({"oil", {}}, false);
  for (const size_t matches : {1, 1, 0, 0})
    answer(first, matches);
  EXPECT_EQ(session.matchCount.number(), "1 of 1");
}

TEST_F(AnsweredMatchCountTest, SaysHowFarItIs) {
  session.finding.find({"lamp", {}}, false);
  EXPECT_EQ(session.matchCount.progress(), "");
  answer(first); // which finds the match
  for (const char *progress : {"Counting, 0 of 3 pages", "Counting, 1 of 3 pages", "Counting, 2 of 3 pages"}) {
    EXPECT_EQ(session.matchCount.progress(), progress);
    answer(first);
  }
  EXPECT_EQ(session.matchCount.progress(), "");
}

TEST_F(AnsweredMatchCountTest, GoesOnWhenItsDocumentIsInFrontAgain) {
  session.finding.find({"lamp", {}}, false);
  answer(first); // which finds the match
  answer(first);
  session.documents.bringToFront(1);
  answer(first);
  EXPECT_THAT(first.asked, testing::IsEmpty()) << "paused";
  session.documents.bringToFront(0);
  answer(first);
  EXPECT_EQ(session.matchCount.number(), "1 of 3");
}

} // namespace
} // namespace viewer
