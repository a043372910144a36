// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Text as searches compare it. A character is folded without regard to its neighbours, so that a search knows which
// character of a page each part of a folded text comes from.
#include "host/document/fold.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>

namespace host {
namespace {

struct Typed {
  char32_t printed, typed;
};

// Printed characters, and the keys typed for them.
constexpr Typed typedForms[] = {
    {U'\u2010', U'-'},  {U'\u2011', U'-'},  {U'\u2212', U'-'}, {U'\u2018', U'\''},
    {U'\u2019', U'\''}, {U'\u02BC', U'\''}, {U'\u201C', U'"'}, {U'\u201D', U'"'},
};

char32_t typedForm(char32_t c) {
  const auto *const found =
      std::find_if(std::begin(typedForms), std::end(typedForms), [c](const Typed &form) { return form.printed == c; });
  return found == std::end(typedForms) ? c : found->typed;
}

// The first character after ASCII and the control characters that follow it.
constexpr char32_t noBreakSpace = 0xA0;

} // namespace

void appendFolded(char32_t c, Case letterCase, std::u32string &to) {
  if (c < noBreakSpace) {
    to += letterCase == Case::folded && c >= U'A' && c <= U'Z' ? c - U'A' + U'a' : c;
    return;
  }
  constexpr unsigned always = UTF8PROC_DECOMPOSE | UTF8PROC_COMPAT | UTF8PROC_STRIPMARK | UTF8PROC_IGNORE;
  const auto options = static_cast<utf8proc_option_t>(letterCase == Case::folded ? always | UTF8PROC_CASEFOLD : always);
  std::array<utf8proc_int32_t, 64> parts; // the longest decomposition has 18
  const utf8proc_ssize_t count =
      utf8proc_decompose_char(static_cast<utf8proc_int32_t>(c), parts.data(), parts.size(), options, nullptr);
  if (count < 0) {
    to += c;
    return;
  }
  // A separate accent decomposes to a space and the accent, which is stripped; the space is dropped, too.
  if (count == 1 && parts[0] == U' ' && !isWhiteSpace(c)) return;
  for (size_t i = 0; i < static_cast<size_t>(count); ++i)
    to += typedForm(static_cast<char32_t>(parts.at(i)));
}

std::u32string folded(std::u32string_view text, Case letterCase) {
  std::u32string result;
  result.reserve(text.size());
  for (const char32_t c : text)
    appendFolded(c, letterCase, result);
  return result;
}

bool isWhiteSpace(char32_t c) {
  return c <= U' ' ||
         (c >= noBreakSpace && utf8proc_category(static_cast<utf8proc_int32_t>(c)) == UTF8PROC_CATEGORY_ZS);
}

std::u32string decoded(std::string_view utf8) {
  std::u32string result;
  const auto *bytes = reinterpret_cast<const utf8proc_uint8_t *>(utf8.data());
  auto left = static_cast<utf8proc_ssize_t>(utf8.size());
  while (left > 0) {
    utf8proc_int32_t c = 0;
    const utf8proc_ssize_t used = utf8proc_iterate(bytes, left, &c);
    if (used <= 0) throw std::invalid_argument("a text to search for is not UTF-8");
    result += static_cast<char32_t>(c);
    bytes += used;
    left -= used;
  }
  return result;
}

} // namespace host
