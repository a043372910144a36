// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The plug-in's shell widget, under a private X server.
#include <gtest/gtest.h>

#include <cstdlib>

#include "plugin/md/mdUtils.h"
#include "plugin/pi/miPI.h"
#include "tests/plugin/md/setting.h"
#include "tests/support/Xvfb.h"

// After all other headers: X defines macros with common names.
#include <X11/Intrinsic.h>
#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xutil.h>

#include "tests/support/TopLevel.h"

namespace {

using Calls = std::vector<std::string>;

constexpr const char *parentless = "TAVREL_PLUGIN_PARENTLESS_ROOT";

/// A widget's position and size, as the toolkit reports them.
struct Geometry {
  int x, y, width, height;
  bool operator==(const Geometry &) const = default;
};

std::ostream &operator<<(std::ostream &out, const Geometry &p) {
  return out << p.width << 'x' << p.height << '+' << p.x << '+' << p.y;
}

Geometry geometryOf(Widget widget) {
  Position x = -1, y = -1;
  Dimension width = 0, height = 0;
  XtVaGetValues(widget, XtNx, &x, XtNy, &y, XtNwidth, &width, XtNheight, &height, nullptr);
  return {x, y, width, height};
}

std::string classOf(Widget widget) {
  XClassHint hint = {nullptr, nullptr};
  if (XGetClassHint(XtDisplay(widget), XtWindow(widget), &hint) == 0) return "";
  std::string name = std::string(hint.res_name) + " " + hint.res_class;
  XFree(hint.res_name);
  XFree(hint.res_class);
  return name;
}

int mapStateOf(Widget widget) {
  XWindowAttributes attributes = {};
  XGetWindowAttributes(XtDisplay(widget), XtWindow(widget), &attributes);
  return attributes.map_state;
}

/// A server, an application with a top-level widget, a host that has it, and the global data.
class Shell : public testing::Test {
protected:
  void SetUp() override {
    unsetenv(parentless);
    ASSERT_NE(top.widget(), nullptr) << "no X server";
    host.topLevel = host.named(top.widget(), "topLevel");
    gData = static_cast<GlobalData *>(calloc(1, sizeof(GlobalData)));
  }
  void TearDown() override { unsetenv(parentless); }

