// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The words that the reader knows, and the look-up of a word among them.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>

#include "plugin/input/gltWords.h"

/// The first eight bytes of a word in lower case, spaces after its end, in the byte order of the machine. Setting the
/// bit that makes letters lower case also changes other word characters, but none of them into a byte of a known word.
/// `end` is the text's.
inline uint64_t lexHead(const LexWord &word, const char *end) {
  constexpr uint64_t spaces = 0x2020202020202020;
  uint64_t head = 0;
  if (end - word.begin >= 8) [[likely]]
    memcpy(&head, word.begin, 8);
  else
    memcpy(&head, word.begin, static_cast<size_t>(end - word.begin));
  if (word.length < 8) {
    const uint32_t unused = 64 - 8 * word.length;
    head = std::endian::native == std::endian::big ? head >> unused << unused : head << unused >> unused;
  }
  return head | spaces;
}

/// A table of a few words and their meanings. A look-up ignores case and compares a word with one entry only.
template <typename Meaning> class LexKnownWords {
public:
  struct Known {
    std::string_view word;
    Meaning meaning;
  };

  constexpr LexKnownWords(std::initializer_list<Known> words) {
    for (const Known &known : words) {
      Slot &slot = slots_[slotOf(known.word.size(), known.word[1])];
      sound_ = sound_ && slot.known.word.empty() && known.word.size() >= 2;
      for (const char c : known.word)
        sound_ = sound_ && canBeFound(c);
      slot = {known, headOf(known.word)};
    }
  }

  /// Whether every word can be found: no two share a slot, and all have two bytes or more, are in lower case, and
  /// consist of bytes into which that bit turns no word character except a capital letter.
  constexpr bool sound() const { return sound_; }

  /// The word's meaning, or `none`. `end` is the text's.
  Meaning find(const LexWord &word, const char *end, Meaning none) const {
    if (word.length < 2) return none;
    const Slot &slot = slots_[slotOf(word.length, word.begin[1])];
    if (word.length != slot.known.word.size() || lexHead(word, end) != slot.head) return none;
    for (uint32_t i = 8; i < word.length; ++i)
      if ((word.begin[i] | 0x20) != slot.known.word[i]) return none;
    return slot.known.meaning;
  }

private:
  struct Slot {
    Known known;
    uint64_t head;
  };

  static constexpr bool canBeFound(char c) {
    const bool letter = c >= 'a' && c <= 'z';
    return (c | 0x20) == c && (letter || lexClass(static_cast<char>(c & ~0x20)) != lexWord);
  }

  static constexpr size_t slotCount = 32;
  static constexpr size_t slotOf(size_t length, char second) {
    return (length * 7 + static_cast<uint8_t>(second | 0x20)) % slotCount;
  }
  static constexpr uint64_t headOf(std::string_view word) {
    std::array<char, 8> bytes{};
    for (size_t i = 0; i < bytes.size(); ++i)
      bytes[i] = i < word.size() ? word[i] : ' ';
    return std::bit_cast<uint64_t>(bytes);
  }

  Slot slots_[slotCount] = {};
  bool sound_ = true;
};
