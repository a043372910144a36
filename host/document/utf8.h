// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Texts in UTF-8: limited to a number of bytes, checked, and made of bytes that a file calls text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

/// The bytes without a character at their end that was truncated.
std::string_view withoutPartOfCharacter(std::string_view bytes);

/// As many complete characters of a text as fit into a number of bytes.
std::string_view firstBytes(std::string_view utf8, size_t most);

/// Whether it is UTF-8 without control characters or line ends.
bool isLine(std::string_view text);
/// The same of several lines: with line feeds and tabs.
bool isLines(std::string_view text);

/// Any bytes as a line that is not longer: what is not UTF-8, control characters and line ends are question marks.
std::string printable(std::string_view bytes);
/// Any bytes as a line: what is not UTF-8 is U+FFFD, control characters and line ends are spaces; none at the ends.
std::string lineOf(std::string_view bytes);
/// The same as lines. "\r" and "\r\n" end a line, too.
std::string linesOf(std::string_view bytes);

} // namespace host
