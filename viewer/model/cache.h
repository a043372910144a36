// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Rendered pages, up to a number of bytes: the most recently used ones are kept.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <list>
#include <map>

#include "host/document/image.h"

namespace viewer {

/// A page of an open document at a resolution.
struct PageKey {
  uint64_t document = 0;
  int32_t page = 0;
  double dpi = 0;
  auto operator<=>(const PageKey &) const = default;
};

class PageCache {
public:
  explicit PageCache(size_t bytes) : bound_(bytes) {}

  /// The page, or null. Makes it the most recently used one. The pointer is valid until the next insert or drop.
  const host::Image *find(const PageKey &key);
  bool has(const PageKey &key) const { return index_.contains(key); }
  /// Keeps a page, and drops the least recently used ones until the rest fits. The page itself is kept in any case.
  /// If memory is exhausted, the image stays with the caller.
  void insert(const PageKey &key, host::Image &&image);
  /// Drops a document's pages.
  void drop(uint64_t document);

  size_t bound() const { return bound_; }
  size_t bytes() const { return bytes_; }
  size_t size() const { return pages_.size(); }

private:
  struct Page {
    PageKey key;
    host::Image image;
  };
  using Iterator = std::list<Page>::iterator;
  void erase(Iterator page);

  size_t bound_, bytes_ = 0;
  std::list<Page> pages_; ///< the most recently used one first
  std::map<PageKey, Iterator> index_;
};

/// How many bytes an image takes.
inline size_t bytesOf(const host::Image &image) { return image.pixels.size() * sizeof image.pixels[0]; }

} // namespace viewer
