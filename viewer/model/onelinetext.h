// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Text from outside, such as the clipboard or a file's name, as a line that can be shown and edited.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/document/utf8.h"

namespace viewer {

/// UTF-8: each byte that belongs to no character is U+FFFD.
std::string validUtf8(std::string_view bytes);

/// The same of one line: line feeds and tabs are spaces, other control characters are left out.
std::string oneLine(std::string_view bytes);

std::string utf8OfLatin1(const std::string &latin1);

/// The characters of UTF-8. Bytes that belong to none are part of the one before them.
std::vector<std::string> characters(std::string_view utf8);

using host::firstBytes;

} // namespace viewer
