// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Learning a tag's shape, and reading a tag that has it.
#include "plugin/input/gltShape.h"

#include <cstring>

namespace {

/// False when there are too many bytes.
bool setPart(TagPart &part, const char *begin, const char *end) {
  if (static_cast<size_t>(end - begin) > TagPart::longest) return false;
  memset(&part, 0, sizeof part);
  part.length = static_cast<uint32_t>(end - begin);
  memcpy(part.bytes, begin, part.length);
  memset(part.mask, 0xFF, part.length);
  return true;
}

/// Whether the text's sixteen bytes from word `first` (of eight bytes) on equal the part's, where its mask has ones.
bool followsFrom(const TagPart &part, const char *at, size_t first) {
  uint64_t bytes[2];
  memcpy(bytes, at + 8 * first, sizeof bytes);
  return (((bytes[0] ^ part.bytes[first]) & part.mask[first]) |
          ((bytes[1] ^ part.bytes[first + 1]) & part.mask[first + 1])) == 0;
}

/// Whether the text continues with the part. TagPart::longest bytes of the text must be readable.
bool follows(const TagPart &part, const char *at) {
  static_assert(TagPart::longest == 32);
  return followsFrom(part, at, 0) && (part.length <= 16 || followsFrom(part, at, 2));
}

} // namespace

bool shapeMiss(TagShape &shape) { return !shape.known || ++shape.misses >= 2; }

void shapeLearn(TagShape &shape, const char *begin, const char *end, const TagNotes &notes) {
  shape.known = notes.plain && notes.numbers <= TagShape::most;
  shape.misses = 0;
  shape.numbers = notes.numbers;
  shape.lastWord = notes.lastWord;
  for (uint32_t i = 0; shape.known && i < notes.numbers; ++i) {
    shape.known = setPart(shape.parts[i], begin, notes.begins[i]);
    shape.attributes[i] = notes.attributes[i];
    begin = notes.ends[i];
  }
  shape.known = shape.known && setPart(shape.parts[notes.numbers], begin, end);
}

const char *shapeFollow(TagShape &shape, LexText &text, const char *at, int32_t *values) {
  if (!shape.known || !shapeIsUnsplit(text, at)) return nullptr;
  for (uint32_t i = 0;; ++i) {
    const TagPart &part = shape.parts[i];
    if (static_cast<size_t>(text.end - at) < TagPart::longest || !follows(part, at)) return nullptr;
    at += part.length;
    if (i == shape.numbers) break;
    int32_t number;
    at = lexDigits(at, number);
    if (at == nullptr) return nullptr;
    values[shape.attributes[i]] = number;
  }
  // The last word ends where it did before, or before a tag that is joined to it.
  const uint8_t next = lexStep(*at);
  if ((next & ~stepOpening) != 0) return nullptr;
  text.token = next == stepOpening ? at - shape.lastWord : nullptr;
  shape.misses = 0;
  return at;
}
