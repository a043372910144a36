// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The memory that reading a file takes: its working copy, the list, and little more, for any content.
#include <gtest/gtest.h>

#include <string>

#include "tests/plugin/input/reading.h"
#include "tests/plugin/input/tokens.h"
#include "tests/support/FailingMemory.h"
#include "tests/support/Rows.h"

namespace {

constexpr size_t littleMore = 64 * 1024;

std::string locations(int pages, int perPage, const std::string &between) {
  std::string tags;
  for (int page = 0; page < pages; ++page)
    for (int i = 0; i < perPage; ++i)
      tags += "<loc pg=\"" + std::to_string(page) + "\" pos=\"" + std::to_string(i * 3) + "\" len=\"2\"/>" + between;
  return tags;
}

struct LargeFile : Row {
  std::string file;
};
class ReaderMemory : public testing::TestWithParam<LargeFile> {};

/// The memory of a list.
size_t bytesOf(const HLL *list) {
  size_t bytes = sizeof(HLL) + list->pageCapacity * sizeof(HLP);
  for (uint32_t i = 0; i < list->pageCount; ++i)
    bytes += list->pages[i].capacity * sizeof(HL);
  return bytes;
}

TEST_P(ReaderMemory, ReadingTakesTheFileTheListAndLittleMore) {
  RecordingHost host;
  const size_t before = liveBytes();
  watchBytes();
  ASSERT_EQ(readFile(GetParam().file), 1);
  const size_t most = mostBytes();
  const size_t file = GetParam().file.size(), list = bytesOf(GLT_GetHLL(host.doc));
  EXPECT_LE(most - before, file + list + littleMore);
  EXPECT_GE(most - before, file + list) << "or something else was measured";
}

INSTANTIATE_TEST_SUITE_P(Files, ReaderMemory,
                         testing::ValuesIn<LargeFile>({
                             {{"ManyHits"}, fileOf(locations(30, 200, "\n"))},
                             {{"ManyPages"}, fileOf(locations(2000, 2, "\n"))},
                             {{"OneLine"}, fileOf(locations(30, 200, ""))},
                             {{"MuchBesides"}, fileOf(locations(2, 2, "\n") + times(20000, "it is (so) far! <b>= \n"))},
                         }),
                         rowName<LargeFile>);

} // namespace
