// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "document/texts.h"

#include <algorithm>
#include <array>

#include "host/document/utf8.h"

namespace document {
namespace {

std::string_view start(const char *text, size_t atMost) {
  return text == nullptr ? std::string_view() : host::firstBytes(text, atMost);
}

} // namespace

std::string Texts::taken(std::string_view valid, size_t atMost) {
  std::string text(host::firstBytes(valid, std::min(atMost, left_)));
  left_ -= text.size();
  return text;
}

// Both are truncated before as well, so that long texts cost little.

std::string Texts::line(const char *text) {
  return taken(host::lineOf(start(text, host::most::line)), host::most::line);
}

std::string Texts::lines(const char *text) {
  return taken(host::linesOf(start(text, host::most::lines)), host::most::lines);
}

std::optional<std::string> Texts::uri(const char *text) {
  constexpr std::array digits = std::to_array("0123456789ABCDEF");
  std::string encoded;
  for (const char c : text == nullptr ? std::string_view() : std::string_view(text)) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte > ' ' && byte < 0x7F)
      encoded += c;
    else
      (encoded += '%').append({digits[byte >> 4], digits[byte & 15]});
    if (encoded.size() > std::min(host::most::line, left_)) return std::nullopt;
  }
  if (encoded.empty()) return std::nullopt;
  left_ -= encoded.size();
  return encoded;
}

} // namespace document
