// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The parameters after '#' in a document's address, and the meaning of their values.
#include "plugins/BRZ/parameters.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string valueOf(std::string_view parameters, std::string_view name) {
  return std::string(brz::valueOf(parameters, name).value_or("(none)"));
}

std::string decoded(std::string_view value) {
  char file[100];
  return brz::decodeFile(value, file, sizeof file) ? file : "(too long)";
}

std::string printable(std::string text) {
  text.push_back('\0');
  brz::makePrintable(text.data());
  text.pop_back();
  return text;
}

TEST(Parameters, AreFoundByTheirNames) {
  EXPECT_EQ(valueOf("page=3&xml=hits.xml", "page"), "3");
  EXPECT_EQ(valueOf("page=3&xml=hits.xml", "xml"), "hits.xml");
  EXPECT_EQ(valueOf("zoom=50&xml=a=b", "xml"), "a=b");
  EXPECT_EQ(valueOf("&&xml=&", "xml"), "");
}

TEST(Parameters, OfOtherNamesAreNotFound) {
  for (const char *parameters : {"", "&", "xml", "xm=1", "xmls=1", "=1", "page=xml=1"})
    EXPECT_EQ(valueOf(parameters, "xml"), "(none)") << parameters;
}

TEST(Parameters, CompareTheirNamesWithoutCase) {
  EXPECT_EQ(valueOf("XML=Hits.xml", "xml"), "Hits.xml");
  EXPECT_EQ(valueOf("pAgE=2", "page"), "2");
}

TEST(Parameters, UseTheLastValueOfAName) { EXPECT_EQ(valueOf("page=1&page=2&Page=3&xml=x", "page"), "3"); }

TEST(Parameters, CountPagesFromOne) {
  EXPECT_EQ(brz::pageNumberOf("1"), 1);
  EXPECT_EQ(brz::pageNumberOf("042"), 42);
  EXPECT_EQ(brz::pageNumberOf("2147483647"), INT32_MAX);
}

TEST(Parameters, ClampNumbersThatAreTooLarge) {
  EXPECT_EQ(brz::pageNumberOf("2147483648"), INT32_MAX);
  EXPECT_EQ(brz::pageNumberOf("99999999999999999999999999"), INT32_MAX);
}

TEST(Parameters, RefuseInvalidPageNumbers) {
  for (const char *value : {"", "0", "000", "-1", "+1", " 1", "1 ", "1.5", "0x2", "two", "%33"})
    EXPECT_EQ(brz::pageNumberOf(value), std::nullopt) << value;
}

TEST(Parameters, RecogniseRemoteFiles) {
  for (const char *value : {"http://example.org/hits.xml", "HTTPS://example.org", "http:"})
    EXPECT_TRUE(brz::isRemote(value)) << value;
  for (const char *value : {"", "http", "httpd:x", "./http:x", "file:///http:", "hits.xml"})
    EXPECT_FALSE(brz::isRemote(value)) << value;
}

TEST(Parameters, DecodePercents) {
  EXPECT_EQ(decoded("my%20hits%2exml"), "my hits.xml");
  EXPECT_EQ(decoded("%C3%9Cbung"), "\u00DCbung");
  EXPECT_EQ(decoded("100%25"), "100%");
  EXPECT_EQ(decoded("%2520"), "%20") << "once only";
}

TEST(Parameters, KeepPercentsThatEncodeNothing) {
  for (const char *value : {"50%", "%2", "%zz", "%2g", "%%", "a%00b"})
    EXPECT_EQ(decoded(value), value);
}

TEST(Parameters, TakeAddressesOfFiles) {
  EXPECT_EQ(decoded("file:///tmp/hits.xml"), "/tmp/hits.xml");
  EXPECT_EQ(decoded("FILE://LocalHost/tmp/my%20hits.xml"), "/tmp/my hits.xml");
  EXPECT_EQ(decoded("file://hits.xml"), "hits.xml");
  EXPECT_EQ(decoded("file://localhosts/x"), "localhosts/x");
  EXPECT_EQ(decoded("file%3A///x"), "file:///x") << "an encoded scheme is a file's name";
  EXPECT_EQ(decoded(""), "");
}

TEST(Parameters, FitIntoTheBufferOrAreRefused) {
  EXPECT_EQ(decoded(std::string(99, 'x')), std::string(99, 'x'));
  EXPECT_EQ(decoded(std::string(100, 'x')), "(too long)");
  std::string encoded;
  for (int i = 0; i < 99; ++i)
    encoded += "%78";
  EXPECT_EQ(decoded(encoded), std::string(99, 'x'));
}

TEST(Parameters, RecogniseXmlByItsBeginning) {
  for (const char *content :
       {"<?xml version=\"1.0\"?>", "<?xml", "\xEF\xBB\xBF<?xml", " \t\r\n<?xml", "\xEF\xBB\xBF\n<?xml"})
    EXPECT_TRUE(brz::hasXmlDeclaration(content)) << content;
  for (const char *content : {"", " ", "\xEF\xBB\xBF", "<?xm", "<XML>", "x<?xml", "<?XML", "\xEF\xBB<?xml"})
    EXPECT_FALSE(brz::hasXmlDeclaration(content)) << content;
}

TEST(Parameters, AreShortenedToTheBaseName) {
  EXPECT_STREQ(brz::baseName("/a/b.xml"), "b.xml");
  EXPECT_STREQ(brz::baseName("b.xml"), "b.xml");
  EXPECT_STREQ(brz::baseName("a/b/"), "a/b/") << "nothing is no name";
}

TEST(Parameters, StayUnchangedIfPrintable) {
  for (const char *text :
       {"", "hits.xml: ~", "\u00DCbung", "\u00A0", "\u4E2D\u6587", "\U0001F600", "\u0800", "\uFFFD", "\U0010FFFF"})
    EXPECT_EQ(printable(text), text);
}

TEST(Parameters, HaveQuestionMarksForUnprintableBytes) {
  EXPECT_EQ(printable("a\x1B[2Jb\n\x7F"), "a?[2Jb??");
  EXPECT_EQ(printable("\u009B"), "??") << "a control character, of two bytes";
  EXPECT_EQ(printable("\xFF\x80z"), "??z");
  EXPECT_EQ(printable("\xC3"), "?");
  EXPECT_EQ(printable("\xE4\xB8z"), "??z");
  EXPECT_EQ(printable("\xC1\x81"), "??") << "an overlong encoding of A";
  EXPECT_EQ(printable("\xE0\x81\x81"), "???");
  EXPECT_EQ(printable("\xED\xA0\x80"), "???") << "half a pair";
  EXPECT_EQ(printable("\xF4\x90\x80\x80"), "????") << "beyond the last";
  EXPECT_EQ(printable("\xF8\x88\x80\x80\x80"), "?????");
}

} // namespace
