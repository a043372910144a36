// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The names in a folder.
#include "viewer/model/folder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "support/pdf.h"

namespace viewer {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct FolderTest : testing::Test {
  void make(std::initializer_list<const char *> files) {
    for (const char *name : files)
      folder.write(name, "");
  }
  void makeFolders(std::initializer_list<const char *> names) {
    for (const char *name : names)
      std::filesystem::create_directory(folder.path() / name);
  }
  // A folder's name with a slash.
  std::vector<std::string> names(Files files = Files::pdf) {
    std::vector<std::string> result;
    for (const FolderEntry &entry : listFolder(folder.path(), files).entries)
      result.push_back(entry.name + (entry.folder ? "/" : ""));
    return result;
  }
  std::string errorOf(const std::filesystem::path &path) { return listFolder(path, Files::pdf).error; }

  test::ScratchFolder folder;
};

TEST_F(FolderTest, AnEmptyFolderHasNoNames) {
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_EQ(errorOf(folder.path()), "");
}

TEST_F(FolderTest, FoldersComeFirst) {
  make({"a.pdf"});
  makeFolders({"z", "y"});
  EXPECT_THAT(names(), ElementsAre("y/", "z/", "a.pdf"));
}

TEST_F(FolderTest, PdfsAreListedInAnyCaseAndOthersOnRequest) {
  make({"a.pdf", "b.PDF", "c.Pdf", "d.txt", "e.pdf.gz", ".pdf", "pdf"});
  EXPECT_THAT(names(), ElementsAre("a.pdf", "b.PDF", "c.Pdf"));
  EXPECT_THAT(names(Files::all), ElementsAre(".pdf", "a.pdf", "b.PDF", "c.Pdf", "d.txt", "e.pdf.gz", "pdf"));
}

TEST_F(FolderTest, CaseAndAccentsDoNotCountForTheOrder) {
  make({"b.pdf", "\u00C4.pdf", "a.pdf", "C.pdf", "\u00E9.pdf"});
  EXPECT_THAT(names(), ElementsAre("a.pdf", "\u00C4.pdf", "b.pdf", "C.pdf", "\u00E9.pdf"));
}

TEST_F(FolderTest, NumbersAreInTheOrderOfTheirValues) {
  make({"p10.pdf", "p9.pdf", "p09b.pdf", "p100.pdf", "p99999999999999999999999.pdf", "p.pdf"});
  EXPECT_THAT(names(),
              ElementsAre("p.pdf", "p9.pdf", "p09b.pdf", "p10.pdf", "p100.pdf", "p99999999999999999999999.pdf"));
}

TEST_F(FolderTest, LinksAreFollowed) {
  make({"file.pdf"});
  makeFolders({"folder"});
  std::filesystem::create_symlink("folder", folder.path() / "to folder");
  std::filesystem::create_symlink("file.pdf", folder.path() / "to file.pdf");
  std::filesystem::create_symlink("nothing", folder.path() / "to nothing.pdf");
  std::filesystem::create_symlink("nothing", folder.path() / "to nothing");
  EXPECT_THAT(names(), ElementsAre("folder/", "to folder/", "file.pdf", "to file.pdf", "to nothing.pdf"));
}

TEST_F(FolderTest, OnlyFilesAndFoldersAreListed) {
  ASSERT_EQ(mkfifo((folder.path() / "pipe.pdf").c_str(), 0600), 0);
  EXPECT_THAT(names(Files::all), IsEmpty());
}

TEST_F(FolderTest, NamesOfAnyBytesAreShownAsALine) {
  make({"latin\xE4.pdf", "two\nlines\x1B.pdf"});
  const FolderListing listing = listFolder(folder.path(), Files::pdf);
  ASSERT_EQ(listing.entries.size(), 2U);
  EXPECT_EQ(listing.entries[0].name, "latin\xE4.pdf");
  EXPECT_EQ(listing.entries[0].shown, "latin\uFFFD.pdf");
  EXPECT_EQ(listing.entries[1].shown, "two lines.pdf");
}

TEST_F(FolderTest, NoMoreNamesAreReadThanAllowed) {
  make({"a.pdf", "b.pdf", "c.pdf"});
  const FolderListing some = listFolder(folder.path(), Files::pdf, 4), all = listFolder(folder.path(), Files::pdf, 5);
  EXPECT_FALSE(some.complete); // "." and ".." are names, too
  EXPECT_TRUE(all.complete);
  EXPECT_EQ(all.entries.size(), 3U);
  EXPECT_LE(some.entries.size(), 3U);
}

TEST_F(FolderTest, AFolderThatCannotBeReadIsReportedInOneLine) {
  make({"file"});
  std::filesystem::create_symlink("loop", folder.path() / "loop");
  const std::string path = folder.path();
  EXPECT_EQ(errorOf(path + "/missing\n"), path + "/missing?: No such file or directory");
  EXPECT_EQ(errorOf(path + "/file"), path + "/file: Not a directory");
  EXPECT_EQ(errorOf(path + "/loop"), path + "/loop: Too many levels of symbolic links");
}

std::string commonStartOf(std::initializer_list<const char *> names) {
  std::vector<FolderEntry> entries;
  for (const char *name : names)
    entries.push_back({name, name, {}, false});
  std::vector<const FolderEntry *> pointers;
  for (const FolderEntry &entry : entries)
    pointers.push_back(&entry);
  return commonStart(pointers);
}

TEST(CommonStartTest, IsWhatAllNamesBeginWith) {
  EXPECT_EQ(commonStartOf({}), "");
  EXPECT_EQ(commonStartOf({"report.pdf"}), "report.pdf");
  EXPECT_EQ(commonStartOf({"report 1.pdf", "report 2.pdf"}), "report ");
  EXPECT_EQ(commonStartOf({"a", "b"}), "");
  EXPECT_EQ(commonStartOf({"ab", "a"}), "a");
}

TEST(CommonStartTest, CaseDoesNotCount) { EXPECT_EQ(commonStartOf({"Report.pdf", "reporter.pdf"}), "Report"); }

TEST(CommonStartTest, EndsAfterACharacter) { EXPECT_EQ(commonStartOf({"a\u00E4", "a\u00F6"}), "a"); }

} // namespace
} // namespace viewer
