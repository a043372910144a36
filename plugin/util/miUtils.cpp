// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Strings of both kinds: lengths, comparisons, bounded copies, replacement.
#include "plugin/util/miUtils.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>

using tavrel::Bool16;

namespace {

uint8_t byteAt(const char *string, uint32_t i) { return static_cast<uint8_t>(string[i]); }

uint16_t unitAt(const char *string, uint32_t i) {
  return static_cast<uint16_t>(byteAt(string, i) << 8 | byteAt(string, i + 1));
}

int32_t order(int a, int b) { return (a > b) - (a < b); }

/// Compares two UCS strings, unit by unit after the mark. Folding ignores case where both units are below 0x100.
int32_t compareUnits(const char *a, const char *b, bool fold) {
  for (uint32_t i = 2;; i += 2) {
    int x = unitAt(a, i), y = unitAt(b, i);
    if (fold && x < 0x100 && y < 0x100) {
      x = tolower(x);
      y = tolower(y);
    }
    if (x != y || x == 0) return order(x, y);
  }
}

bool bothUCS(const char *a, const char *b) { return miIsUCS(a) && miIsUCS(b); }

} // namespace

char *miStrcpy_localSAFE(char *destination, const char *source) { return strcpy(destination, source); }

char *miStrcat_localSAFE(char *destination, const char *source) { return strcat(destination, source); }

int32_t miSprintfSAFE(char *destination, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int32_t count = miVsprintfSAFE(destination, format, arguments);
  va_end(arguments);
  return count;
}

int32_t miVsprintfSAFE(char *destination, const char *format, va_list arguments) {
  return vsprintf(destination, format, arguments);
}

int32_t miSnprintfSAFE(char *destination, uint32_t size, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int32_t count = miVsnprintfSAFE(destination, size, format, arguments);
  va_end(arguments);
  return count;
}

int32_t miVsnprintfSAFE(char *destination, uint32_t size, const char *format, va_list arguments) {
  const int32_t count = vsnprintf(destination, size, format, arguments);
  if (size != 0) destination[size - 1] = 0;
  return count;
}

char *miStrchr(const char *string, int c) { return const_cast<char *>(strchr(string, c)); }

char *miStrrchr(const char *string, int c) { return const_cast<char *>(strrchr(string, c)); }

char *miStrstr(const char *string, const char *part) { return const_cast<char *>(strstr(string, part)); }

int32_t miAtoi(const char *string) { return miAtol(string); }

int32_t miAtol(const char *string) {
  const long value = strtol(string, nullptr, 10);
  if (value > INT32_MAX) return INT32_MAX;
  if (value < INT32_MIN) return INT32_MIN;
  return static_cast<int32_t>(value);
}

bool miIsUCS(const char *string) { return byteAt(string, 0) == 0xFE && byteAt(string, 1) == 0xFF; }

uint32_t miStrlen(const char *string) {
  if (!miIsUCS(string)) return static_cast<uint32_t>(strlen(string));
  uint32_t length = 2;
  while (unitAt(string, length) != 0)
    length += 2;
  return length;
}

int32_t miStrcmp(const char *a, const char *b) {
  if (b == nullptr) return 1;
  return bothUCS(a, b) ? compareUnits(a, b, false) : strcmp(a, b);
}

int32_t miStricmp(const char *a, const char *b) {
  if (b == nullptr) return 1;
  return bothUCS(a, b) ? compareUnits(a, b, true) : strcasecmp(a, b);
}

int32_t miStrncmp(const char *a, const char *b, uint32_t n) {
  return bothUCS(a, b) ? miUCSStrncmp(a, b, n) : strncmp(a, b, n);
}

int32_t miUCSStrncmp(const char *a, const char *b, uint32_t n) {
  for (uint32_t i = 0; i < n; ++i) {
    const uint8_t x = byteAt(a, i), y = byteAt(b, i);
    if (x != y) return order(x, y);
    if (i % 2 == 1 && x == 0 && byteAt(a, i - 1) == 0) return 0;
  }
  return 0;
}

