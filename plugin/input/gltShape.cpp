// Learning a tag's shape, and reading a tag that has it.
#include "plugin/input/gltShape.h"

#include <cstring>

namespace {

bool isPart(TagPart &part, const char *begin, const char *end) {
  if (static_cast<size_t>(end - begin) > TagPart::longest) return false;
  memset(&part, 0, sizeof part);
  part.length = static_cast<uint32_t>(end - begin);
  memcpy(part.bytes, begin, part.length);
  memset(part.mask, 0xFF, part.length);
  return true;
}

/// Whether two words of memory, of those that count, are what the part has from there on.
bool followsFrom(const TagPart &part, const char *at, size_t first) {
  uint64_t bytes[2];
  memcpy(bytes, at + 8 * first, sizeof bytes);
  return (((bytes[0] ^ part.bytes[first]) & part.mask[first]) |
          ((bytes[1] ^ part.bytes[first + 1]) & part.mask[first + 1])) == 0;
}

/// Whether the text goes on with the part. As many bytes as the longest one has may be looked at.
bool follows(const TagPart &part, const char *at) {
  static_assert(TagPart::longest == 32);
  return followsFrom(part, at, 0) && (part.length <= 16 || followsFrom(part, at, 2));
}

} // namespace

bool shapeRelearn(TagShape &shape) {
  if (shape.known && ++shape.misses < 2) return false;
  shape.known = false;
  shape.fits = true;
  shape.numbers = 0;
  return true;
}

void shapeNumber(TagShape &shape, const char *begin, const char *end, uint8_t attribute) {
  shape.fits = shape.fits && shape.numbers < TagShape::most && isPart(shape.parts[shape.numbers], begin, end);
  if (shape.fits) shape.attributes[shape.numbers++] = attribute;
}

void shapeEnd(TagShape &shape, const char *begin, const char *end, uint32_t lastWord) {
  shape.known = shape.fits && isPart(shape.parts[shape.numbers], begin, end);
  shape.lastWord = lastWord;
  shape.misses = 0;
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
  // The last word ends where it did before, or where another tag is joined.
  const uint8_t behind = lexStep(*at);
  if ((behind & ~stepOpening) != 0) return nullptr;
  text.token = behind == stepOpening ? at - shape.lastWord : nullptr;
  shape.misses = 0;
  return at;
}
