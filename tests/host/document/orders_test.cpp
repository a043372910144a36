// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Which of the waiting requests is the next one.
#include "host/document/orders.h"

#include <gmock/gmock.h>

#include <set>

namespace host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void insert(OrderQueue &queue, uint64_t id, Urgency urgency) {
  Orders order;
  order.push_back({id, urgency, OpenRequest{}});
  queue.insert(order);
  EXPECT_TRUE(order.empty());
}

// Takes all.
std::vector<uint64_t> ids(OrderQueue &queue) {
  std::vector<uint64_t> result;
  while (const Order *next = queue.first()) {
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
  queue.setUrgency(3, Urgency::shown);
  EXPECT_THAT(ids(queue), ElementsAre(3, 2, 1));
}

TEST_F(OrderQueueTest, AnOrderBecomesLessUrgent) {
  insert(queue, 1, Urgency::ahead);
  insert(queue, 2, Urgency::shown);
  queue.setUrgency(2, Urgency::ahead);
  queue.setUrgency(7, Urgency::awaited); // is not there
  EXPECT_THAT(ids(queue), ElementsAre(1, 2));
}

TEST_F(OrderQueueTest, WhatIsOnlyKeptIsNotTheNext) {
  insert(queue, 1, Urgency::kept);
  EXPECT_EQ(queue.first(), nullptr);
  queue.setUrgency(1, Urgency::ahead);
  EXPECT_THAT(ids(queue), ElementsAre(1));
}

TEST_F(OrderQueueTest, ARemovedOrderIsNotTaken) {
  for (uint64_t id = 1; id <= 3; ++id)
    insert(queue, id, Urgency::shown);
  EXPECT_EQ(queue.remove(2).front().id, 2U);
  EXPECT_THAT(queue.remove(2), IsEmpty());
  EXPECT_THAT(ids(queue), ElementsAre(1, 3));
}

TEST(PageOf, ARequestIsItsPageOrNone) {
  EXPECT_EQ(pageOf(ImageRequest{7, 72}), 7);
  EXPECT_EQ(pageOf(WordsRequest{8}), 8);
  EXPECT_EQ(pageOf(MatchesRequest{9, "a", {}}), 9);
  EXPECT_EQ(pageOf(PageStructureRequest{6, 10}), 6);
  const std::set<int32_t> others = {pageOf(OpenRequest{}), pageOf(SizesRequest{0, 32}), pageOf(StructureRequest{10}),
                                    pageOf(AttachmentRequest{1})};
  EXPECT_THAT(others, testing::AllOf(testing::SizeIs(4), testing::Each(testing::Lt(0))));
}

} // namespace
} // namespace host
