// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The owner's side of a document: tickets, answers that come late, twice or wrongly, and waiting.
#include "host/document/service.h"

#include <gmock/gmock.h>

#include <climits>
#include <cmath>
#include <new>

#include "FakeBackend.h"
#include "document/pdf.h"

namespace host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Image imageOf(int width, int height) {
  return {width, height, std::vector<uint32_t>(static_cast<size_t>(width) * static_cast<size_t>(height))};
}

Time soon() { return std::chrono::steady_clock::now() + std::chrono::seconds(1); }

struct ServiceTest : testing::Test {
  // Notes the page of the answer, or -1 for a failure.
  Service::Done noting() {
    return [this](Answer &answer) {
      const auto *image = std::get_if<PageImage>(&answer.value);
      pages.push_back(image == nullptr ? -1 : image->page);
      if (image == nullptr) line = std::get<Failure>(answer.value).line;
    };
  }
  Ticket ask(int32_t page, Urgency urgency = Urgency::shown) {
    return service->ask(ImageRequest{page, 72}, urgency, noting());
  }
  void answer(int32_t page) { backstage.answer(PageImage{page, 72, imageOf(2, 3)}); }

  test::Backstage backstage;
  std::vector<int32_t> pages; ///< those handed over
  std::string line;
  std::shared_ptr<Service> service =
      std::make_shared<Service>("paper.pdf", std::make_unique<test::FakeBackend>(backstage));
};

TEST_F(ServiceTest, AnAnswerIsHandedOverWhenItIsCollected) {
  const Ticket ticket = ask(3);
  answer(3);
  EXPECT_THAT(pages, IsEmpty());
  service->collect();
  service->collect();
  EXPECT_THAT(pages, ElementsAre(3));
}

TEST_F(ServiceTest, ADestroyedTicketCancelsTheRequest) {
  ask(3);
  EXPECT_THAT(backstage.cancelled, SizeIs(1));
  EXPECT_THAT(backstage.asked, IsEmpty());
}

TEST_F(ServiceTest, AnAnswerToADestroyedTicketIsDropped) {
  Ticket kept = ask(3), dropped = ask(4);
  answer(3);
  answer(4);
  dropped = {};
  service->collect();
  EXPECT_THAT(pages, ElementsAre(3));
}

TEST_F(ServiceTest, ATicketThatHasBeenAnsweredCancelsNothing) {
  {
    const Ticket ticket = ask(3);
    answer(3);
    service->collect();
  }
  EXPECT_THAT(backstage.cancelled, IsEmpty());
}

TEST_F(ServiceTest, AMovedTicketIsOneRequest) {
  Ticket first = ask(3);
  Ticket second = std::move(first);
  first = {};
  EXPECT_THAT(backstage.cancelled, IsEmpty());
  EXPECT_TRUE(second);
  second = ask(4);
  EXPECT_THAT(backstage.cancelled, SizeIs(1));
}

TEST_F(ServiceTest, AnAnswerThatComesTwiceIsHandedOverOnce) {
  const Ticket ticket = ask(3);
  const Order twin{backstage.asked.front().id, Urgency::shown, backstage.asked.front().request};
  answer(3);
  backstage.asked.push_back(twin);
  answer(3);
  service->collect();
  EXPECT_THAT(pages, ElementsAre(3));
}

TEST_F(ServiceTest, ATicketMayBeDestroyedWhenItsAnswerIsHandedOver) {
  Ticket ticket;
  ticket = service->ask(ImageRequest{3, 72}, Urgency::shown, [&](Answer &) {
    ticket = {};
    pages.push_back(3);
  });
  answer(3);
  service->collect();
  EXPECT_THAT(pages, ElementsAre(3));
  EXPECT_FALSE(ticket);
}

TEST_F(ServiceTest, WhatCouldNotBeTakenIsHandedOverAgainAndTheOthersNevertheless) {
  bool fails = true;
  const Ticket first = service->ask(ImageRequest{3, 72}, Urgency::shown,
                                    [&](Answer &answer) {
                                      if (std::exchange(fails, false)) throw std::bad_alloc();
                                      noting()(answer);
                                    }),
               second = ask(4);
  answer(3);
  answer(4);
  EXPECT_THROW(service->collect(), std::bad_alloc);
  EXPECT_THAT(pages, ElementsAre(4));
  service->collect();
  EXPECT_THAT(pages, ElementsAre(4, 3));
}

// ---- waiting ----

TEST_F(ServiceTest, WaitingHandsOverThatAnswerAlone) {
  const Ticket first = ask(3), second = ask(4);
  answer(3);
  answer(4);
  EXPECT_TRUE(service->await(second, soon()));
  EXPECT_THAT(pages, ElementsAre(4));
  service->collect();
  EXPECT_THAT(pages, ElementsAre(4, 3));
}

