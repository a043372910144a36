// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Strings of both kinds for tests: written as texts that hold their terminators, copied into buffers that show every
// byte written.
#pragma once

#include <initializer_list>
#include <ostream>
#include <string>

/// A UCS string: the mark and the units, big-endian, without the terminating unit.
inline std::string ucs(std::initializer_list<int> units) {
  std::string bytes = "\xFE\xFF";
  for (const int unit : units) {
    bytes += static_cast<char>(unit >> 8);
    bytes += static_cast<char>(unit & 0xFF);
  }
  return bytes;
}

inline std::string ucs(const char *letters) {
  std::string bytes = "\xFE\xFF";
  for (; *letters != '\0'; ++letters) {
    bytes += '\0';
    bytes += *letters;
  }
  return bytes;
}

/// With space for either kind of terminator after it.
inline std::string ended(const std::string &bytes) { return bytes + std::string(2, '\0'); }

/// A buffer full of dots.
inline std::string dots(size_t size) { return std::string(size, '.'); }

/// One zero byte and one zero unit, for expectations.
inline const std::string nul = std::string(1, '\0'), nulUnit = std::string(2, '\0');
