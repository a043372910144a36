// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Which pages' words a document is asked for ahead, and which it forgets.
#include "viewer/model/words.h"

#include <gmock/gmock.h>

#include "host/view/FakeDocument.h"

namespace viewer {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct NotingDocument : test::FakeDocument {
  using FakeDocument::FakeDocument;
  void expectText(int32_t page, bool shown) override { expected.emplace_back(page, shown); }
  void forgetText(int32_t page) override { forgotten.push_back(page); }
  std::vector<std::pair<int32_t, bool>> expected;
  std::vector<int32_t> forgotten;
};

struct WordsTest : testing::Test {
  void turnTo(int32_t page) {
    words.expect(document, page, true);
    for (const int32_t next : {page + 1, page - 1})
      words.expect(document, next, false);
    words.show(document, page);
  }
  NotingDocument document{100};
  Words words;
};

TEST_F(WordsTest, ThePageShownAndItsNeighboursAreExpected) {
  turnTo(5);
  EXPECT_THAT(document.expected, ElementsAre(std::pair(5, true), std::pair(6, false), std::pair(4, false)));
  EXPECT_THAT(document.forgotten, IsEmpty());
}

TEST_F(WordsTest, NeighboursThatWereNeverShownAreForgottenFirst) {
  turnTo(5);
  turnTo(50);
  EXPECT_THAT(document.forgotten, ElementsAre(6, 4));
}

TEST_F(WordsTest, ANeighbourThatIsShownIsKeptLikeOthers) {
  turnTo(5);
  turnTo(6);
  turnTo(50);
  EXPECT_THAT(document.forgotten, ElementsAre(4, 7));
}

TEST_F(WordsTest, EightPagesThatWereShownAreKept) {
  for (int32_t page = 10; page <= 80; page += 10)
    words.show(document, page);
  EXPECT_THAT(document.forgotten, IsEmpty());
  words.show(document, 10);
  words.show(document, 90);
  EXPECT_THAT(document.forgotten, ElementsAre(20));
}

TEST_F(WordsTest, ReadingOtherPagesForgetsNeitherThePageShownNorItsNeighbours) {
  turnTo(50);
  for (int32_t page = 0; page < 100; ++page)
    words.read(document, page);
  for (const int32_t near : {49, 50, 51})
    EXPECT_THAT(document.forgotten, testing::Not(testing::Contains(near)));
}

TEST_F(WordsTest, EightPagesThatWereReadAreKept) {
  turnTo(50);
  for (int32_t page = 1; page <= 8; ++page)
    words.read(document, page);
  words.read(document, 1);
  EXPECT_THAT(document.forgotten, IsEmpty());
  words.read(document, 9);
  EXPECT_THAT(document.forgotten, ElementsAre(2));
}

TEST_F(WordsTest, WhatWasReadIsKeptWhenPagesAreTurned) {
  words.read(document, 51);
  turnTo(50);
  turnTo(80);
  EXPECT_THAT(document.forgotten, ElementsAre(49));
}

TEST_F(WordsTest, OnlyWhatIsNotKeptOtherwiseIsDropped) {
  turnTo(50);
  words.drop(document, 51);
  words.drop(document, 3);
  EXPECT_THAT(document.forgotten, ElementsAre(3));
}

} // namespace
} // namespace viewer
