// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Highlight files as commands read them: up to a limit, and other kinds of files refused.
#include "tools/highlightfile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/pdf.h"
#include "tools/failure.h"

namespace {

namespace fs = std::filesystem;

constexpr char hits[] = "<XML>\n<Body>\n<highlights>\n<loc pg=0 pos=0 len=1>\n</highlights>\n</Body>\n</XML>\n";

struct HighlightFile : testing::Test {
  // Why a file is refused.
  static std::string refusal(const std::string &file, unsigned megabytes = 64) {
    try {
      tools::readHits(file, megabytes);
    } catch (const tools::CommandFailure &failure) {
      EXPECT_EQ(failure.status, tools::exitHighlightFile);
      return failure.what();
    }
    return "";
  }
  const test::ScratchFolder folder;
};

TEST_F(HighlightFile, IsReadCompletely) {
  EXPECT_EQ(tools::readHits(folder.write("hits.xml", hits), 1), hits);
  EXPECT_EQ(tools::readHits(folder.write("hits.xml", ""), 1), "");
}

TEST_F(HighlightFile, MayBeAsLargeAsTheLimit) {
  const std::string file = folder.write("hits.xml", hits);
  fs::resize_file(file, 1U << 20);
  EXPECT_EQ(tools::readHits(file, 1).size(), 1U << 20);
  fs::resize_file(file, (1U << 20) + 1);
  EXPECT_EQ(refusal(file, 1), file + ": is larger than 1 MB (--hits-limit raises the limit)");
  EXPECT_EQ(refusal(file, 2), "");
}

TEST_F(HighlightFile, WithoutAnEndIsReadUpToTheLimit) {
  EXPECT_EQ(refusal("/dev/zero", 3), "/dev/zero: is larger than 3 MB (--hits-limit raises the limit)");
}

TEST_F(HighlightFile, ThatIsMissingIsReported) {
  EXPECT_EQ(refusal("/nowhere/hits.xml"), "/nowhere/hits.xml: No such file or directory");
  EXPECT_EQ(refusal(folder.path()), folder.path().string() + ": Is a directory");
}

TEST_F(HighlightFile, OfAnotherKindIsRefusedWithItsKind) {
  const std::string pdf = folder.pdf({{}});
  EXPECT_EQ(refusal(pdf), pdf + ": is a PDF, not a highlight file");
  const std::string binary = folder.write("noise", std::string("\x89PNG\r\n\x1A\n"));
  EXPECT_EQ(refusal(binary), binary + ": is binary data, not a highlight file");
  const std::string wide = folder.write("wide.xml", std::string("\xFF\xFE<\0X\0", 6));
  EXPECT_EQ(refusal(wide), wide + ": is UTF-16; a highlight file has one byte for each character");
}

TEST_F(HighlightFile, IsRecognisedByItsFirstBytes) {
  EXPECT_TRUE(tools::isHighlightFile(folder.write("a.xml", hits)));
  EXPECT_FALSE(tools::isHighlightFile(folder.write("b.xml", "<?xml version=\"1.0\"?>\n<html>")));
  EXPECT_FALSE(tools::isHighlightFile(folder.write("c.xml", std::string(5000, ' ') + hits))) << "too far down";
  EXPECT_FALSE(tools::isHighlightFile(folder.pdf({{}})));
  EXPECT_FALSE(tools::isHighlightFile(folder.path()));
  EXPECT_FALSE(tools::isHighlightFile(folder.path() / "missing"));
}

TEST_F(HighlightFile, ThatIsAPipeIsNotReadToRecogniseIt) {
  const fs::path pipe = folder.path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_FALSE(tools::isHighlightFile(pipe));
}

TEST_F(HighlightFile, BelongsToTheDocumentOfItsName) {
  const fs::path document = folder.write("paper.pdf", "");
  for (const char *name : {"paper.xml", "paper.hits.xml", "paper.pdf.xml", "paper.pdf.hits.xml", "paper.tavrelglt"})
    EXPECT_EQ(tools::documentOfHits(folder.path() / name), document) << name;
  for (const char *name : {"other.xml", "paper.txt", "paper", "xml"})
    EXPECT_EQ(tools::documentOfHits(folder.path() / name), "") << name;
}

} // namespace
