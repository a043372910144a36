// Learning a tag's shape, and reading a tag that has it.
#include "plugin/input/gltShape.h"

namespace {

bool isPart(TagPart &part, const char *begin, const char *end) {
  if (end - begin > TagPart::longest || lexStep(*begin) != 0) return false; // a word ends before it, or a number
  memset(&part, 0, sizeof part);
  part.length = static_cast<uint32_t>(end - begin);
  memcpy(part.bytes, begin, part.length);
  memset(part.mask, 0xFF, part.length);
  return true;
}

bool follows(const TagPart &part, const char *at) {
  uint64_t bytes[2];
  memcpy(bytes, at, sizeof bytes);
  return (((bytes[0] ^ part.bytes[0]) & part.mask[0]) | ((bytes[1] ^ part.bytes[1]) & part.mask[1])) == 0;
}

} // namespace

bool shapeMissed(TagShape &shape) {
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
  // As much as is looked at, the byte behind the tag included.
  constexpr int64_t reach = (TagShape::most + 1) * TagPart::longest + TagShape::most * lexNumberLimit + 1;
  if (!shape.known || text.end - at < reach) return nullptr;
  for (uint32_t i = 0; i < shape.numbers; ++i) {
    if (!follows(shape.parts[i], at)) return nullptr;
    int32_t number;
    at = lexDigits(at + shape.parts[i].length, number);
    if (at == nullptr) return nullptr;
    values[shape.attributes[i]] = number;
  }
  const TagPart &last = shape.parts[shape.numbers];
  if (!follows(last, at)) return nullptr;
  at += last.length;
  // The last word ends where it did before, or where another tag is joined.
  const uint8_t behind = lexStep(*at);
  if ((behind & ~stepOpening) != 0) return nullptr;
  text.room = behind == stepOpening ? HWLEX_LIMIT - shape.lastWord : 0;
  shape.misses = 0;
  return at;
}
