// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The list alone, in comparison with a naive baseline that searches all pages and all positions from the first on.
#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

#include "bench/inputs.h"
#include "bench/measure.h"
#include "plugin/glt/glt.h"

namespace bench {
namespace {

using MakeHits = std::function<std::vector<Hit>()>;

constexpr char table[] = "adding to a list";

// The naive baseline: the same structure with linear searches.
struct PlainList {
  HLL list = {};

  ~PlainList() {
    for (uint32_t i = 0; i < list.pageCount; ++i)
      free(list.pages[i].words);
    free(list.pages);
  }

  __attribute__((noinline)) HLP *find(int32_t page) const {
    for (uint32_t i = 0; i < list.pageCount; ++i)
      if (list.pages[i].page == page) return &list.pages[i];
    return nullptr;
  }

  __attribute__((noinline)) static bool has(const HLP *page, uint16_t pos) {
    for (uint32_t i = 0; i < page->count; ++i)
      if (page->words[i].pos == pos) return true;
    return false;
  }

  void add(const Hit &hit) {
    HLP *page = find(hit.page);
    if (page == nullptr) {
      HLLCheck(&list, list.pageCount + 1);
      page = &list.pages[list.pageCount++];
      *page = {hit.page, nullptr, 0, 0};
    }
    if (has(page, hit.pos)) return;
    HLPCheck(page, static_cast<uint16_t>(page->count + 1));
    page->words[page->count++] = {hit.pos, hit.len};
    ++list.wordCount;
  }
};

void measureAdding(const std::string &name, const MakeHits &make) {
  measure(table, name, "ours", [make](benchmark::State &state) {
    const std::vector<Hit> all = make();
    for (auto _ : state) {
      HLL *list = GLT_NewHLL(nullptr);
      for (const Hit &hit : all)
        HLL_AddHL(list, hit.page, hit.pos, hit.len);
      GLT_DeleteHLL(list);
    }
  });
  measure(table, name, "plain loops", [make](benchmark::State &state) {
    const std::vector<Hit> all = make();
    for (auto _ : state) {
      PlainList list;
      for (const Hit &hit : all)
        list.add(hit);
      benchmark::DoNotOptimize(list.list.wordCount);
    }
  });
}

using List = std::unique_ptr<HLL, void (*)(HLL *)>;

List listOf(const std::vector<Hit> &hits) {
  List list(GLT_NewHLL(nullptr), GLT_DeleteHLL);
  for (const Hit &hit : hits)
    HLL_AddHL(list.get(), hit.page, hit.pos, hit.len);
  return list;
}

void measureCopying(const std::string &name, const MakeHits &make) {
  measure("copying a list", name, "ours", [make](benchmark::State &state) {
    const List list = listOf(make());
    for (auto _ : state)
      GLT_DeleteHLL(GLT_CopyHLL(list.get()));
  });
  measure("copying a list", name, "plain loops", [make](benchmark::State &state) {
    const List list = listOf(make());
    for (auto _ : state) {
      PlainList copy;
      for (uint32_t i = 0; i < list->pageCount; ++i)
        for (uint32_t k = 0; k < list->pages[i].count; ++k)
          copy.add({list->pages[i].page, list->pages[i].words[k].pos, list->pages[i].words[k].len});
      benchmark::DoNotOptimize(copy.list.wordCount);
    }
  });
}

} // namespace

void measureList() {
  measureAdding("S, 42 hits on 6 pages", [] { return inPageOrder(6, 7); });
  measureAdding("L, 1,000 pages of 400", [] { return inPageOrder(1000, 400); });
  measureAdding("W, 65,000 on one page", [] { return onOnePage(65000, false); });
  measureAdding("W, shuffled", [] { return onOnePage(65000, true); });
  measureAdding("P, 10,000 pages of 100", [] { return inPageOrder(10000, 100); });
  measureAdding("P, interleaved", [] { return interleaved(10000, 100); });
  measureCopying("L, 1,000 pages of 400", [] { return inPageOrder(1000, 400); });
  measureCopying("W, 65,000 on one page", [] { return onOnePage(65000, false); });
}

} // namespace bench
