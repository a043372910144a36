// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Texts and images from the X resource database, on a private display.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "host/kernel/TestPlugin.h"
#include "host/view/application.h"
#include "host/view/desktop.h"
#include "host/view/toplevel.h"
#include "support/pdf.h"
#include "tavrel/Desktop.h"
#include "tools/display.h"

// Last: X has names and macros that the others use for themselves.
#include <X11/Intrinsic.h>
#include <X11/Shell.h>
#include <X11/StringDefs.h>

namespace {

constexpr unsigned char checkers[] = {0x55, 0xAA};
const char *const builtIn = "built in";

// A display for the program, and a user whose home is an empty folder.
class PrivateDisplay : public testing::Environment {
public:
  void SetUp() override {
    unsetenv("DISPLAY");
    unsetenv("XENVIRONMENT");
    setenv("HOME", home_.path().c_str(), 1);
    display_ = std::make_unique<tools::Display>();
    display_->await();
  }
  void TearDown() override { display_.reset(); }
  const test::ScratchFolder &home() const { return home_; }

private:
  test::ScratchFolder home_;
  std::unique_ptr<tools::Display> display_;
};

auto *const environment =
    static_cast<PrivateDisplay *>(testing::AddGlobalTestEnvironment(new PrivateDisplay)); // owned by the framework

struct WindowSystem : testing::Test {
  // The user's resources are read when the display is opened.
  explicit WindowSystem(const std::string &resources = "") {
    environment->home().write(".Xdefaults", resources);
    top = std::make_unique<host::TopLevel>();
    windows = std::make_unique<host::WindowSystem>(top->widget());
  }
  const char *text(const char *key) { return Desktop::GetResourceString(Desktop::GetTopLevelWidget(), key, builtIn); }
  tavrel::Bitmap bitmap(const char *name, const unsigned char *bits = checkers) {
    return Desktop::GetResourceBitmap(Desktop::GetTopLevelWidget(), name, name, bits, 8, 2);
  }
  unsigned widthOf(tavrel::Bitmap bitmap, unsigned *depth) {
    Window root = 0;
    int x = 0, y = 0;
    unsigned width = 0, height = 0, border = 0;
    XGetGeometry(XtDisplay(top->widget()), bitmap, &root, &x, &y, &width, &height, &border, depth);
    return width;
  }

