// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Lists of plug-ins beside the page, by way of the TavrelView table.
#include <gmock/gmock.h>

#include <cstring>

#include "Viewer.h"

namespace {

using tavrel::Doc;
using testing::ElementsAre;

std::vector<uint32_t> chosen;
Doc chosenIn;

void row(Doc, uint32_t number, tavrel::ListRow *out) {
  out->page = static_cast<int32_t>(10 * number);
  std::snprintf(out->text, sizeof out->text, "row %u", number);
}
void endless(Doc, uint32_t, tavrel::ListRow *out) { std::memset(out->text, 'x', sizeof out->text); }
const char *unusualText;
void unusual(Doc, uint32_t, tavrel::ListRow *out) { std::snprintf(out->text, sizeof out->text, "%s", unusualText); }
std::pair<int, int> markAt;
void marked(Doc, uint32_t, tavrel::ListRow *out) {
  std::snprintf(out->text, sizeof out->text, "\u00E4 words");
  out->markStart = static_cast<uint16_t>(markAt.first);
  out->markLength = static_cast<uint16_t>(markAt.second);
}
void raising(Doc, uint32_t, tavrel::ListRow *) { Kernel::RaiseError(1); }
void choose(Doc document, uint32_t number) {
  chosenIn = document;
  chosen.push_back(number);
}

struct Lists : test::Viewer {
  Lists() {
    chosen.clear();
    chosenIn = nullptr;
  }
  void set(const char *title, uint32_t rows, tavrel::ListRowProc procedure = row) {
    TavrelView::DocSetList(testPlugin.id, doc, title, rows, testPlugin.callback(procedure),
                           testPlugin.callback(choose));
  }
  const host::PluginList *shown() const { return document->lists.shown(); }
  host::ListText text(uint32_t number) { return host::Lists::text(*shown(), doc, number); }
};

TEST_F(Lists, AreNoneAtFirst) { EXPECT_EQ(shown(), nullptr); }

TEST_F(Lists, HaveATitleAndRowsThatAreAskedFor) {
  set("Places", 3);
  ASSERT_NE(shown(), nullptr);
  EXPECT_EQ(shown()->title, "Places");
  EXPECT_EQ(shown()->rows, 3U);
  EXPECT_EQ(text(2).text, "row 2");
  EXPECT_EQ(text(2).page, 20);
  EXPECT_EQ(text(2).markStart, 0U);
  EXPECT_EQ(text(2).markLength, 0U);
}

TEST_F(Lists, ATextWithoutAnEndEndsWithItsSpace) {
  set("Places", 1, endless);
  EXPECT_EQ(text(0).text, std::string(sizeof(tavrel::ListRow::text), 'x'));
}

TEST_F(Lists, ATextIsOneLineOfWholeCharacters) {
  set("Places", 1, unusual);
  for (const auto &[given, shown] : {std::pair{"a\nb\tc\x7F", "a b c "},
                                     {"\u00E4\xC3", "\u00E4"},
                                     {"a\xE2\x80", "a"},
                                     {"a\xF0\x9D\x94", "a"},
                                     {"\u2026\U0001D538", "\u2026\U0001D538"},
                                     {"\xE2", ""},
                                     {"", ""}}) {
    unusualText = given;
    EXPECT_EQ(text(0).text, shown);
  }
}

TEST_F(Lists, AMarkIsOfWholeCharactersOfTheText) {
  set("Places", 1, marked);
  for (const auto &[start, length, markStart, markLength] : {std::tuple{0, 0, 0U, 0U},
                                                             {2, 3, 2U, 3U},
                                                             {0, 8, 0U, 8U},
                                                             {3, 0xFFFF, 3U, 5U},
                                                             {0xFFFF, 0xFFFF, 8U, 0U},
                                                             {1, 4, 0U, 5U},
                                                             {0, 1, 0U, 0U}}) {
    markAt = {start, length};
    EXPECT_EQ(text(0).markStart, markStart) << start;
    EXPECT_EQ(text(0).markLength, markLength) << start;
  }
}

TEST_F(Lists, ARowThatFailsIsEmpty) {
  set("Places", 1, raising);
  EXPECT_EQ(text(0).text, "");
  EXPECT_EQ(text(0).page, -1);
}

TEST_F(Lists, NotifyThePlugInOfAChoice) {
  set("Places", 3);
  host::Lists::choose(*shown(), doc, 1);
  EXPECT_THAT(chosen, ElementsAre(1));
  EXPECT_EQ(chosenIn, doc);
}

TEST_F(Lists, HaveACurrentRow) {
  set("Places", 3);
  EXPECT_EQ(shown()->current, std::nullopt);
  TavrelView::DocSetListRow(testPlugin.id, doc, 2);
  EXPECT_EQ(shown()->current, 2U);
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::DocSetListRow(testPlugin.id, doc, 3); }), tavrel::errBadArgument);
  EXPECT_EQ(shown()->current, 2U);
  TavrelView::DocSetListRow(testPlugin.id, doc, tavrel::noRow);
  EXPECT_EQ(shown()->current, std::nullopt);
}

TEST_F(Lists, WithoutAListThereIsNoRow) {
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::DocSetListRow(testPlugin.id, doc, 0); }), tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::DocSetListRow(testPlugin.id, doc, tavrel::noRow); }), 0);
}

TEST_F(Lists, ThatAreSetAnewAreOthers) {
  set("Places", 3);
  TavrelView::DocSetListRow(testPlugin.id, doc, 2);
  const uint64_t number = shown()->number;
  set("Places", 3);
  EXPECT_NE(shown()->number, number);
  EXPECT_EQ(shown()->current, std::nullopt);
  set(nullptr, 0);
  EXPECT_EQ(shown(), nullptr);
}

TEST_F(Lists, AreNotified) {
  int notified = 0;
  app.statusListener = [&] { ++notified; };
  set("Places", 3);
  TavrelView::DocSetListRow(testPlugin.id, doc, 1);
  EXPECT_EQ(notified, 2);
}

TEST_F(Lists, TheOneOfThePlugInLoadedFirstIsShown) {
  test::TestPlugin second(runtime, "second");
  TavrelView::DocSetList(second.id, doc, "second", 1, second.callback(endless), testPlugin.callback(choose));
  EXPECT_EQ(shown()->title, "second");
  set("first", 1);
  EXPECT_EQ(shown()->title, "first");
}

TEST_F(Lists, AreRemovedWithTheirPlugIn) {
  set("Places", 3);
  runtime.retire(testPlugin.id);
  EXPECT_EQ(shown(), nullptr);
}

TEST_F(Lists, NeedCallbacks) {
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::DocSetList(testPlugin.id, doc, "a", 1, nullptr, nullptr); }),
            tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::DocSetList(99, doc, "a", 0, nullptr, nullptr); }),
            tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::DocSetList(testPlugin.id, nullptr, "a", 0, nullptr, nullptr); }),
            tavrel::errBadHandle);
}

} // namespace
