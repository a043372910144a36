// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Highlight files as commands read them: up to a limit, and other kinds of files refused.
#include "tools/highlightfile.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <thread>

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
  EXPECT_EQ(refusal(file, 1), file + ": it is larger than 1 MB (--hits-limit raises the limit)");
  EXPECT_EQ(refusal(file, 2), "");
}

TEST_F(HighlightFile, WithoutAnEndIsReadUpToTheLimit) {
  EXPECT_EQ(refusal("/dev/zero", 3), "/dev/zero: it is larger than 3 MB (--hits-limit raises the limit)");
}

TEST_F(HighlightFile, ThatIsMissingIsReported) {
  EXPECT_EQ(refusal("/nowhere/hits.xml"), "/nowhere/hits.xml: No such file or directory");
  EXPECT_EQ(refusal(folder.path()), folder.path().string() + ": Is a directory");
}

TEST_F(HighlightFile, OfAnotherKindIsRefusedWithItsKind) {
  const std::string pdf = folder.pdf({{}});
  EXPECT_EQ(refusal(pdf), pdf + ": this is a PDF, not a highlight file");
  const std::string binary = folder.write("noise", std::string("\x89PNG\r\n\x1A\n"));
  EXPECT_EQ(refusal(binary), binary + ": this is binary data, not a highlight file");
  const std::string wide = folder.write("wide.xml", std::string("\xFF\xFE<\0X\0", 6));
  EXPECT_EQ(refusal(wide), wide + ": this is UTF-16; a highlight file has one byte for each character");
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

// Writes a file into a pipe, whose other end is a descriptor of this process.
int pipeWith(const std::string &text) {
  int ends[2];
  EXPECT_EQ(pipe(ends), 0);
  EXPECT_EQ(write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
  close(ends[1]);
  return ends[0];
}

TEST_F(HighlightFile, OfAPipeCanBeReadAgainUnderTheSameName) {
  const int end = pipeWith(hits);
  const std::string name = "/dev/fd/" + std::to_string(end);
  EXPECT_EQ(tools::rereadable(name, 1), name);
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(tools::readHits(name, 1), hits);
  close(end);
}

TEST_F(HighlightFile, OfANamedPipeCanBeReadAgainUnderAnotherName) {
  const std::string pipe = folder.path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::thread writer([&] { std::ofstream(pipe) << hits; });
  const std::string copy = tools::rereadable(pipe, 1);
  writer.join();
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(tools::readHits(copy, 1), hits);
}

TEST_F(HighlightFile, KeepsItsNameIfItIsNoPipe) {
  for (const std::string &name :
       {std::string(folder.write("hits.xml", hits)), std::string(folder.path()), std::string("missing.xml")})
    EXPECT_EQ(tools::rereadable(name, 1), name);
}

TEST_F(HighlightFile, OfADeviceWithoutAnEndIsRefused) {
  EXPECT_THAT([] { tools::rereadable("/dev/zero", 1); },
              testing::ThrowsMessage<tools::CommandFailure>(
                  "/dev/zero: it is larger than 1 MB (--hits-limit raises the limit)"));
}

} // namespace
