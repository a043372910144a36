// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What an argument of the command line means: a file, and parameters after its name.
#include "viewer/model/target.h"

#include <gtest/gtest.h>

#include "host/document/documenterror.h"
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

// ---- addresses ----

std::string reasonAgainst(const std::string &address) {
  try {
    targetOf(address);
  } catch (const host::DocumentError &error) {
    return error.what();
  }
  return {};
}

TEST(TargetTest, AnAddressIsAFileOfThisMachine) {
  for (const char *address : {"file:///a/paper.pdf", "file://localhost/a/paper.pdf", "file://LocalHost/a/paper.pdf",
                              "file:/a/paper.pdf", "FILE:///a/paper.pdf"})
    EXPECT_EQ(targetOf(address), (Target{"/a/paper.pdf", ""})) << address;
}

TEST(TargetTest, EscapesOfAnAddressAreDecoded) {
  EXPECT_EQ(targetOf("file:///a%20b%C3%a4%23%25.pdf"), (Target{"/a b\u00E4#%.pdf", ""}));
  EXPECT_EQ(targetOf("file:///latin%E4.pdf"), (Target{"/latin\xE4.pdf", ""}));
}

TEST(TargetTest, ParametersOfAnAddressFollowTheFirstHashAndStayEncoded) {
  EXPECT_EQ(targetOf("file:///a%23.pdf#page=2&xml=b%20c#d"), (Target{"/a#.pdf", "page=2&xml=b%20c#d"}));
}

TEST(TargetTest, AWrongEscapeIsReported) {
  for (const char *escape : {"%zz", "%00", "%4", "%", "%+1", "%-1", "% 1", "%1g"}) {
    const std::string address = std::string("file:///a") + escape;
    EXPECT_EQ(reasonAgainst(address), address + ": \"" + escape + "\" is no byte of a file name");
  }
}

TEST(TargetTest, AControlCharacterInAnAddressLeavesTheReasonOneLine) {
  EXPECT_EQ(reasonAgainst("file:///a%\n0"), "file:///a%?0: \"%?0\" is no byte of a file name");
}

TEST(TargetTest, AnotherMachineIsReported) {
  EXPECT_EQ(reasonAgainst("file://elsewhere/a.pdf"), "file://elsewhere/a.pdf: is on another machine, elsewhere");
  EXPECT_NE(reasonAgainst("file://elsewhere"), "");
  EXPECT_NE(reasonAgainst("file://localhost.example/a.pdf"), "");
}

TEST(TargetTest, AnAddressWithoutAFileIsReported) {
  for (const char *address : {"file:", "file://", "file://localhost", "file:paper.pdf", "file:#page=3"})
    EXPECT_EQ(reasonAgainst(address),
              std::string(address) + ": is no address of a file, such as file:///home/me/paper.pdf");
}

TEST(TargetTest, AFileNamedLikeAnAddressIsThatFile) {
  const test::ScratchFolder folder;
  folder.write("file:x.pdf", "x");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  EXPECT_EQ(targetOf("file:x.pdf"), (Target{"file:x.pdf", ""}));
  std::filesystem::current_path(before);
}

TEST(TargetTest, AnotherSchemeIsAFilesName) {
  EXPECT_EQ(targetOf("http://localhost/a.pdf"), (Target{"http://localhost/a.pdf", ""}));
  EXPECT_EQ(targetOf("files:///a.pdf"), (Target{"files:///a.pdf", ""}));
}

// ---- parameters ----

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

TEST(TargetTest, AHighlightFileIsAParameter) {
  for (const char *with : {"xml=a", "page=1&xml=a", "XML=a&page=1"})
    EXPECT_TRUE(hasHighlightFile({"a.pdf", with})) << with;
  for (const char *without : {"", "page=1", "noxml=a", "page=1&noxml=a", "xml"})
    EXPECT_FALSE(hasHighlightFile({"xml=a.pdf", without})) << without;
}

} // namespace
} // namespace viewer
