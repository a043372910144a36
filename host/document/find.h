// Finds a text on a page as people expect of a viewer's Find dialog: any piece of the page's text, whatever its
// accents, over line ends, and in words that a hyphen parts there.
#pragma once

#include <string>
#include <vector>

#include "host/document/page.h"

namespace host {

struct FindOptions {
  bool matchCase = false;
  bool wholeWords = false; ///< no letter or digit stands before or after it
};

/// A place where the text stands on a page.
struct Found {
  std::vector<Box> boxes; ///< a box a word (or part of a word) that it covers, in page space
};

class Finder {
public:
  /// A run of blanks in the text counts as one, blanks at its ends do not count. Throws std::invalid_argument, with one
  /// clear line, for bad UTF-8.
  Finder(const std::string &utf8, FindOptions options);

  /// Whether the text says nothing: then it is found nowhere.
  bool empty() const { return text_.empty(); }

  /// All places on a page in reading order, none overlapping the one before.
  std::vector<Found> find(const PageText &page) const;

private:
  std::u32string text_; // folded
  FindOptions options_;
};

} // namespace host
