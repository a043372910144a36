// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The string functions of plugin/util and plugin/md over strings of both kinds, in blocks exactly as long as their
// contracts say: no access beyond them, and results as the checks compute them.
//
// Input: a letter for the function (below), two numbers counted from '0', then three strings, each after its length
// (counted from '0' too). One that begins with the mark of UCS strings ends at its first zero unit, another one at its
// first zero byte.
#include "fuzz/text.h"

#include <algorithm>

namespace {

struct Row {
  char letter;
  Check check;
};

constexpr Row rows[] = {
    {'L', checkLength},        {'c', checkComparison},  {'C', checkBoundedComparison},
    {'p', checkCopy},          {'P', checkBoundedCopy}, {'S', checkStandardCopy},
    {'a', checkConcatenation}, {'r', checkReplacement}, {'A', checkBoundedConcatenation},
    {'f', checkFormat},        {'x', checkSearch},      {'R', checkReplacementByUnits},
    {'w', checkStrip},         {'W', checkStripAll},    {'t', checkTranslation},
    {'n', checkCount},         {'d', checkPath},        {'s', checkSnarf},
    {'e', checkEntries},       {'T', checkTime},        {'m', checkString},
    {'M', checkButtonString},  {'b', checkSwab},        {'i', checkPlatformComparison},
};

/// An input, read from its front; after its end come zeros.
struct Input {
  std::string rest;

  char byte() {
    if (rest.empty()) return 0;
    const char first = rest.front();
    rest.erase(0, 1);
    return first;
  }
  uint8_t number() { return static_cast<uint8_t>(byte() - '0'); }
  std::string text() {
    const uint8_t size = number();
    std::string text = rest.substr(0, size);
    rest.erase(0, size);
    if (!isUCS(text)) return text.c_str();
    for (size_t unit = 2; unit + 1 < text.size(); unit += 2)
      if (text[unit] == 0 && text[unit + 1] == 0) return text.substr(0, unit);
    return text.substr(0, text.size() & ~size_t{1});
  }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  Input input = {std::string(reinterpret_cast<const char *>(data), size)};
  const char letter = input.byte();
  const auto *row = std::find_if(std::begin(rows), std::end(rows), [=](const Row &r) { return r.letter == letter; });
  if (row == std::end(rows)) return 0;
  Arguments arguments = {input.number(), input.number(), {}, {}, {}};
  for (std::string *text : {&arguments.a, &arguments.b, &arguments.c})
    *text = input.text();
  row->check(arguments);
  return 0;
}
