// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The shape of a tag: its bytes without its numbers. A program that writes highlight files usually writes all tags
// alike, so each tag is expected to have the shape of the one before. If it has, only its numbers are read: the same
// bytes between the same borders give the same words.
#pragma once

#include "plugin/input/gltWords.h"

/// A part of a tag between two numbers, or before the first or after the last one.
struct TagPart {
  static constexpr uint32_t longest = 32;
  uint64_t bytes[longest / 8], mask[longest / 8]; ///< the mask has ones where there are bytes
  uint32_t length;
};

struct TagShape {
  static constexpr uint32_t most = 3; ///< numbers of a tag, whatever their attributes
  bool known;                         ///< whether a shape has been learned
  uint32_t misses;                    ///< tags since the last one that had it
  uint32_t numbers;                   ///< how many, `most` at most
  uint8_t attributes[most];           ///< what each is the value of
  TagPart parts[most + 1]; ///< the first begins where the tag before ended, the last ends with the tag's last word
  uint32_t lastWord;       ///< that word's length
};

/// Notes about a tag, taken while it is read word by word, from which its shape can be learned.
struct TagNotes {
  const char *begins[TagShape::most], *ends[TagShape::most]; ///< of the numbers, in their order
  uint8_t attributes[TagShape::most];                        ///< what each is the value of
  uint32_t numbers;                                          ///< how many; those after the first `most` are not noted
  uint32_t lastWord;                                         ///< the length of the tag's last word
  bool plain; ///< no value but numbers, each after its own name, and no name without a value
};

inline void shapeNoteNumber(TagNotes &notes, const char *begin, const char *end, uint8_t attribute) {
  if (notes.numbers < TagShape::most) {
    notes.begins[notes.numbers] = begin;
    notes.ends[notes.numbers] = end;
    notes.attributes[notes.numbers] = attribute;
  }
  ++notes.numbers;
}

/// Whether the complete first part of a tag is within one token when the tag before ended at `at`. Otherwise the tag's
/// name may have been split, and its bytes do not say where.
inline bool shapeIsUnsplit(const LexText &text, const char *at) { return lexCapacity(text, at) >= TagPart::longest; }

/// Counts a tag that does not have this shape. True when that tag's shape is to be learned instead: when none is known,
/// and at the second miss in a row. Where two spellings alternate, one of them stays known.
bool shapeMiss(TagShape &shape);

/// Learns the shape of the tag that was read as [begin, end), from where the tag before ended. No shape is known
/// afterwards if the tag is not plain, has too many numbers, or has a part that is too long.
void shapeLearn(TagShape &shape, const char *begin, const char *end, const TagNotes &notes);

/// Reads the next tag from `at` on, where the tag before ended, if it has this shape: stores its numbers as values of
/// their attributes and returns where it ends. Otherwise null; then some values may have been written. `values` is
/// indexed by the attributes that were noted.
const char *shapeFollow(TagShape &shape, LexText &text, const char *at, int32_t *values);
