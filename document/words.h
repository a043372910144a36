// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Words of a page from what the PDF library gives: UTF-16 into code points, and the order of the content stream.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace document {

/// Code points of UTF-16; a surrogate without its partner becomes U+FFFD.
std::u32string codePoints(std::span<const unsigned short> utf16);

/// Brings the boxes of a page into the order of its content stream. `boxes` are their texts in reading order, `raw` is
/// the page's text as the stream has it, words separated by white space. Returns a permutation of the boxes' indices.
std::vector<uint32_t> orderByContent(std::span<const std::u32string_view> boxes, std::u32string_view raw);

} // namespace document
