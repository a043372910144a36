// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Finds a phrase among the words of a page: whole words, without regard to case, accents and the punctuation around
// them, also across line ends.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tools {

/// One occurrence of a phrase on a page.
struct Hit {
  uint32_t offset = 0; ///< of its first letter in the page's text, in code points
  uint32_t length = 0; ///< up to and including its last letter
  uint32_t word = 0;   ///< number of its first word, in reading order
  uint32_t words = 0;  ///< how many words it covers, also in part
};

class Phrase {
public:
  /// The words of all arguments (UTF-8), in order; an argument with spaces in it gives several. Throws
  /// std::invalid_argument, with a message of one line, for invalid UTF-8 and if there is nothing but punctuation.
  explicit Phrase(std::span<const std::string> arguments);

  /// All hits among the words of a page, which are in reading order; so are the hits, which do not overlap.
  std::vector<Hit> find(std::span<const std::u32string> page) const;

private:
  std::vector<std::u32string> words_; // folded, without the punctuation at their ends
};

} // namespace tools
