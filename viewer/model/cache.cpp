// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The rendered pages of all open documents. The session owns one.
#include "viewer/model/cache.h"

#include <utility>

namespace viewer {

const host::Image *PageCache::find(const PageKey &key) {
  const auto found = index_.find(key);
  if (found == index_.end()) return nullptr;
  pages_.splice(pages_.begin(), pages_, found->second);
  return &found->second->image;
}

void PageCache::insert(const PageKey &key, host::Image &&image) {
  if (const auto found = index_.find(key); found != index_.end()) erase(found->second);
  std::list<Page> page(1);
  index_.emplace(key, page.begin());
  pages_.splice(pages_.begin(), page);
  pages_.front() = {key, std::move(image)};
  bytes_ += bytesOf(pages_.front().image);
  while (bytes_ > bound_ && pages_.size() > 1)
    erase(std::prev(pages_.end()));
}

void PageCache::drop(uint64_t document) {
  for (auto page = pages_.begin(); page != pages_.end();) {
    const auto next = std::next(page);
    if (page->key.document == document) erase(page);
    page = next;
  }
}

void PageCache::erase(Iterator page) {
  bytes_ -= bytesOf(page->image);
  index_.erase(page->key);
  pages_.erase(page);
}

} // namespace viewer
