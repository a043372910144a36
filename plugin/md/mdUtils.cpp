// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The built-in texts, labels and bitmaps: looked up by key in the host's resources, where users can override them, and
// cached.
#include "plugin/md/mdUtils.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "plugin/md/mdResources.h"
#include "tavrel/Desktop.h"

using namespace tavrel;

// Users' resource files contain these keys, so that a change would disable their lines: the keys of 3 and 4 are
// exchanged, that of 8 is misprinted.
const StringEntry stringData[stringCount] = {
    {"realVersion", "B10"},
    {"language", "ENU"},
    {"version", "Tavrel Glint Plug-In Version 5.0.5"},
    {"helpPrev", "Jumps to the next highlight"},
    {"helpNext", "Jumps to the previous highlight"},
    {"yes", "Yes"},
    {"no", "No"},
    {"wrongVersion", "The highlights for this document may be incorrect because of incompatible version of Tavrel. "
                     "Display highlights anyway?"},
    {"The Tavrel Glint plu g-in allows users to see search highlights from web searches in PDF files in their web "
     "browser.",
     "The Tavrel Glint plug-in allows users to see search highlights from web searches in PDF files in their web "
     "browser."},
    {"", ""},
    {"", ""},
    {"", ""},
    {"Plug-ins required for loading: BRZ", "Plug-ins required for loading: BRZ"},
    {"", ""},
    {"", ""},
    {"fullName", "Glint"},
    {"", ""},
    {"", ""},
    {"", ""},
    {"", ""},
    {"All Files", "All Files"},
};

const StringEntry buttonStringData[buttonStringCount] = {
    {"tvOKButton", "OK"},
    {"tvCancelButton", "Cancel"},
    {"tvYesButton", "Yes"},
    {"tvNoButton", "No"},
};

static constexpr unsigned char nextBits[32] = {0x00, 0x00, 0x80, 0x1f, 0x81, 0x30, 0x83, 0x50, 0x87, 0xf0, 0x8f,
                                               0x80, 0x9f, 0x80, 0xbf, 0xbe, 0xbf, 0x80, 0x9f, 0xbe, 0x8f, 0x80,
                                               0x87, 0xbe, 0x83, 0x80, 0x81, 0x80, 0x80, 0xff, 0x00, 0x00};
static constexpr unsigned char prevBits[32] = {0x00, 0x00, 0x3f, 0x00, 0x61, 0x80, 0xa1, 0xc0, 0xe1, 0xe1, 0x01,
                                               0xf1, 0x01, 0xf9, 0x7d, 0xfd, 0x01, 0xfd, 0x7d, 0xf9, 0x01, 0xf1,
                                               0x7d, 0xe1, 0x01, 0xc1, 0x01, 0x81, 0xff, 0x01, 0x00, 0x00};

const BitmapEntry bitmapData[bitmapCount] = {
    {"next", "next", nextBits, 16, 16},
    {"prev", "prev", prevBits, 16, 16},
};

const char *stringCache[stringCount];
const char *buttonStringCache[buttonStringCount];
Bitmap bitmapCache[bitmapCount];

namespace {

const char *resourceString(const StringEntry &entry) {
  return rootWidget != nullptr ? Desktop::GetResourceString(rootWidget, entry.key, entry.value) : entry.value;
}

/// The longest byte sequence that is examined for one character.
constexpr size_t longestCharacter = 5;

bool multiByteLocale() { return MB_CUR_MAX > 1; }

/// Removes mnemonics in a multi-byte locale: "&&" stays, any other '&' is removed. Truncates at an invalid character.
void dropMnemonicsByCharacter(char *buffer) {
  const char *read = buffer;
  char *write = buffer;
  for (int k = mblen(read, longestCharacter); k > 0; k = mblen(read, longestCharacter)) {
    const bool ampersand = k == 1 && *read == '&';
    if (ampersand && read[1] != '&') {
      ++read;
      continue;
    }
    const auto bytes = static_cast<size_t>(ampersand ? 2 : k);
    memmove(write, read, bytes);
    write += bytes;
    read += bytes;
  }
  *write = 0;
}

/// Removes mnemonics in a single-byte locale: '&' at the start is removed. A later '&' stays and the byte after it is
/// lost; after a removed '&', it garbles the rest as well. Writes at most one byte after the terminator, and none
/// beyond `size`.
void dropMnemonicsByByte(char *buffer, size_t size) {
  const size_t length = strlen(buffer);
  if (length == 0) return;
  const auto at = [&](size_t i) { return i <= length ? buffer[i] : '\0'; };
  const auto put = [&](size_t i, char c) {
    if (i < size) buffer[i] = c;
  };
  size_t p = 0, r = 1;
  for (;;) {
    if (at(p) != '&') {
      ++p;
      if (at(p) == '&') {
        put(r, '&');
        put(r + 1, '&');
        ++p;
        r += 2;
      }
    }
    const char stored = at(r);
    put(p, stored);
    ++r;
    if (stored == 0) return;
  }
}

} // namespace

