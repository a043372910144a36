// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Text helpers for byte strings, fields and paths, the time, and rounding.
#include "plugin/util/miText.h"

#include <cstring>
#include <ctime>

#include "plugin/util/miUtils.h"

using tavrel::Bool16;

namespace {

/// miStripAll stops removing white space when it has kept this many bytes.
constexpr uint32_t examined = 65535;

bool isSpace(char c) { return miIsspace(static_cast<uint8_t>(c)) != 0; }

/// Truncates a string after its last byte that is not white space; `length` is its length.
void dropTrailingSpace(char *string, size_t length) {
  while (length > 0 && isSpace(string[length - 1]))
    --length;
  string[length] = 0;
}

} // namespace

Bool16 miIsspace(uint8_t byte) { return byte == ' ' || (byte >= 9 && byte <= 13); }

Bool16 miStrip(char *string) {
  if (miIsUCS(string)) return miUCSStrip(string);
  const char *first = string;
  while (isSpace(*first))
    ++first;
  const size_t length = strlen(first);
  memmove(string, first, length + 1);
  dropTrailingSpace(string, length);
  return *string != 0;
}

Bool16 miStripAll(char *string) {
  if (string == nullptr) return 0;
  if (miIsUCS(string)) return miUCSStripAll(string);
  const char *read = string;
  char *write = string;
  for (; *read != 0 && write - string < ptrdiff_t{examined}; ++read)
    if (!isSpace(*read)) *write++ = *read;
  memmove(write, read, strlen(read) + 1);
  return *string != 0;
}

char *miTranslate(char *string, char from, char to) {
  for (; *string != 0; ++string)
    if (*string == from) *string = to;
  return string;
}

uint32_t miCountStr(const char *string, const char *part) {
  const char *end = string + miStrlen(string);
  const uint32_t length = miStrlen(part);
  uint32_t count = 0;
  while (*string != 0) {
    const bool match = miOccursAt(string, end, part, length);
    count += match ? 1 : 0;
    string += match ? length : 1;
  }
  return count;
}

char *miSubstituteDots(char *path) {
  if (strncmp(path, "/../", 4) == 0) return path;
  // Every "/../" is removed before any "/./": in "/./../" the dot is the removed segment.
  for (char *up = strstr(path, "/../"); up != nullptr && up != path; up = strstr(path, "/../")) {
    char *begin = up - 1;
    while (begin > path && *begin != '/')
      --begin;
    const char *rest = up + 3;
    if (*begin != '/') ++rest; // the path began with that segment: no '/' is invented
    memmove(begin, rest, strlen(rest) + 1);
  }
  for (char *here = strstr(path, "/./"); here != nullptr; here = strstr(path, "/./"))
    memmove(here, here + 2, strlen(here + 2) + 1);
  return path;
}

const char *miSnarf(const char *source, const char *start, const char *end, char *out, uint32_t max) {
  *out = 0;
  if (source == nullptr) return nullptr;
  const char *terminator = source + miStrlen(source);
  if (start != nullptr && *start != 0) {
    const uint32_t length = miStrlen(start);
    while (*source != 0 && !miOccursAt(source, terminator, start, length))
      ++source;
    if (*source == 0) return nullptr;
    source += length;
  }
  if (end == nullptr || *end == 0) {
    miStrncpySAFE(out, source, max);
    return *source != 0 ? source + max : source; // max is added also where less text remains
  }
  const uint32_t length = miStrlen(end);
  uint32_t copied = 0;
  while (*source != 0 && copied < max && !miOccursAt(source, terminator, end, length))
    out[copied++] = *source++;
  out[copied] = 0;
  return *source != 0 ? source + length : source; // the length is added also where `max` bytes were copied
}

namespace {

/// The byte that a backslash and `c` stand for.
char escaped(char c) { return c == 'n' ? '\n' : c == 'r' ? '\r' : c; }

/// Resolves the field at the start of `field` in place, up to a comma outside of quotes. Returns how many bytes were
/// read; `length` is the length of the resolved field.
uint32_t resolveField(char *field, bool keepEscapes, uint32_t &length) {
  bool quoted = false;
  uint32_t read = 0, write = 0;
  while (field[read] != 0 && (quoted || field[read] != ',')) {
    const char c = field[read++];
    if (c == '"') {
      quoted = !quoted;
    } else if (c == '\\' && field[read] != 0) {
      const char next = field[read++];
      const bool keep = keepEscapes && next != ',';
      if (keep) field[write++] = c;
      field[write++] = keep ? next : escaped(next);
    } else if (c != '\\' || keepEscapes) {
      field[write++] = c;
    }
  }
  length = write;
  return read;
}

} // namespace

char *miSnarfEntry(const char *line, uint32_t *position, Bool16 keepEscapes) {
  while (isSpace(line[*position]))
    ++*position;
  const char *rest = line + *position;
  const auto size = static_cast<uint32_t>(strlen(rest) + 1);
  auto *field = static_cast<char *>(TSSureMalloc(size));
  if (field == nullptr) return nullptr;
  memcpy(field, rest, size);
  uint32_t length = 0;
  *position += resolveField(field, keepEscapes != 0, length);
  if (line[*position] != 0) ++*position; // the comma
  dropTrailingSpace(field, length);
  return static_cast<char *>(TSSureRealloc(field, static_cast<uint32_t>(strlen(field) + 1)));
}

const char *miStrftime(const char *format) {
  static char text[130];
  const time_t now = time(nullptr);
  text[0] = 0;
  if (format != nullptr) {
    if (strftime(text, sizeof text, format, localtime(&now)) == 0) text[0] = 0;
  } else if (const char *usual = ctime(&now); usual != nullptr) { // GCOVR_EXCL_BR_LINE: null beyond the year 9999
    miStrncpySAFE(text, usual, sizeof text);
  }
  const size_t length = strlen(text);
  if (length >= 2 && text[length - 1] == '\n') text[length - 1] = 0;
  return text;
}

int32_t miFloor(double value) {
  const auto truncated = static_cast<int32_t>(value);
  return value > 0.0 || truncated == value ? truncated : static_cast<int32_t>(value - 1.0);
}

int32_t miCeil(double value) {
  const auto truncated = static_cast<int32_t>(value);
  return value < 0.0 || truncated == value ? truncated : static_cast<int32_t>(value + 1.0);
}

int32_t miRoundToInt(double value) {
  const auto truncated = static_cast<int32_t>(value);
  const double fraction = value - truncated;
  if (value > 0.0) return fraction > 0.5 ? truncated + 1 : truncated; // halves towards zero
  return fraction < -0.5 ? truncated - 1 : truncated;
}
