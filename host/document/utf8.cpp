// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/utf8.h"

namespace host {

std::string_view withoutPartOfCharacter(std::string_view bytes) {
  size_t last = bytes.size(); // where the last character begins
  while (last > 0 && (static_cast<unsigned char>(bytes[--last]) & 0xC0U) == 0x80U)
    continue;
  const auto lead = static_cast<unsigned char>(last == bytes.size() ? 0 : bytes[last]);
  const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  return bytes.size() - last < length ? bytes.substr(0, last) : bytes;
}

std::string_view firstBytes(std::string_view utf8, size_t most) {
  return utf8.size() <= most ? utf8 : withoutPartOfCharacter(utf8.substr(0, most));
}

} // namespace host
