// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The pages of a document that cannot be read. Commands leave them out, go on with the others, and report them at the
// end.
#pragma once

#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "host/document/documenterror.h"
#include "host/document/processes.h"

namespace tools {

class PagesLeftOut {
public:
  void add(int32_t page, host::DocumentError::Reason reason) { pages_[reason].push_back(page); } ///< each page once
  bool none() const { return pages_.empty(); }
  enum class Processed { allPages, somePages };
  /// Prints a line for each reason, which reports its pages, also many, and names the option that sets a limit. If no
  /// page of the document can be read, throws CommandFailure (exitDocument).
  void report(std::ostream &err, const std::string &document, int32_t pageCount, Processed processed,
              const host::ProcessOptions &limits) const;
  /// " on the other pages" if there are pages that have been left out.
  const char *otherPages() const { return none() ? "" : " on the other pages"; }

private:
  std::map<host::DocumentError::Reason, std::vector<int32_t>> pages_; ///< counted from 0
};

} // namespace tools
