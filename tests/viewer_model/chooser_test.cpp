// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Choosing a file from folders, without a dialog.
#include "viewer/model/chooser.h"

#include <gmock/gmock.h>

#include "Environment.h"
#include "support/pdf.h"

namespace viewer {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

struct ChooserTest : testing::Test {
  ChooserTest() {
    for (const char *name : {"papers", "papers/2024", "pictures", ".private"})
      fs::create_directory(path(name));
    for (const char *name : {"report 1.pdf", "report 2.PDF", "Summary.pdf", "notes.txt", ".hidden.pdf",
                             "papers/thesis.pdf", "papers/2024/new.pdf"})
      folder.write(name, "x");
    chooser.goTo(folder.path());
  }
  fs::path path(const std::string &name) const { return folder.path() / name; }
  std::vector<std::string> names() {
    std::vector<std::string> result;
    for (const FolderEntry *entry : chooser.shown())
      result.push_back(entry->shown);
    return result;
  }
  std::string completed(const std::string &text) {
    chooser.setText(text);
    return chooser.completed();
  }
  std::optional<fs::path> typed(const std::string &text) {
    chooser.setText(text);
    return chooser.chooseTyped();
  }
  // The file is refused with this line, and the text is as it was.
  void refused(const std::string &text, const std::string &message) {
    EXPECT_EQ(typed(text), std::nullopt) << text;
    EXPECT_EQ(chooser.message(), message);
    EXPECT_EQ(chooser.text(), text);
  }

