// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Text as searches compare it: the same letters for everything that a reader would type the same way.
#pragma once

#include <string>
#include <string_view>

namespace host {

enum class Case { folded, kept };

/// A text as it is compared: accents stripped, ligatures and other compatibility forms taken apart, typographic
/// apostrophes, quotes and hyphens as typed ones, invisible characters left out; case folded unless it is to be kept.
std::u32string folded(std::u32string_view text, Case letterCase = Case::folded);

/// Appends what one character is compared as: nothing, itself, or several characters.
void appendFolded(char32_t c, Case letterCase, std::u32string &to);

/// Spaces of any width, and control characters.
bool isWhiteSpace(char32_t c);

/// The code points of UTF-8. Throws std::invalid_argument, with one clear line, for other bytes.
std::u32string decoded(std::string_view utf8);

} // namespace host
