// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Formats, searches, white space, paths and fields (plugin/util/miUtils.h and miText.h).
#include <algorithm>
#include <cstdlib>

#include "fuzz/require.h"
#include "fuzz/text.h"
#include "plugin/util/miText.h"
#include "plugin/util/miUtils.h"
#include "tavrel/TavrelSupport.h"

namespace {

bool isSpace(char c) { return std::string(" \t\n\v\f\r").find(c) != std::string::npos; }

/// A byte string: empty for a UCS string, as no format, path or field is one.
std::string bytesOf(const std::string &text) { return isUCS(text) ? "" : text; }

void *hostMalloc(uint32_t size) { return malloc(size); }
void *hostRealloc(void *block, uint32_t size) { return realloc(block, size); }
void hostFree(void *block) { free(block); }

/// A host table with the memory operations only, in the order of their selectors.
tavrel::Entry memoryTable[] = {tavrel::entryOf(hostMalloc), tavrel::entryOf(hostRealloc), tavrel::entryOf(hostFree)};

} // namespace

void checkFormat(const Arguments &in) {
  const std::string text = bytesOf(in.a), expected = text + '-' + std::to_string(in.n);
  const Block source = terminated(text), complete = dottedBlock(expected.size() + 1), truncated = dottedBlock(in.m);
  const auto size = static_cast<int32_t>(expected.size());
  require(miSprintfSAFE(complete.get(), "%s-%d", source.get(), in.n) == size, "a format's length");
  require(expected == complete.get(), "a format's text");
  require(miSnprintfSAFE(truncated.get(), in.m, "%s-%d", source.get(), in.n) == size, "the length it would have");
  if (in.m != 0) require(expected.substr(0, in.m - 1U) == truncated.get(), "what fits, terminated");
}

void checkSearch(const Arguments &in) {
  const std::string text = bytesOf(in.a), part = bytesOf(in.b);
  const Block string = terminated(text), looked = terminated(part);
  const auto at = [&](const char *found) {
    return found != nullptr ? size_t(found - string.get()) : std::string::npos;
  };
  require(in.n == 0 || at(miStrchr(string.get(), in.n)) == text.find(static_cast<char>(in.n)), "the first byte");
  require(in.n == 0 || at(miStrrchr(string.get(), in.n)) == text.rfind(static_cast<char>(in.n)), "the last byte");
  require(at(miStrstr(string.get(), looked.get())) == text.find(part), "the first part");
  require(miAtoi(string.get()) == miAtol(string.get()), "a number is a number");
}

void checkStrip(const Arguments &in) {
  const Block string = terminated(in.a);
  const bool left = miStrip(string.get()) != 0;
  if (isUCS(in.a)) { // two zero bytes end it at any offset: the result is not computed here
    const uint32_t size = miStrlen(string.get());
    require(left == (size > 2), "whether units are left");
    require(size <= in.a.size() && miIsUCS(string.get()), "nothing is added, and the mark stays");
    return;
  }
  const auto first = std::find_if_not(in.a.begin(), in.a.end(), isSpace);
  const auto last = std::find_if_not(in.a.rbegin(), std::string::const_reverse_iterator(first), isSpace).base();
  require(left == (first != last), "whether something is left");
  require(holds(string, std::string(first, last), 1), "white space is removed from both ends");
}

void checkStripAll(const Arguments &in) {
  std::string expected;
  const size_t step = isUCS(in.a) ? 2 : 1;
  for (size_t at = 0; at < in.a.size(); at += step)
    if (step == 1 ? !isSpace(in.a[at]) : in.a[at] != 0 || !isSpace(in.a[at + 1])) expected += in.a.substr(at, step);
  const Block string = terminated(in.a);
  require((miStripAll(string.get()) != 0) == (expected.size() > (isUCS(in.a) ? 2 : 0)), "whether something is left");
  require(holds(string, expected, terminatorLength(in.a)), "white space is removed");
}

void checkTranslation(const Arguments &in) {
  std::string expected = bytesOf(in.a);
  const Block string = terminated(expected);
  const char from = static_cast<char>(in.n), to = static_cast<char>(in.m);
  require(miTranslate(string.get(), from, to) == string.get() + expected.size(), "the string's end");
  std::replace(expected.begin(), expected.end(), from, to);
  require(holds(string, expected, 1), "every such byte is replaced");
}

void checkCount(const Arguments &in) {
  const std::string text = bytesOf(in.a), part = bytesOf(in.b);
  const Block string = terminated(text), looked = terminated(part);
  uint32_t count = 0;
  for (size_t at = text.find(part); !part.empty() && at != std::string::npos; at = text.find(part, at + part.size()))
    ++count;
  require(miCountStr(string.get(), looked.get()) == count, "how often a part occurs");
}

void checkPath(const Arguments &in) {
  const std::string given = bytesOf(in.a);
  const Block path = terminated(given);
  require(miSubstituteDots(path.get()) == path.get(), "the path is returned");
  const std::string result = path.get();
  require(result.size() <= given.size(), "no path gets longer");
  if (given.find("//") == std::string::npos) // "a/..//b" becomes "/b"
    require(result.starts_with('/') == given.starts_with('/'), "a path keeps its root, and none gets one");
  const bool dots = result.find("/../") != std::string::npos || result.find("/./") != std::string::npos;
  require(!dots || result.starts_with("/../"), "no dots are left but above the root");
}

void checkSnarf(const Arguments &in) {
  const std::string text = bytesOf(in.a), start = bytesOf(in.b), end = bytesOf(in.c);
  const size_t found = text.find(start);
  const std::string rest = found != std::string::npos ? text.substr(found + start.size()) : "";
  if (end.empty() && isUCS(rest)) return; // the rest of a byte string is then taken for a UCS string
  const Block source = terminated(text), first = terminated(start), last = terminated(end),
              out = dottedBlock(size_t{in.n} + 1);
  const char *next = miSnarf(source.get(), first.get(), last.get(), out.get(), in.n);
  require((next == nullptr) == (found == std::string::npos), "null where the start does not occur");
  const size_t most = end.empty() && in.n != 0 ? in.n - 1U : in.n; // without an end, the terminator counts too
  require(rest.substr(0, end.empty() ? most : std::min(rest.find(end), most)) == out.get(), "the text between");
}

void checkEntries(const Arguments &in) {
  gTavrelSupportHFT = memoryTable;
  const std::string text = bytesOf(in.a);
  const Block line = terminated(text);
  for (uint32_t position = 0; position < text.size();) {
    const uint32_t before = position;
    char *field = miSnarfEntry(line.get(), &position, in.n % 2);
    require(position > before && position <= text.size(), "an entry takes some of the line");
    require(std::string(field).size() <= position - before, "and is no longer than that");
    TavrelSupport::Free(field);
  }
}

void checkTime(const Arguments &in) {
  const Block format = terminated(bytesOf(in.a));
  require(std::string(miStrftime(format.get())).size() < 130, "a time fits");
}
