// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Texts in UTF-8 that are limited to a number of bytes.
#pragma once

#include <cstddef>
#include <string_view>

namespace host {

/// The bytes without a character at their end that was truncated.
std::string_view withoutPartOfCharacter(std::string_view bytes);

/// As many complete characters of a text as fit into a number of bytes.
std::string_view firstBytes(std::string_view utf8, size_t most);

} // namespace host
