// The words of a text where they stand: those that HWLEX_match returns until its cursor is at the end, in the same
// order, and nothing else of its tokens. A word in which tags are joined ("/><loc") is cut between them. Nothing is
// copied.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <string_view>

#include "plugin/input/gltLexBytes.h"
#include "plugin/util/shortLoop.h"

/// Belongs to the text.
struct LexWord {
  const char *begin;
  uint32_t length;
};

/// A text that is being read.
struct LexText {
  const char *begin; ///< only here may a word be the text's last byte
  const char *end;   ///< where its NUL stands, or further on
  uint32_t room;     ///< while a word is being cut: how many bytes of it may still come; else 0
};

/// What the reader of words makes of a byte. A bit each, none for what it steps over.
enum LexStep : uint8_t {
  stepThrough = 1, ///< word characters, but for '<', before which a word may be cut
  stepOpening = 2, ///< that
  stepQuote = 4,   ///< what a quoted word begins with, besides `stepThrough`
  stepElse = 8,    ///< the end of the text, or of a sentence
};

inline constexpr std::array<uint8_t, 256> lexSteps = [] {
  std::array<uint8_t, 256> steps{};
  for (size_t c = 0; c < steps.size(); ++c)
    steps[c] = lexClasses[c] == lexWord ? stepThrough : 0;
  steps['<'] = stepOpening;
  steps['\''] = steps['('] = stepThrough | stepQuote;
  steps['!'] = steps[0] = stepElse;
  return steps;
}();

inline uint8_t lexStep(char byte) { return lexSteps[static_cast<uint8_t>(byte)]; }

/// The first byte that is not stepped over.
inline const char *lexStepOver(const char *at) {
  SHORT_LOOP
  while (lexStep(*at) == 0)
    ++at;
  return at;
}

/// What lexNextWord does where more than a run of word characters is to be seen.
const char *lexNextPiece(LexText &text, const char *at, LexWord &word);

/// Takes the next word from `at` on, where the last one ended; returns where it ends. Null when the text runs out,
/// which it does before its last byte where that is not the first one and would begin a token: the lexer's look-ahead
/// has it then, and its cursor is at the end.
inline const char *lexNextWord(LexText &text, const char *at, LexWord &word) {
  at = lexStepOver(at);
  if ((lexStep(*at) & (stepQuote | stepElse)) != 0) [[unlikely]]
    return lexNextPiece(text, at, word);
  const uint32_t room = text.room != 0 ? text.room : HWLEX_LIMIT;
  uint32_t length = 1;
  SHORT_LOOP
  for (; length < room; ++length)
    if ((lexStep(at[length]) & stepThrough) == 0) break;
  const uint8_t behind = lexStep(at[length]);
  const bool joined = behind == stepOpening && at[length - 1] == '>' && length < room;
  if (behind != 0 && !joined) [[unlikely]]
    return lexNextPiece(text, at, word);
  text.room = joined ? room - length : 0;
  word = {at, length};
  return at + length;
}

/// Leaves out words that do not begin with '<': from where one word ends to a place from which all others are still to
/// come.
const char *lexSkipText(LexText &text, const char *at);

/// Numbers with more digits are not read on the way.
inline constexpr int32_t lexNumberLimit = std::numeric_limits<int32_t>::digits10;

/// Reads digits; returns where they end. Null where there is none, or one more than the limit.
inline const char *lexDigits(const char *at, int32_t &number) {
  const auto digitOf = [](char c) { return static_cast<uint8_t>(c) - uint32_t{'0'}; };
  const char *const first = at;
  uint32_t value = 0;
  SHORT_LOOP
  for (; digitOf(*at) <= 9; ++at) {
    if (at - first == lexNumberLimit) return nullptr;
    value = value * 10 + digitOf(*at);
  }
  number = static_cast<int32_t>(value);
  return at != first ? at : nullptr;
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
    head = std::endian::native == std::endian::big ? head >> unused << unused : head << unused >> unused;
  }
  return head | blanks;
}

/// A few words that mean something, found by one comparison whatever their case.
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

  /// Whether every word can be found: no two share a slot, and all are of two bytes or more, in lower case, and of
  /// bytes that no word character but a capital letter becomes by the bit that makes letters small.
  constexpr bool sound() const { return sound_; }

  /// What the word means, or `none`. `end` is the text's.
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
