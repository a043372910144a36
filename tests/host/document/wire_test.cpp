// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Requests and answers as bytes, there and back, and bytes that are none.
#include "host/document/wire.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstring>

namespace host {
namespace {

using Length = uint32_t; // as it is in a message

std::string_view contentOf(const std::string &message) { return std::string_view(message).substr(sizeof(WireHeader)); }

std::vector<Request> requests() {
  return {OpenRequest{"/a b/\xFF.pdf", "secret"},
          SizesRequest{3, 32},
          WordsRequest{7, true},
          ImageRequest{1, 96.5, {800, 1000}, {10, 20, 300, 400}},
          MatchesRequest{2, "gr\u00FC\u00DFe", {true, false}},
          StructureRequest{12},
          PageStructureRequest{3, 12},
          AttachmentRequest{4},
          PlainWordsRequest{8}};
}

WordText word() { return {U"a\U0001F600", 12, {1, 2, 3, 4}, {{5, 6, 7, 8}, {}}, 3}; }

Structure structure() {
  Structure structure;
  structure.metadata = {"title", "author", "subject", "keywords", "creator", "producer", -1, std::nullopt, "PDF-1.7"};
  structure.labels = {"i", "1"};
  structure.outline = {{0, "a", true, PageTarget{1, 2.5, std::nullopt, 4}},
                       {1, "b", false, {}},
                       {1, "c", false, UriTarget{"a:b"}},
                       {2, "d", true, FileTarget{"b.pdf", 7, "there"}},
                       {0, "e", false, ActionTarget{"NextPage"}}};
  structure.attachments = {{"f", "file", "text/plain", 8}, {"g", ""}};
  return structure;
}

PageStructure pageStructure() {
  return {5,
          {{{1, 2, 3, 4}, PageTarget{6}}},
          {{FormField::Kind::choice, {5, 6, 7, 8}, "name", "one\ntwo", true, false}},
          {{Annotation::Kind::ink, {9, 10, 11, 12}, "note"}}};
}

std::vector<Answer> answers() {
  return {{Failure{tavrel::errDocument, "a.pdf: no", DocumentError::wrongPassword}},
          {Opened{3, {{1, 2}, {3, 4}}}},
          {Sizes{5, {{612, 792}}}},
          {PageWords{4, {{word(), {U"b", 15, {}, {{}}, 0}}}, {1, 0}}},
          {PageImage{2, 150, {}}},
          {PageMatches{6, {{{{1, 2, 3, 4}, {5, 6, 7, 8}}}, {{{}}}}}},
          {structure()},
          {pageStructure()},
          {AttachedFile{3, std::string("\0\xFF", 2)}},
          {PagePlainWords{7, {U"a\U0001F600", U"b"}}}};
}

TEST(Wire, TheHeaderHasTheVersionAndTheLengthOfTheContent) {
  for (const Request &request : requests()) {
    const std::string message = messageOf(request);
    WireHeader header{};
    std::memcpy(&header, message.data(), sizeof header);
    EXPECT_EQ(header.version, wireVersion);
    EXPECT_EQ(header.size, contentOf(message).size());
  }
}

TEST(Wire, ARequestIsReadAsItWasWritten) {
  const std::string file = messageOf(requests()[0]);
  const auto opened = std::get<OpenRequest>(requestIn(contentOf(file)).value());
  EXPECT_EQ(opened.file, "/a b/\xFF.pdf");
  EXPECT_EQ(opened.password, "secret");
  const auto words = std::get<WordsRequest>(requestIn(contentOf(messageOf(requests()[2]))).value());
  EXPECT_EQ(words.page, 7);
  EXPECT_TRUE(words.order);
  const auto matches = std::get<MatchesRequest>(requestIn(contentOf(messageOf(requests()[4]))).value());
  EXPECT_EQ(matches.text, "gr\u00FC\u00DFe");
  EXPECT_TRUE(matches.options.matchCase);
  EXPECT_FALSE(matches.options.wholeWords);
}

TEST(Wire, AnAnswerIsReadAsItWasWritten) {
  const auto words = std::get<PageWords>(answerIn(contentOf(messageOf(answers()[3]))).value().value);
  EXPECT_EQ(words.page, 4);
  EXPECT_THAT(words.order, testing::ElementsAre(1, 0));
  ASSERT_EQ(words.text.words.size(), 2U);
  const WordText &first = words.text.words[0];
  EXPECT_EQ(first.text, word().text);
  EXPECT_EQ(first.offset, 12U);
  EXPECT_EQ(first.bounds, word().bounds);
  EXPECT_EQ(first.characters, word().characters);
  EXPECT_EQ(first.quarterTurns, 3);
  EXPECT_EQ(words.text.words[1].text, U"b");
}

TEST(Wire, AStructureIsReadAsItWasWritten) {
  const auto read = std::get<Structure>(answerIn(contentOf(messageOf(Answer{structure()}))).value().value);
  EXPECT_EQ(read.metadata.producer, "producer");
  EXPECT_EQ(read.metadata.created, -1);
  EXPECT_FALSE(read.metadata.modified);
  EXPECT_EQ(read.metadata.format, "PDF-1.7");
  EXPECT_THAT(read.labels, testing::ElementsAre("i", "1"));
  ASSERT_EQ(read.outline.size(), 5U);
  const auto &page = std::get<PageTarget>(read.outline[0].target);
  EXPECT_TRUE(read.outline[0].isOpen);
  EXPECT_EQ(page.left, 2.5);
  EXPECT_FALSE(page.top);
  EXPECT_EQ(page.zoom, 4);
  EXPECT_TRUE(std::holds_alternative<std::monostate>(read.outline[1].target));
  EXPECT_EQ(std::get<UriTarget>(read.outline[2].target).uri, "a:b");
  EXPECT_EQ(std::get<FileTarget>(read.outline[3].target).page, 7);
  EXPECT_EQ(read.outline[3].depth, 2);
  EXPECT_EQ(std::get<ActionTarget>(read.outline[4].target).name, "NextPage");
  ASSERT_EQ(read.attachments.size(), 2U);
  EXPECT_EQ(read.attachments[0].type, "text/plain");
  EXPECT_EQ(read.attachments[0].size, 8U);
}

TEST(Wire, ThePartsOfAPageAreReadAsTheyWereWritten) {
  const auto read = std::get<PageStructure>(answerIn(contentOf(messageOf(Answer{pageStructure()}))).value().value);
  EXPECT_EQ(read.page, 5);
  ASSERT_EQ(read.links.size() + read.fields.size() + read.annotations.size(), 3U);
  EXPECT_EQ(std::get<PageTarget>(read.links[0].target).page, 6);
  EXPECT_EQ(read.fields[0].kind, FormField::Kind::choice);
  EXPECT_EQ(read.fields[0].contents, "one\ntwo");
  EXPECT_TRUE(read.fields[0].isOn);
  EXPECT_FALSE(read.fields[0].isReadOnly);
  EXPECT_EQ(read.annotations[0].kind, Annotation::Kind::ink);
  EXPECT_EQ(read.annotations[0].area, (Box{9, 10, 11, 12}));
}

TEST(Wire, PlainWordsAreReadAsTheyWereWritten) {
  const auto words = std::get<PagePlainWords>(answerIn(contentOf(messageOf(answers()[9]))).value().value);
  EXPECT_EQ(words.page, 7);
  EXPECT_THAT(words.words, testing::ElementsAre(U"a\U0001F600", U"b"));
}

TEST(Wire, WhatIsReadIsWrittenTheSame) {
  for (const Request &request : requests())
    EXPECT_EQ(messageOf(requestIn(contentOf(messageOf(request))).value()), messageOf(request)) << request.index();
  for (const Answer &answer : answers())
    EXPECT_EQ(messageOf(answerIn(contentOf(messageOf(answer))).value()), messageOf(answer)) << answer.value.index();
}

TEST(Wire, ATruncatedOrLongerContentIsNone) {
  for (const Answer &answer : answers()) {
    const std::string content(contentOf(messageOf(answer)));
    for (size_t length = 0; length < content.size(); ++length)
      EXPECT_FALSE(answerIn(std::string_view(content).substr(0, length))) << answer.value.index() << " " << length;
    EXPECT_FALSE(answerIn(content + '\0')) << answer.value.index();
  }
}

TEST(Wire, ATypeThatIsNotThereIsNone) {
  std::string content(contentOf(messageOf(answers()[0])));
  content[0] = static_cast<char>(std::variant_size_v<decltype(Answer::value)>);
  EXPECT_FALSE(answerIn(content));
  content[0] = '\xFF';
  EXPECT_FALSE(answerIn(content));
}

TEST(Wire, TruthIsZeroOrOne) {
  std::string content(contentOf(messageOf(Request(WordsRequest{7, true}))));
  EXPECT_TRUE(requestIn(content));
  content.back() = 2;
  EXPECT_FALSE(requestIn(content));
}

// The list of sizes claims so many elements.
std::string openedWithLength(uint32_t length) {
  std::string content(contentOf(messageOf(Answer{Opened{3, {{1, 2}}}})));
  std::memcpy(content.data() + 1 + sizeof(int32_t), &length, sizeof length);
  return content;
}

TEST(Wire, AListThatClaimsMoreThanThereIsTakesNoMemory) {
  EXPECT_TRUE(answerIn(openedWithLength(1)));
  for (const uint32_t length : {0U, 2U, 1U << 28, UINT32_MAX})
    EXPECT_FALSE(answerIn(openedWithLength(length))) << length;
}

// Each word takes four bytes of the message and more of memory.
TEST(Wire, ListsTakeNoMoreMemoryThanTheyMay) {
  const auto isRead = [](size_t words) {
    const Answer answer{PagePlainWords{0, std::vector<std::u32string>(words)}};
    return answerIn(contentOf(messageOf(answer))).has_value();
  };
  constexpr size_t most = mostMemory / sizeof(std::u32string);
  EXPECT_TRUE(isRead(most));
  EXPECT_FALSE(isRead(most + 1));
}

TEST(Wire, ListsTogetherTakeNoMoreMemoryThanTheyMay) {
  const std::string empty = messageOf(Answer{Structure{}});
  const auto contentWith = [&](Length labels, Length entries) {
    constexpr size_t label = sizeof(Length), entry = sizeof(int32_t) + sizeof(Length) + 2, lists = 3;
    std::string content(contentOf(empty).substr(0, contentOf(empty).size() - lists * sizeof(Length)));
    for (const auto &[length, bytes] : {std::pair(labels, labels * label), {entries, entries * entry}, {0, 0}})
      content.append(reinterpret_cast<const char *>(&length), sizeof length).append(bytes, '\0');
    return content;
  };
  constexpr Length labels = 5'000'000, entries = 1'000'000;
  EXPECT_TRUE(answerIn(contentWith(labels, 0)));
  EXPECT_TRUE(answerIn(contentWith(0, entries)));
  EXPECT_FALSE(answerIn(contentWith(labels, entries)));
}

TEST(Wire, AFileNameLongerThanItsMessageIsNone) {
  std::string message = messageOf(Request(OpenRequest{}));
  const size_t length = message.size() - 2 * sizeof(Length); // that of the name; the one of the password follows
  message.replace(length, sizeof(Length), sizeof(Length), '\xFF');
  EXPECT_FALSE(requestIn(contentOf(message)));
}

TEST(Wire, TooLongAMessageIsNotWritten) {
  EXPECT_THROW(messageOf(Request(MatchesRequest{0, std::string(mostContent, 'a'), {}})), std::length_error);
}

TEST(Wire, TheLongestMessageIsWrittenAndRead) {
  const size_t besides = contentOf(messageOf(Answer{AttachedFile{}})).size();
  const std::string longest = messageOf(Answer{AttachedFile{0, std::string(mostContent - besides, 'a')}});
  EXPECT_EQ(contentOf(longest).size(), mostContent);
  EXPECT_TRUE(answerIn(contentOf(longest)));
  EXPECT_THROW(messageOf(Answer{AttachedFile{0, std::string(mostContent - besides + 1, 'a')}}), std::length_error);
}

} // namespace
} // namespace host
