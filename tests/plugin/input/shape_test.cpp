// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The shape of a tag: that it is learned and followed, which does not show in what a file registers.
#include "plugin/input/gltShape.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Parts = std::vector<std::string>;

const Parts usual = {"\n<loc pg=\"", "\" pos=\"", "\" len=\"", "\"/>"};
constexpr uint32_t lastWord = 2; // "/>"

std::string written(const Parts &parts, const std::vector<std::string> &numbers) {
  std::string tag = parts[0];
  for (size_t i = 0; i < numbers.size(); ++i)
    tag += numbers[i] + parts[i + 1];
  return tag;
}

const std::string another = written(usual, {"12", "345", "6"});
const std::string padding(TagPart::longest, ' '); // so many bytes must be readable

class Shape : public testing::Test {
protected:
  /// Numbers of one digit between the parts. Their attributes count from 0, unless they are given.
  void learn(const Parts &parts, const std::vector<uint8_t> &attributes = {}, bool plain = true) {
    const std::string tag = written(parts, std::vector<std::string>(parts.size() - 1, "1"));
    TagNotes notes = {};
    const char *at = tag.data();
    for (size_t i = 0; i + 1 < parts.size(); ++i) {
      at += parts[i].size();
      shapeNoteNumber(notes, at, at + 1, attributes.empty() ? static_cast<uint8_t>(i) : attributes[i]);
      ++at;
    }
    notes.lastWord = lastWord;
    notes.plain = plain;
    shapeLearn(shape_, tag.data(), tag.data() + tag.size(), notes);
  }
  /// The length of the tag of the shape at the start of the text; 0 for none. `inToken` bytes of its token come before
  /// the tag.
  size_t follow(const std::string &bytes, size_t inToken = 0) {
    const std::string text = std::string(inToken, 'a') + bytes;
    const char *begin = text.data(), *tag = begin + inToken;
    text_ = {begin, begin + text.size(), inToken != 0 ? begin : nullptr};
    const char *end = shapeFollow(shape_, text_, tag, values_);
    if (end == nullptr) return 0;
    tokenBefore_ = text_.token != nullptr ? end - text_.token : 0;
    return static_cast<size_t>(end - tag);
  }

  TagShape shape_ = {};
  LexText text_ = {};
  ptrdiff_t tokenBefore_ = 0; ///< bytes from the start of a token that continues to the followed tag's end; 0 for none
  int32_t values_[TagShape::most] = {-1, -1, -1};
};

TEST_F(Shape, OfATagIsFollowedWithOtherNumbers) {
  learn(usual);
  EXPECT_EQ(follow(another + padding), another.size());
  EXPECT_EQ(values_[0], 12);
  EXPECT_EQ(values_[1], 345);
  EXPECT_EQ(values_[2], 6);
  EXPECT_EQ(tokenBefore_, 0);
}

TEST_F(Shape, StoresNumbersByTheirAttributes) {
  learn(usual, {2, 0, 1});
  EXPECT_EQ(follow(another + padding), another.size());
  EXPECT_EQ(values_[2], 12);
  EXPECT_EQ(values_[0], 345);
  EXPECT_EQ(values_[1], 6);
}

TEST_F(Shape, IsNotFollowedBeforeOneIsLearned) { EXPECT_EQ(follow(another + padding), 0U); }

TEST_F(Shape, IsNotLearnedOfATagThatIsNotPlain) {
  learn(usual, {}, false);
  EXPECT_EQ(follow(another + padding), 0U);
}

TEST_F(Shape, IsForgottenWhereATagIsNotPlain) {
  learn(usual);
  learn({"x=", " y=", " />"}, {}, false);
  EXPECT_EQ(follow(another + padding), 0U);
  EXPECT_EQ(follow("x=8 y=9 />" + padding), 0U);
}

TEST_F(Shape, IsNotFollowedWhereOneByteIsAnother) {
  learn(usual);
  for (size_t i = 0; i < another.size(); ++i) {
    std::string bytes = another + padding;
    bytes[i] = '~';
    EXPECT_EQ(follow(bytes), 0U) << bytes;
  }
}

TEST_F(Shape, HasPartsOfUpTo32Bytes) {
  for (size_t length = 1; length <= TagPart::longest + 1; ++length) {
    SCOPED_TRACE(length);
    Parts parts = {"", " >"};
    for (size_t i = 0; i < length; ++i)
      parts[0] += static_cast<char>('a' + i % 23);
    shape_ = {};
    learn(parts);
    EXPECT_EQ(shape_.known, length <= TagPart::longest);
    const std::string tag = written(parts, {"7"});
    EXPECT_EQ(follow(tag + padding), length <= TagPart::longest ? tag.size() : 0);
    for (size_t i = 0; i < length; ++i) {
      std::string bytes = tag + padding;
      bytes[i] = '~';
      EXPECT_EQ(follow(bytes), 0U) << bytes;
    }
  }
}

TEST_F(Shape, HasThreeNumbersAtMost) {
  learn({"a", "b", "c", "d", " >"});
  EXPECT_EQ(follow("a1b2c3d4 >" + padding), 0U);
}

TEST_F(Shape, IsToBeLearnedAtTheFirstTag) { EXPECT_TRUE(shapeMiss(shape_)); }

TEST_F(Shape, IsToBeLearnedAnewAtTheSecondMissInARow) {
  learn(usual);
  EXPECT_FALSE(shapeMiss(shape_));
  EXPECT_EQ(follow(another + padding), another.size());
  EXPECT_FALSE(shapeMiss(shape_)) << "the miss before does not count any more";
  EXPECT_TRUE(shapeMiss(shape_));
}

TEST_F(Shape, OfAnotherSpellingReplacesIt) {
  learn(usual);
  EXPECT_FALSE(shapeMiss(shape_));
  learn({"x=", " y=", " />"});
  EXPECT_FALSE(shapeMiss(shape_)) << "its misses are counted from 0";
  EXPECT_EQ(follow("x=8 y=9 />" + padding), 10U);
  EXPECT_EQ(values_[0], 8);
  EXPECT_EQ(values_[1], 9);
}

TEST_F(Shape, IsNotFollowedWhereTooLittleOfTheTextIsLeft) {
  learn(usual);
  const std::string bytes = another + std::string(TagPart::longest - usual.back().size(), ' ');
  EXPECT_EQ(follow(bytes), another.size());
  EXPECT_EQ(follow(bytes.substr(0, bytes.size() - 1)), 0U);
}

TEST_F(Shape, IsNotFollowedWhereATokenMayEndInTheFirstPart) {
  learn(usual);
  EXPECT_EQ(follow(another + padding, HWLEX_LIMIT - TagPart::longest), another.size());
  EXPECT_EQ(follow(another + padding, HWLEX_LIMIT - TagPart::longest + 1), 0U);
  EXPECT_EQ(follow(another + padding, HWLEX_LIMIT - 1), 0U);
}

TEST_F(Shape, EndsWithTheTagsLastWord) {
  learn(usual);
  for (const char following : {' ', '\n', '=', '"'})
    EXPECT_EQ(follow(another + following + padding), another.size()) << following;
  for (const char following : {'x', '>', '(', '\'', '!', '\0'})
    EXPECT_EQ(follow(another + following + padding), 0U) << following;
}

TEST_F(Shape, LeavesTheRestOfTheTokenWhereATagIsJoined) {
  learn(usual);
  EXPECT_EQ(follow(another + "<" + padding), another.size());
  EXPECT_EQ(tokenBefore_, ptrdiff_t{lastWord});
}

} // namespace
