// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Finds a text on a page for a viewer's Find dialog: any part of the page's text, without regard to accents, across
// line ends, and in words that are hyphenated there.
#pragma once

#include <string>
#include <vector>

#include "host/document/find.h"
#include "host/document/page.h"

namespace document {

class Finder {
public:
  /// A run of white space in the text counts as one space; white space at its ends is ignored. Throws
  /// std::invalid_argument, with one clear line, for bad UTF-8.
  Finder(const std::string &utf8, host::FindOptions options);

  /// Whether the text is empty; then it is not found anywhere.
  bool empty() const { return text_.empty(); }

  /// All occurrences on a page in reading order; they do not overlap.
  std::vector<host::Found> find(const host::PageText &page) const;

private:
  std::u32string text_; // folded
  host::FindOptions options_;
};

} // namespace document
