// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/utf8.h"

#include <algorithm>

namespace host {

std::string_view withoutPartOfCharacter(std::string_view bytes) {
  const auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
  const auto first = std::find_if_not(bytes.rbegin(), bytes.rend(), isContinuation); // of the last character
  if (first == bytes.rend()) return bytes;
  const auto lead = static_cast<unsigned char>(*first);
  const auto there = static_cast<size_t>(first - bytes.rbegin()) + 1;
  const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  return there < length ? bytes.substr(0, bytes.size() - there) : bytes;
}

std::string_view firstBytes(std::string_view utf8, size_t most) {
  return utf8.size() <= most ? utf8 : withoutPartOfCharacter(utf8.substr(0, most));
}

} // namespace host
