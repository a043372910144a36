// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/utf8.h"

#include <utf8proc.h>

#include <algorithm>

namespace host {
namespace {

enum class Kind { printable, lineSpace, lineEnd, control, invalid };

struct Character {
  Kind kind;
  std::string_view bytes;
};

Kind kindOf(char32_t c) {
  if (c == U'\t') return Kind::lineSpace;
  if (c == U'\n') return Kind::lineEnd;
  const bool separates = c == U'\u2028' || c == U'\u2029';
  return c < U' ' || (c >= 0x7F && c < 0xA0) || separates ? Kind::control : Kind::printable;
}

// The first character, of a text that is not empty; an invalid one is a byte.
Character first(std::string_view text) {
  utf8proc_int32_t c = 0;
  const utf8proc_ssize_t used = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t *>(text.data()),
                                                 static_cast<utf8proc_ssize_t>(text.size()), &c);
  if (used <= 0) return {Kind::invalid, text.substr(0, 1)};
  return {kindOf(static_cast<char32_t>(c)), text.substr(0, static_cast<size_t>(used))};
}

bool hasOnly(std::string_view text, std::initializer_list<Kind> kinds) {
  while (!text.empty()) {
    const Character one = first(text);
    if (std::find(kinds.begin(), kinds.end(), one.kind) == kinds.end()) return false;
    text.remove_prefix(one.bytes.size());
  }
  return true;
}

// `kept`: besides printable characters.
std::string repaired(std::string_view text, std::initializer_list<Kind> kept) {
  std::string result;
  while (!text.empty()) {
    const Character one = first(text);
    if (one.kind == Kind::invalid)
      result += "\uFFFD";
    else if (one.kind == Kind::printable || std::find(kept.begin(), kept.end(), one.kind) != kept.end())
      result += one.bytes;
    else
      result += ' ';
    text.remove_prefix(one.bytes.size());
  }
  return result;
}

} // namespace

std::string_view withoutPartOfCharacter(std::string_view bytes) {
  const auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
  const auto first = std::find_if_not(bytes.rbegin(), bytes.rend(), isContinuation); // of the last character
  if (first == bytes.rend()) return bytes;
  const auto lead = static_cast<unsigned char>(*first);
  const auto there = static_cast<size_t>(first - bytes.rbegin()) + 1;
  const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  return there < length ? bytes.substr(0, bytes.size() - there) : bytes;
}

std::string_view firstBytes(std::string_view utf8, size_t most) {
  return utf8.size() <= most ? utf8 : withoutPartOfCharacter(utf8.substr(0, most));
}

bool isLine(std::string_view text) { return hasOnly(text, {Kind::printable}); }

std::string printable(std::string_view bytes) {
  std::string result;
  while (!bytes.empty()) {
    const Character one = first(bytes);
    if (one.kind == Kind::printable)
      result += one.bytes;
    else
      result += '?';
    bytes.remove_prefix(one.bytes.size());
  }
  return result;
}

bool isLines(std::string_view text) { return hasOnly(text, {Kind::printable, Kind::lineSpace, Kind::lineEnd}); }

std::string lineOf(std::string_view bytes) {
  const std::string line = repaired(bytes, {});
  const size_t start = std::min(line.find_first_not_of(' '), line.size());
  return line.substr(start, line.find_last_not_of(' ') + 1 - start);
}

std::string linesOf(std::string_view bytes) {
  std::string ended;
  for (size_t i = 0; i < bytes.size(); ++i)
    if (bytes[i] != '\r')
      ended += bytes[i];
    else if (i + 1 == bytes.size() || bytes[i + 1] != '\n')
      ended += '\n';
  return repaired(ended, {Kind::lineSpace, Kind::lineEnd});
}

} // namespace host
