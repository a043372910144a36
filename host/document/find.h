// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Finds a text on a page for a viewer's Find dialog: any part of the page's text, without regard to accents, across
// line ends, and in words that are hyphenated there.
#pragma once

#include <string>
#include <vector>

#include "host/document/page.h"

namespace host {

struct FindOptions {
  bool matchCase = false;
  bool wholeWords = false; ///< no letter or digit is directly before or after it
};

/// An occurrence of the text on a page.
struct Found {
  std::vector<Box> boxes; ///< a box a word (or part of a word) that it covers, in page space
};

class Finder {
public:
  /// A run of white space in the text counts as one space; white space at its ends is ignored. Throws
  /// std::invalid_argument, with one clear line, for bad UTF-8.
  Finder(const std::string &utf8, FindOptions options);

  /// Whether the text is empty; then it is not found anywhere.
  bool empty() const { return text_.empty(); }

  /// All occurrences on a page in reading order; they do not overlap.
  std::vector<Found> find(const PageText &page) const;

private:
  std::u32string text_; // folded
  FindOptions options_;
};

} // namespace host
