// Finds a phrase among the words of a page, as a reader would: whole words, whatever their case, accents and the
// punctuation around them, also from one line's end to the next line's start.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/document/document.h"

namespace tools {

/// One place where a phrase stands on a page.
struct Hit {
  uint32_t offset = 0; ///< of its first letter in the page's text, in code points
  uint32_t length = 0; ///< up to and including its last letter
  uint32_t word = 0;   ///< number of its first word, in reading order
  uint32_t words = 0;  ///< how many words it touches
};

class Phrase {
public:
  /// The words of all arguments (UTF-8), in order; one with blanks in it counts as several. Throws
  /// std::invalid_argument, with one clear line, for bad UTF-8 and where there is not a single letter or digit.
  explicit Phrase(std::span<const std::string> arguments);

  /// All hits on a page, from left to right, none overlapping the one before.
  std::vector<Hit> find(const host::PageText &page) const;

private:
  std::vector<std::u32string> words_; // folded, without the punctuation at their ends
};

} // namespace tools
