// The words of a text where they stand: those that HWLEX_match returns until its cursor is at the end, in the same
// order, and nothing else of its tokens. A word in which tags are joined ("/><loc") is cut between them. Nothing is
// copied.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>

#include "plugin/input/gltLexBytes.h"

/// Belongs to the text.
struct LexWord {
  const char *begin;
  uint32_t length;
};

/// Where a text is being read. Starts as {text, text, end, 0}, `end` being where its NUL stands or further on.
struct LexWords {
  const char *at; ///< the next byte that belongs to no word yet
  const char *text, *end;
  uint32_t room; ///< while a word is being cut: how many bytes of it may still come
};

/// What the reader of words makes of a byte.
enum LexStep : uint8_t { stepOver, stepWord, stepOpening, stepPunctuation, stepEnd };

inline constexpr std::array<uint8_t, 256> lexSteps = [] {
  std::array<uint8_t, 256> steps{};
  for (size_t c = 0; c < steps.size(); ++c)
    steps[c] = lexClasses[c] == lexWord ? stepWord : stepOver;
  steps['<'] = stepOpening;
  steps['!'] = stepPunctuation;
  steps[0] = stepEnd;
  return steps;
}();

inline uint8_t lexStep(char byte) { return lexSteps[static_cast<uint8_t>(byte)]; }

/// Takes the next word. False when the text runs out, which it does before its last byte where that is not the first
/// one and would begin a token: the lexer's look-ahead has it then, and its cursor is at the end.
inline bool lexNextWord(LexWords &words, LexWord &word) {
  const char *at = words.at;
  if (words.room == 0) [[likely]] {
    for (;;) {
      LEX_UNROLL
      while (lexStep(*at) == stepOver)
        ++at;
      if (lexStep(*at) <= stepOpening) [[likely]]
        break;
      if (*at == 0) return false;
      at += lexPunctuationLength(1, at + 1);
    }
    if (at[1] == 0 && at != words.text) [[unlikely]]
      return false;
    if (*at == '\'' || *at == '(') [[unlikely]] {
      word = {at, lexQuotedLength(*at, at + 1)};
      words.at = at + word.length;
      return true;
    }
    words.room = HWLEX_LIMIT;
  }
  uint32_t length = 1;
  for (;;) {
    LEX_UNROLL
    for (; length < words.room; ++length)
      if (lexStep(at[length]) != stepWord) break;
    if (length == words.room || lexStep(at[length]) != stepOpening) {
      words.room = 0;
      break;
    }
    if (at[length - 1] == '>') {
      words.room -= length;
      break;
    }
    ++length;
  }
  word = {at, length};
  words.at = at + length;
  return true;
}

/// The first eight bytes of a word in lower case, blanks behind its end. As in memory: on machines of different byte
/// orders the numbers differ. Of word characters none but letters changes into what a known word has.
inline uint64_t lexHead(const LexWord &word, const char *end) {
  constexpr uint64_t blanks = 0x2020202020202020;
  uint64_t head = 0;
  if (end - word.begin >= 8) [[likely]]
    memcpy(&head, word.begin, 8);
  else
    memcpy(&head, word.begin, static_cast<size_t>(end - word.begin));
  if (word.length < 8) {
    const uint32_t unused = 64 - 8 * word.length;
    if (unused == 64) return blanks;
    head = std::endian::native == std::endian::big ? head >> unused << unused : head << unused >> unused;
  }
  return head | blanks;
}

/// A few words that mean something, found by one comparison whatever their case. They have two bytes or more, no
/// capital letters, and none begins like a quoted word does.
template <typename Meaning> class LexKnownWords {
public:
  struct Known {
    std::string_view word;
    Meaning meaning;
  };

  constexpr LexKnownWords(std::initializer_list<Known> words) {
    for (const Known &known : words) {
      Slot &slot = slots_[slotOf(known.word.size(), known.word[1])];
      apart_ = apart_ && slot.known.word.empty();
      slot = {known, headOf(known.word)};
    }
  }

  /// Whether no two words share a slot.
  constexpr bool apart() const { return apart_; }

  /// What the word means, or `none`. `end` is the text's.
  Meaning find(const LexWord &word, const char *end, Meaning none) const {
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
  bool apart_ = true;
};
