// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The texts of a list's rows: which are asked for, when, and how many are kept.
#include "viewer/model/listtexts.h"

#include <gmock/gmock.h>

#include "Sessions.h"
#include "tavrel/TavrelView.h"

namespace viewer {
namespace {

using std::chrono::hours;
using testing::ElementsAre;
using testing::IsEmpty;

// What the plug-in was asked; it has no data.
std::vector<uint32_t> asked, chosen;
ListTexts *inside;
bool fetchedInside;

void row(tavrel::Doc, uint32_t number, tavrel::ListRow *out) {
  asked.push_back(number);
  out->page = static_cast<int32_t>(number);
  std::snprintf(out->text, sizeof out->text, "row %u", number);
}
void choose(tavrel::Doc, uint32_t number) {
  chosen.push_back(number);
  if (inside != nullptr) {
    fetchedInside = inside->fetch(50, 1, hours(1));
    inside->choose(7);
  }
}

struct ListTextsTest : test::Sessions {
  ListTextsTest() {
    asked.clear();
    chosen.clear();
    inside = nullptr;
  }
  void setRows(uint32_t rows) {
    TavrelView::DocSetList(testPlugin.id, app.documents().handle(app.front()), "Places", rows, testPlugin.callback(row),
                           testPlugin.callback(choose));
  }
  ListTexts &texts() { return session().listTexts; }
};

TEST_F(ListTextsTest, AreNoneWithoutADocumentOrAList) {
  EXPECT_EQ(texts().list(), nullptr);
  EXPECT_TRUE(texts().fetch(0, 10, hours(1)));
  openPages(test::numberedPages(3));
  EXPECT_EQ(texts().list(), nullptr);
  EXPECT_TRUE(texts().fetch(0, 10, hours(1)));
  EXPECT_EQ(texts().text(0), nullptr);
  texts().choose(0);
  EXPECT_THAT(chosen, IsEmpty());
}

TEST_F(ListTextsTest, AreAskedForOnceAndOnlyWhatIsWanted) {
  openPages(test::numberedPages(3));
  setRows(1'000'000);
  EXPECT_TRUE(texts().fetch(500, 3, hours(1)));
  EXPECT_TRUE(texts().fetch(501, 3, hours(1)));
  EXPECT_THAT(asked, ElementsAre(500, 501, 502, 503));
  ASSERT_NE(texts().text(502), nullptr);
  EXPECT_EQ(texts().text(502)->text, "row 502");
  EXPECT_EQ(texts().text(1), nullptr);
}

TEST_F(ListTextsTest, EndWithTheList) {
  openPages(test::numberedPages(3));
  setRows(4);
  EXPECT_TRUE(texts().fetch(2, 10, hours(1)));
  EXPECT_TRUE(texts().fetch(9, 10, hours(1)));
  EXPECT_THAT(asked, ElementsAre(2, 3));
}

TEST_F(ListTextsTest, StopWhenTheTimeIsOver) {
  openPages(test::numberedPages(3));
  setRows(4);
  EXPECT_FALSE(texts().fetch(0, 4, hours(-1)));
  EXPECT_THAT(asked, IsEmpty());
}

TEST_F(ListTextsTest, OfAnotherListAreAskedForAgain) {
  openPages(test::numberedPages(3));
  setRows(4);
  texts().fetch(0, 1, hours(1));
  setRows(4);
  EXPECT_EQ(texts().text(0), nullptr);
  texts().fetch(0, 1, hours(1));
  EXPECT_THAT(asked, ElementsAre(0, 0));
}

TEST_F(ListTextsTest, AreKeptUpToALimit) {
  openPages(test::numberedPages(3));
  setRows(100'000);
  texts().fetch(0, ListTexts::mostTexts, hours(1));
  EXPECT_NE(texts().text(0), nullptr);
  texts().fetch(ListTexts::mostTexts, 1, hours(1));
  EXPECT_EQ(texts().text(0), nullptr);
  EXPECT_NE(texts().text(ListTexts::mostTexts), nullptr);
}

TEST_F(ListTextsTest, OfOneCallAreKeptTogether) {
  openPages(test::numberedPages(3));
  setRows(100'000);
  texts().fetch(0, ListTexts::mostTexts - 2, hours(1));
  EXPECT_TRUE(texts().fetch(50'000, 5, hours(1)));
  for (uint32_t row = 50'000; row < 50'005; ++row)
    EXPECT_NE(texts().text(row), nullptr) << row;
}

TEST_F(ListTextsTest, NotifyOfAChoice) {
  openPages(test::numberedPages(3));
  setRows(4);
  texts().choose(3);
  texts().choose(4);
  EXPECT_THAT(chosen, ElementsAre(3));
}

TEST_F(ListTextsTest, AskNothingDuringACallOfAPlugIn) {
  openPages(test::numberedPages(3));
  setRows(100);
  inside = &texts();
  texts().choose(3);
  EXPECT_THAT(chosen, ElementsAre(3));
  EXPECT_FALSE(fetchedInside);
  EXPECT_THAT(asked, IsEmpty());
}

} // namespace
} // namespace viewer