  bool destroyed = false; ///< outlives the widgets
  PrivateXvfb server{"1280x1024x24"};
  TopLevel top{server.display(), "viewer"};
  RecordingHost host;
};

TEST_F(Shell, IsAChildOfTheTopLevelWidget) {
  const Widget shell = mdInitUtils();
  ASSERT_NE(shell, nullptr);
  EXPECT_EQ(shell, rootWidget);
  EXPECT_EQ(XtParent(shell), top.widget());
  EXPECT_EQ(XtClass(shell), applicationShellWidgetClass);
  EXPECT_STREQ(XtName(shell), "Highlight");
  EXPECT_EQ(host.trace, (Calls{"Desktop.GetTopLevelWidget()", "Desktop.RegisterResourceClass(\"Highlight\", *)",
                               "Desktop.GetTopLevelWidget()"}));
}

TEST_F(Shell, IsOnePixelInTheMiddleOfTheScreen) { EXPECT_EQ(geometryOf(mdInitUtils()), (Geometry{640, 512, 1, 1})); }

TEST_F(Shell, IsRealisedAndNotMapped) {
  const Widget shell = mdInitUtils();
  Boolean mappedWhenManaged = True;
  XtVaGetValues(shell, XtNmappedWhenManaged, &mappedWhenManaged, nullptr);
  EXPECT_FALSE(mappedWhenManaged);
  ASSERT_TRUE(XtIsRealized(shell));
  EXPECT_EQ(mapStateOf(shell), IsUnmapped);
}

// A variable that is set counts, whatever its value.
TEST_F(Shell, IsIndependentWhereTheVariableIsEmpty) {
  setenv(parentless, "", 1);
  ASSERT_EQ(mdInit(), 1);
  const Widget shell = rootWidget;
  EXPECT_EQ(XtParent(shell), nullptr);
  EXPECT_EQ(XtClass(shell), applicationShellWidgetClass);
  EXPECT_STREQ(XtName(shell), "viewer") << "the top-level widget's name";
  EXPECT_EQ(classOf(shell), "viewer Highlight");
  EXPECT_EQ(XtDisplay(shell), XtDisplay(top.widget()));
  EXPECT_EQ(host.trace, (Calls{"Desktop.GetTopLevelWidget()", "Desktop.RegisterResourceClass(\"Highlight\", *)"}));
  mdTerm();
}

TEST_F(Shell, IsInTheMiddleOfTheScreenWhenIndependent) {
  setenv(parentless, "0", 1);
  ASSERT_EQ(mdInit(), 1);
  EXPECT_EQ(XtParent(rootWidget), nullptr);
  EXPECT_EQ(geometryOf(rootWidget), (Geometry{640, 512, 1, 1}));
  EXPECT_TRUE(XtIsRealized(rootWidget));
  EXPECT_EQ(mapStateOf(rootWidget), IsUnmapped);
  mdTerm();
}

TEST_F(Shell, FallbackResourcesHaveNoLines) {
  const char *const *lines = nullptr;
  host.answer(Desktop::RegisterResourceClass,
              std::function([&](const char *, const char *const *fallback) { lines = fallback; }));
  mdInitUtils();
  ASSERT_NE(lines, nullptr);
  EXPECT_EQ(*lines, nullptr);
}

TEST_F(Shell, IsKeptInTheGlobalData) {
  EXPECT_EQ(mdInit(), 1);
  EXPECT_NE(gData->shell, nullptr);
  EXPECT_EQ(gData->shell, rootWidget);
}

TEST_F(Shell, NoTopLevelWidgetMakesNoShell) {
  host.topLevel = nullptr;
  EXPECT_EQ(mdInit(), 0);
  EXPECT_EQ(gData->shell, nullptr);
  EXPECT_EQ(rootWidget, nullptr);
}

TEST_F(Shell, TopLevelWidgetThatIsDestroyedMeanwhileMakesNoShell) {
  host.failAt(2);
  EXPECT_EQ(mdInit(), 0);
  EXPECT_EQ(rootWidget, nullptr);
}

TEST_F(Shell, NoTopLevelWidgetMakesNoIndependentShell) {
  setenv(parentless, "", 1);
  host.topLevel = nullptr;
  EXPECT_EQ(mdInit(), 0);
  EXPECT_EQ(rootWidget, nullptr);
}

void note(Widget /*widget*/, XtPointer destroyed, XtPointer /*callData*/) { *static_cast<bool *>(destroyed) = true; }

TEST_F(Shell, IsDestroyedAtTheEndAndItsPointerStays) {
  mdInit();
  const Widget shell = rootWidget;
  XtAddCallback(shell, XtNdestroyCallback, note, &destroyed);
  mdTerm();
  EXPECT_TRUE(destroyed);
  EXPECT_EQ(rootWidget, shell);
}

TEST_F(Shell, NothingIsDestroyedWithoutGlobalDataOrShell) {
  mdInitUtils();
  XtAddCallback(rootWidget, XtNdestroyCallback, note, &destroyed);
  mdTerm();
  EXPECT_FALSE(destroyed) << "the global data holds none";
  free(gData);
  gData = nullptr;
  mdTerm();
  EXPECT_FALSE(destroyed);
}

TEST_F(Shell, LookupsUseIt) {
  mdInit();
  host.named(rootWidget, "shell");
  host.clear();
  mdGetStringPtr(15);
  mdGetBitmap(bitmapNext);
  EXPECT_EQ(host.trace, (Calls{R"(Desktop.GetResourceString(shell, "fullName", "Glint"))",
                               R"(Desktop.GetResourceBitmap(shell, "next", "next", *, 16, 16))"}));
}

/// A pixmap of built-in bits, as a host makes it.
tavrel::Bitmap pixmapOf(Widget widget, const unsigned char *bits, uint32_t width, uint32_t height) {
  return XCreateBitmapFromData(XtDisplay(widget), XtWindow(widget), reinterpret_cast<const char *>(bits), width,
                               height);
}

TEST_F(Shell, BitmapsAreSixteenPixelsHigh) {
  mdInit();
  host.answer(Desktop::GetResourceBitmap,
              std::function([](Widget widget, const char *, const char *, const unsigned char *bits, uint32_t width,
                               uint32_t height) { return pixmapOf(widget, bits, width, height); }));
  EXPECT_EQ(mdGetBitmapSize(mdGetBitmap(bitmapNext)), 16U);
  EXPECT_EQ(mdGetBitmapSize(mdGetBitmap(bitmapPrev)), 16U);
}

TEST_F(Shell, SizeOfABitmapIsItsHeight) {
  mdInit();
  const unsigned char bits[60] = {};
  EXPECT_EQ(mdGetBitmapSize(pixmapOf(rootWidget, bits, 12, 20)), 20U);
}

TEST_F(Shell, SizeOfABitmapThatTheServerDoesNotKnowIsZero) {
  mdInit();
  XErrorHandler before = XSetErrorHandler([](Display *, XErrorEvent *) { return 0; });
  EXPECT_EQ(mdGetBitmapSize(0x7FFFFF), 0U);
  XSetErrorHandler(before);
}

TEST(ShellOnAnotherScreen, OddSizesAreHalvedDownwards) {
  PrivateXvfb server("801x603x24");
  TopLevel top(server.display());
  ASSERT_NE(top.widget(), nullptr) << "no X server";
  RecordingHost host;
  host.topLevel = top.widget();
  EXPECT_EQ(geometryOf(mdInitUtils()), (Geometry{400, 301, 1, 1}));
}

} // namespace
