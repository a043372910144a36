// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Shared by the text fuzzer's checks: the arguments taken from an input, and heap blocks exactly as long as a contract
// says, so that an access beyond them is detected.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

using Block = std::unique_ptr<char[]>;

inline bool isUCS(const std::string &text) { return text.starts_with("\xFE\xFF"); }

/// The length of its terminator.
inline uint32_t terminatorLength(const std::string &text) { return isUCS(text) ? 2 : 1; }

inline uint32_t length(const std::string &text) { return static_cast<uint32_t>(text.size()); }

/// A block full of dots.
inline Block dottedBlock(size_t size) {
  Block block(new char[size]);
  std::string(size, '.').copy(block.get(), size);
  return block;
}

/// The text and its terminator, in a block of `size` bytes if that is more.
inline Block terminated(const std::string &text, size_t size = 0) {
  const std::string bytes = text + std::string(terminatorLength(text), '\0');
  Block block = dottedBlock(bytes.size() < size ? size : bytes.size());
  bytes.copy(block.get(), bytes.size());
  return block;
}

/// Whether a block begins with that text and as many zero bytes.
inline bool holds(const Block &block, const std::string &text, uint32_t zeros) {
  return text + std::string(zeros, '\0') == std::string(block.get(), text.size() + zeros);
}

/// Two numbers and three strings of either kind, without their terminators, which `terminated` adds.
struct Arguments {
  uint8_t n, m;
  std::string a, b, c;
};

using Check = void (*)(const Arguments &);

// Strings of both kinds (text_strings.cpp).
void checkLength(const Arguments &);
void checkComparison(const Arguments &);
void checkBoundedComparison(const Arguments &);
void checkCopy(const Arguments &);
void checkBoundedCopy(const Arguments &);
void checkStandardCopy(const Arguments &);
void checkConcatenation(const Arguments &);
void checkBoundedConcatenation(const Arguments &);
void checkReplacement(const Arguments &);
void checkReplacementByUnits(const Arguments &);

// Byte strings, fields and white space (text_helpers.cpp).
void checkFormat(const Arguments &);
void checkSearch(const Arguments &);
void checkStrip(const Arguments &);
void checkStripAll(const Arguments &);
void checkTranslation(const Arguments &);
void checkCount(const Arguments &);
void checkPath(const Arguments &);
void checkSnarf(const Arguments &);
void checkEntries(const Arguments &);
void checkTime(const Arguments &);

// Texts, labels and bytes of the platform layer (text_platform.cpp).
void checkString(const Arguments &);
void checkButtonString(const Arguments &);
void checkSwab(const Arguments &);
void checkPlatformComparison(const Arguments &);
