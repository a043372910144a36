// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/words.h"

#include <algorithm>

namespace viewer {
namespace {

constexpr size_t kept = 8; // pages that were shown, and pages that were read

bool has(const std::vector<int32_t> &pages, int32_t page) {
  return std::find(pages.begin(), pages.end(), page) != pages.end();
}

// Makes a page the last one; returns the one that there are too many of, or -1.
int32_t append(std::vector<int32_t> &pages, int32_t page) {
  std::erase(pages, page);
  pages.push_back(page);
  if (pages.size() <= kept) return -1;
  const int32_t oldest = pages.front();
  pages.erase(pages.begin());
  return oldest;
}

} // namespace

bool Words::keeps(int32_t page) const { return has(shown_, page) || has(read_, page) || has(expected_, page); }

void Words::expect(host::Document &document, int32_t page, bool shown) {
  if (!has(shown_, page) && !has(expected_, page)) expected_.push_back(page);
  document.expectText(page, shown);
}

void Words::show(host::Document &document, int32_t page) {
  const int32_t oldest = append(shown_, page);
  std::vector<int32_t> unused;
  std::erase(expected_, page);
  std::erase_if(expected_, [&](int32_t other) {
    if (other == page + 1 || other == page - 1) return false;
    unused.push_back(other);
    return true;
  });
  if (oldest >= 0) unused.push_back(oldest);
  for (const int32_t other : unused)
    drop(document, other);
}

void Words::read(host::Document &document, int32_t page) {
  if (const int32_t oldest = append(read_, page); oldest >= 0) drop(document, oldest);
}

void Words::drop(host::Document &document, int32_t page) {
  if (!keeps(page)) document.forgetText(page);
}

} // namespace viewer
