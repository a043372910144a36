// Highlight files to measure with. Made anew in every run, the same every time.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// A hit as it stands in a file.
struct Hit {
  int32_t page;
  uint16_t pos, len;
};

/// How the tags of a file stand: a line each, or joined.
enum class Layout { lines, oneLine };

/// Whether all tags are spelled alike, as by any one program, or in two ways by turns.
enum class Spelling { alike, inTurn };

std::string highlightFile(const std::vector<Hit> &hits, Layout layout, Spelling spelling = Spelling::alike);

/// `perPage` hits on each of `pages` pages, page by page, in ascending order of their places.
std::vector<Hit> inPageOrder(int pages, int perPage);
/// The same hits, one of each page in turn.
std::vector<Hit> interleaved(int pages, int perPage);
/// `count` hits on one page, in ascending order or shuffled.
std::vector<Hit> onOnePage(int count, bool shuffled);

/// About that many bytes of XML that begins as a highlight file does and has not one hit in it: an article.
std::string article(size_t bytes, Layout layout);
/// About that many bytes of what is hard to split: quotes that do not close, runs of just about the longest token,
/// sentence ends. Not XML, but for its first word.
std::string hostile(size_t bytes, Layout layout);

} // namespace bench
