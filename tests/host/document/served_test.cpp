// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A document whose words, sizes and images are answered elsewhere, late or not at all: how long its callers wait, what
// they get then, and what is asked for ahead.
#include <gmock/gmock.h>

#include "FakeBackend.h"
#include "document/here.h"
#include "host/document/document.h"
#include "host/document/sizes.h"

namespace host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::chrono::milliseconds limit(1000);
constexpr const char *tooLong = "paper.pdf: page 4 takes too long to read";

// A page of the two words "a" and "bc".
PageWords twoWords(int32_t page, std::vector<uint32_t> order = {}) {
  const auto word = [](std::u32string text, uint32_t offset) {
    return WordText{text, offset, {}, std::vector<Box>(text.size())};
  };
  return {page, {{word(U"a", 0), word(U"bc", 2)}}, std::move(order)};
}

struct ServedTest : testing::Test {
  ServedTest() {
    document->lateListener = [this](int32_t page) { late.push_back(page); };
  }
  // The line of the error, or empty.
  template <typename Call> std::string errorOf(const Call &call) {
    try {
      call();
    } catch (const DocumentError &error) {
      return error.what();
    }
    return {};
  }
  std::string errorOfWords(int32_t page) {
    return errorOf([=, this] { document->pageText(page); });
  }
  // Answers each request while it is waited for.
  void answersWords() {
    backstage.whileWaited = [](test::Backstage &stage) {
      const auto &asked = stage.oldest<WordsRequest>();
      stage.answer(twoWords(asked.page, asked.order ? std::vector<uint32_t>{1, 0} : std::vector<uint32_t>()));
    };
  }
  void answersNothing() {
    backstage.whileWaited = [](auto &) {};
  }

  test::Backstage backstage;
  std::vector<int32_t> late; ///< what was reported as such
  std::shared_ptr<Service> service =
      std::make_shared<Service>("paper.pdf", std::make_unique<test::FakeBackend>(backstage));
  std::unique_ptr<Document> document = Document::of({service, limit}, Opened{1000, {{100, 200}}});
};

// ---- words ----

TEST_F(ServedTest, WordsAreAskedForOnce) {
  answersWords();
  EXPECT_EQ(document->pageText(3).text(), U"a bc");
  EXPECT_EQ(document->pageText(3).text(), U"a bc");
  EXPECT_THAT(backstage.waits, SizeIs(1));
}

TEST_F(ServedTest, WordsThatAreNotThereInTimeAreThePagesError) {
  EXPECT_EQ(errorOfWords(3), tooLong);
  ASSERT_THAT(backstage.waits, SizeIs(1));
  EXPECT_LE(backstage.waits[0], limit);
  EXPECT_GT(backstage.waits[0], limit / 2);
}

TEST_F(ServedTest, WordsThatAreLateAreNotWaitedForAgain) {
  errorOfWords(3);
  EXPECT_EQ(errorOfWords(3), tooLong);
  EXPECT_THAT(backstage.waits, SizeIs(1));
  EXPECT_THAT(backstage.asked, SizeIs(1));
}

TEST_F(ServedTest, WordsThatComeLateAreKeptAndReported) {
  errorOfWords(3);
  backstage.answer(twoWords(3));
  service->collect();
  EXPECT_THAT(late, ElementsAre(3));
  EXPECT_EQ(document->pageText(3).text(), U"a bc");
  EXPECT_THAT(backstage.waits, SizeIs(1));
}

TEST_F(ServedTest, TheOrderOfLateWordsThatComesInTimeIsNotReported) {
  errorOfWords(3);
  backstage.answer(twoWords(3));
  service->collect();
  answersWords();
  document->contentOrder(3);
  EXPECT_THAT(late, ElementsAre(3));
}

TEST_F(ServedTest, TheOrderOfOtherWordsIsAnError) {
  answersWords();
  document->pageText(3);
  backstage.whileWaited = [](test::Backstage &stage) {
    PageWords words = twoWords(3, {0});
    words.text.words.pop_back();
    stage.answer(std::move(words));
  };
  const auto order = [this] { document->contentOrder(3); };
  EXPECT_EQ(errorOf(order), tooLong);
  try {
    order();
  } catch (const DocumentError &error) {
    EXPECT_EQ(error.reason, DocumentError::unreadable);
  }
}

