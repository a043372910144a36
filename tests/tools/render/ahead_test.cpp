// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Answers for pages that are asked for ahead: in page order, within the limits, and with the failure of their page.
#include "tools/ahead.h"

#include <gmock/gmock.h>

#include "host/document/FakeBackend.h"
#include "tools/workers.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Words = tools::PagesAhead<host::PagePlainWords>;

constexpr int32_t pageCount = 40;

int32_t pageAsked(const host::Order &order) { return std::get<host::PlainWordsRequest>(order.request).page; }

struct Ahead : testing::Test {
  Ahead() {
    backstage.whileWaited = [](test::Backstage &all) {
      while (!all.asked.empty())
        all.answer(host::PagePlainWords{pageAsked(all.asked.front()), {U"word"}});
    };
  }
  Words reaching(const Words::Reach &reach) {
    return {*service, pageCount, [](int32_t page) { return host::PlainWordsRequest{page}; }, reach};
  }
  // Of those that are not answered yet.
  std::vector<int32_t> pagesAsked() const {
    std::vector<int32_t> pages;
    for (const host::Order &order : backstage.asked)
      pages.push_back(pageAsked(order));
    return pages;
  }
  // Only the oldest request is answered, or those of these pages.
  void answerOnly(const std::function<bool(int32_t page)> &isAnswered) {
    backstage.whileWaited = [isAnswered](test::Backstage &all) {
      for (auto order = all.asked.begin(); order != all.asked.end();) {
        const auto one = order++;
        if (!isAnswered(pageAsked(*one))) continue;
        one->answer.value = host::PagePlainWords{pageAsked(*one), {}};
        all.answered.splice(all.answered.end(), all.asked, one);
      }
    };
  }

  test::Backstage backstage;
  std::shared_ptr<host::Service> service =
      std::make_shared<host::Service>("paper.pdf", std::make_unique<test::FakeBackend>(backstage));
};

TEST_F(Ahead, PagesComeInOrder) {
  Words ahead = reaching({6});
  for (int32_t page = 0; page < pageCount; ++page)
    EXPECT_EQ(ahead.take(page).page, page);
}

TEST_F(Ahead, PagesAreAskedForInOrderUpToTheReach) {
  Words ahead = reaching({4});
  answerOnly([](int32_t page) { return page == 0; });
  ahead.take(0);
  EXPECT_THAT(pagesAsked(), ElementsAre(1, 2, 3));
  answerOnly([](int32_t page) { return page == 1; });
  ahead.take(1);
  EXPECT_THAT(pagesAsked(), ElementsAre(2, 3, 4));
}

TEST_F(Ahead, NoPageIsAskedForBeyondTheLast) {
  Words ahead = reaching({4});
  answerOnly([](int32_t page) { return page == pageCount - 2; });
  EXPECT_EQ(ahead.take(pageCount - 2).page, pageCount - 2);
  EXPECT_THAT(pagesAsked(), ElementsAre(pageCount - 1));
  answerOnly([](int32_t page) { return page == pageCount - 1; });
  EXPECT_EQ(ahead.take(pageCount - 1).page, pageCount - 1);
  EXPECT_THAT(pagesAsked(), IsEmpty());
}

TEST_F(Ahead, AnAnswerThatComesEarlyIsKept) {
  Words ahead = reaching({4});
  answerOnly([](int32_t) { return true; });
  ahead.take(0);
  service->collect();
  backstage.whileWaited = [](auto &) { ADD_FAILURE() << "it is there"; };
  EXPECT_EQ(ahead.take(1).page, 1);
}

TEST_F(Ahead, PagesThatWeighTooMuchAreAskedForOneAtATime) {
  Words ahead = reaching({8, 10, [](int32_t page) { return page < 20 ? 11 : 5; }});
  for (int32_t page = 0; page < 20; ++page) {
    answerOnly([=](int32_t asked) { return asked == page; });
    ahead.take(page);
    EXPECT_THAT(pagesAsked(), IsEmpty());
  }
  answerOnly([](int32_t asked) { return asked == 20; });
  ahead.take(20);
  EXPECT_THAT(pagesAsked(), ElementsAre(21)) << "two of these are not too much";
}

TEST_F(Ahead, ThePageThatFailsIsTheFirstInOrderNotInTime) {
  Words ahead = reaching({5});
  backstage.whileWaited = [](test::Backstage &all) {
    all.asked.reverse();
    while (!all.asked.empty()) {
      const std::string page = std::to_string(pageAsked(all.asked.front()));
      all.answer(host::Failure{tavrel::errDocument, "paper.pdf: page " + page});
    }
  };
  for (const char *line : {"paper.pdf: page 3", "paper.pdf: page 4"})
    EXPECT_THAT([&] { ahead.take(line[16] - '0'); }, testing::ThrowsMessage<host::DocumentError>(line));
}

TEST_F(Ahead, PagesAfterOneThatFailsAreTakenFromThoseAskedFor) {
  Words ahead = reaching({5});
  backstage.whileWaited = [](test::Backstage &all) {
    all.answer(host::Failure{tavrel::errDocument, "paper.pdf: page 1"});
    while (!all.asked.empty())
      all.answer(host::PagePlainWords{pageAsked(all.asked.front()), {}});
  };
  EXPECT_THROW(ahead.take(0), host::DocumentError);
  backstage.whileWaited = [](auto &) {};
  EXPECT_EQ(ahead.take(1).page, 1);
}

TEST_F(Ahead, PagesOutOfOrderAreAskedForToo) {
  Words ahead = reaching({4});
  for (const int32_t page : {7, 9, 2, 10, 10, 39, 0})
    EXPECT_EQ(ahead.take(page).page, page);
}

TEST_F(Ahead, PagesThatAreSkippedAreCancelled) {
  Words ahead = reaching({3});
  answerOnly([](int32_t page) { return page == 0 || page == 2; });
  ahead.take(0);
  ahead.take(2);
  EXPECT_THAT(pagesAsked(), testing::Not(testing::Contains(1)));
  EXPECT_THAT(backstage.cancelled, SizeIs(1));
}

TEST_F(Ahead, AnAnswerThatDoesNotComeIsAnError) {
  Words ahead = reaching({1});
  backstage.whileWaited = [](auto &) {};
  EXPECT_THAT([&] { ahead.take(0); }, testing::ThrowsMessage<host::HostError>("paper.pdf: there is no answer"));
}

TEST(Workers, OnePageNeedsNoThread) { EXPECT_EQ(tools::Workers::worthHaving(1), 0U); }

} // namespace
