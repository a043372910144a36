// Pages as they were rendered, within a bound: those used last stay.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <list>
#include <map>

#include "host/document/image.h"

namespace viewer {

/// A page of an open document at a size.
struct PageKey {
  uint64_t document = 0;
  int32_t page = 0;
  double dpi = 0;
  auto operator<=>(const PageKey &) const = default;
};

class PageCache {
public:
  explicit PageCache(size_t bytes) : bound_(bytes) {}

  /// The page, which is now the one used last, or null. Stays until the next insert or drop.
  const host::Image *find(const PageKey &key);
  bool has(const PageKey &key) const { return places_.contains(key); }
  /// Keeps a page, and drops those not used for the longest time until all fit. The page itself stays in any case.
  /// Where memory is exhausted, the image stays with the caller.
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
  using Place = std::list<Page>::iterator;
  void erase(Place place);

  size_t bound_, bytes_ = 0;
  std::list<Page> pages_; ///< the one used last stands first
  std::map<PageKey, Place> places_;
};

/// What an image takes.
inline size_t bytesOf(const host::Image &image) { return image.pixels.size() * sizeof image.pixels[0]; }

} // namespace viewer