TEST_F(ServiceTest, AnAnswerThatIsNotThereByTheDeadlineIsCollectedLater) {
  const Ticket ticket = ask(3);
  EXPECT_FALSE(service->await(ticket, soon()));
  EXPECT_THAT(pages, IsEmpty());
  answer(3);
  service->collect();
  EXPECT_THAT(pages, ElementsAre(3));
}

TEST_F(ServiceTest, WhatHasBeenHandedOverIsNotWaitedFor) {
  const Ticket ticket = ask(3);
  answer(3);
  service->collect();
  EXPECT_TRUE(service->await(ticket, soon()));
  EXPECT_THAT(backstage.waits, IsEmpty());
}

TEST_F(ServiceTest, OneAnswerMayWaitForAnother) {
  const Ticket second = ask(4);
  const Ticket first = service->ask(ImageRequest{3, 72}, Urgency::shown, [&](Answer &answer) {
    EXPECT_TRUE(service->await(second, soon()));
    noting()(answer);
  });
  const Ticket third = ask(5);
  backstage.asked.splice(backstage.asked.end(), backstage.asked, backstage.asked.begin());
  answer(3);
  answer(5);
  answer(4);
  service->collect();
  EXPECT_THAT(pages, ElementsAre(4, 3, 5));
}

TEST_F(ServiceTest, AnAnswerStaysWhileItIsHandedOver) {
  std::vector<uint32_t> pixels;
  const Ticket ticket = service->ask(ImageRequest{3, 72}, Urgency::shown, [&](Answer &answer) {
    service->collect();
    pixels = std::get<PageImage>(answer.value).image.pixels;
  });
  backstage.answer(PageImage{3, 72, {2, 3, std::vector<uint32_t>(6, 7)}});
  service->collect();
  EXPECT_THAT(pixels, testing::AllOf(SizeIs(6), testing::Each(7)));
}

// ---- wrong answers ----

PageWords wordsOf(std::vector<uint32_t> order) {
  const auto word = [](std::u32string text, uint32_t offset) {
    return WordText{text, offset, {}, std::vector<Box>(text.size())};
  };
  return {3, {{word(U"a", 0), word(U"bc", 2)}}, std::move(order)};
}

PageWords changed(void (*change)(WordText &second)) {
  PageWords words = wordsOf({});
  change(words.text.words[1]);
  return words;
}

Structure structureOf(std::vector<std::string> labels) {
  Structure structure;
  structure.labels = std::move(labels);
  return structure;
}

Link linkTo(int32_t page) { return {{.left = 0, .top = 1, .right = 1, .bottom = 0}, PageTarget{page}}; }

struct Exchange {
  const char *name;
  Request request;
  decltype(Answer::value) answer;
  bool fits;
};

void PrintTo(const Exchange &exchange, std::ostream *out) { *out << exchange.name; }

class Answers : public ServiceTest, public testing::WithParamInterface<Exchange> {};

TEST_P(Answers, AreFailuresWhereTheyDoNotFit) {
  const Ticket ticket = service->ask(GetParam().request, Urgency::shown, [&](Answer &answer) {
    const auto *failure = std::get_if<Failure>(&answer.value);
    line = failure == nullptr ? "none" : failure->line;
    EXPECT_FALSE(failure != nullptr && failure->reason == DocumentError::wrongPassword);
  });
  backstage.answer(GetParam().answer);
  service->collect();
  EXPECT_EQ(line, GetParam().fits ? "none" : "paper.pdf: the PDF library has given a wrong answer");
}

const PageSize someSize{100, 200}, flat{100, 0.5}, narrow{0.5, 100};
const PageSize smallest{1, 1}, largest{longestPage, longestPage};
const PageSize tooWide{longestPage + 1, 100}, tooHigh{100, longestPage + 1};

