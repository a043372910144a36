// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Highlight lists for tests: made from triples, converted to triples, deleted by their owner.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <ostream>
#include <vector>

#include "plugin/glt/glt.h"

/// A highlight with its page number.
struct Highlight {
  int32_t page;
  uint16_t pos, len;
  bool operator==(const Highlight &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const Highlight &h) {
  return out << '(' << h.page << ',' << h.pos << ',' << h.len << ')';
}

using Highlights = std::vector<Highlight>;

/// Everything in a list, page by page.
inline Highlights highlightsOf(const HLL *list) {
  Highlights all;
  for (uint32_t p = 0; p < HLL_GetPageCount(list); ++p)
    for (uint16_t w = 0;; ++w) {
      Highlight h = {};
      if (!HLL_GetHL(list, p, w, &h.page, &h.pos, &h.len)) break;
      all.push_back(h);
    }
  return all;
}

/// A list that the test owns.
class ListOwner {
public:
  explicit ListOwner(std::initializer_list<Highlight> highlights, void *userData = nullptr)
      : list_(GLT_NewHLL(userData)) {
    for (const Highlight &h : highlights)
      HLL_AddHL(list_, h.page, h.pos, h.len);
  }
  ~ListOwner() { GLT_DeleteHLL(list_); }
  ListOwner(const ListOwner &) = delete;
  ListOwner &operator=(const ListOwner &) = delete;
  operator HLL *() const { return list_; }
  HLL *list() const { return list_; }

private:
  HLL *list_;
};
