// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The rows of a list whose pages have not been read yet: nobody waits for a page, and what is asked for is bounded.
#include <gmock/gmock.h>

#include "host/document/FakeBackend.h"
#include "host/kernel/TestPlugin.h"
#include "host/view/tables.h"
#include "tavrel/TavrelView.h"
#include "viewer/model/session.h"

namespace viewer {
namespace {

using std::chrono::hours;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int32_t pages = 5000;
constexpr uint32_t secondPage = 1000; // of a row that reads two: so many pages after the first

// A row for each page: the length of the page's text, or that it cannot be read, as a plug-in says it.
void writeRow(tavrel::Doc document, uint32_t number, tavrel::ListRow *out) {
  out->page = static_cast<int32_t>(number);
  try {
    host::Document &model = *host::Application::current().documents().find(document).model;
    std::snprintf(out->text, sizeof out->text, "%zu words", model.pageText(out->page).words.size());
  } catch (const host::DocumentError &) {
    std::snprintf(out->text, sizeof out->text, "unreadable");
  }
}
// A row that reads the words of two pages, and belongs to none.
void writeRowOfTwoPages(tavrel::Doc document, uint32_t number, tavrel::ListRow *out) {
  host::Document &model = *host::Application::current().documents().find(document).model;
  out->page = -1;
  for (const uint32_t page : {number, number + secondPage})
    try {
      model.pageText(static_cast<int32_t>(page));
    } catch (const host::DocumentError &) {
      return;
    }
}
void choose(tavrel::Doc /*document*/, uint32_t /*row*/) {}

struct LateRowsTest : testing::Test {
  LateRowsTest() {
    host::addHostTables(runtime);
    session.opener.open({"/paper.pdf", {}});
    backstage.answer(host::Opened{pages, std::vector<host::PageSize>(pages, {100, 200})});
    session.arrivals.collect();
    session.screen.draw(); // asks for the image of page 0
    backstage.asked.clear();
    setRows(pages);
    session.changes.take();
  }
  void setRows(uint32_t rows, tavrel::ListRowProc write = writeRow) {
    TavrelView::DocSetList(testPlugin.id, app.documents().handle(app.front()), "Places", rows,
                           testPlugin.callback(write), testPlugin.callback(choose));
  }
  // The pages whose words have been asked for and not answered.
  std::vector<int32_t> asked() {
    std::vector<int32_t> all;
    for (const host::Order &order : backstage.asked)
      if (const auto *words = std::get_if<host::WordsRequest>(&order.request)) all.push_back(words->page);
    return all;
  }
  std::string text(uint32_t row) {
    const host::ListText *there = session.listTexts.text(row);
    return there == nullptr ? "" : there->text;
  }
  bool fetch(uint32_t first, uint32_t count) { return session.listTexts.fetch(first, count, hours(1)); }
  // Answers the oldest request; whether the window is to be brought up to date then.
  bool answer() {
    const auto page = backstage.oldest<host::WordsRequest>().page;
    backstage.answer(host::PageWords{page, {{host::WordText{U"a", 0, {}, {{}}}}}, {}});
    return arrives();
  }
  // Whether the words of a page are there.
  bool keeps(int32_t page) {
    host::Document &model = *app.front()->model;
    const auto read = [&] {
      try {
        model.pageText(page);
      } catch (const host::DocumentError &) {
        return; // it is missing
      }
    };
    return model.withoutWaiting(read).empty();
  }
  bool arrives() {
    session.changes.take();
    session.arrivals.collect();
    return (session.changes.take() & partPage) != 0;
  }

