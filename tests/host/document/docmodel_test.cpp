// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The "DocModel" table as a plug-in sees it: each operation called through the table, each failure as a raise.
#include "tavrel/DocModel.h"

#include <gmock/gmock.h>

#include <cmath>

#include "document/here.h"
#include "host/kernel/runtime.h"
#include "support/pdf.h"

tavrel::HFT gDocModelHFT = nullptr;

namespace host {
namespace {

using namespace tavrel;
using testing::ElementsAre;

void jumpBack(ExceptionFrame *frame) { longjmp(frame->context, 1); }

// Calls body(memory) inside an exception frame; the code of what it raised, or errNone.
int32_t codeOf(void (*body)(void *), void *memory) {
  void (*volatile called)(void *) = body; // else a compiler that sees it never return drops stores
  ExceptionFrame frame;
  Runtime::current().frames.push(&frame, jumpBack);
  if (setjmp(frame.context) == 0) { // NOLINT(cert-err52-cpp): what the interface is made of
    called(memory);
    Runtime::current().frames.pop();
    return errNone;
  }
  Runtime::current().frames.pop();
  return Runtime::current().frames.code();
}

// What a call raises. The call may create no object with a destructor: the raise would skip it.
template <typename Call> int32_t raised(Call call) {
  return codeOf([](void *memory) { (*static_cast<Call *>(memory))(); }, &call);
}

class DocModelTest : public testing::Test {
protected:
  // "alpha beta gamma" in reading order, "gamma" drawn first; and an empty page.
  DocModelTest()
      : document(document::openedHere(
            folder.pdf(
                {{.texts = {{.x = 50, .y = 100, .text = "gamma"}, {.x = 50, .y = 500, .text = "alpha beta"}}}, {}}),
            "")),
        model(modelDocs().handle(document.get())) {
    gDocModelHFT = docModelTable();
  }
  ~DocModelTest() override {
    document.reset();
    const OpenObjects left = openObjects();
    EXPECT_EQ(left.pages + left.wordFinders + left.acquiredPages, 0U) << "a closed document left something open";
  }
  DocModelTest(const DocModelTest &) = delete;
  DocModelTest &operator=(const DocModelTest &) = delete;

  WordFinder finderOf(int16_t version) {
    return DocModel::WordFinderCreate(model, nullptr, nullptr, nullptr, version, 8, nullptr);
  }

  static std::vector<uint32_t> offsets(const Word *words, int32_t count) {
    std::vector<uint32_t> result;
    result.reserve(static_cast<size_t>(count));
    for (int32_t i = 0; i < count; ++i)
      result.push_back(DocModel::WordGetCharOffset(words[i]));
    return result;
  }