const char *mdGetStringPtr(uint16_t id) {
  if (id >= stringCount) return "Bad String ID";
  if (stringCache[id] == nullptr) stringCache[id] = resourceString(stringData[id]);
  return stringCache[id];
}

char *mdGetString(uint16_t id, char *buffer, uint16_t size) {
  const char *source = mdGetStringPtr(id);
  if (source == nullptr) source = ""; // the host returned nothing; it is asked again next time
  const size_t length = strlen(source);
  // A size of 0 wraps around here, so that the complete string is copied.
  if (length <= uint32_t{size} - 1) {
    memcpy(buffer, source, length + 1);
    return buffer;
  }
  size_t end = 0;
  if (!multiByteLocale()) {
    end = size - 1U;
  } else {
    for (int k = mblen(source, longestCharacter); k > 0 && end + static_cast<size_t>(k) < size;
         k = mblen(source + end, longestCharacter))
      end += static_cast<size_t>(k);
  }
  memcpy(buffer, source, end);
  buffer[end] = 0;
  return buffer;
}

char *mdGetButtonString(uint16_t id, char *buffer, uint16_t size) {
  mdGetString(id, buffer, size);
  if (multiByteLocale())
    dropMnemonicsByCharacter(buffer);
  else
    dropMnemonicsByByte(buffer, size != 0 ? size : strlen(buffer) + 1);
  return buffer;
}

const char *GetButtonString(uint16_t id) {
  if (buttonStringCache[id] == nullptr) buttonStringCache[id] = resourceString(buttonStringData[id]);
  return buttonStringCache[id];
}

Bitmap mdGetBitmap(uint16_t id) {
  if (id >= bitmapCount) return 0;
  if (bitmapCache[id] == 0 && rootWidget != nullptr) {
    const BitmapEntry &entry = bitmapData[id];
    bitmapCache[id] =
        Desktop::GetResourceBitmap(rootWidget, entry.name, entry.className, entry.bits, entry.width, entry.height);
  }
  return bitmapCache[id];
}

Bitmap mdReleaseBitmap(Bitmap bitmap) { return bitmap; }

IconBundle *mdGetIconBundle(uint16_t id1, uint16_t id2) {
  auto *bundle = static_cast<IconBundle *>(calloc(1, sizeof(IconBundle)));
  if (bundle == nullptr) return nullptr;
  bundle->signature[0] = 0x54564943;
  bundle->signature[1] = 0x4F4E4255;
  bundle->version = 0x00050000;
  bundle->bitmap[0] = static_cast<uint32_t>(mdGetBitmap(id1));
  bundle->bitmap[1] = static_cast<uint32_t>(mdGetBitmap(id2));
  return bundle;
}

void mdReleaseIconBundle(IconBundle *bundle) {
  if (bundle != nullptr) free(bundle);
}

const char *mdSwab(const char *source, char *destination, int32_t count) {
  for (; count >= 2; count -= 2) {
    const char first = source[0];
    destination[0] = source[1];
    destination[1] = first;
    source += 2;
    destination += 2;
  }
  return source;
}

int32_t mdStricmp(const char *a, const char *b) {
  // Signed, also on machines with an unsigned char, so that bytes from 0x80 on sort before the letters.
  const auto folded = [](char c) {
    const auto byte = static_cast<signed char>(c);
    return byte >= 0 ? tolower(byte) : byte;
  };
  for (;; ++a, ++b) {
    const int x = folded(*a), y = folded(*b);
    if (*a == 0 || *b == 0) return (*a != 0) - (*b != 0);
    if (x != y) return x < y ? -1 : 1;
  }
}

Bool16 mdCommonInit() { return 1; }

void mdAssert(const char *expression, const char *file, uint16_t line) {
  fprintf(stderr, "Assert %s in file %s, line %d.\n", expression, file, int{line});
}
