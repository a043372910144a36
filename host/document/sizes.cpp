// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Sizes are asked for a run of pages at a time: a document has one of these.
#include "host/document/sizes.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

constexpr PageSize letter{612, 792};

} // namespace

DocumentError notThere(const Service &service, int32_t page) {
  return {DocumentError::unreadable,
          nameInMessage(service.file()) + ": page " + std::to_string(int64_t{page} + 1) + " takes too long to read"};
}

void SizeCache::keep(int32_t first, const std::vector<PageSize> &sizes) {
  for (const PageSize &size : sizes)
    sizes_[first++] = size;
}

PageSize SizeCache::get(int32_t page) {
  if (const auto known = sizes_.find(page); known != sizes_.end()) return known->second;
  const int32_t first = firstOfRun(page);
  if (limit_.missing != nullptr) {
    if (failed_.contains(first)) return letter; // asked for again by those who wait
    if (!runs_.contains(first)) ask(first, Urgency::searched);
    limit_.missing->push_back(page);
    throw notThere(service_, page);
  }
  const auto underWay = runs_.find(first);
  if (underWay != runs_.end() && underWay->second.late >= 0) return letter;
  Run &asked = underWay == runs_.end() ? ask(first, Urgency::shown) : underWay->second;
  const bool answered = service_.await(asked.ticket, limit_.deadline());
  if (!answered) asked.late = page;
  const auto known = sizes_.find(page);
  return known == sizes_.end() ? letter : known->second;
}

// If the request cannot be made, the run is not awaited.
SizeCache::Run &SizeCache::ask(int32_t first, Urgency urgency) {
  Ticket ticket = service_.ask(SizesRequest{first, std::min(runLength(), pageCount_ - first)}, urgency,
                               [this, first](Answer &answer) { take(first, answer); });
  Run &run = runs_[first];
  run.ticket = std::move(ticket);
  return run;
}

void SizeCache::take(int32_t first, Answer &answer) {
  if (const auto *got = std::get_if<Sizes>(&answer.value))
    keep(first, got->sizes);
  else
    failed_.insert(first);
  const int32_t late = runs_[first].late;
  runs_.erase(first);
  if (late >= 0 && late_) late_(late);
}

} // namespace host
