// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The damaged pages of a document. Commands leave them out, go on with the others, and report them at the end.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tools {

class DamagedPages {
public:
  void add(int32_t page) { pages_.push_back(page); } ///< counted from 0; the same page once
  bool none() const { return pages_.empty(); }
  enum class Processed { allPages, somePages };
  /// One line that reports the damaged pages, also of many. If all pages of the document are damaged, throws
  /// CommandFailure (exitDocument) with the line instead.
  std::string report(const std::string &document, int32_t pageCount, Processed processed) const;

private:
  std::vector<int32_t> pages_;
};

} // namespace tools
