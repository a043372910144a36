// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/onelinetext.h"

#include <algorithm>

namespace viewer {
namespace {

bool continues(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

// The length of the character at the beginning; 0 if there is none: an overlong form, a surrogate, a byte alone.
size_t lengthOfFirst(std::string_view bytes) {
  const auto first = static_cast<unsigned char>(bytes[0]);
  const size_t length = first < 0x80   ? 1
                        : first < 0xC2 ? 0
                        : first < 0xE0 ? 2
                        : first < 0xF0 ? 3
                        : first < 0xF5 ? 4
                                       : 0;
  if (length > bytes.size()) return 0;
  for (size_t i = 1; i < length; ++i)
    if (!continues(bytes[i])) return 0;
  if (length < 3) return length;
  const auto second = static_cast<unsigned char>(bytes[1]);
  const bool outside = (first == 0xE0 && second < 0xA0) || (first == 0xED && second >= 0xA0) ||
                       (first == 0xF0 && second < 0x90) || (first == 0xF4 && second >= 0x90);
  return outside ? 0 : length;
}

// Removes the first character, or a byte that belongs to none.
std::string_view takeCharacter(std::string_view &bytes) {
  const size_t length = lengthOfFirst(bytes);
  const std::string_view character = length == 0 ? "\uFFFD" : bytes.substr(0, length);
  bytes.remove_prefix(std::max<size_t>(1, length));
  return character;
}

bool isControl(std::string_view character) {
  const auto first = static_cast<unsigned char>(character[0]);
  return first < 0x20 || first == 0x7F || (first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0);
}

} // namespace

std::string validUtf8(std::string_view bytes) {
  std::string text;
  while (!bytes.empty())
    text += takeCharacter(bytes);
  return text;
}

std::string oneLine(std::string_view bytes) {
  std::string line;
  while (!bytes.empty()) {
    const std::string_view character = takeCharacter(bytes);
    if (character == "\n" || character == "\t")
      line += ' ';
    else if (!isControl(character))
      line += character;
  }
  return line;
}

std::string utf8OfLatin1(const std::string &latin1) {
  std::string text;
  for (const char one : latin1) {
    const auto c = static_cast<unsigned char>(one);
    if (c < 0x80)
      text += one;
    else
      text += {static_cast<char>(0xC0U | c >> 6U), static_cast<char>(0x80U | (c & 0x3FU))};
  }
  return text;
}

std::vector<std::string> characters(std::string_view utf8) {
  std::vector<std::string> all;
  for (const char c : utf8)
    if (continues(c) && !all.empty())
      all.back() += c;
    else
      all.emplace_back(1, c);
  return all;
}

} // namespace viewer