INSTANTIATE_TEST_SUITE_P(
    Of, Answers,
    testing::Values(
        Exchange{"Document", OpenRequest{}, Opened{2, {someSize}}, true},
        Exchange{"DocumentOfOnePage", OpenRequest{}, Opened{1, {someSize}}, true},
        Exchange{"DocumentWithoutPages", OpenRequest{}, Opened{0, {}}, false},
        Exchange{"DocumentOfMorePagesThanThereAre", OpenRequest{}, Opened{INT_MAX, {}}, false},
        Exchange{"DocumentOfFewerPagesThanSizes", OpenRequest{}, Opened{1, {someSize, someSize}}, false},
        Exchange{"Sizes", SizesRequest{4, 2}, Sizes{4, {someSize, someSize}}, true},
        Exchange{"TooFewSizes", SizesRequest{4, 2}, Sizes{4, {someSize}}, false},
        Exchange{"OtherPagesSizes", SizesRequest{4, 1}, Sizes{5, {someSize}}, false},
        Exchange{"SizesAtTheLimits", SizesRequest{4, 2}, Sizes{4, {smallest, largest}}, true},
        Exchange{"AFlatPage", SizesRequest{4, 1}, Sizes{4, {flat}}, false},
        Exchange{"ANarrowPage", SizesRequest{4, 1}, Sizes{4, {narrow}}, false},
        Exchange{"TooWideAPage", SizesRequest{4, 1}, Sizes{4, {tooWide}}, false},
        Exchange{"TooHighAPage", SizesRequest{4, 1}, Sizes{4, {tooHigh}}, false},
        Exchange{"Image", ImageRequest{3, 72}, PageImage{3, 72, imageOf(2, 3)}, true},
        Exchange{"AnotherPagesImage", ImageRequest{3, 72}, PageImage{4, 72, imageOf(2, 3)}, false},
        Exchange{"ImageOfAnotherResolution", ImageRequest{3, 72}, PageImage{3, 36, imageOf(2, 3)}, false},
        Exchange{"ImageOfFewerPixels", ImageRequest{3, 72}, PageImage{3, 72, {2, 3, std::vector<uint32_t>(5)}}, false},
        Exchange{"AnImageOfOnePixel", ImageRequest{3, 72}, PageImage{3, 72, imageOf(1, 1)}, true},
        Exchange{"TheWidestImage", ImageRequest{3, 72}, PageImage{3, 72, imageOf(longestSide, 1)}, true},
        Exchange{"TheHighestImage", ImageRequest{3, 72}, PageImage{3, 72, imageOf(1, longestSide)}, true},
        Exchange{"TooWideAnImage", ImageRequest{3, 72}, PageImage{3, 72, imageOf(longestSide + 1, 1)}, false},
        Exchange{"TooHighAnImage", ImageRequest{3, 72}, PageImage{3, 72, imageOf(1, longestSide + 1)}, false},
        Exchange{"AnImageWithoutWidth", ImageRequest{3, 72}, PageImage{3, 72, {0, 3, {}}}, false},
        Exchange{"AnImageWithoutHeight", ImageRequest{3, 72}, PageImage{3, 72, {2, 0, {}}}, false},
        Exchange{"EmptyImage", ImageRequest{3, 72}, PageImage{3, 72, {}}, false},
        Exchange{"NegativeImage", ImageRequest{3, 72}, PageImage{3, 72, {-2, -3, std::vector<uint32_t>(6)}}, false},
        Exchange{"Words", WordsRequest{3}, wordsOf({}), true},
        Exchange{"WordsInOrder", WordsRequest{3, true}, wordsOf({1, 0}), true},
        Exchange{"AnotherPagesWords", WordsRequest{4}, wordsOf({}), false},
        Exchange{"WordsWithoutOrder", WordsRequest{3, true}, wordsOf({}), false},
        Exchange{"AWordTwiceInOrder", WordsRequest{3, true}, wordsOf({1, 1}), false},
        Exchange{"AWordBeyondTheLast", WordsRequest{3, true}, wordsOf({0, 2}), false},
        Exchange{"AnEmptyWord", WordsRequest{3}, changed([](WordText &word) {
                   word = {{}, 2};
                 }),
                 false},
        Exchange{"AWordAtAnotherOffset", WordsRequest{3}, changed([](WordText &word) { word.offset = 3; }), false},
        Exchange{"AWordWithFewerBoxes", WordsRequest{3}, changed([](WordText &word) { word.characters.pop_back(); }),
                 false},
        Exchange{"AWordOfTheLastCharacter", WordsRequest{3},
                 changed([](WordText &word) { word.text = U"\uD7FF\U0010FFFF"; }), true},
        Exchange{"AWordOfHalfASurrogatePair", WordsRequest{3},
                 changed([](WordText &word) { word.text[1] = char32_t{0xDFFF}; }), false},
        Exchange{"AWordBeyondUnicode", WordsRequest{3}, changed([](WordText &word) { word.text[1] = 0x110000; }),
                 false},
        Exchange{"AWordOnALineUpwards", WordsRequest{3}, changed([](WordText &word) { word.quarterTurns = 3; }), true},
        Exchange{"AWordOfFourQuarterTurns", WordsRequest{3}, changed([](WordText &word) { word.quarterTurns = 4; }),
                 false},
        Exchange{"AWordTurnedBack", WordsRequest{3}, changed([](WordText &word) { word.quarterTurns = -1; }), false},
        Exchange{"AWordFarAway", WordsRequest{3}, changed([](WordText &word) { word.bounds.left = -1e9; }), true},
        Exchange{"AWordTooFarAway", WordsRequest{3}, changed([](WordText &word) { word.bounds.left = -1.1e9; }), false},
        Exchange{"AWordWithItsEdgesSwapped", WordsRequest{3},
                 changed([](WordText &word) { word.bounds = {.left = 1}; }), false},
        Exchange{"ACharacterUpsideDown", WordsRequest{3},
                 changed([](WordText &word) { word.characters[0] = {.bottom = 1}; }), false},
        Exchange{"ACharacterWithoutAPlace", WordsRequest{3},
                 changed([](WordText &word) { word.characters[1].top = std::nan(""); }), false},
        Exchange{"PlainWords", PlainWordsRequest{3}, PagePlainWords{3, {U"\uD7FF", U"\U0010FFFF"}}, true},
        Exchange{"AnotherPagesPlainWords", PlainWordsRequest{3}, PagePlainWords{4, {U"a"}}, false},
        Exchange{"AnEmptyPlainWord", PlainWordsRequest{3}, PagePlainWords{3, {U"a", U""}}, false},
        Exchange{"APlainWordBeyondUnicode", PlainWordsRequest{3},
                 PagePlainWords{3, {std::u32string(1, char32_t{0x110000})}}, false},
        Exchange{"PlainWordsInsteadOfWords", WordsRequest{3}, PagePlainWords{3, {U"a"}}, false},
        Exchange{"Matches", MatchesRequest{3, "a", {}}, PageMatches{3, {{{Box{}}}}}, true},
        Exchange{"AMatchTooHigh", MatchesRequest{3, "a", {}}, PageMatches{3, {{{Box{}, {0, HUGE_VAL, 0, 0}}}}}, false},
        Exchange{"AnotherPagesMatches", MatchesRequest{3, "a", {}}, PageMatches{4, {}}, false},
        Exchange{"AMatchNowhere", MatchesRequest{3, "a", {}}, PageMatches{3, {Found{}}}, false},
        Exchange{"Structure", StructureRequest{2}, structureOf({"i", "ii"}), true},
        Exchange{"StructureOfAnotherNumberOfPages", StructureRequest{3}, structureOf({"i", "ii"}), false},
        Exchange{"PageStructure", PageStructureRequest{3, 5}, PageStructure{3, {linkTo(4)}, {}, {}}, true},
        Exchange{"AnotherPagesStructure", PageStructureRequest{3, 5}, PageStructure{4, {linkTo(4)}, {}, {}}, false},
        Exchange{"ALinkBeyondTheLastPage", PageStructureRequest{3, 4}, PageStructure{3, {linkTo(4)}, {}, {}}, false},
        Exchange{"AttachedFile", AttachmentRequest{7}, AttachedFile{7, std::string(most::attachedFile, 'a')}, true},
        Exchange{"AnotherAttachedFile", AttachmentRequest{7}, AttachedFile{6, "a"}, false},
        Exchange{"TooLongAnAttachedFile", AttachmentRequest{7},
                 AttachedFile{7, std::string(most::attachedFile + 1, 'a')}, false},
        Exchange{"AnotherKind", ImageRequest{3, 72}, PageMatches{3, {}}, false},
        Exchange{"AFailureWithoutACode", WordsRequest{3}, Failure{tavrel::errNone, "a"}, false},
        Exchange{"AFailureOfAnUnknownCode", WordsRequest{3}, Failure{tavrel::ErrorCode{8}, "a"}, false},
        Exchange{"AFailureForAnUnknownReason", WordsRequest{3},
                 Failure{tavrel::errDocument, "a", DocumentError::Reason{DocumentError::processFailed + 1}}, false},
        Exchange{"AFailureOfTwoLines", WordsRequest{3}, Failure{tavrel::errDocument, "a\nb"}, false},
        Exchange{"AFailureThatControlsATerminal", WordsRequest{3}, Failure{tavrel::errDocument, "a\u009B2J"}, false},
        Exchange{"AFailureThatIsNoText", WordsRequest{3}, Failure{tavrel::errDocument, "a\xFF"}, false},
        Exchange{"AFailureWithoutAnEnd", WordsRequest{3},
                 Failure{tavrel::errDocument, std::string(2 * PATH_MAX + 1, 'a')}, false}),
    [](const auto &exchange) { return exchange.param.name; });

} // namespace
} // namespace host
