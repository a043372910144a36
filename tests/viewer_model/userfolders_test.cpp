// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The user's folders, and the file of the ones used last.
#include "viewer/model/userfolders.h"

#include <gmock/gmock.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Environment.h"
#include "support/pdf.h"
#include "viewer/model/recentfolders.h"

namespace viewer {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

struct UserFoldersTest : testing::Test {
  std::vector<std::string> labels(const fs::path &front = {}, const std::vector<fs::path> &recent = {}) {
    std::vector<std::string> result;
    for (const NamedFolder &one : usualFolders(front, recent))
      result.push_back(one.label);
    return result;
  }
  fs::path makeFolder(const std::string &name) {
    fs::create_directories(folder.path() / name);
    return folder.path() / name;
  }

  test::ScratchFolder folder;
  const fs::path file = folder.path() / "state/tavrel/folders";
  test::Variable home{"HOME", folder.path().string()}, state{"XDG_STATE_HOME", std::nullopt},
      configuration{"XDG_CONFIG_HOME", std::nullopt};
};

// ---- paths ----

TEST_F(UserFoldersTest, ATildeIsTheHomeOfAUser) {
  const passwd *user = getpwuid(geteuid());
  ASSERT_NE(user, nullptr);
  EXPECT_EQ(withoutTilde("~"), folder.path());
  EXPECT_EQ(withoutTilde("~/"), folder.path());
  EXPECT_EQ(withoutTilde("~//a b.pdf"), folder.path() / "a b.pdf");
  EXPECT_EQ(withoutTilde(std::string("~") + user->pw_name + "/a"), fs::path(user->pw_dir) / "a");
}

TEST_F(UserFoldersTest, OtherTildesAreUnchanged) {
  for (const char *path : {"", "a", "a~", "/~", "~no-such-user/a"})
    EXPECT_EQ(withoutTilde(path), path);
  home.set("relative");
  EXPECT_EQ(withoutTilde("~/a"), "~/a");
}

TEST_F(UserFoldersTest, APathIsMadeNormal) {
  EXPECT_EQ(normalFolder("/a/./b/../c//"), "/a/c");
  EXPECT_EQ(normalFolder("/"), "/");
  EXPECT_EQ(normalFolder("/.."), "/");
}

// ---- recent folders ----

TEST_F(UserFoldersTest, TheFileIsBelowTheStateFolderOrHome) {
  EXPECT_EQ(recentFoldersFile(), folder.path() / ".local/state/tavrel/folders");
  state.set("relative");
  EXPECT_EQ(recentFoldersFile(), folder.path() / ".local/state/tavrel/folders");
  state.set("/elsewhere");
  EXPECT_EQ(recentFoldersFile(), "/elsewhere/tavrel/folders");
  state.set(std::nullopt);
  home.set(std::nullopt);
  EXPECT_EQ(recentFoldersFile(), "");
}

TEST_F(UserFoldersTest, WithoutAFileThereAreNone) { EXPECT_THAT(recentFolders(file), IsEmpty()); }

TEST_F(UserFoldersTest, TheLastOneIsFirstAndEachIsKeptOnce) {
  for (const char *one : {"/a", "/b b", "/latin\xE4", "/a"})
    EXPECT_TRUE(rememberFolder(file, one));
  EXPECT_THAT(recentFolders(file), ElementsAre("/a", "/latin\xE4", "/b b"));
}

TEST_F(UserFoldersTest, TheOldestAreForgotten) {
  for (size_t i = 0; i <= mostRecentFolders; ++i)
    ASSERT_TRUE(rememberFolder(file, "/" + std::to_string(i)));
  const auto folders = recentFolders(file);
  EXPECT_EQ(folders.size(), mostRecentFolders);
  EXPECT_EQ(folders.front(), "/" + std::to_string(mostRecentFolders));
  EXPECT_EQ(folders.back(), "/1");
}

TEST_F(UserFoldersTest, OnlyTheUserCanReadTheFileAndNothingElseIsLeft) {
  ASSERT_TRUE(rememberFolder(file, "/a"));
  struct stat kind {};
  ASSERT_EQ(stat(file.c_str(), &kind), 0);
  EXPECT_EQ(kind.st_mode & 0777U, 0600U);
  EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), fs::directory_iterator()), 1);
}

