// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Lists damaged pages, counted from 1, consecutive ones as a range: "3, 7-9".
#include "tools/damage.h"

#include <algorithm>

#include "tools/failure.h"

namespace tools {
namespace {

std::string listed(const std::vector<int32_t> &pages) {
  constexpr size_t mostRanges = 20; // keeps the line readable
  std::string list;
  size_t ranges = 0;
  for (size_t i = 0; i < pages.size(); ++i) {
    if (ranges++ == mostRanges) return list + ", ...";
    const size_t first = i;
    while (i + 1 < pages.size() && pages[i + 1] == pages[i] + 1)
      ++i;
    list += (list.empty() ? "" : ", ") + std::to_string(int64_t{pages[first]} + 1);
    if (i > first) list += "-" + std::to_string(int64_t{pages[i]} + 1);
  }
  return list;
}

} // namespace

std::string DamagedPages::report(const std::string &document, int32_t pageCount, Processed processed) const {
  std::vector<int32_t> pages = pages_;
  std::sort(pages.begin(), pages.end());
  const std::string all = std::to_string(pageCount);
  if (pages.size() >= static_cast<size_t>(pageCount))
    throw CommandFailure(
        exitDocument, document + ": " + (pageCount == 1 ? "its page is damaged" : "all " + all + " pages are damaged"));
  const bool one = pages.size() == 1;
  const std::string counted = processed == Processed::allPages ? " of " + all + " pages" : one ? " page" : " pages";
  return document + ": " + std::to_string(pages.size()) + counted + (one ? " is" : " are") +
         " damaged and left out: " + listed(pages);
}

} // namespace tools
