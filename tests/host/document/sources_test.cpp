// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Which of the waiting requests a thread takes.
#include "host/document/sources.h"

#include <gmock/gmock.h>

namespace host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void insert(OrderQueue &queue, uint64_t id, Urgency urgency, const Request &request = OpenRequest{}) {
  Orders order;
  order.push_back({id, urgency, request});
  queue.insert(order);
  EXPECT_TRUE(order.empty());
}

// Takes all.
std::vector<uint64_t> ids(OrderQueue &queue) {
  std::vector<uint64_t> result;
  while (const Order *next = queue.next({})) {
    result.push_back(next->id);
    queue.remove(next->id);
  }
  return result;
}

struct OrderQueueTest : testing::Test {
  OrderQueue queue;
};

TEST_F(OrderQueueTest, TheMoreUrgentIsTheNextAndOfEqualOnesTheOlder) {
  insert(queue, 2, Urgency::ahead);
  insert(queue, 3, Urgency::shown);
  insert(queue, 4, Urgency::searched);
  insert(queue, 5, Urgency::shown);
  insert(queue, 1, Urgency::ahead); // put back
  insert(queue, 6, Urgency::awaited);
  EXPECT_THAT(ids(queue), ElementsAre(6, 3, 5, 4, 1, 2));
}

TEST_F(OrderQueueTest, AnOrderBecomesMoreUrgent) {
  insert(queue, 1, Urgency::ahead);
  insert(queue, 2, Urgency::searched);
  insert(queue, 3, Urgency::ahead);
  queue.raise(3, Urgency::shown);
  EXPECT_THAT(ids(queue), ElementsAre(3, 2, 1));
}

TEST_F(OrderQueueTest, AnOrderBecomesNoLessUrgent) {
  insert(queue, 1, Urgency::ahead);
  insert(queue, 2, Urgency::shown);
  queue.raise(2, Urgency::ahead);
  queue.raise(7, Urgency::awaited); // is not there
  EXPECT_THAT(ids(queue), ElementsAre(2, 1));
}

TEST_F(OrderQueueTest, ARemovedOrderIsNotTaken) {
  for (uint64_t id = 1; id <= 3; ++id)
    insert(queue, id, Urgency::shown);
  EXPECT_EQ(queue.remove(2).front().id, 2U);
  EXPECT_THAT(queue.remove(2), IsEmpty());
  EXPECT_THAT(ids(queue), ElementsAre(1, 3));
}

TEST_F(OrderQueueTest, WhatIsAskedAboutABusyPageWaits) {
  insert(queue, 1, Urgency::shown, ImageRequest{7, 72});
  insert(queue, 2, Urgency::shown, WordsRequest{7});
  insert(queue, 3, Urgency::shown, MatchesRequest{7, "a", {}});
  insert(queue, 4, Urgency::ahead, SizesRequest{0, 32});
  insert(queue, 5, Urgency::ahead, ImageRequest{8, 72});
  BusyPages busy;
  for (size_t i = 0; i < mostThreads; ++i)
    busy.add(BusyPages::pageOf(ImageRequest{static_cast<int32_t>(i) + 4, 72})); // 4 to 7
  EXPECT_EQ(queue.next(busy)->id, 4U);
  queue.remove(4);
  EXPECT_EQ(queue.next(busy)->id, 5U);
  busy.remove(7);
  EXPECT_EQ(queue.next(busy)->id, 1U);
}

struct MostUrgentTest : testing::Test {
  Source &add(uint64_t id, Urgency urgency) {
    sources.push_back(std::make_shared<Source>());
    insert(sources.back()->waiting, id, urgency);
    return *sources.back();
  }
  uint64_t next(Urgency least = Urgency::ahead) {
    const auto source = mostUrgent(sources, least);
    return source == nullptr ? 0 : nextOf(*source)->id;
  }
  Sources sources;
};

TEST_F(MostUrgentTest, OfAllDocumentsIsTaken) {
  sources.push_back(std::make_shared<Source>()); // nothing is asked of it
  add(1, Urgency::ahead);
  add(3, Urgency::shown);
  add(2, Urgency::shown);
  EXPECT_EQ(next(), 2U);
}

TEST_F(MostUrgentTest, OfADocumentWithASecondInstanceIsTakenWhileItIsUsed) {
  add(1, Urgency::shown).used = true;
  add(2, Urgency::ahead);
  EXPECT_EQ(next(), 1U);
}

TEST_F(MostUrgentTest, OfADocumentWithoutOneIsNot) {
  Source &source = add(1, Urgency::shown);
  source.used = source.alone = true;
  add(2, Urgency::ahead);
  EXPECT_EQ(next(), 2U);
  source.used = false;
  EXPECT_EQ(next(), 1U);
}

TEST_F(MostUrgentTest, OfADocumentThatHasAllThreadsButOneIsNot) {
  Source &source = add(1, Urgency::shown);
  add(2, Urgency::ahead);
  source.threads = mostThreads - 2;
  EXPECT_EQ(next(), 1U);
  ++source.threads;
  EXPECT_EQ(next(), 2U);
}

TEST_F(MostUrgentTest, ThatIsUrgentEnoughIsTaken) {
  add(1, Urgency::ahead);
  EXPECT_EQ(next(Urgency::searched), 0U);
  add(2, Urgency::searched);
  EXPECT_EQ(next(Urgency::searched), 2U);
}

TEST_F(MostUrgentTest, OfNoneThereIsNone) { EXPECT_EQ(next(), 0U); }

} // namespace
} // namespace host
