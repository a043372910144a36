// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Word numbers into character offsets, by the host's words.
#include "plugin/input/gltTranslate.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"

using namespace tavrel;

namespace {

using Calls = std::vector<std::string>;

/// A host whose pages have ten words: word n starts at character 100 + n and is n + 1 characters long.
class Translation : public testing::Test {
protected:
  static constexpr uintptr_t firstWord = 0x4000;

  void SetUp() override {
    finder = host.named(reinterpret_cast<WordFinder>(uintptr_t{0x3000}), "finder");
    host.answer(DocModel::WordFinderAcquirePage,
                std::function([this](WordFinder, int32_t page, Word **, Word **, Word **, int32_t *count) {
                  if (page == badPage) Kernel::RaiseError(errBadPage);
                  *count = 10;
                }));
    host.answer(DocModel::WordFinderGetNthWord, std::function([this](WordFinder, int32_t index) {
                  const bool there = index < 10 && index != missing;
                  return there ? reinterpret_cast<Word>(firstWord + 8 * static_cast<uintptr_t>(index)) : nullptr;
                }));
    host.answer(DocModel::WordGetCharOffset, std::function([this](Word word) {
                  if (indexOf(word) == bad) Kernel::RaiseError(errBadHandle);
                  return 100 + indexOf(word);
                }));
    host.answer(DocModel::WordGetLength, std::function([this](Word word) { return longer + indexOf(word) + 1; }));
  }

  static uint32_t indexOf(Word word) {
    return static_cast<uint32_t>((reinterpret_cast<uintptr_t>(word) - firstWord) / 8);
  }

  Highlights translated(HLL *list) {
    EXPECT_TRUE(host.run([&] { TranslateHLLWordToCharOffsets(nullptr, finder, list); }));
    EXPECT_EQ(host.frames(), 0U);
    return highlightsOf(list);
  }

  RecordingHost host;
  WordFinder finder = nullptr;
  int32_t badPage = -1; ///< its words are not available
  int32_t missing = -1; ///< this word is missing
  uint32_t bad = 99;    ///< this word has no offset
  uint32_t longer = 0;  ///< every word is longer by this
};

TEST_F(Translation, RewritesEveryEntryOfEveryPage) {
  const ListOwner list({{3, 1, 7}, {3, 4, 7}, {8, 2, 7}});
  EXPECT_EQ(translated(list), (Highlights{{3, 101, 2}, {3, 104, 5}, {8, 102, 3}}));
}

TEST_F(Translation, AsksTheHostPageByPage) {
  const ListOwner list({{3, 1, 7}});
  translated(list);
  EXPECT_EQ(host.trace,
            (Calls{"Kernel.PushExceptionFrame(*, RestorePlugInFrame)",
                   "DocModel.WordFinderAcquirePage(finder, 3, *, *, *, *)", "DocModel.WordFinderGetNthWord(finder, 1)",
                   "DocModel.WordGetCharOffset(*)", "DocModel.WordGetLength(*)",
                   "DocModel.WordFinderReleasePage(finder, 3)", "Kernel.PopExceptionFrame()"}));
}

TEST_F(Translation, EmptyListIsLeftAloneWithoutAHostCall) {
  const ListOwner list({});
  EXPECT_EQ(translated(list), Highlights{});
  EXPECT_EQ(host.trace, Calls{});
}

TEST_F(Translation, EntriesBeyondTheWordsAreDropped) {
  const ListOwner list({{3, 12, 1}, {3, 5, 1}, {3, 15, 1}, {3, 6, 1}});
  EXPECT_EQ(translated(list), (Highlights{{3, 105, 6}, {3, 106, 7}}));
  EXPECT_EQ(HLL_GetWordCount(list), 4U) << "not consulted and not changed";
}

TEST_F(Translation, EntryAtTheNumberOfWordsIsLookedUp) {
  const ListOwner list({{3, 10, 1}, {3, 12, 1}, {3, 15, 1}});
  EXPECT_EQ(translated(list), (Highlights{{3, 0, 0}}));
  EXPECT_EQ(std::count(host.trace.begin(), host.trace.end(), "DocModel.WordFinderGetNthWord(finder, 10)"), 1);
  EXPECT_EQ(host.count("WordFinderGetNthWord"), 1U);
}

// The next word takes the index of the missing one, so that the last entry is not rewritten.
TEST_F(Translation, MissingWordLeavesTheLastEntryUntranslated) {
  missing = 2;
  const ListOwner list({{3, 2, 9}, {3, 4, 9}, {3, 6, 9}});
  EXPECT_EQ(translated(list), (Highlights{{3, 104, 5}, {3, 106, 7}, {3, 6, 9}}));
}

TEST_F(Translation, MissingLastWordBecomesNothing) {
  missing = 4;
  const ListOwner list({{3, 2, 9}, {3, 4, 9}});
  EXPECT_EQ(translated(list), (Highlights{{3, 102, 3}, {3, 0, 0}}));
}

TEST_F(Translation, LengthKeepsEightBits) {
  longer = 0x100;
  const ListOwner list({{3, 4, 9}});
  EXPECT_EQ(translated(list), (Highlights{{3, 104, 5}}));
}

TEST_F(Translation, PageWhoseWordsAreNotAvailableKeepsItsWordNumbers) {
  badPage = 3;
  const ListOwner list({{3, 1, 7}, {8, 2, 7}});
  EXPECT_EQ(translated(list), (Highlights{{3, 1, 7}, {8, 102, 3}}));
}

TEST_F(Translation, ErrorAbandonsTheRestOfThePage) {
  bad = 4;
  const ListOwner list({{3, 1, 7}, {3, 4, 7}, {3, 5, 7}, {8, 2, 7}});
  EXPECT_EQ(translated(list), (Highlights{{3, 101, 2}, {3, 4, 7}, {3, 5, 7}, {8, 102, 3}}));
}

TEST_F(Translation, PageWithoutAnAnswerOfTheHostHasNoWords) {
  host.answer(DocModel::WordFinderAcquirePage,
              std::function([](WordFinder, int32_t, Word **, Word **, Word **, int32_t *) {}));
  const ListOwner list({{3, 0, 7}, {3, 1, 7}});
  EXPECT_EQ(translated(list), (Highlights{{3, 100, 1}})) << "the first is one beyond the last";
}

TEST_F(Translation, TranslatesPagesThatAreAddedMeanwhile) {
  const ListOwner list({{3, 1, 7}});
  host.answer(DocModel::WordFinderReleasePage, std::function([&](WordFinder, int32_t page) {
                if (page == 3) HLL_AddHL(list, 8, 2, 7);
              }));
  EXPECT_EQ(translated(list), (Highlights{{3, 101, 2}, {8, 102, 3}}));
}

} // namespace