  test::Backstage backstage;
  host::Runtime runtime;
  test::TestPlugin testPlugin{runtime};
  host::Application app{runtime};
  Session session{app, [this](const std::filesystem::path &file) {
                    return std::make_shared<host::Service>(file, std::make_unique<test::FakeBackend>(backstage));
                  }};
};

TEST_F(LateRowsTest, AreWaitedForByNobodyAndComeWithTheirPages) {
  EXPECT_TRUE(fetch(100, 3));
  EXPECT_THAT(backstage.waits, IsEmpty());
  EXPECT_THAT(asked(), ElementsAre(100, 101, 102));
  EXPECT_EQ(text(100), "") << "not the text of a page that cannot be read";
  EXPECT_TRUE(answer());
  EXPECT_TRUE(fetch(100, 3));
  EXPECT_EQ(text(100), "1 words");
  EXPECT_EQ(text(101), "");
  EXPECT_THAT(asked(), ElementsAre(101, 102)) << "asked for once";
}

TEST_F(LateRowsTest, SayThatAPageHasAnErrorOnceItHasOne) {
  fetch(100, 1);
  backstage.answer(host::Failure{tavrel::errDocument, "page 101 is damaged"});
  EXPECT_TRUE(arrives());
  fetch(100, 1);
  EXPECT_EQ(text(100), "unreadable");
  EXPECT_THAT(asked(), IsEmpty());
  EXPECT_FALSE(arrives());
}

TEST_F(LateRowsTest, AskForNoMoreThanAFewPagesAtATime) {
  EXPECT_TRUE(fetch(100, 60));
  EXPECT_THAT(asked(), SizeIs(ListTexts::mostWaiting));
  for (int row = 0; row < 60; ++row) {
    EXPECT_TRUE(answer());
    fetch(100, 60);
    EXPECT_LE(asked().size(), ListTexts::mostWaiting);
  }
  for (uint32_t row = 100; row < 160; ++row)
    EXPECT_EQ(text(row), "1 words") << row;
}

TEST_F(LateRowsTest, ThatAreScrolledAwayAreAskedForNoMore) {
  for (uint32_t first = 100; first < 4000; first += 20)
    fetch(first, 20);
  EXPECT_THAT(asked(), ElementsAre(3980, 3981, 3982, 3983, 3984, 3985, 3986, 3987));
}

TEST_F(LateRowsTest, OfAnotherListAreAskedForAgain) {
  fetch(100, 2);
  setRows(3);
  fetch(1, 2);
  EXPECT_THAT(asked(), ElementsAre(1, 2));
}

TEST_F(LateRowsTest, OfAClosedDocumentAreForgotten) {
  fetch(100, 2);
  session.documents.closeFront();
  EXPECT_FALSE(arrives());
  EXPECT_TRUE(fetch(100, 2));
  EXPECT_EQ(text(100), "");
}

TEST_F(LateRowsTest, OfAListThatIsNotShownAreAskedForNoMore) {
  fetch(100, 2);
  TavrelView::DocSetList(testPlugin.id, app.documents().handle(app.front()), nullptr, 0, nullptr, nullptr);
  EXPECT_FALSE(arrives());
  EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(LateRowsTest, KeepTheWordsOfTheFewPagesReadLast) {
  setRows(pages, writeRowOfTwoPages);
  for (uint32_t row = 100; row < 120; ++row) {
    fetch(row, 1);
    for (int page = 0; page < 2; ++page) {
      answer();
      fetch(row, 1);
    }
    ASSERT_NE(session.listTexts.text(row), nullptr);
  }
  std::vector<int32_t> kept;
  for (int32_t page = 0; page < pages; ++page)
    if (keeps(page)) kept.push_back(page);
  EXPECT_THAT(kept, ElementsAre(116, 117, 118, 119, 1116, 1117, 1118, 1119));
}

TEST_F(LateRowsTest, LeaveTheWordsOfThePageShown) {
  host::Document &model = *app.front()->model;
  backstage.whileWaited = [](test::Backstage &stage) {
    stage.answer(host::PageWords{stage.oldest<host::WordsRequest>().page, {}, {}});
  };
  model.pageText(0);
  session.tiles.words(*session.documents.frontDocument()).show(model, 0);
  for (uint32_t row = 100; row < 120; ++row) {
    fetch(row, 1);
    answer();
    fetch(row, 1);
  }
  backstage.waits.clear();
  model.pageText(0);
  EXPECT_THAT(backstage.waits, IsEmpty());
}

} // namespace
} // namespace viewer
