// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What an argument of the command line means: a file, and parameters after its name.
#include "viewer/model/target.h"

#include <gtest/gtest.h>

#include "support/pdf.h"

namespace viewer {
namespace {

std::string encoded(const std::string &value) {
  Target target;
  addParameter(target, "v", value);
  return target.parameters;
}

TEST(TargetTest, AFileAlone) { EXPECT_EQ(targetOf("paper.pdf"), (Target{"paper.pdf", ""})); }

TEST(TargetTest, ParametersFollowTheHash) {
  EXPECT_EQ(targetOf("a/paper.pdf#page=3&xml=hits.xml"), (Target{"a/paper.pdf", "page=3&xml=hits.xml"}));
}

TEST(TargetTest, AHashWithNothingAfterItIsNoParameter) { EXPECT_EQ(targetOf("paper.pdf#"), (Target{"paper.pdf", ""})); }

TEST(TargetTest, TheNameEndsAtTheFirstHash) {
  EXPECT_EQ(targetOf("paper.pdf#xml=a#b"), (Target{"paper.pdf", "xml=a#b"}));
}

TEST(TargetTest, AFileWithAHashInItsNameTakesParameters) {
  const test::ScratchFolder folder;
  const std::string file = folder.write("c#.pdf", "x").string();
  EXPECT_EQ(targetOf(file + "#page=2"), (Target{file, "page=2"}));
}

TEST(TargetTest, AFileWhoseNameHoldsAHashIsThatFile) {
  const test::ScratchFolder folder;
  const std::string file = folder.write("c#.pdf", "x").string();
  EXPECT_EQ(targetOf(file), (Target{file, ""}));
}

TEST(TargetTest, AnEmptyArgumentIsNoFile) { EXPECT_EQ(targetOf(""), Target()); }

TEST(TargetTest, AParameterIsAdded) {
  Target target;
  addParameter(target, "xml", "/tmp/hits-1_a.b~.xml");
  EXPECT_EQ(target.parameters, "xml=/tmp/hits-1_a.b~.xml");
}

TEST(TargetTest, ASecondParameterFollowsTheFirst) {
  Target target = targetOf("paper.pdf#page=3");
  addParameter(target, "xml", "h.xml");
  EXPECT_EQ(target.parameters, "page=3&xml=h.xml");
}

TEST(TargetTest, SeparatorsOfParametersAreEncoded) { EXPECT_EQ(encoded("a&b=c#d"), "v=a%26b%3Dc%23d"); }

TEST(TargetTest, PercentPlusAndSpaceAreEncoded) { EXPECT_EQ(encoded("100% +1"), "v=100%25%20%2B1"); }

TEST(TargetTest, UmlautsAreEncodedByteByByte) { EXPECT_EQ(encoded("\u00E4\u20AC"), "v=%C3%A4%E2%82%AC"); }

TEST(TargetTest, ControlCharactersAreEncoded) { EXPECT_EQ(encoded(std::string("\n\0\x7F", 3)), "v=%0A%00%7F"); }

TEST(TargetTest, AnEmptyValueIsAdded) { EXPECT_EQ(encoded(""), "v="); }

} // namespace
} // namespace viewer
