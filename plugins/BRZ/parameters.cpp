// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// Reads a document's open parameters. The functions have no state.
#include "parameters.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace brz {
namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::string_view whitespace = " \t\r\n";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view fileScheme = "file://", thisMachine = "localhost/";
constexpr std::string_view remoteSchemes[] = {"http:", "https:"};

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool equal(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return lower(a) == lower(b); });
}

bool startsWith(std::string_view text, std::string_view start) { return equal(text.substr(0, start.size()), start); }

/// -1 if it is not a digit.
int hexDigit(char c) {
  const size_t index = std::string_view("0123456789abcdef").find(lower(c));
  return index == std::string_view::npos ? -1 : static_cast<int>(index);
}

/// The byte that the text encodes at its start ("%20"), or 0 if there is none. File names have no zero bytes.
char encodedByte(std::string_view text) {
  if (text.size() < 3 || text[0] != '%') return 0;
  const int high = hexDigit(text[1]), low = hexDigit(text[2]);
  return high < 0 || low < 0 ? '\0' : static_cast<char>(high * 16 + low);
}

/// The number of bytes of the first character; 0 if it is not printable or not valid UTF-8.
size_t printableBytes(const char *text) {
  const auto lead = static_cast<unsigned char>(*text);
  if (lead < 0x80) return lead >= 0x20 && lead != 0x7F ? 1 : 0;
  const size_t length = lead < 0xC0 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : 0;
  if (length == 0) return 0;
  uint32_t code = lead & (0x7FU >> length);
  for (size_t i = 1; i < length; ++i) {
    if ((text[i] & 0xC0) != 0x80) return 0;
    code = code << 6 | (text[i] & 0x3FU);
  }
  // The first printable character of each length; lower codes are control characters or have a shorter encoding.
  constexpr uint32_t first[] = {0, 0, 0xA0, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < first[length] || surrogate || code > 0x10FFFF ? 0 : length;
}

} // namespace

std::optional<std::string_view> valueOf(std::string_view parameters, std::string_view name) {
  std::optional<std::string_view> value;
  while (!parameters.empty()) {
    const std::string_view parameter = parameters.substr(0, parameters.find('&'));
    parameters.remove_prefix(std::min(parameters.size(), parameter.size() + 1));
    const size_t sign = parameter.find('=');
    if (sign != std::string_view::npos && equal(parameter.substr(0, sign), name)) value = parameter.substr(sign + 1);
  }
  return value;
}

std::optional<int32_t> pageNumberOf(std::string_view value) {
  if (value.empty() || value.find_first_not_of(digits) != std::string_view::npos) return std::nullopt;
  constexpr int64_t largest = std::numeric_limits<int32_t>::max();
  int64_t number = 0;
  for (const char digit : value)
    number = std::min(number * 10 + (digit - '0'), largest);
  if (number == 0) return std::nullopt;
  return static_cast<int32_t>(number);
}

bool isRemote(std::string_view value) {
  return std::any_of(std::begin(remoteSchemes), std::end(remoteSchemes),
                     [&](std::string_view scheme) { return startsWith(value, scheme); });
}

bool decodeFile(std::string_view value, char *file, size_t size) {
  if (startsWith(value, fileScheme)) {
    value.remove_prefix(fileScheme.size());
    if (startsWith(value, thisMachine)) value.remove_prefix(thisMachine.size() - 1);
  }
  for (size_t i = 0, out = 0; out < size; ++out) {
    file[out] = 0;
    if (i == value.size()) return true;
    const char decoded = encodedByte(value.substr(i));
    file[out] = decoded != 0 ? decoded : value[i];
    i += decoded != 0 ? 3 : 1;
  }
  return false;
}

bool hasXmlDeclaration(std::string_view content) {
  if (content.starts_with(byteOrderMark)) content.remove_prefix(byteOrderMark.size());
  content.remove_prefix(std::min(content.size(), content.find_first_not_of(whitespace)));
  return content.starts_with("<?xml");
}

const char *baseName(const char *file) {
  const char *slash = strrchr(file, '/');
  return slash == nullptr || slash[1] == 0 ? file : slash + 1;
}

void makePrintable(char *text) {
  while (*text != 0) {
    const size_t length = printableBytes(text);
    if (length == 0) *text = '?';
    text += std::max<size_t>(length, 1);
  }
}

} // namespace brz