TEST_F(ServedTest, WordsThatComeInTimeAreNotReported) {
  answersWords();
  document->pageText(3);
  EXPECT_THAT(late, IsEmpty());
}

TEST_F(ServedTest, AFailureIsThrownAndAskedAboutAgain) {
  backstage.whileWaited = [](test::Backstage &stage) { stage.answer(Failure{tavrel::errDocument, "damaged"}); };
  EXPECT_EQ(errorOfWords(3), "damaged");
  answersWords();
  EXPECT_EQ(document->pageText(3).text(), U"a bc");
}

TEST_F(ServedTest, AFailureThatComesLateIsNotReported) {
  errorOfWords(3);
  backstage.answer(Failure{tavrel::errDocument, "damaged"});
  service->collect();
  EXPECT_THAT(late, IsEmpty());
}

TEST_F(ServedTest, ExhaustedMemoryIsThatForTheCallerToo) {
  backstage.whileWaited = [](test::Backstage &stage) { stage.answer(Failure{tavrel::errNoMemory, "no memory"}); };
  EXPECT_THROW(document->pageText(3), std::bad_alloc);
}

TEST_F(ServedTest, AnotherPagesWordsAreAnError) {
  backstage.whileWaited = [](test::Backstage &stage) { stage.answer(twoWords(4)); };
  EXPECT_EQ(errorOfWords(3), "paper.pdf: the PDF library has given a wrong answer");
}

TEST_F(ServedTest, ForgettingAPageCancelsItsRequest) {
  errorOfWords(3);
  document->forgetText(3);
  EXPECT_THAT(backstage.asked, IsEmpty());
}

TEST_F(ServedTest, ClosingCancelsWhatIsAskedFor) {
  errorOfWords(3);
  document.reset();
  EXPECT_THAT(backstage.cancelled, SizeIs(1));
}

TEST_F(ServedTest, TheOrderIsAskedForWithTheWordsOnceItIsUsed) {
  answersWords();
  document->pageText(3);
  EXPECT_THAT(document->contentOrder(3), ElementsAre(1, 0));
  document->pageText(4);
  EXPECT_THAT(document->contentOrder(4), ElementsAre(1, 0));
  EXPECT_THAT(backstage.waits, SizeIs(3)) << "page 3 twice, page 4 once";
}

TEST_F(ServedTest, TheWordsStayWhereTheyAreWhenTheirOrderComes) {
  answersWords();
  const PageText &text = document->pageText(3);
  const WordText *words = text.words.data();
  document->contentOrder(3);
  EXPECT_EQ(&document->pageText(3), &text);
  EXPECT_EQ(text.words.data(), words);
}

TEST_F(ServedTest, WordsAndOrderTogetherAreWaitedForNoLongerThanOne) {
  answersWords();
  document->pageText(4);
  document->expectText(3, true); // without their order
  document->contentOrder(3);
  ASSERT_THAT(backstage.waits, SizeIs(3));
  EXPECT_LE(backstage.waits[2], backstage.waits[1]);
}

// ---- words that are expected to be needed ----

TEST_F(ServedTest, NothingIsExpectedOfADocumentWhoseWordsNobodyUses) {
  document->expectText(3, true);
  EXPECT_THAT(backstage.asked, IsEmpty());
}

TEST_F(ServedTest, ExpectedWordsAreThere) {
  answersWords();
  document->pageText(0);
  document->expectText(3, false);
  ASSERT_THAT(backstage.asked, SizeIs(1));
  EXPECT_EQ(backstage.asked.front().urgency, Urgency::ahead);
  backstage.answer(twoWords(3));
  service->collect();
  document->pageText(3);
  EXPECT_THAT(backstage.waits, SizeIs(1)) << "for page 0";
  EXPECT_THAT(late, IsEmpty());
}

