// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Highlight files for benchmarks, generated in every run, always the same.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// A hit as it is written in a file.
struct Hit {
  int32_t page;
  uint16_t pos, len;
};

/// The layout of a file's tags: one on each line, or all on one line.
enum class Layout { lines, oneLine };

/// Whether all tags are spelled alike, or in two ways alternating.
enum class Spelling { alike, alternating };

std::string highlightFile(const std::vector<Hit> &hits, Layout layout, Spelling spelling = Spelling::alike);

/// `perPage` hits on each of `pages` pages, page by page, in ascending order of their positions.
std::vector<Hit> inPageOrder(int pages, int perPage);
/// The same hits, the first of each page, then the second of each page, and so on.
std::vector<Hit> interleaved(int pages, int perPage);
/// `count` hits on one page, in ascending order or shuffled.
std::vector<Hit> onOnePage(int count, bool shuffled);

/// About that many bytes of XML without hits that begins like a highlight file: an article.
std::string article(size_t bytes, Layout layout);
/// About that many bytes that are hard to split into tokens: quotes that do not close, runs of about the length of the
/// longest token, sentence ends. Only its first word is XML.
std::string hostile(size_t bytes, Layout layout);

} // namespace bench
