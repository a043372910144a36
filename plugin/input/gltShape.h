// The shape of a tag: its bytes without its numbers. A program that writes highlight files writes all tags alike, so
// each tag is expected to have the shape of the one before. Where it does, there is nothing left to read but the
// numbers, and the words come out the same, because the same bytes between the same borders do.
#pragma once

#include "plugin/input/gltWords.h"

/// A part of a tag between two numbers, or before the first or behind the last one.
struct TagPart {
  static constexpr uint32_t longest = 32;
  uint64_t bytes[longest / 8], mask[longest / 8]; ///< the mask has ones where there are bytes
  uint32_t length;
};

struct TagShape {
  static constexpr uint32_t most = 3; ///< of numbers, whatever they mean
  bool known;                         ///< whether a tag of this shape has been read to its end
  bool fits;                          ///< while it is learned: whether there has been room for all so far
  uint32_t misses;                    ///< tags since the last one that had it
  uint32_t numbers;                   ///< how many, `most` at most
  uint8_t attributes[most];           ///< what each is the value of
  TagPart parts[most + 1]; ///< the first begins where the tag before ended, the last ends with the tag's last word
  uint32_t lastWord;       ///< that word's length
};

/// Whether all of a tag's first part is within one token when the tag before ended at `at`. Otherwise the tag's name
/// may have been split, and its bytes do not say where.
inline bool shapeIsUnsplit(const LexText &text, const char *at) { return lexCapacity(text, at) >= TagPart::longest; }

/// Notes a tag that has not this shape. True when its own is to be learned instead: then the shape has been emptied for
/// it. Two spellings by turns are no reason.
bool shapeRelearn(TagShape &shape);
/// A number of the tag that is learned, which stands behind the part [begin, end).
void shapeNumber(TagShape &shape, const char *begin, const char *end, uint8_t attribute);
/// The end of the tag, behind the part [begin, end), whose last word has that many bytes. The shape is known then, if
/// it fits.
void shapeEnd(TagShape &shape, const char *begin, const char *end, uint32_t lastWord);

/// Reads the next tag from where the one before ended, if it has this shape: puts its numbers where they belong and
/// returns where it ends. Otherwise null; then some values may have been written. `values` is indexed
/// by the attributes that were given.
const char *shapeFollow(TagShape &shape, LexText &text, const char *at, int32_t *values);