TEST_F(ServedTest, ExpectedWordsThatAreNotThereYetAreWaitedFor) {
  answersWords();
  document->pageText(0);
  document->expectText(3, true);
  EXPECT_EQ(backstage.asked.front().urgency, Urgency::shown);
  document->pageText(3);
  EXPECT_THAT(backstage.waits, SizeIs(2));
  EXPECT_THAT(backstage.asked, IsEmpty());
}

TEST_F(ServedTest, ExpectedWordsBecomeMoreUrgent) {
  answersWords();
  document->pageText(0);
  document->expectText(3, false);
  const uint64_t asked = backstage.asked.front().id;
  document->expectText(3, true);
  EXPECT_THAT(backstage.asked, SizeIs(1));
  EXPECT_EQ(backstage.urgencies[asked], Urgency::shown);
}

TEST_F(ServedTest, WordsThatAreThereAreNotExpectedUnlessTheirOrderIsUsed) {
  answersWords();
  document->pageText(3);
  document->expectText(3, true);
  EXPECT_THAT(backstage.asked, IsEmpty());
  document->contentOrder(4);
  document->expectText(4, true);
  EXPECT_THAT(backstage.asked, IsEmpty());
  document->expectText(3, true);
  EXPECT_THAT(backstage.asked, SizeIs(1));
}

TEST_F(ServedTest, TheFirstPageIsExpectedLikeAnyOther) {
  answersWords();
  document->pageText(3);
  document->expectText(0, true);
  EXPECT_EQ(backstage.asked.size(), 1U);
}

TEST_F(ServedTest, PagesThatAreNotThereAreNotExpected) {
  answersWords();
  document->pageText(0);
  document->expectText(-1, false);
  document->expectText(1000, false);
  EXPECT_THAT(backstage.asked, IsEmpty());
}

// ---- without waiting ----

TEST_F(ServedTest, WithoutWaitingMissingWordsAreAskedForOnceAndNamed) {
  const auto missing = document->withoutWaiting([this] {
    EXPECT_EQ(errorOfWords(3), tooLong);
    EXPECT_EQ(errorOfWords(3), tooLong);
  });
  EXPECT_THAT(missing, ElementsAre(3, 3));
  EXPECT_THAT(backstage.waits, IsEmpty());
  EXPECT_THAT(backstage.asked, SizeIs(1));
  EXPECT_TRUE(document->isAwaited(3));
  backstage.answer(twoWords(3));
  service->collect();
  EXPECT_FALSE(document->isAwaited(3));
  EXPECT_THAT(document->withoutWaiting([this] { EXPECT_EQ(document->pageText(3).text(), U"a bc"); }), IsEmpty());
  EXPECT_THAT(late, IsEmpty());
}

TEST_F(ServedTest, AfterwardsTheSameWordsAreWaitedForAgain) {
  document->withoutWaiting([this] { errorOfWords(3); });
  answersWords();
  EXPECT_EQ(document->pageText(3).text(), U"a bc");
  EXPECT_THAT(backstage.waits, SizeIs(1));
}

TEST_F(ServedTest, WithoutWaitingAFailureIsNotAskedAboutAgain) {
  document->withoutWaiting([this] { errorOfWords(3); });
  backstage.answer(Failure{tavrel::errDocument, "page 4 is damaged"});
  service->collect();
  EXPECT_THAT(document->withoutWaiting([this] { EXPECT_EQ(errorOfWords(3), "page 4 is damaged"); }), IsEmpty());
  EXPECT_THAT(backstage.asked, IsEmpty());
}

TEST_F(ServedTest, WithoutWaitingASizeThatIsNotThereIsMissingToo) {
  const auto missing = document->withoutWaiting([this] {
    EXPECT_EQ(errorOf([this] { document->pageSize(700); }), "paper.pdf: page 701 takes too long to read");
  });
  EXPECT_THAT(missing, ElementsAre(700));
  EXPECT_TRUE(document->isAwaited(700));
  backstage.answer(Failure{tavrel::errDocument, "injected"});
  service->collect();
  EXPECT_FALSE(document->isAwaited(700));
  EXPECT_THAT(document->withoutWaiting([this] { EXPECT_EQ(document->pageSize(700).width, 612); }), IsEmpty());
  EXPECT_THAT(backstage.waits, IsEmpty());
}