  Runtime runtime;
  test::ScratchFolder folder;
  std::unique_ptr<Document> document;
  ModelDoc model;
};

// A handle that was never given out.
template <typename Handle> Handle invented() {
  static int something = 0;
  return reinterpret_cast<Handle>(&something);
}

// ---- pages ----

TEST_F(DocModelTest, PageOpensAndCloses) {
  const Page page = DocModel::DocOpenPage(model, 0);
  EXPECT_NE(page, nullptr);
  EXPECT_EQ(openObjects().pages, 1U);
  DocModel::PageClose(page);
  EXPECT_EQ(openObjects().pages, 0U);
}

TEST_F(DocModelTest, EveryOpenedPageIsClosedSeparately) {
  const Page first = DocModel::DocOpenPage(model, 0), second = DocModel::DocOpenPage(model, 0);
  EXPECT_NE(first, second);
  DocModel::PageClose(first);
  EXPECT_EQ(raised([&] { DocModel::PageClose(first); }), errBadHandle);
  DocModel::PageClose(second);
}

TEST_F(DocModelTest, PageThatIsNotThereRaises) {
  EXPECT_EQ(raised([&] { DocModel::DocOpenPage(model, 2); }), errBadPage);
  EXPECT_EQ(raised([&] { DocModel::DocOpenPage(model, -1); }), errBadPage);
  EXPECT_EQ(openObjects().pages, 0U);
}

TEST_F(DocModelTest, UnknownHandlesRaise) {
  const TextRange range{0, 1};
  int32_t count = 0;
  FixedRect bounds;
  EXPECT_EQ(raised([] { DocModel::DocOpenPage(invented<ModelDoc>(), 0); }), errBadHandle);
  EXPECT_EQ(raised([] { DocModel::PageClose(invented<Page>()); }), errBadHandle);
  EXPECT_EQ(raised([] { DocModel::WordFinderCreate(invented<ModelDoc>(), nullptr, nullptr, nullptr, 2, 8, nullptr); }),
            errBadHandle);
  EXPECT_EQ(raised([] { DocModel::WordFinderDestroy(invented<WordFinder>()); }), errBadHandle);
  EXPECT_EQ(
      raised([&] { DocModel::WordFinderAcquirePage(invented<WordFinder>(), 0, nullptr, nullptr, nullptr, &count); }),
      errBadHandle);
  EXPECT_EQ(raised([] { DocModel::WordFinderGetNthWord(invented<WordFinder>(), 0); }), errBadHandle);
  EXPECT_EQ(raised([] { DocModel::WordFinderReleasePage(invented<WordFinder>(), 0); }), errBadHandle);
  EXPECT_EQ(raised([] { DocModel::WordGetLength(invented<Word>()); }), errBadHandle);
  EXPECT_EQ(raised([] { DocModel::WordGetCharOffset(invented<Word>()); }), errBadHandle);
  EXPECT_EQ(raised([&] { DocModel::SelectionFromCharRanges(invented<Page>(), &range, 1); }), errBadHandle);
  EXPECT_EQ(raised([&] { DocModel::SelectionFromWordRanges(invented<Page>(), &range, 1, 2); }), errBadHandle);
  EXPECT_EQ(raised([] { DocModel::SelectionPageNumber(invented<TextSelection>()); }), errBadHandle);
  EXPECT_EQ(raised([&] { DocModel::SelectionBounds(invented<TextSelection>(), &bounds); }), errBadHandle);
}

TEST_F(DocModelTest, NullHandlesRaise) {
  EXPECT_EQ(raised([] { DocModel::DocOpenPage(nullptr, 0); }), errBadHandle);
  EXPECT_EQ(raised([] { DocModel::PageClose(nullptr); }), errBadHandle);
  EXPECT_EQ(raised([] { DocModel::WordFinderDestroy(nullptr); }), errBadHandle);
  EXPECT_EQ(raised([] { DocModel::WordGetLength(nullptr); }), errBadHandle);
  EXPECT_EQ(raised([] { DocModel::SelectionPageNumber(nullptr); }), errBadHandle);
}

TEST_F(DocModelTest, HandlesEndWithTheirDocument) {
  const Page page = DocModel::DocOpenPage(model, 0);
  const WordFinder finder = finderOf(2);
  Word *words = nullptr;
  DocModel::WordFinderAcquirePage(finder, 0, &words, nullptr, nullptr, nullptr);
  const Word word = words[0];
  const TextRange range{0, 1};
  const TextSelection selection = DocModel::SelectionFromCharRanges(page, &range, 1);
  document.reset();
  EXPECT_EQ(raised([&] { DocModel::DocOpenPage(model, 0); }), errBadHandle);
  EXPECT_EQ(raised([&] { DocModel::PageClose(page); }), errBadHandle);
  EXPECT_EQ(raised([&] { DocModel::WordFinderDestroy(finder); }), errBadHandle);
  EXPECT_EQ(raised([&] { DocModel::WordGetLength(word); }), errBadHandle);
  EXPECT_EQ(raised([&] { DocModel::SelectionPageNumber(selection); }), errBadHandle);
}

TEST_F(DocModelTest, HandlesOfAnotherDocumentStay) {
  const auto other = document::openedHere(folder.write("other.pdf", test::pdfOf({test::PdfPage{}})), "");
  const ModelDoc otherModel = modelDocs().handle(other.get());
  const Page page = DocModel::DocOpenPage(otherModel, 0), closed = DocModel::DocOpenPage(model, 0);
  EXPECT_EQ(openObjects().pages, 2U);
  document.reset();
  EXPECT_EQ(openObjects().pages, 1U);
  EXPECT_EQ(raised([&] { DocModel::PageClose(closed); }), errBadHandle);
  EXPECT_EQ(raised([&] { DocModel::PageClose(page); }), errNone);
  EXPECT_EQ(openObjects().pages, 0U);
  EXPECT_EQ(raised([&] { DocModel::PageClose(DocModel::DocOpenPage(otherModel, 0)); }), errNone);
}

// ---- word finders ----

TEST_F(DocModelTest, VersionsOfWordExtractionAreTwo) {
  for (const int16_t version : {int16_t{1}, int16_t{2}})
    EXPECT_NE(finderOf(version), nullptr) << version;
  for (const int16_t version : {int16_t{-1}, int16_t{0}, int16_t{3}, int16_t{512}})
    EXPECT_EQ(finderOf(version), nullptr) << version;
  EXPECT_EQ(openObjects().wordFinders, 2U);
}

TEST_F(DocModelTest, WordFinderTakesNoOptions) {
  EXPECT_EQ(raised([&] { DocModel::WordFinderCreate(model, this, nullptr, nullptr, 2, 8, nullptr); }), errBadArgument);
  EXPECT_EQ(raised([&] { DocModel::WordFinderCreate(model, nullptr, nullptr, nullptr, 2, 9, nullptr); }),
            errBadArgument);
  EXPECT_EQ(openObjects().wordFinders, 0U);
}

TEST_F(DocModelTest, WordsInReadingOrderByPositionAndInTheFindersOrder) {
  Word *words = nullptr, *sorted = nullptr, *reading = nullptr;
  int32_t count = 0;
  DocModel::WordFinderAcquirePage(finderOf(1), 0, &words, &sorted, &reading, &count);
  ASSERT_EQ(count, 3);
  EXPECT_THAT(offsets(words, count), ElementsAre(11, 0, 6));
  EXPECT_THAT(offsets(sorted, count), ElementsAre(0, 6, 11));
  EXPECT_THAT(offsets(reading, count), ElementsAre(0, 6, 11));
}

TEST_F(DocModelTest, WordsByPositionAreFromTheTopDownAndThenFromTheLeft) {
  document = document::openedHere(folder.pdf({{.texts = {{.x = 50, .y = 500, .text = "high line"},
                                                         {.x = 50, .y = 100, .text = "up", .upwards = true}}}}),
                                  "");
  model = modelDocs().handle(document.get());
  Word *sorted = nullptr;
  int32_t count = 0;
  DocModel::WordFinderAcquirePage(finderOf(2), 0, nullptr, &sorted, nullptr, &count);
  ASSERT_EQ(document->pageText(0).text(), U"up high line");
  EXPECT_THAT(offsets(sorted, count), ElementsAre(3, 8, 0));
}

TEST_F(DocModelTest, WordsAtOnePositionKeepTheirReadingOrder) {
  document = document::openedHere(
      folder.pdf({{.texts = {{.x = 50, .y = 500, .text = "one"}, {.x = 50, .y = 500, .text = "two"}}}}), "");
  model = modelDocs().handle(document.get());
  Word *sorted = nullptr;
  int32_t count = 0;
  DocModel::WordFinderAcquirePage(finderOf(2), 0, nullptr, &sorted, nullptr, &count);
  const PageText &page = document->pageText(0);
  ASSERT_EQ(page.words.size(), 2U);
  ASSERT_EQ(page.words[0].bounds, page.words[1].bounds);
  EXPECT_THAT(offsets(sorted, count), ElementsAre(0, 4));
}

TEST_F(DocModelTest, ReadingOrderIsTheOrderOfVersionTwo) {
  Word *words = nullptr;
  int32_t count = 0;
  DocModel::WordFinderAcquirePage(finderOf(2), 0, &words, nullptr, nullptr, &count);
  EXPECT_THAT(offsets(words, count), ElementsAre(0, 6, 11));
}

TEST_F(DocModelTest, OutputsMayBeNull) {
  DocModel::WordFinderAcquirePage(finderOf(2), 0, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(openObjects().acquiredPages, 1U);
}

TEST_F(DocModelTest, PageWithoutWordsHasNone) {
  int32_t count = -1;
  DocModel::WordFinderAcquirePage(finderOf(1), 1, nullptr, nullptr, nullptr, &count);
  EXPECT_EQ(count, 0);
}

TEST_F(DocModelTest, WordKnowsItsLengthAndOffset) {
  const WordFinder finder = finderOf(2);
  DocModel::WordFinderAcquirePage(finder, 0, nullptr, nullptr, nullptr, nullptr);
  const Word beta = DocModel::WordFinderGetNthWord(finder, 1);
  EXPECT_EQ(DocModel::WordGetLength(beta), 4U);
  EXPECT_EQ(DocModel::WordGetCharOffset(beta), 6U);
}

TEST_F(DocModelTest, WordNumberIsInTheFindersOrder) {
  const WordFinder finder = finderOf(1);
  DocModel::WordFinderAcquirePage(finder, 0, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(DocModel::WordGetCharOffset(DocModel::WordFinderGetNthWord(finder, 0)), 11U);
}

TEST_F(DocModelTest, WordNumberOutOfRangeIsNull) {
  const WordFinder finder = finderOf(2);
  EXPECT_EQ(DocModel::WordFinderGetNthWord(finder, 0), nullptr) << "nothing acquired yet";
  DocModel::WordFinderAcquirePage(finder, 0, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(DocModel::WordFinderGetNthWord(finder, -1), nullptr);
  EXPECT_EQ(DocModel::WordFinderGetNthWord(finder, 3), nullptr);
  DocModel::WordFinderAcquirePage(finder, 1, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(DocModel::WordFinderGetNthWord(finder, 0), nullptr) << "the page acquired last has no words";
}

TEST_F(DocModelTest, PageAcquiredTwiceIsReleasedTwice) {
  const WordFinder finder = finderOf(2);
  for (int i = 0; i < 2; ++i)
    DocModel::WordFinderAcquirePage(finder, 0, nullptr, nullptr, nullptr, nullptr);
  const Word word = DocModel::WordFinderGetNthWord(finder, 0);
  DocModel::WordFinderReleasePage(finder, 0);
  EXPECT_EQ(DocModel::WordGetLength(word), 5U) << "still acquired";
  DocModel::WordFinderReleasePage(finder, 0);
  EXPECT_EQ(raised([&] { DocModel::WordGetLength(word); }), errBadHandle);
  EXPECT_EQ(raised([&] { DocModel::WordFinderReleasePage(finder, 0); }), errBadArgument);
}

TEST_F(DocModelTest, WordsEndWithTheirFinder) {
  const WordFinder finder = finderOf(2);
  DocModel::WordFinderAcquirePage(finder, 0, nullptr, nullptr, nullptr, nullptr);
  const Word word = DocModel::WordFinderGetNthWord(finder, 0);
  DocModel::WordFinderDestroy(finder);
  EXPECT_EQ(raised([&] { DocModel::WordGetLength(word); }), errBadHandle);
  EXPECT_EQ(openObjects().acquiredPages, 0U);
}

TEST_F(DocModelTest, AcquiringAPageThatIsNotThereRaises) {
  const WordFinder finder = finderOf(2);
  for (const int32_t page : {-1, 2}) {
    EXPECT_EQ(raised([&] { DocModel::WordFinderAcquirePage(finder, page, nullptr, nullptr, nullptr, nullptr); }),
              errBadPage);
    EXPECT_EQ(raised([&] { DocModel::WordFinderReleasePage(finder, page); }), errBadPage);
  }
  EXPECT_EQ(openObjects().acquiredPages, 0U);
}

// ---- selections ----

TEST_F(DocModelTest, EqualRangesOnTwoPageObjectsAreTheSameSelection) {
  const TextRange ranges[] = {{0, 2}, {6, 4}};
  const TextSelection first = DocModel::SelectionFromCharRanges(DocModel::DocOpenPage(model, 0), ranges, 2);
  const TextSelection second = DocModel::SelectionFromCharRanges(DocModel::DocOpenPage(model, 0), ranges, 2);
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(first, second);
}

TEST_F(DocModelTest, SelectionOutlivesItsPageObject) {
  const Page page = DocModel::DocOpenPage(model, 0);
  const TextRange range{1, 1};
  const TextSelection selection = DocModel::SelectionFromWordRanges(page, &range, 1, 2);
  DocModel::PageClose(page);
  EXPECT_EQ(DocModel::SelectionPageNumber(selection), 0);
}

TEST_F(DocModelTest, BoundsAreFixedPointInPageSpace) {
  const TextRange range{0, 5};
  FixedRect bounds{};
  DocModel::SelectionBounds(DocModel::SelectionFromCharRanges(DocModel::DocOpenPage(model, 0), &range, 1), &bounds);
  EXPECT_EQ(bounds.left, 50 * fixedOne);
  EXPECT_EQ(bounds.right, 80 * fixedOne);
  EXPECT_EQ(bounds.bottom, std::lround((500 - 1.57) * fixedOne));
  EXPECT_EQ(bounds.top, std::lround((500 + 6.29) * fixedOne));
}

TEST_F(DocModelTest, NoRangesAreNoSelection) {
  const Page page = DocModel::DocOpenPage(model, 0);
  const TextRange nothing{11, 0};
  EXPECT_EQ(DocModel::SelectionFromCharRanges(page, nullptr, 0), nullptr);
  EXPECT_EQ(DocModel::SelectionFromWordRanges(page, nullptr, 0, 2), nullptr);
  EXPECT_EQ(DocModel::SelectionFromCharRanges(page, &nothing, 1), nullptr);
}

TEST_F(DocModelTest, BadArgumentsRaise) {
  const Page page = DocModel::DocOpenPage(model, 0);
  const TextRange range{0, 1};
  EXPECT_EQ(raised([&] { DocModel::SelectionFromCharRanges(page, nullptr, 1); }), errBadArgument);
  EXPECT_EQ(raised([&] { DocModel::SelectionFromCharRanges(page, &range, -1); }), errBadArgument);
  EXPECT_EQ(raised([&] { DocModel::SelectionFromWordRanges(page, nullptr, 1, 2); }), errBadArgument);
  EXPECT_EQ(raised([&] { DocModel::SelectionFromWordRanges(page, &range, INT32_MIN, 2); }), errBadArgument);
  EXPECT_EQ(raised([&] { DocModel::SelectionFromWordRanges(page, &range, 1, 3); }), errBadArgument);
  const TextSelection selection = DocModel::SelectionFromCharRanges(page, &range, 1);
  EXPECT_EQ(raised([&] { DocModel::SelectionBounds(selection, nullptr); }), errBadArgument);
}

TEST_F(DocModelTest, LineOfASelectionIsThatOfItsFirstWord) {
  const TextRange range = {6, 3}; // "bet"
  const Page page = DocModel::DocOpenPage(model, 0);
  const TextSelection selection = DocModel::SelectionFromCharRanges(page, &range, 1);
  char text[40];
  uint32_t start = 99;
  EXPECT_EQ(DocModel::PageGetLine(page, selection, text, sizeof text, &start), 10U);
  EXPECT_STREQ(text, "alpha beta");
  EXPECT_EQ(start, 6U);
  EXPECT_EQ(DocModel::PageGetLine(page, selection, text, 6, nullptr), 5U);
  EXPECT_STREQ(text, "alpha");
  EXPECT_EQ(DocModel::PageGetLine(page, selection, text, 1, nullptr), 0U);
}

TEST_F(DocModelTest, LineIsTruncatedBetweenCharacters) {
  document.reset();
  document = document::openedHere(folder.pdf({{.texts = {{.x = 50, .y = 100, .text = "a\u00E4b"}}}}), "");
  model = modelDocs().handle(document.get());
  const TextRange range = {0, 1};
  const Page page = DocModel::DocOpenPage(model, 0);
  char text[40];
  const TextSelection selection = DocModel::SelectionFromCharRanges(page, &range, 1);
  EXPECT_EQ(DocModel::PageGetLine(page, selection, text, 3, nullptr), 1U);
  EXPECT_STREQ(text, "a");
  EXPECT_EQ(DocModel::PageGetLine(page, selection, text, 4, nullptr), 3U);
  EXPECT_STREQ(text, "a\u00E4");
}

TEST_F(DocModelTest, LineNeedsASelectionOfThePageAndSpace) {
  const TextRange range = {0, 1};
  const Page page = DocModel::DocOpenPage(model, 0), empty = DocModel::DocOpenPage(model, 1);
  const TextSelection selection = DocModel::SelectionFromCharRanges(page, &range, 1);
  char text[40];
  EXPECT_EQ(raised([&] { DocModel::PageGetLine(empty, selection, text, sizeof text, nullptr); }), errBadArgument);
  EXPECT_EQ(raised([&] { DocModel::PageGetLine(page, selection, text, 0, nullptr); }), errBadArgument);
  EXPECT_EQ(raised([&] { DocModel::PageGetLine(page, selection, nullptr, 9, nullptr); }), errBadArgument);
  EXPECT_EQ(raised([&] { DocModel::PageGetLine(page, invented<TextSelection>(), text, 9, nullptr); }), errBadHandle);
  EXPECT_EQ(raised([&] { DocModel::PageGetLine(invented<Page>(), selection, text, 9, nullptr); }), errBadHandle);
}

} // namespace
} // namespace host