TEST_F(UserFoldersTest, WhatNoLineCanHoldIsNotKept) {
  for (const std::string &one :
       {std::string(), std::string("relative"), std::string("/two\nlines"), "/" + std::string(5000, 'x')})
    EXPECT_FALSE(rememberFolder(file, one));
  EXPECT_FALSE(rememberFolder("", "/a"));
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(UserFoldersTest, AFileThatCannotBeWrittenIsAsBefore) {
  ASSERT_TRUE(rememberFolder(file, "/a"));
  const fs::path blocked = folder.write("blocked", "") / "tavrel/folders";
  EXPECT_FALSE(rememberFolder(blocked, "/b"));
  const fs::path directory = makeFolder("folders/tavrel");
  EXPECT_FALSE(rememberFolder(directory, "/b"));
  EXPECT_THAT(recentFolders(file), ElementsAre("/a"));
}

TEST_F(UserFoldersTest, LinesThatAreNoFolderAreIgnored) {
  const fs::path hostile =
      folder.write("hostile", "relative\n\n/a\n/esc\x1B[2J\n/" + std::string(5000, 'x') + "\n/b\r\n/c\n/not complete");
  EXPECT_THAT(recentFolders(hostile), ElementsAre("/a", "/c"));
}

TEST_F(UserFoldersTest, AHugeFileIsReadUpToALimit) {
  std::string lines = std::string(100'000, 'x') + "\n/late\n";
  EXPECT_THAT(recentFolders(folder.write("huge", lines)), IsEmpty());
  lines.clear();
  for (int i = 0; i < 10'000; ++i)
    lines += "/folder\n";
  EXPECT_EQ(recentFolders(folder.write("many", lines)).size(), mostRecentFolders);
}

TEST_F(UserFoldersTest, AFolderOrAPipeInPlaceOfTheFileIsIgnored) {
  EXPECT_THAT(recentFolders(makeFolder("folder")), IsEmpty());
  const fs::path pipe = folder.path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_THAT(recentFolders(pipe), IsEmpty());
}

// ---- usual folders ----

TEST_F(UserFoldersTest, HomeIsUsual) { EXPECT_THAT(labels(), ElementsAre("Home")); }

TEST_F(UserFoldersTest, DocumentsAreUsualIfTheyAreThere) {
  makeFolder("Documents");
  EXPECT_THAT(labels(), ElementsAre("Home", "Documents"));
}

TEST_F(UserFoldersTest, DocumentsHaveTheDesktopsName) {
  makeFolder("Documents");
  makeFolder("Dokumente");
  makeFolder(".config");
  folder.write(".config/user-dirs.dirs", "# XDG_DOCUMENTS_DIR=\"$HOME/no\"\nXDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
  EXPECT_THAT(labels(), ElementsAre("Home", "Dokumente"));
  configuration.set("/nowhere");
  EXPECT_THAT(labels(), ElementsAre("Home", "Documents"));
}

TEST_F(UserFoldersTest, OtherValuesOfTheDesktopAreIgnored) {
  makeFolder(".config");
  for (const char *line : {"XDG_DOCUMENTS_DIR=\"", "XDG_DOCUMENTS_DIR=\"relative\"", "XDG_DOCUMENTS_DIR=\"$HOME/\"",
                           "XDG_DOCUMENTS_DIR=\"/missing\"", "XDG_DOCUMENTS_DIR=", ""}) {
    folder.write(".config/user-dirs.dirs", std::string(line) + "\n");
    EXPECT_THAT(labels(), ElementsAre("Home")) << line;
  }
}

TEST_F(UserFoldersTest, EachFolderIsUsualOnce) {
  EXPECT_THAT(labels(folder.path() / "papers", {folder.path() / "papers/", folder.path(), "/usr/share"}),
              ElementsAre("Home", "papers", "share"));
}

TEST_F(UserFoldersTest, FoldersOfTheSameNameHaveTheirPaths) {
  EXPECT_THAT(labels("/a/papers", {"/b/papers", "/"}), ElementsAre("Home", "papers", "/b/papers", "/"));
}

TEST_F(UserFoldersTest, WithoutAHomeThereIsNone) {
  home.set(std::nullopt);
  EXPECT_THAT(labels("/a"), ElementsAre("a"));
}

TEST_F(UserFoldersTest, AChoiceBeginsBesideTheDocumentThenWhereTheLastWasThenInTheCurrentFolder) {
  EXPECT_EQ(firstFolder("/front", {folder.path()}), "/front");
  EXPECT_EQ(firstFolder("", {folder.path(), "/other"}), folder.path());
  EXPECT_EQ(firstFolder("", {folder.path() / "missing", "/usr"}), fs::current_path());
  EXPECT_EQ(firstFolder("", {}), fs::current_path());
}

} // namespace
} // namespace viewer