  test::ScratchFolder folder;
  test::Variable home{"HOME", folder.path().string()};
  Chooser chooser{"/"};
};

// ---- the list ----

TEST_F(ChooserTest, ShowsFoldersAndPdfs) {
  EXPECT_THAT(names(), ElementsAre("papers", "pictures", "report 1.pdf", "report 2.PDF", "Summary.pdf"));
  EXPECT_EQ(chooser.message(), "");
  EXPECT_EQ(chooser.suggested(), std::nullopt);
}

TEST_F(ChooserTest, ShowsAllFilesOnRequest) {
  chooser.setText("n");
  EXPECT_THAT(names(), IsEmpty());
  chooser.setFiles(Files::all);
  EXPECT_THAT(names(), ElementsAre("notes.txt"));
  EXPECT_EQ(chooser.text(), "n");
}

TEST_F(ChooserTest, ATextNarrowsTheListToNamesThatBeginWithIt) {
  chooser.setText("r");
  EXPECT_THAT(names(), ElementsAre("report 1.pdf", "report 2.PDF"));
  chooser.setText("sUMM");
  EXPECT_THAT(names(), ElementsAre("Summary.pdf"));
  EXPECT_EQ(chooser.suggested(), 0U);
  chooser.setText("");
  EXPECT_EQ(names().size(), 5U);
}

TEST_F(ChooserTest, NamesWithADotAreShownWhenADotIsTyped) {
  chooser.setText(".");
  EXPECT_THAT(names(), ElementsAre(".private", ".hidden.pdf"));
}

TEST_F(ChooserTest, TheDirectoryPartOfATextSaysWhoseNamesAreShown) {
  chooser.setText("papers/");
  EXPECT_THAT(names(), ElementsAre("2024", "thesis.pdf"));
  EXPECT_EQ(chooser.folder(), path("papers"));
  chooser.setText("papers/t");
  EXPECT_THAT(names(), ElementsAre("thesis.pdf"));
  chooser.setText("papers/2024/../../s");
  EXPECT_THAT(names(), ElementsAre("Summary.pdf"));
  chooser.setText(path("papers/2024/"));
  EXPECT_THAT(names(), ElementsAre("new.pdf"));
  chooser.setText("~/papers/");
  EXPECT_THAT(names(), ElementsAre("2024", "thesis.pdf"));
  chooser.setText("p");
  EXPECT_THAT(names(), ElementsAre("papers", "pictures"));
}

TEST_F(ChooserTest, AMessageSaysWhyNothingIsShown) {
  chooser.setText("x");
  EXPECT_EQ(chooser.message(), "No name here begins with \u201Cx\u201D.");
  chooser.goTo(path("pictures"));
  EXPECT_EQ(chooser.message(), "There are no PDF files in this folder.");
  chooser.setFiles(Files::all);
  EXPECT_EQ(chooser.message(), "There are no files in this folder.");
  chooser.setText("nowhere/x");
  EXPECT_EQ(chooser.message(), path("pictures/nowhere").string() + ": No such file or directory");
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(ChooserTest, OfManyNamesTheFirstAreShownAndTypingReachesTheOthers) {
  fs::create_directory(path("many"));
  for (size_t i = 1; i <= Chooser::mostShown + 1; ++i)
    folder.write("many/" + std::to_string(i) + ".pdf", "");
  chooser.goTo(path("many"));
  EXPECT_EQ(chooser.shown().size(), Chooser::mostShown);
  EXPECT_EQ(chooser.message(), "The first 1,000 of 1,001 names. Type how the name begins.");
  chooser.setText("1001");
  EXPECT_THAT(names(), ElementsAre("1001.pdf"));
  EXPECT_EQ(chooser.message(), "");
}

// ---- completion ----

TEST_F(ChooserTest, ATextIsCompletedAsFarAsAllNamesAreEqual) {
  EXPECT_EQ(completed("re"), "report ");
  EXPECT_EQ(completed("report "), "report ");
  EXPECT_EQ(completed("report 2"), "report 2.PDF");
  EXPECT_EQ(completed("su"), "Summary.pdf");
  EXPECT_EQ(completed("p"), "p");
  EXPECT_EQ(completed("x"), "x");
  EXPECT_EQ(completed(""), "");
}

TEST_F(ChooserTest, WithoutATextTheOnlyNameIsCompleted) {
  fs::create_directory(path("one"));
  folder.write("one/letter.pdf", "");
  folder.write("one/notes.txt", "");
  chooser.goTo(path("one"));
  EXPECT_EQ(completed(""), "letter.pdf");
  chooser.setFiles(Files::all);
  EXPECT_EQ(completed(""), "");
}

TEST_F(ChooserTest, AFolderIsCompletedWithASlash) {
  EXPECT_EQ(completed("pa"), "papers/");
  EXPECT_EQ(completed("papers/2"), "papers/2024/");
}

TEST_F(ChooserTest, TheDirectoryPartStaysAsItWasTyped) {
  EXPECT_EQ(completed("~/papers/th"), "~/papers/thesis.pdf");
  EXPECT_EQ(completed("./papers/../su"), "./papers/../Summary.pdf");
}

TEST_F(ChooserTest, NamesThatDifferInAnAccentAreNotCompletedBackwards) {
  folder.write("\u00C4rger.pdf", "");
  folder.write("arbeit.pdf", "");
  chooser.goTo(folder.path());
  EXPECT_EQ(completed("ar"), "ar");
  EXPECT_EQ(completed("arg"), "\u00C4rger.pdf");
}

// ---- what becomes of a file ----

TEST_F(ChooserTest, AFailureNamesTheFileWithoutItsFolder) {
  chooser.sayFailure(path("a.pdf"), path("a.pdf").string() + ": the file is damaged");
  EXPECT_EQ(chooser.message(), "a.pdf: the file is damaged");
  chooser.sayFailure(path("a.pdf"), "memory is exhausted");
  EXPECT_EQ(chooser.message(), "memory is exhausted");
  chooser.setText("report");
  EXPECT_EQ(chooser.message(), "");
}

TEST_F(ChooserTest, AFileIsBeingOpenedWhileATextIsTyped) {
  chooser.sayFailure(path("b.pdf"), "memory is exhausted");
  chooser.sayOpening(path("a.pdf"));
  EXPECT_EQ(chooser.message(), "Opening a.pdf\u2026");
  chooser.setText("missing");
  EXPECT_EQ(chooser.message(), "No name here begins with \u201Cmissing\u201D.");
  chooser.setText("report");
  EXPECT_EQ(chooser.message(), "Opening a.pdf\u2026");
  chooser.sayFailure(path("a.pdf"), "memory is exhausted");
  chooser.setText("");
  EXPECT_EQ(chooser.message(), "");
}

TEST_F(ChooserTest, TheReasonFollowsTheBeginningOfALongName) {
  const std::string name(200, 'x');
  chooser.sayFailure(path(name), path(name).string() + ": the file is damaged");
  EXPECT_EQ(chooser.message(), std::string(60, 'x') + "\u2026: the file is damaged");
  chooser.sayOpening(path(name));
  EXPECT_EQ(chooser.message(), "Opening " + std::string(60, 'x') + "\u2026\u2026");
}

// ---- choosing from the list ----

TEST_F(ChooserTest, AFileIsChosenFromTheList) { EXPECT_EQ(chooser.choose(2), path("report 1.pdf")); }

TEST_F(ChooserTest, AFolderOfTheListIsEntered) {
  chooser.setText("p");
  EXPECT_EQ(chooser.choose(0), std::nullopt);
  EXPECT_EQ(chooser.folder(), path("papers"));
  EXPECT_EQ(chooser.text(), "");
  EXPECT_THAT(names(), ElementsAre("2024", "thesis.pdf"));
}

TEST_F(ChooserTest, ANameOfOtherBytesIsChosenFromTheListAndByItsBeginning) {
  folder.write("latin\xE4.pdf", "x");
  chooser.goTo(folder.path());
  chooser.setText("lat");
  EXPECT_EQ(chooser.choose(0), path("latin\xE4.pdf"));
  EXPECT_EQ(typed("lat"), path("latin\xE4.pdf"));
  EXPECT_EQ(typed(completed("lat")), path("latin\xE4.pdf"));
}

TEST_F(ChooserTest, APositionOutsideOfTheListChoosesNothing) { EXPECT_EQ(chooser.choose(5), std::nullopt); }

// ---- the folder above ----

TEST_F(ChooserTest, GoingUpSuggestsWhereTheUserComesFrom) {
  chooser.goTo(path("pictures"));
  chooser.goUp();
  EXPECT_EQ(chooser.folder(), folder.path());
  EXPECT_EQ(chooser.suggested(), 1U);
}

TEST_F(ChooserTest, GoingUpFromATypedFolderLeavesNoText) {
  chooser.setText("papers/2024/n");
  chooser.goUp();
  EXPECT_EQ(chooser.folder(), path("papers"));
  EXPECT_EQ(chooser.text(), "");
}

TEST_F(ChooserTest, NothingIsAboveTheRoot) {
  chooser.goTo("/");
  chooser.goUp();
  EXPECT_EQ(chooser.folder(), "/");
}

// ---- choosing by text ----

TEST_F(ChooserTest, AFileIsChosenByItsNameOrPath) {
  EXPECT_EQ(typed("report 1.pdf"), path("report 1.pdf"));
  EXPECT_EQ(typed("papers/thesis.pdf"), path("papers/thesis.pdf"));
  EXPECT_EQ(typed("papers/../Summary.pdf"), path("Summary.pdf"));
  EXPECT_EQ(typed(path("papers/2024/new.pdf")), path("papers/2024/new.pdf"));
  EXPECT_EQ(typed("~/Summary.pdf"), path("Summary.pdf"));
  EXPECT_EQ(typed("file://" + path("report%201.pdf").string()), path("report 1.pdf"));
}

TEST_F(ChooserTest, AFileThatIsNotListedIsChosenByItsName) {
  EXPECT_EQ(typed("notes.txt"), path("notes.txt"));
  EXPECT_EQ(typed(".hidden.pdf"), path(".hidden.pdf"));
}

TEST_F(ChooserTest, TheOnlyNameWithABeginningIsChosen) {
  EXPECT_EQ(typed("summ"), path("Summary.pdf"));
  EXPECT_EQ(typed("pict"), std::nullopt);
  EXPECT_EQ(chooser.folder(), path("pictures"));
}

TEST_F(ChooserTest, ATypedFolderIsEntered) {
  for (const char *text : {"papers", "papers/", "~/papers", "pictures/../papers"}) {
    chooser.goTo(folder.path());
    EXPECT_EQ(typed(text), std::nullopt);
    EXPECT_EQ(chooser.folder(), path("papers")) << text;
    EXPECT_EQ(chooser.text(), "");
    EXPECT_EQ(chooser.message(), "");
  }
  EXPECT_EQ(typed(".."), std::nullopt);
  EXPECT_EQ(chooser.folder(), folder.path());
  EXPECT_EQ(typed("~"), std::nullopt);
  EXPECT_EQ(chooser.folder(), folder.path());
}

TEST_F(ChooserTest, WithoutATextNothingIsChosen) { EXPECT_EQ(typed(""), std::nullopt); }

TEST_F(ChooserTest, WhatIsNotThereIsReported) {
  refused("missing.pdf", path("missing.pdf").string() + ": No such file or directory");
  refused("report", path("report").string() + ": No such file or directory"); // begins two names
  refused("notes.txt/a", path("notes.txt/a").string() + ": Not a directory");
  refused("no\nwhere/a.pdf", path("no?where/a.pdf").string() + ": No such file or directory");
  refused("~nobody-of-this-name/a", path("~nobody-of-this-name/a").string() + ": No such file or directory");
}

TEST_F(ChooserTest, AnAddressThatNamesNoFileIsReported) {
  refused("file://elsewhere/a.pdf", "file://elsewhere/a.pdf: is on another machine, elsewhere");
  refused("file:///nowhere/a.pdf", "/nowhere/a.pdf: No such file or directory");
}

TEST_F(ChooserTest, AFolderThatIsRemovedMeanwhileIsReported) {
  chooser.goTo(path("pictures"));
  fs::remove(path("pictures"));
  chooser.goTo(path("pictures"));
  EXPECT_EQ(chooser.message(), path("pictures").string() + ": No such file or directory");
  chooser.goUp();
  EXPECT_EQ(chooser.message(), "");
}

TEST_F(ChooserTest, AsksOnceWhereAUserLives) {
  std::vector<std::string> users;
  Chooser asking(folder.path(), [&](const std::string &user) {
    users.push_back(user);
    return user == "ann" ? folder.path() : fs::path();
  });
  std::string text;
  for (const char key : std::string("~ann/papers/th")) {
    text += key;
    asking.setText(text);
  }
  EXPECT_EQ(asking.completed(), "~ann/papers/thesis.pdf");
  asking.setText(asking.completed());
  EXPECT_EQ(asking.chooseTyped(), path("papers/thesis.pdf"));
  for (const char *unknown : {"~bo/", "~bo/a", "~bo/ab"})
    asking.setText(unknown);
  EXPECT_THAT(users, ElementsAre("ann", "bo"));
}

} // namespace
} // namespace viewer