  host::Runtime runtime;
  test::TestPlugin testPlugin{runtime};
  std::unique_ptr<host::TopLevel> top;
  std::unique_ptr<host::WindowSystem> windows;
};

struct WithResources : WindowSystem {
  WithResources()
      : WindowSystem("Highlight.helpNext: from the user\n"
                     "Other.helpPrev: from the user for another\n"
                     "Highlight.next: " +
                     environment->home()
                         .write("next.xbm", "#define n_width 3\n#define n_height 1\nstatic char n_bits[] = {\n0x5};\n")
                         .string() +
                     "\nHighlight.prev: /nowhere/prev.xbm\n") {}
};

TEST_F(WindowSystem, TheTopLevelWidgetIsNeitherRealisedNorMapped) {
  Widget widget = Desktop::GetTopLevelWidget();
  ASSERT_NE(widget, nullptr);
  EXPECT_STREQ(XtName(widget), "tavrel");
  EXPECT_FALSE(XtIsRealized(widget));
}

TEST_F(WindowSystem, WithoutResourcesTheDefaultItselfIsGiven) {
  Desktop::RegisterResourceClass("Highlight", nullptr);
  EXPECT_EQ(text("helpNext"), builtIn);
}

TEST_F(WindowSystem, AnEmptyKeyGivesTheDefaultItself) {
  const char *const lines[] = {"Highlight*: everything", nullptr};
  Desktop::RegisterResourceClass("Highlight", lines);
  EXPECT_EQ(text(""), builtIn);
  EXPECT_EQ(text(nullptr), builtIn);
}

TEST_F(WindowSystem, FallbackLinesApplyWhereTheUserSetsNothing) {
  const char *const lines[] = {"Highlight.version: from the fallback", nullptr};
  Desktop::RegisterResourceClass("Highlight", lines);
  EXPECT_STREQ(text("version"), "from the fallback");
}

TEST_F(WithResources, TheUserOverridesATextOfARegisteredClass) {
  EXPECT_EQ(text("helpNext"), builtIn) << "before the class is known";
  Desktop::RegisterResourceClass("Highlight", nullptr);
  EXPECT_STREQ(text("helpNext"), "from the user");
}

TEST_F(WithResources, TheUserOverridesFallbackLines) {
  const char *const lines[] = {"Highlight.helpNext: from the fallback", nullptr};
  Desktop::RegisterResourceClass("Highlight", lines);
  EXPECT_STREQ(text("helpNext"), "from the user");
}

TEST_F(WithResources, AWidgetNamedAsAClassHasTheTextsOfThatClassAlone) {
  Desktop::RegisterResourceClass("Highlight", nullptr);
  Desktop::RegisterResourceClass("Other", nullptr);
  char name[] = "Highlight";
  Widget shell = XtVaCreatePopupShell(name, applicationShellWidgetClass, top->widget(), nullptr);
  EXPECT_STREQ(Desktop::GetResourceString(shell, "helpNext", builtIn), "from the user");
  EXPECT_EQ(Desktop::GetResourceString(shell, "helpPrev", builtIn), builtIn);
  EXPECT_STREQ(text("helpPrev"), "from the user for another");
  XtDestroyWidget(shell);
}

// A shell as a plug-in makes it: below the application's own, or without a parent and of a class of its own.
struct Shells : WithResources {
  Shells() {
    Desktop::RegisterResourceClass("Other", nullptr); // first, and not asked for the other class
    Desktop::RegisterResourceClass("Highlight", nullptr);
  }
  ~Shells() override {
    for (Widget shell : shells)
      XtDestroyWidget(shell);
  }
  Widget below(const char *name) {
    return shells.emplace_back(XtVaCreatePopupShell(name, applicationShellWidgetClass, top->widget(), nullptr));
  }
  Widget withoutParent(const char *className) {
    return shells.emplace_back(XtVaAppCreateShell(XtName(top->widget()), className, applicationShellWidgetClass,
                                                  XtDisplay(top->widget()), nullptr));
  }
  static tavrel::Bitmap next(Widget shell, const unsigned char *bits = checkers, uint32_t width = 8) {
    return Desktop::GetResourceBitmap(shell, "next", "next", bits, width, 2);
  }
  std::vector<Widget> shells;
};

TEST_F(Shells, WithoutAParentTheClassIsThatOfThePluginThatMadeIt) {
  Widget highlight = withoutParent("Highlight"), other = withoutParent("Other");
  EXPECT_STREQ(Desktop::GetResourceString(highlight, "helpNext", builtIn), "from the user");
  EXPECT_EQ(Desktop::GetResourceString(highlight, "helpPrev", builtIn), builtIn) << "which the user set for another";
  EXPECT_EQ(Desktop::GetResourceString(other, "helpNext", builtIn), builtIn);
}

TEST_F(Shells, AWidgetInAShellHasTheClassOfTheShell) {
  Widget child = XtVaCreateWidget("child", coreWidgetClass, withoutParent("Highlight"), nullptr);
  EXPECT_STREQ(Desktop::GetResourceString(child, "helpNext", builtIn), "from the user");
  EXPECT_EQ(Desktop::GetResourceString(child, "helpPrev", builtIn), builtIn);
}

TEST_F(Shells, BitmapsOfTwoClassesAreNotMixedUp) {
  unsigned depth = 0;
  EXPECT_EQ(widthOf(next(below("Highlight")), &depth), 3U) << "the user's file";
  EXPECT_EQ(widthOf(next(below("Other")), &depth), 8U) << "the bits";
}

TEST_F(Shells, BitmapsOfTwoShellsWithoutParentAreNotMixedUp) {
  unsigned depth = 0;
  EXPECT_EQ(widthOf(next(withoutParent("Highlight")), &depth), 3U);
  EXPECT_EQ(widthOf(next(withoutParent("Other")), &depth), 8U);
}

TEST_F(Shells, BitmapsOfOtherSizesOrBitsAreOthers) {
  constexpr unsigned char stripes[] = {0xFF, 0x00};
  Widget shell = below("Other");
  unsigned depth = 0;
  EXPECT_EQ(widthOf(next(shell, checkers, 8), &depth), 8U);
  EXPECT_EQ(widthOf(next(shell, checkers, 7), &depth), 7U);
  EXPECT_NE(next(shell, checkers), next(shell, stripes));
  EXPECT_EQ(next(shell, checkers), next(shell, checkers));
  constexpr unsigned char wide[16] = {}, withADot[16] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
  EXPECT_NE(next(shell, wide, 64), next(shell, withADot, 64)) << "in the last byte";
}

TEST_F(WithResources, ATextStaysWhereItIs) {
  Desktop::RegisterResourceClass("Highlight", nullptr);
  EXPECT_EQ(text("helpNext"), text("helpNext"));
}

// A line of a resource file cannot name such a key, a program that fills the database can.
TEST_F(WindowSystem, AKeyMayContainSpacesAndDots) {
  const char *const key = "a key. with: everything";
  Desktop::RegisterResourceClass("Highlight", nullptr);
  EXPECT_EQ(text(key), builtIn);
  XrmDatabase users = XtScreenDatabase(XtScreen(top->widget()));
  XrmBinding bindings[] = {XrmBindTightly, XrmBindTightly};
  XrmQuark quarks[] = {XrmStringToQuark("Highlight"), XrmStringToQuark(key), NULLQUARK};
  XrmQPutStringResource(&users, bindings, quarks, "found");
  EXPECT_STREQ(text(key), "found");
}

TEST_F(WindowSystem, ABitmapIsMadeFromItsBits) {
  unsigned depth = 0;
  const tavrel::Bitmap made = bitmap("next");
  ASSERT_NE(made, 0U);
  EXPECT_EQ(widthOf(made, &depth), 8U);
  EXPECT_EQ(depth, 1U);
}

TEST_F(WindowSystem, ABitmapIsMadeOnce) { EXPECT_EQ(bitmap("next"), bitmap("next")); }

TEST_F(WindowSystem, ABitmapWithoutBitsIsNone) {
  EXPECT_EQ(bitmap("next", nullptr), 0U);
  testing::internal::CaptureStderr();
  windows.reset();
  XSync(XtDisplay(top->widget()), False);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "there is nothing to release";
}

TEST_F(WindowSystem, ABitmapHasTheSizeAskedForUpToTheLimitOfTheProtocol) {
  const struct {
    uint32_t width, height;
    bool made;
  } rows[] = {{0, 1, false}, {1, 0, false}, {1, 1, true}, {0x7FFF, 1, true}, {1, 0x7FFF, true}};
  const std::vector<unsigned char> bits(0x8000);
  for (const auto &row : rows) {
    const tavrel::Bitmap made = Desktop::GetResourceBitmap(nullptr, "next", "next", bits.data(), row.width, row.height);
    EXPECT_EQ(made != 0, row.made) << row.width << " x " << row.height;
  }
}

TEST_F(WindowSystem, ABitmapWithoutANameHasNoFile) {
  const char *const lines[] = {"Highlight*: /nowhere/next.xbm", nullptr};
  Desktop::RegisterResourceClass("Highlight", lines);
  testing::internal::CaptureStderr();
  unsigned depth = 0;
  EXPECT_EQ(widthOf(bitmap(""), &depth), 8U);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(WindowSystem, BitmapsEndWithTheWindowSystem) {
  const tavrel::Bitmap made = bitmap("next");
  windows.reset();
  testing::internal::CaptureStderr();
  unsigned depth = 0;
  widthOf(made, &depth);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tavrel: the display refused request 14: BadDrawable (invalid Pixmap or Window parameter)\n");
}

TEST_F(WithResources, TheUserOverridesABitmapWithAFile) {
  Desktop::RegisterResourceClass("Highlight", nullptr);
  unsigned depth = 0;
  EXPECT_EQ(widthOf(bitmap("next"), &depth), 3U);
}

TEST_F(WithResources, ABitmapFileThatCannotBeReadIsNamedAndTheBitsCount) {
  Desktop::RegisterResourceClass("Highlight", nullptr);
  testing::internal::CaptureStderr();
  unsigned depth = 0;
  EXPECT_EQ(widthOf(bitmap("prev"), &depth), 8U);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "tavrel: /nowhere/prev.xbm: cannot be read as a bitmap file\n");
}

TEST_F(WindowSystem, BadArgumentsRaise) {
  EXPECT_EQ(testPlugin.attempt([] { Desktop::RegisterResourceClass(nullptr, nullptr); }), tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([] { Desktop::RegisterResourceClass("", nullptr); }), tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([] { Desktop::GetResourceBitmap(nullptr, nullptr, "c", checkers, 8, 2); }),
            tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([] { Desktop::GetResourceBitmap(nullptr, "n", nullptr, checkers, 8, 2); }),
            tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([] { Desktop::GetResourceBitmap(nullptr, "n", "c", checkers, 0x8000, 2); }),
            tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([] { Desktop::GetResourceBitmap(nullptr, "n", "c", checkers, 8, 0x8000); }),
            tavrel::errBadArgument);
}

TEST_F(WindowSystem, AnErrorOfTheServerIsReportedAndDoesNotEndTheProgram) {
  Display *display = XtDisplay(top->widget());
  testing::internal::CaptureStderr();
  XFreePixmap(display, 0x7FFFFFFF);
  XSync(display, False);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tavrel: the display refused request 54: BadPixmap (invalid Pixmap parameter)\n");
}

TEST_F(WindowSystem, TheTopLevelWidgetAndItsConnectionEndTogether) {
  bool destroyed = false;
  const XtCallbackProc note = [](Widget, XtPointer flag, XtPointer) { *static_cast<bool *>(flag) = true; };
  XtAddCallback(top->widget(), XtNdestroyCallback, note, &destroyed);
  const int connection = ConnectionNumber(XtDisplay(top->widget()));
  windows.reset();
  top.reset();
  EXPECT_TRUE(destroyed);
  EXPECT_EQ(fcntl(connection, F_GETFD), -1) << "it is still open";
}

TEST(WithoutADisplay, ThereAreOnlyBuiltInValues) {
  const host::Runtime runtime;
  host::WindowSystem windows(nullptr);
  const char *const lines[] = {"Highlight.version: from the fallback", nullptr};
  Desktop::RegisterResourceClass("Highlight", lines);
  EXPECT_EQ(Desktop::GetTopLevelWidget(), nullptr);
  EXPECT_STREQ(Desktop::GetResourceString(nullptr, "version", builtIn), "from the fallback");
  EXPECT_EQ(Desktop::GetResourceString(nullptr, "helpNext", builtIn), builtIn);
  EXPECT_EQ(Desktop::GetResourceBitmap(nullptr, "next", "next", checkers, 8, 2), 0U);
}

TEST(WithoutADisplay, ATopLevelWidgetCannotBeMade) {
  const char *before = std::getenv("DISPLAY");
  const std::string display = before == nullptr ? "" : before;
  setenv("DISPLAY", ":4711", 1);
  try {
    host::TopLevel top;
    ADD_FAILURE() << "a display that is not there";
  } catch (const host::HostError &error) {
    EXPECT_STREQ(error.what(), "display :4711: cannot be opened");
  }
  setenv("DISPLAY", display.c_str(), 1);
}

} // namespace
