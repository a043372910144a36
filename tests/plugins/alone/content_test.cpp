// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The check of a highlight file's bytes, and the limit of its size.
#include "plugins/BRZ/content.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace {

constexpr char hits[] = "<XML>\n<Body Units=\"words\">\n<highlights>\n<loc pg=0 pos=0 len=1>\n</highlights>\n";

std::string kindOf(const std::string &content) {
  const char *kind = brz::otherKind(content);
  return kind == nullptr ? "" : kind;
}

std::string utf16(const std::string &text, bool littleEndian) {
  std::string result;
  for (const char c : text)
    result += littleEndian ? std::string{c, '\0'} : std::string{'\0', c};
  return result;
}

TEST(Content, OfTextMayBeAHighlightFile) {
  for (const std::string &text : {std::string(), std::string(hits), std::string("<html>"), std::string("a letter\r\n"),
                                  std::string("\xEF\xBB\xBF") + hits, std::string("<XML>\0</XML>", 12)})
    EXPECT_EQ(kindOf(text), "") << text;
}

TEST(Content, OfAPdfIsReportedAsPdf) {
  for (const std::string pdf : {"%PDF-1.7\n%\xE2\xE3\xCF\xD3\n", "\n%PDF-1.7", "\xEF\xBB\xBF%PDF-2.0"})
    EXPECT_EQ(kindOf(pdf), "this is a PDF, not a highlight file") << pdf;
}

TEST(Content, InUtf16IsReportedAsUtf16) {
  const std::string line = "this is UTF-16; a highlight file has one byte for each character";
  EXPECT_EQ(kindOf("\xFF\xFE" + utf16(hits, true)), line);
  EXPECT_EQ(kindOf("\xFE\xFF" + utf16(hits, false)), line);
  EXPECT_EQ(kindOf(utf16(hits, true)), line);
  EXPECT_EQ(kindOf(utf16(hits, false)), line);
}

TEST(Content, OfNoiseIsReportedAsBinary) {
  std::mt19937 random(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same noise each time
  std::string noise(5000, 'x');
  for (char &byte : noise)
    byte = static_cast<char>(random());
  EXPECT_EQ(kindOf(noise), "this is binary data, not a highlight file");
  EXPECT_EQ(kindOf(std::string(100, '\0')), "this is binary data, not a highlight file");
  EXPECT_EQ(kindOf("\x7F"
                   "ELF"),
            "this is binary data, not a highlight file");
}

// The reader finds its tags after any bytes.
TEST(Content, WithHighlightsIsAcceptedWithAnyBytesBeforeThem) {
  EXPECT_EQ(kindOf(std::string("\0\1\2", 3) + hits), "");
  EXPECT_EQ(kindOf(std::string("%PDF-1.7 ") + "<HIGHLIGHTS>"), "");
}

TEST(Content, IsTruncatedWithoutTheEndOfWhatItBegins) {
  const std::string complete = std::string("<?xml version=\"1.0\"?>\n") + hits + "</Body>\n</XML>\n";
  EXPECT_FALSE(brz::isTruncated(complete));
  for (const char *part : {"Units", "<highlights>", "pos=", "</highlights>", "</Body>"})
    EXPECT_TRUE(brz::isTruncated(complete.substr(0, complete.find(part)))) << part;
  for (const char *other : {"", "<XML>\n", "a letter"})
    EXPECT_FALSE(brz::isTruncated(other)) << other;
}

// A large file is not read completely on the window's thread: here its middle cannot be read.
TEST(Content, IsCompleteByItsBeginningAndEnd) {
  const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  void *const mapped = mmap(nullptr, 3 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(mapped, MAP_FAILED);
  auto *const bytes = static_cast<char *>(mapped);
  constexpr std::string_view begin = "<XML>\n<Body>\n<highlights>\n", end = "</highlights>\n</Body>\n</XML>\n";
  std::copy(begin.begin(), begin.end(), bytes);
  std::copy(end.rbegin(), end.rend(), std::reverse_iterator(bytes + 3 * page));
  ASSERT_EQ(mprotect(bytes + page, page, PROT_NONE), 0);
  EXPECT_FALSE(brz::isTruncated({bytes, 3 * page}));
  munmap(mapped, 3 * page);
}

TEST(Content, LooksLikeHighlightsByBodyAndList) {
  EXPECT_TRUE(brz::looksLikeHighlights(hits));
  EXPECT_TRUE(brz::looksLikeHighlights("\xEF\xBB\xBF\n<?xml version=\"1.0\"?><body><HighLights>"));
  for (const char *other : {"", "<XML>\n<Body>\n</Body>", "<highlights>", "%PDF-1.7 <Body><highlights>", "a <Body>"})
    EXPECT_FALSE(brz::looksLikeHighlights(other)) << other;
}

TEST(Content, IsLimitedToSixtyFourMegabytesUnlessAnotherLimitIsSet) {
  EXPECT_EQ(brz::limitOf(nullptr), 64U);
  EXPECT_EQ(brz::limitOf("1"), 1U);
  EXPECT_EQ(brz::limitOf("4095"), 4095U);
  for (const char *none : {"", "0", "4096", "-1", "+5", " 5", "5 ", "5M", "nan", "99999999999999999999999"})
    EXPECT_EQ(brz::limitOf(none), 64U) << none;
}

} // namespace