Bool16 miStrEq(const char *a, const char *b) {
  if (a == nullptr || b == nullptr) return a == b;
  return miStrcmp(a, b) == 0;
}

char *miStrcpySAFE(char *destination, const char *source) {
  if (!miIsUCS(source)) return miStrcpy_localSAFE(destination, source);
  // Unlike a byte string's copy, returns the position after the terminator.
  const uint32_t length = miStrlen(source) + 2;
  miMemmoveSAFE(destination, source, length);
  return destination + length;
}

char *miStrcatSAFE(char *destination, const char *source) {
  if (!miIsUCS(destination)) return miStrcat_localSAFE(destination, source);
  char *end = destination + miStrlen(destination);
  uint32_t i = 2;
  do {
    end[0] = source[i];
    end[1] = source[i + 1];
    end += 2;
    i += 2;
  } while (unitAt(source, i - 2) != 0);
  return destination;
}

Bool16 miStrncpySAFE(char *destination, const char *source, uint32_t size) {
  const bool ucs = miIsUCS(source);
  const uint32_t terminator = ucs ? 2 : 1;
  if (ucs) size &= ~uint32_t{1};
  if (size < terminator) return 0;
  if (miStrlen(source) + terminator <= size) {
    miStrcpySAFE(destination, source);
    return 1;
  }
  miMemcpySAFE(destination, source, size);
  miMemsetSAFE(destination + size - terminator, 0, terminator);
  return 0;
}

Bool16 miStrncpy_StandardSAFE(char *destination, const char *source, uint32_t n) {
  if (miStrlen(source) < n) {
    miStrcpySAFE(destination, source);
    return 1;
  }
  miMemcpySAFE(destination, source, n);
  return 0;
}

Bool16 miStrncatSAFE(char *destination, const char *source, uint32_t size) {
  if (size == 0) return 0;
  const uint32_t used = miStrlen(destination);
  if (used + miStrlen(source) <= size - 1) {
    miStrcatSAFE(destination, source);
    return 1;
  }
  const bool ucs = miIsUCS(destination);
  if (used + 1 < size) strncat(destination, source, size - (used + 1));
  destination[size - 1] = 0;
  if (ucs && size >= 2) miMemsetSAFE(destination + (size & ~uint32_t{1}) - 2, 0, 2); // terminated as units, too
  return 0;
}

bool miOccursAt(const char *at, const char *end, const char *part, uint32_t length) {
  return length != 0 && length <= static_cast<size_t>(end - at) && memcmp(at, part, length) == 0;
}

char *miReplaceStrSAFE(char *destination, const char *source, const char *find, const char *replacement) {
  const char *end = source + miStrlen(source);
  const uint32_t findLength = miStrlen(find);
  const uint32_t replacementLength = replacement != nullptr ? miStrlen(replacement) : 0;
  char *out = destination;
  while (*source != 0) {
    if (miOccursAt(source, end, find, findLength)) {
      miMemmoveSAFE(out, replacement, replacementLength);
      out += replacementLength;
      source += findLength;
    } else {
      *out++ = *source++;
    }
  }
  *out = 0;
  return destination;
}

char *miReplaceStrExSAFE(char *destination, const char *source, const char *find, uint32_t findLength,
                         const char *replacement, uint32_t replacementLength) {
  const char *end = source + miStrlen(source);
  const size_t step = miIsUCS(source) ? 2 : 1;
  if (replacement == nullptr) replacementLength = 0;
  char *out = destination;
  while (static_cast<size_t>(end - source) >= step) {
    if (miOccursAt(source, end, find, findLength)) {
      miMemmoveSAFE(out, replacement, replacementLength);
      out += replacementLength;
      source += findLength;
    } else {
      miMemcpySAFE(out, source, static_cast<uint32_t>(step));
      out += step;
      source += step;
    }
  }
  out[0] = out[1] = 0;
  return destination;
}