// ---- sizes ----

TEST_F(ServedTest, SizesThatCannotBeAskedForAreNotAwaited) {
  Service unshared("paper.pdf", std::make_unique<test::FakeBackend>(backstage)); // gives no ticket
  const std::function<void(int32_t)> notify;
  std::vector<int32_t> missing;
  for (std::vector<int32_t> *noWait : {static_cast<std::vector<int32_t> *>(nullptr), &missing}) {
    const Limit asked{limit, noWait};
    SizeCache sizes(unshared, 1000, asked, notify);
    EXPECT_THROW(sizes.get(700), std::bad_weak_ptr);
    EXPECT_FALSE(sizes.isAwaited(700));
  }
}

TEST_F(ServedTest, TheSizesThatCameWithTheDocumentAreKnown) {
  EXPECT_EQ(document->pageSize(0).height, 200);
  EXPECT_THAT(backstage.waits, IsEmpty());
}

TEST_F(ServedTest, SizesAreAskedForTogetherUpToTheLastPage) {
  backstage.whileWaited = [](test::Backstage &stage) {
    const auto [first, count] = stage.oldest<SizesRequest>();
    EXPECT_EQ(first + count, 1000);
    stage.answer(Sizes{first, std::vector<PageSize>(static_cast<size_t>(count), PageSize{50, 60})});
  };
  EXPECT_EQ(document->pageSize(999).width, 50);
  EXPECT_THAT(late, IsEmpty());
  EXPECT_EQ(document->pageSize(999 - 999 % sizesTogether).height, 60);
  EXPECT_THAT(backstage.waits, SizeIs(1));
}

TEST_F(ServedTest, ASizeThatIsNotThereInTimeIsThatOfALetter) {
  EXPECT_EQ(document->pageSize(500).width, 612);
  EXPECT_EQ(document->pageSize(500).height, 792);
  EXPECT_THAT(backstage.waits, SizeIs(1));
}

TEST_F(ServedTest, TheSizeOfTheFirstPageMayComeLateToo) {
  document = Document::of({service, limit}, Opened{1000, {}});
  document->lateListener = [this](int32_t page) { late.push_back(page); };
  EXPECT_EQ(document->pageSize(0).width, 612);
  EXPECT_EQ(document->pageSize(0).width, 612);
  EXPECT_THAT(backstage.waits, SizeIs(1));
  backstage.answer(Sizes{0, std::vector<PageSize>(sizesTogether, PageSize{50, 60})});
  service->collect();
  EXPECT_THAT(late, ElementsAre(0));
}

TEST_F(ServedTest, ASizeThatComesLateIsKeptAndReported) {
  document->pageSize(500);
  const auto [first, count] = backstage.oldest<SizesRequest>();
  backstage.answer(Sizes{first, std::vector<PageSize>(static_cast<size_t>(count), PageSize{50, 60})});
  service->collect();
  EXPECT_THAT(late, ElementsAre(500));
  EXPECT_EQ(document->pageSize(500).width, 50);
}

// ---- images ----

TEST_F(ServedTest, AnImageThatIsNotThereInTimeIsThePagesError) {
  EXPECT_EQ(errorOf([&] { document->render(3, 72); }), tooLong);
  const auto isImage = [](const auto &one) { return std::holds_alternative<ImageRequest>(one.request); };
  EXPECT_TRUE(std::none_of(backstage.asked.begin(), backstage.asked.end(), isImage)) << "nobody would take it";
}

TEST_F(ServedTest, PagesThatAreNotThereAreErrors) {
  for (const int32_t page : {-1, 1000})
    for (const auto &call : std::vector<std::function<void()>>{
             [&] { document->pageText(page); }, [&] { document->pageSize(page); }, [&] { document->render(page, 72); },
             [&] { document->contentOrder(page); }, [&] { document->forgetText(page); }})
      EXPECT_THROW(call(), HostError);
  EXPECT_THAT(backstage.waits, IsEmpty());
}

} // namespace
} // namespace host
