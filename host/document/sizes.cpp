// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Sizes are asked for a run of pages at a time: a document has one of these.
#include "host/document/sizes.h"

#include <algorithm>

#include "host/document/answering.h"

namespace host {
namespace {

constexpr PageSize letter{612, 792};

} // namespace

void SizeCache::keep(int32_t first, const std::vector<PageSize> &sizes) {
  for (const PageSize &size : sizes)
    sizes_[first++] = size;
}

PageSize SizeCache::get(int32_t page) {
  if (const auto known = sizes_.find(page); known != sizes_.end()) return known->second;
  const int32_t run = limit_.time ? sizesTogether : 1; // a caller who waits as long as it takes waits for no other page
  const int32_t first = page - page % run;
  Run &asked = runs_[first];
  if (!asked.ticket)
    asked.ticket = service_.ask(SizesRequest{first, std::min(run, pageCount_ - first)}, Urgency::awaited,
                                [this, first](Answer &answer) { take(first, answer); });
  else if (asked.late >= 0)
    return letter;
  const bool answered = service_.await(asked.ticket, limit_.deadline());
  if (!answered) asked.late = page;
  const auto known = sizes_.find(page);
  return known == sizes_.end() ? letter : known->second;
}

void SizeCache::take(int32_t first, Answer &answer) {
  if (const auto *got = std::get_if<Sizes>(&answer.value)) keep(first, got->sizes);
  const int32_t late = runs_[first].late;
  runs_.erase(first);
  if (late >= 0 && late_) late_(late);
}

} // namespace host
