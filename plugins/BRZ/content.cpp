// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// Checks a file's bytes before they are attached. Owns nothing.
#include "content.h"

#include <algorithm>
#include <cstdlib>

namespace brz {
namespace {

constexpr std::string_view whitespace = " \t\r\n\v\f", byteOrderMark = "\xEF\xBB\xBF";

struct Kind {
  std::string_view start;
  const char *name;
};

// UTF-16 begins with a byte order mark, or with the '<' that begins markup.
constexpr Kind kinds[] = {{"%PDF-", "this is a PDF, not a highlight file"},
                          {{"\xFF\xFE", 2}, "this is UTF-16; a highlight file has one byte for each character"},
                          {{"\xFE\xFF", 2}, "this is UTF-16; a highlight file has one byte for each character"},
                          {{"<\0", 2}, "this is UTF-16; a highlight file has one byte for each character"},
                          {{"\0<", 2}, "this is UTF-16; a highlight file has one byte for each character"}};

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// `name` is in lower case.
bool contains(std::string_view content, std::string_view name) {
  return std::search(content.begin(), content.end(), name.begin(), name.end(),
                     [](char a, char b) { return lower(a) == b; }) != content.end();
}

/// The same, searched from the end: end tags are there, and a file may be large.
bool containsFromEnd(std::string_view content, std::string_view name) {
  return std::search(content.rbegin(), content.rend(), name.rbegin(), name.rend(),
                     [](char a, char b) { return lower(a) == b; }) != content.rend();
}

std::string_view withoutLeadingSpace(std::string_view content) {
  if (content.starts_with(byteOrderMark)) content.remove_prefix(byteOrderMark.size());
  return content.substr(std::min(content.size(), content.find_first_not_of(whitespace)));
}

bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < 0x20 || byte == 0x7F) && whitespace.find(c) == std::string_view::npos;
}

} // namespace

uint32_t limitOf(const char *text) {
  if (text == nullptr || *text < '0' || *text > '9') return usualLimit;
  char *end = nullptr;
  const unsigned long number = strtoul(text, &end, 10);
  return *end != 0 || number < 1 || number > highestLimit ? usualLimit : static_cast<uint32_t>(number);
}

const char *otherKind(std::string_view content) {
  constexpr size_t enough = 4096; // text has no control characters; of random bytes one in ten is one
  const std::string_view begin = withoutLeadingSpace(content);
  const char *kind = nullptr;
  for (const Kind &one : kinds)
    if (kind == nullptr && begin.starts_with(one.start)) kind = one.name;
  const std::string_view head = begin.substr(0, enough);
  if (kind == nullptr && !begin.starts_with('<') && std::any_of(head.begin(), head.end(), isControl))
    kind = "this is binary data, not a highlight file";
  return kind == nullptr || contains(content, "<highlights") ? nullptr : kind;
}

bool isTruncated(std::string_view content) {
  return (contains(content, "<body") && !containsFromEnd(content, "</body")) ||
         (contains(content, "<highlight") && !containsFromEnd(content, "</highlight"));
}

bool looksLikeHighlights(std::string_view beginning) {
  return withoutLeadingSpace(beginning).starts_with('<') && contains(beginning, "<body") &&
         contains(beginning, "<highlights");
}

} // namespace brz
