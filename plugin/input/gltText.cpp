// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The small conversions of the highlight file's words: colours, hexadecimal digits, comparison. They handle
// ASCII in every locale, so that a file is read the same way everywhere.
#include <cstring>

#include "plugin/input/gltAux.h"

using tavrel::Bool16;

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
int lower(char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : static_cast<unsigned char>(c); }

/// The value of up to two digits at an offset of a text; 0 beyond its end.
uint16_t pairAt(const char *text, size_t length, size_t offset) {
  char pair[3] = {};
  if (offset < length) memcpy(pair, text + offset, length - offset < 2 ? 1 : 2);
  uint16_t value = 0;
  HexToInt(pair, &value);
  return value;
}

} // namespace

Bool16 ParseRGB(char *text, uint16_t *red, uint16_t *green, uint16_t *blue) {
  if (text == nullptr) return 0;
  for (char *c = text; *c != 0; ++c) {
    *c = upper(*c);
    if (!isDigit(*c) && (*c < 'A' || *c > 'F')) return 0;
  }
  // Never found: the loop above rejects a text with an X.
  const char *prefix = strstr(text, "0X");
  const char *digits = prefix != nullptr ? prefix + 2 : text; // GCOVR_EXCL_BR_LINE: see above
  const size_t length = strlen(digits);
  *red = pairAt(digits, length, 0);
  *green = pairAt(digits, length, 2);
  *blue = pairAt(digits, length, 4);
  return 1;
}

Bool16 HexToInt(const char *text, uint16_t *value) {
  if (text == nullptr) return 0;
  // The leftmost digit is the least significant.
  uint32_t sum = 0;
  for (unsigned i = 0; i < 4 && text[i] != 0; ++i) {
    const int digit = isDigit(text[i]) ? text[i] - '0' : static_cast<unsigned char>(text[i]) - 55;
    sum += static_cast<uint32_t>(digit) << (4 * i);
  }
  *value = static_cast<uint16_t>(sum);
  return 1;
}

int16_t gltstricmp(const char *a, const char *b) {
  while (*a != 0 && lower(*a) == lower(*b)) {
    ++a;
    ++b;
  }
  return static_cast<int16_t>(lower(*a) - lower(*b));
}

Bool16 isallnum(const char *text) {
  while (isDigit(*text))
    ++text;
  return *text == 0;
}
