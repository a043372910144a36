// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The small conversions of a highlight file's words over any text, each compared with a separate computation.
//
// Input: a text, and after its first zero byte a second one to compare it with.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/require.h"
#include "plugin/input/gltAux.h"
#include "plugin/util/miUtils.h"

namespace {

constexpr char hexDigits[] = "0123456789ABCDEF";

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 0x20) : c; }

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; }

std::string each(char (*change)(char), std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), change);
  return text;
}

/// The value of a hexadecimal digit, 16 for other characters.
unsigned digitValue(char c) {
  const std::string digits = hexDigits;
  return static_cast<unsigned>(std::min(digits.find(upper(c)), digits.size()));
}

/// Two digits of a text, the left one the least significant; missing ones are 0.
unsigned pairAt(const std::string &text, size_t at) {
  return (at < text.size() ? digitValue(text[at]) : 0) + (at + 1 < text.size() ? 16 * digitValue(text[at + 1]) : 0);
}

void colour(const std::string &text) {
  const auto good = std::find_if(text.begin(), text.end(), [](char c) { return digitValue(c) == 16; });
  const auto reach = static_cast<size_t>(good - text.begin()) + (good != text.end() ? 1 : 0);
  std::vector<char> copy(text.c_str(), text.c_str() + text.size() + 1);
  copy.shrink_to_fit();
  uint16_t red = 0xABCD, green = 0xABCD, blue = 0xABCD;
  const bool parsed = ParseRGB(copy.data(), &red, &green, &blue) != 0;
  require(parsed == (good == text.end()), "a colour is valid when every character is a digit");
  require(copy.data() == each(upper, text.substr(0, reach)) + text.substr(reach),
          "upper case up to the first character that is no digit");
  if (parsed)
    require(red == pairAt(text, 0) && green == pairAt(text, 2) && blue == pairAt(text, 4), "three pairs of digits");
  else
    require(red == 0xABCD && green == 0xABCD && blue == 0xABCD, "no colour leaves the values alone");
}

void hexadecimal(const std::string &text) {
  uint16_t value = 0xABCD;
  require(HexToInt(text.c_str(), &value) == 1, "every text has a value");
  const std::string digits = each(upper, text).substr(0, 4);
  if (text.substr(0, 4) != digits || digits.find_first_not_of(hexDigits) != std::string::npos) return;
  require(value == pairAt(digits, 0) + 256 * pairAt(digits, 2), "four digits, the leftmost the least significant");
}

void number(const std::string &text) {
  const size_t start = std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size());
  const bool negative = text[start] == '-';
  const char *digit = text.c_str() + start + (negative || text[start] == '+' ? 1 : 0);
  require((isallnum(text.c_str()) != 0) == (text.find_first_not_of("0123456789") == std::string::npos), "all digits");
  int64_t value = 0;
  for (; *digit >= '0' && *digit <= '9'; ++digit)
    value = std::min<int64_t>(value * 10 + (*digit - '0'), int64_t{INT32_MAX} + 1);
  value = negative ? -value : std::min<int64_t>(value, INT32_MAX);
  require(miAtol(text.c_str()) == value, "a decimal number, clamped to 32 bits");
}

int sign(int value) { return (value > 0) - (value < 0); }

void comparison(const std::string &a, const std::string &b) {
  const int order = gltstricmp(a.c_str(), b.c_str());
  require(order == -gltstricmp(b.c_str(), a.c_str()), "the order turns with the arguments");
  require(sign(order) == sign(each(lower, a).compare(each(lower, b))), "the order is that of lower case");
  require(gltstricmp(a.c_str(), each(upper, a).c_str()) == 0, "a text equals itself in upper case");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string input(reinterpret_cast<const char *>(data), size);
  const std::string text = input.c_str();
  const std::string other = input.substr(std::min(text.size() + 1, input.size())).c_str();
  colour(text);
  hexadecimal(text);
  number(text);
  comparison(text, other);
  return 0;
}
