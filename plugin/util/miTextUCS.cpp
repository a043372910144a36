// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// White space in UCS strings.
#include <cstring>

#include "plugin/util/miText.h"
#include "plugin/util/miUtils.h"

using tavrel::Bool16;

namespace {

constexpr uint32_t examined = 65535;

/// Whether a unit is white space below 0x100. miUCSIsSpace is not used here: it tests only four bits.
bool isSpaceUnit(const char *unit) { return unit[0] == 0 && miIsspace(static_cast<uint8_t>(unit[1])); }

bool isZeroUnit(const char *unit) { return unit[0] == 0 && unit[1] == 0; }

} // namespace

Bool16 miUCSIsSpace(uint16_t unit) {
  // Only the low four bits are tested: 0x19 to 0x1D count and 0x20 does not.
  return unit < 0x100 ? miIsspace(unit & 0x0F) : Bool16{0};
}

Bool16 miUCSStrip(char *string) {
  char *const text = string + 2;
  const char *read = text;
  while (isSpaceUnit(read))
    read += 2;
  // The copying stops at two zero bytes at any offset, and two are written where it stopped. At an odd offset they are
  // the halves of two units and no terminator: the units after them in the buffer stay part of the string.
  char *write = text;
  while (!isZeroUnit(read))
    *write++ = *read++;
  memset(write, 0, 2);
  char *end = text;
  while (!isZeroUnit(end))
    end += 2;
  while (end > text && isSpaceUnit(end - 2)) {
    end -= 2;
    end[1] = 0;
  }
  return !isZeroUnit(text);
}

Bool16 miUCSStripAll(char *string) {
  if (string == nullptr) return 0;
  const char *read = string + 2;
  char *write = string + 2;
  for (; !isZeroUnit(read) && read - (string + 2) < 2 * ptrdiff_t{examined}; read += 2)
    if (!isSpaceUnit(read)) {
      write[0] = read[0];
      write[1] = read[1];
      write += 2;
    }
  const char *end = read;
  while (!isZeroUnit(end))
    end += 2;
  memmove(write, read, static_cast<size_t>(end - read) + 2);
  return !isZeroUnit(string + 2);
}
