// The shape of a tag: that it is learned and followed, which nobody sees by what a file registers, only by the time.
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
const std::string room(TagPart::longest, ' '); // so many bytes may be looked at

class Shape : public testing::Test {
protected:
  /// All of a tag but its end. Attributes count from 0.
  void begin(const Parts &parts) {
    EXPECT_TRUE(shapeRelearn(shape_));
    for (size_t i = 0; i + 1 < parts.size(); ++i)
      shapeNumber(shape_, parts[i].data(), parts[i].data() + parts[i].size(), static_cast<uint8_t>(i));
  }
  void learn(const Parts &parts) {
    begin(parts);
    shapeEnd(shape_, parts.back().data(), parts.back().data() + parts.back().size(), lastWord);
  }
  /// How many bytes of the text a tag of the shape has; 0 for none. So many bytes of its token have come before the
  /// tag.
  size_t follow(const std::string &bytes, size_t inToken = 0) {
    const std::string whole = std::string(inToken, 'a') + bytes;
    const char *begin = whole.data(), *tag = begin + inToken;
    text_ = {begin, begin + whole.size(), inToken != 0 ? begin : nullptr};
    const char *end = shapeFollow(shape_, text_, tag, values_);
    if (end == nullptr) return 0;
    tokenBefore_ = text_.token != nullptr ? end - text_.token : 0;
    return static_cast<size_t>(end - tag);
  }

  TagShape shape_ = {};
  LexText text_ = {};
  ptrdiff_t tokenBefore_ = 0; ///< how many bytes before the followed tag's end a token begins that goes on; 0 for none
  int32_t values_[TagShape::most] = {-1, -1, -1};
};

TEST_F(Shape, OfATagIsFollowedWithOtherNumbers) {
  learn(usual);
  EXPECT_EQ(follow(another + room), another.size());
  EXPECT_EQ(values_[0], 12);
  EXPECT_EQ(values_[1], 345);
  EXPECT_EQ(values_[2], 6);
  EXPECT_EQ(tokenBefore_, 0);
}

TEST_F(Shape, PutsNumbersWhereTheirAttributesBelong) {
  EXPECT_TRUE(shapeRelearn(shape_));
  const uint8_t attributes[] = {2, 0, 1};
  for (size_t i = 0; i < 3; ++i)
    shapeNumber(shape_, usual[i].data(), usual[i].data() + usual[i].size(), attributes[i]);
  shapeEnd(shape_, usual[3].data(), usual[3].data() + usual[3].size(), lastWord);
  EXPECT_EQ(follow(another + room), another.size());
  EXPECT_EQ(values_[2], 12);
  EXPECT_EQ(values_[0], 345);
  EXPECT_EQ(values_[1], 6);
}

TEST_F(Shape, IsNotKnownBeforeATagHasBeenReadToItsEnd) {
  EXPECT_EQ(follow(another + room), 0U);
  begin(usual);
  EXPECT_EQ(follow(another + room), 0U);
}

TEST_F(Shape, IsNotFollowedWhereOneByteIsAnother) {
  learn(usual);
  for (size_t i = 0; i < another.size(); ++i) {
    std::string bytes = another + room;
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
    EXPECT_EQ(follow(tag + room), length <= TagPart::longest ? tag.size() : 0);
    for (size_t i = 0; i < length; ++i) {
      std::string bytes = tag + room;
      bytes[i] = '~';
      EXPECT_EQ(follow(bytes), 0U) << bytes;
    }
  }
}

TEST_F(Shape, HasThreeNumbersAtMost) {
  learn({"a", "b", "c", "d", " >"});
  EXPECT_EQ(follow("a1b2c3d4 >" + room), 0U);
}

TEST_F(Shape, IsLearnedAnewAtTheSecondMissInARow) {
  learn(usual);
  EXPECT_FALSE(shapeRelearn(shape_));
  EXPECT_EQ(follow(another + room), another.size());
  EXPECT_FALSE(shapeRelearn(shape_)) << "the one before counts no more";
  EXPECT_TRUE(shapeRelearn(shape_));
  EXPECT_EQ(follow(another + room), 0U) << "it is forgotten then";
}

TEST_F(Shape, OfAnotherSpellingTakesItsPlace) {
  learn(usual);
  EXPECT_FALSE(shapeRelearn(shape_));
  learn({"x=", " y=", " />"});
  EXPECT_FALSE(shapeRelearn(shape_)) << "its misses count from its own beginning";
  EXPECT_EQ(follow("x=8 y=9 />" + room), 10U);
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
  EXPECT_EQ(follow(another + room, HWLEX_LIMIT - TagPart::longest), another.size());
  EXPECT_EQ(follow(another + room, HWLEX_LIMIT - TagPart::longest + 1), 0U);
  EXPECT_EQ(follow(another + room, HWLEX_LIMIT - 1), 0U);
}

TEST_F(Shape, EndsWithTheTagsLastWord) {
  learn(usual);
  for (const char behind : {' ', '\n', '=', '"'})
    EXPECT_EQ(follow(another + behind + room), another.size()) << behind;
  for (const char behind : {'x', '>', '(', '\'', '!', '\0'})
    EXPECT_EQ(follow(another + behind + room), 0U) << behind;
}

TEST_F(Shape, LeavesTheRestOfTheTokenWhereATagIsJoined) {
  learn(usual);
  EXPECT_EQ(follow(another + "<" + room), another.size());
  EXPECT_EQ(tokenBefore_, ptrdiff_t{lastWord});
}

} // namespace
