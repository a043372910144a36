// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Lists pages, counted from 1, consecutive ones as a range: "3, 7-9".
#include "tools/leftout.h"

#include <algorithm>
#include <chrono>

#include "tools/failure.h"

namespace tools {
namespace {

using host::DocumentError;

std::string listed(std::vector<int32_t> pages) {
  std::sort(pages.begin(), pages.end());
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

// After "page 3" or "pages 3, 7".
std::string predicate(DocumentError::Reason reason, bool one, const host::ProcessOptions &limits) {
  const std::string takes = one ? "takes" : "take";
  switch (reason) {
  case DocumentError::tooMuchMemory:
    return takes + " more than " + std::to_string(limits.memory >> 20) + " megabytes (--document-memory)";
  case DocumentError::tooLong: {
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(limits.pageTime).count();
    return takes + " longer than " + std::to_string(seconds) + (seconds == 1 ? " second" : " seconds") +
           " (--page-time)";
  }
  case DocumentError::processFailed:
    return std::string(one ? "makes its" : "make their") + " process fail";
  default:
    return one ? "is damaged" : "are damaged";
  }
}

} // namespace

void PagesLeftOut::report(std::ostream &err, const std::string &document, int32_t pageCount, Processed processed,
                          const host::ProcessOptions &limits) const {
  const std::string all = std::to_string(pageCount);
  int32_t left = pageCount;
  for (const auto &[reason, pages] : pages_) {
    const bool one = pages.size() == 1;
    const auto count = static_cast<int32_t>(pages.size());
    if (count >= pageCount)
      throw CommandFailure(exitDocument, document + ": " + (one ? "its page " : "all " + all + " pages ") +
                                             predicate(reason, one, limits));
    const std::string counted = processed == Processed::allPages ? " of " + all + " pages "
                                : one                            ? " page "
                                                                 : " pages ";
    err << "tavrel: " << document << ": " << count << counted << predicate(reason, one, limits)
        << (one ? " and is left out: " : " and are left out: ") << listed(pages) << "\n";
    left -= count;
  }
  if (left <= 0) throw CommandFailure(exitDocument, document + ": none of its " + all + " pages can be read");
}

} // namespace tools
