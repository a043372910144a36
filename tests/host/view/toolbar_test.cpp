// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The tool bar, by way of the TavrelView table.
#include <gmock/gmock.h>

#include "Viewer.h"

namespace {

using tavrel::Atom;
using tavrel::Bool16;
using tavrel::ToolButton;
using ::test::TestPlugin;
using testing::ElementsAre;
using testing::SizeIs;

int presses;
Bool16 enabled;
void press(ToolButton, void *clientData) { presses += static_cast<int>(reinterpret_cast<intptr_t>(clientData)); }
Bool16 test1(ToolButton, void *) { return enabled; }
Bool16 raising(ToolButton, void *) {
  Kernel::RaiseError(1);
  return 1;
}
Bool16 askingAgain(ToolButton, void *) {
  ++presses;
  TavrelView::ToolBarUpdateButtonStates(TavrelView::GetToolBar());
  return 1;
}

struct ToolBar : ::test::Viewer {
  ToolBar() {
    presses = 0;
    enabled = 1;
  }
  ToolButton create(const char *name) { return TavrelView::ToolButtonCreate(runtime.atoms.atom(name), 0, 0, 0); }
  ToolButton find(const char *name) { return TavrelView::ToolBarFindButton(bar, runtime.atoms.atom(name)); }
  void insert(ToolButton button, bool before, ToolButton beside) {
    TavrelView::ToolBarInsertButton(bar, button, before ? 1 : 0, beside);
  }
  // The names of the last buttons on the bar.
  std::vector<std::string> last(size_t count) {
    const auto &order = app.toolBar()->order();
    std::vector<std::string> names;
    for (size_t n = order.size() - count; n < order.size(); ++n)
      names.push_back(runtime.atoms.name(order[n]->name));
    return names;
  }
  host::ToolButton &object(ToolButton button) { return app.toolBar()->handles().find(button); }
};

TEST_F(ToolBar, HasTheApplicationsOwnButtons) {
  EXPECT_NE(find("FindAgainDialog"), nullptr);
  EXPECT_EQ(find("Nonesuch"), nullptr);
}

TEST_F(ToolBar, TheApplicationsOwnButtonsHaveTipsAndNoIcons) {
  EXPECT_THAT(last(app.toolBar()->order().size()), ElementsAre("Open", "PreviousPage", "NextPage", "ZoomOut", "ZoomIn",
                                                               "FitWidth", "FitPage", "FindDialog", "FindAgainDialog"));
  EXPECT_EQ(object(find("Open")).tip, "Opens a document");
  for (const host::ToolButton *button : app.toolBar()->order()) {
    EXPECT_NE(button->tip, "");
    EXPECT_EQ(button->icon, 0U);
  }
}

TEST_F(ToolBar, AButtonHasItsIcon) {
  EXPECT_EQ(object(TavrelView::ToolButtonCreate(runtime.atoms.atom("a"), 4711, 0, 0)).icon, 4711U);
}

TEST_F(ToolBar, EachChangeIsNotifiedOnce) {
  const ToolButton a = create("a");
  int notified = 0;
  app.toolBar()->listener = [&] { ++notified; };
  insert(a, false, nullptr);
  EXPECT_EQ(notified, 1);
  insert(a, false, a);
  EXPECT_EQ(notified, 1) << "nothing moves";
  TavrelView::ToolButtonSetAttribute(a, tavrel::buttonAlsoInBrowser);
  EXPECT_EQ(notified, 2);
  TavrelView::ToolButtonDetach(a);
  EXPECT_EQ(notified, 3);
  TavrelView::ToolButtonDetach(a);
  EXPECT_EQ(notified, 3) << "it was off the bar";
}

TEST_F(ToolBar, AButtonAfterItsAnchorAndTheNextAfterThat) {
  const ToolButton prev = create("TavrelGLT:Prev"), next = create("TavrelGLT:Next");
  insert(prev, false, find("FindAgainDialog"));
  insert(next, false, prev);
  EXPECT_THAT(last(3), ElementsAre("FindAgainDialog", "TavrelGLT:Prev", "TavrelGLT:Next"));
}

TEST_F(ToolBar, AButtonBeforeItsAnchor) {
  insert(create("a"), true, find("FindAgainDialog"));
  EXPECT_THAT(last(2), ElementsAre("a", "FindAgainDialog"));
}

TEST_F(ToolBar, WithoutAnAnchorAtTheEnd) {
  insert(create("a"), true, nullptr);
  EXPECT_THAT(last(2), ElementsAre("FindAgainDialog", "a"));
}

TEST_F(ToolBar, InsertingTwiceMovesTheButton) {
  const ToolButton a = create("a"), b = create("b");
  insert(a, false, nullptr);
  insert(b, false, nullptr);
  insert(a, false, b);
  EXPECT_THAT(last(3), ElementsAre("FindAgainDialog", "b", "a"));
  insert(a, false, a);
  EXPECT_THAT(last(3), ElementsAre("FindAgainDialog", "b", "a"));
}

TEST_F(ToolBar, AnAnchorThatIsNotOnTheBarRaises) {
  const ToolButton a = create("a"), b = create("b");
  EXPECT_EQ(testPlugin.attempt([=, this] { insert(a, false, b); }), tavrel::errBadArgument);
}

TEST_F(ToolBar, AButtonOffTheBarIsNotFound) {
  const ToolButton a = create("a");
  EXPECT_EQ(find("a"), nullptr);
  insert(a, false, nullptr);
  EXPECT_EQ(find("a"), a);
  TavrelView::ToolButtonDetach(a);
  EXPECT_EQ(find("a"), nullptr);
}

TEST_F(ToolBar, ADetachedButtonStaysValid) {
  const ToolButton a = create("a");
  insert(a, false, nullptr);
  TavrelView::ToolButtonDetach(a);
  TavrelView::ToolButtonDetach(a);
  insert(a, false, nullptr);
  EXPECT_EQ(find("a"), a);
}

TEST_F(ToolBar, ANameThatIsTakenGivesTheButtonThatHasIt) {
  EXPECT_EQ(create("a"), create("a"));
  EXPECT_EQ(create("FindAgainDialog"), find("FindAgainDialog"));
}

TEST_F(ToolBar, AButtonWithoutANameOrWithReservedArgumentsRaises) {
  const Atom name = runtime.atoms.atom("a");
  EXPECT_EQ(testPlugin.attempt([] { TavrelView::ToolButtonCreate(0, 0, 0, 0); }), tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::ToolButtonCreate(name, 0, 1, 0); }), tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::ToolButtonCreate(name, 0, 0, 1); }), tavrel::errBadArgument);
}

TEST_F(ToolBar, HasSpaceUntilItIsFull) {
  EXPECT_EQ(TavrelView::ToolBarHasSpace(bar, 2, 0), 1);
  EXPECT_EQ(TavrelView::ToolBarHasSpace(bar, INT32_MAX, INT32_MAX), 0);
  int count = 0;
  while (TavrelView::ToolBarHasSpace(bar, 1, 0) != 0)
    insert(create(std::to_string(++count).c_str()), false, nullptr);
  EXPECT_EQ(app.toolBar()->order().size(), host::ToolBar::capacity);
  const ToolButton oneMore = create("one more");
  EXPECT_EQ(testPlugin.attempt([=, this] { insert(oneMore, false, nullptr); }), tavrel::errBadArgument);
}

TEST_F(ToolBar, AFullBarLetsButtonsMove) {
  int count = 0;
  while (TavrelView::ToolBarHasSpace(bar, 1, 0) != 0)
    insert(create(std::to_string(++count).c_str()), false, nullptr);
  insert(find("1"), false, nullptr);
  EXPECT_THAT(last(1), ElementsAre("1"));
}

TEST_F(ToolBar, APressCallsTheActionWithItsData) {
  const ToolButton a = create("a");
  TavrelView::ToolButtonAttachAction(a, testPlugin.callback(press), reinterpret_cast<void *>(intptr_t{7}));
  app.toolBar()->press(object(a));
  EXPECT_EQ(presses, 7);
}

TEST_F(ToolBar, AButtonWithoutActionDoesNothing) {
  app.toolBar()->press(object(create("a")));
  EXPECT_EQ(presses, 0);
}

TEST_F(ToolBar, TheTestDecidesWhetherAButtonIsEnabled) {
  const ToolButton a = create("a");
  EXPECT_TRUE(app.toolBar()->test(object(a))) << "without a test";
  TavrelView::ToolButtonAttachEnabledTest(a, testPlugin.callback(test1), nullptr);
  EXPECT_TRUE(app.toolBar()->test(object(a)));
  enabled = 0;
  EXPECT_FALSE(app.toolBar()->test(object(a)));
}

TEST_F(ToolBar, ATestThatRaisesDisables) {
  const ToolButton a = create("a");
  TavrelView::ToolButtonAttachEnabledTest(a, testPlugin.callback(raising), nullptr);
  EXPECT_FALSE(app.toolBar()->test(object(a)));
}

TEST_F(ToolBar, UpdatingAsksEveryButtonOnTheBar) {
  const ToolButton a = create("a");
  insert(a, false, nullptr);
  TavrelView::ToolButtonAttachEnabledTest(a, testPlugin.callback(test1), nullptr);
  enabled = 0;
  int notified = 0;
  app.toolBar()->listener = [&] { ++notified; };
  TavrelView::ToolBarUpdateButtonStates(bar);
  EXPECT_FALSE(object(a).enabled);
  EXPECT_EQ(notified, 1);
  enabled = 1;
  TavrelView::ToolBarUpdateButtonStates(bar);
  EXPECT_TRUE(object(a).enabled);
  EXPECT_EQ(notified, 2);
}

TEST_F(ToolBar, ATestThatAsksForAllTestsTerminates) {
  const ToolButton a = create("a");
  insert(a, false, nullptr);
  TavrelView::ToolButtonAttachEnabledTest(a, testPlugin.callback(askingAgain), nullptr);
  TavrelView::ToolBarUpdateButtonStates(bar);
  EXPECT_EQ(presses, 1);
}

TEST_F(ToolBar, TheTipIsCopied) {
  char tip[] = "Next";
  const ToolButton a = create("a");
  TavrelView::ToolButtonAttachTip(a, tip);
  tip[0] = 'x';
  EXPECT_EQ(object(a).tip, "Next");
}

TEST_F(ToolBar, AnEmbeddedViewerShowsOfThePluginsButtonsThoseThatBelongThere) {
  ToolButton inside = nullptr, both = nullptr;
  testPlugin.attempt([&] {
    inside = TavrelView::ToolButtonCreate(Kernel::AtomFromString("inside"), 0, 0, 0);
    both = TavrelView::ToolButtonCreate(Kernel::AtomFromString("both"), 0, 0, 0);
  });
  TavrelView::ToolButtonSetAttribute(inside, tavrel::buttonInternal);
  TavrelView::ToolButtonSetAttribute(both, tavrel::buttonAlsoInBrowser);
  const size_t own = app.toolBar()->order().size();
  insert(inside, false, nullptr);
  insert(both, false, nullptr);
  EXPECT_THAT(app.toolBar()->visible(), SizeIs(own + 2));
  app.toolBar()->embedded = true;
  EXPECT_THAT(app.toolBar()->visible(), SizeIs(own + 1));
  EXPECT_EQ(app.toolBar()->visible().back(), &object(both));
}

TEST_F(ToolBar, AttributesAreKept) {
  const ToolButton a = create("a");
  TavrelView::ToolButtonSetAttribute(a, tavrel::buttonAlsoInBrowser);
  EXPECT_THAT(object(a).attributes, ElementsAre(tavrel::buttonAlsoInBrowser));
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::ToolButtonSetAttribute(a, 77); }), tavrel::errBadArgument);
}

TEST_F(ToolBar, TheApplicationsOwnButtonsCallItsFunctions) {
  host::ToolButton &own = object(find("NextPage"));
  own.ownAction = [] { presses = 100; };
  own.ownTest = [] { return false; };
  app.toolBar()->press(own);
  EXPECT_EQ(presses, 100);
  EXPECT_FALSE(app.toolBar()->test(own));
}

// A button of the test plug-in's, on the tool bar, with the callbacks of a plug-in.
struct WithTwoPlugins : ToolBar {
  ToolButton ofTestPlugin(const TestPlugin &attached, const char *name = "a") {
    ToolButton button = nullptr;
    const Atom atom = runtime.atoms.atom(name);
    testPlugin.attempt([&] { button = TavrelView::ToolButtonCreate(atom, 0, 0, 0); });
    TavrelView::ToolButtonAttachAction(button, runtime.callbacks.create(attached.id, tavrel::entryOf(press)), nullptr);
    TavrelView::ToolButtonAttachEnabledTest(button, runtime.callbacks.create(attached.id, tavrel::entryOf(test1)),
                                            nullptr);
    insert(button, false, nullptr);
    return button;
  }
  TestPlugin other{runtime, "other"};
};

TEST_F(WithTwoPlugins, AButtonIsRemovedWhenItsPluginIsRetired) {
  const ToolButton a = ofTestPlugin(testPlugin);
  int notified = 0;
  app.toolBar()->listener = [&] { ++notified; };
  runtime.retire(testPlugin.id);
  EXPECT_EQ(find("a"), nullptr);
  EXPECT_THAT(last(1), ElementsAre("FindAgainDialog"));
  EXPECT_EQ(other.attempt([=] { TavrelView::ToolButtonAttachTip(a, "tip"); }), tavrel::errBadHandle);
  EXPECT_EQ(notified, 1);
  EXPECT_NE(create("a"), a) << "the name is free";
}

TEST_F(WithTwoPlugins, AWindowMayShowARemovedButtonUntilItIsDrawnAnew) {
  const ToolButton a = ofTestPlugin(testPlugin);
  TavrelView::ToolButtonAttachTip(a, "Next");
  const host::ToolButton &button = object(a);
  runtime.retire(testPlugin.id);
  EXPECT_EQ(button.name, runtime.atoms.atom("a"));
  EXPECT_EQ(button.tip, "Next");
}

TEST_F(WithTwoPlugins, AButtonMadeForAnotherPluginIsRemovedWithThatOne) {
  const ToolButton a = ofTestPlugin(other);
  runtime.retire(testPlugin.id);
  EXPECT_EQ(find("a"), a);
  enabled = 0;
  EXPECT_FALSE(app.toolBar()->test(object(a))) << "the other plug-in is still asked";
  runtime.retire(other.id);
  EXPECT_EQ(find("a"), nullptr);
}

TEST_F(WithTwoPlugins, AButtonWithoutCallbacksIsRemovedWithThePluginThatMadeIt) {
  ToolButton button = nullptr;
  const Atom name = runtime.atoms.atom("a");
  testPlugin.attempt([&] { button = TavrelView::ToolButtonCreate(name, 0, 0, 0); });
  insert(button, false, nullptr);
  runtime.retire(testPlugin.id);
  EXPECT_EQ(find("a"), nullptr);
}

TEST_F(WithTwoPlugins, TheApplicationsOwnButtonsStayWhateverWasAttachedToThem) {
  const ToolButton next = find("NextPage");
  TavrelView::ToolButtonAttachAction(next, testPlugin.callback(press), reinterpret_cast<void *>(intptr_t{1}));
  runtime.retire(testPlugin.id);
  EXPECT_EQ(find("NextPage"), next);
  app.toolBar()->press(object(next));
  EXPECT_EQ(presses, 0);
}

TEST_F(WithTwoPlugins, AButtonWhoseTestWasThatOfARetiredPluginIsEnabled) {
  const ToolButton next = find("NextPage");
  TavrelView::ToolButtonAttachEnabledTest(next, testPlugin.callback(test1), nullptr);
  runtime.retire(testPlugin.id);
  EXPECT_TRUE(app.toolBar()->test(object(next)));
}

TEST_F(ToolBar, ANullToolBarIsAccepted) {
  const ToolButton a = create("a");
  EXPECT_EQ(testPlugin.attempt([=] {
    TavrelView::ToolBarInsertButton(nullptr, a, 0, nullptr);
    TavrelView::ToolBarUpdateButtonStates(nullptr);
  }),
            0);
  EXPECT_EQ(TavrelView::ToolBarFindButton(nullptr, 1), nullptr);
  EXPECT_EQ(TavrelView::ToolBarHasSpace(nullptr, 1, 0), 0);
}

TEST_F(ToolBar, UnknownHandlesRaise) {
  static int something;
  const auto unknown = reinterpret_cast<ToolButton>(&something);
  const auto strangeBar = reinterpret_cast<tavrel::ToolBar>(&something);
  const tavrel::Callback callback = testPlugin.callback(press);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::ToolButtonDetach(unknown); }), tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::ToolButtonAttachTip(nullptr, "tip"); }), tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::ToolButtonAttachAction(unknown, callback, nullptr); }),
            tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::ToolBarUpdateButtonStates(strangeBar); }), tavrel::errBadHandle);
}

TEST_F(ToolBar, WithoutAToolBarThereIsNone) {
  app.removeToolBar();
  EXPECT_EQ(TavrelView::GetToolBar(), nullptr);
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::ToolBarUpdateButtonStates(bar); }), tavrel::errBadHandle);
  const Atom name = runtime.atoms.atom("a");
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::ToolButtonCreate(name, 0, 0, 0); }), tavrel::errBadHandle);
}

TEST_F(ToolBar, AButtonHasTheLabelAndTheKeyThatItIsGiven) {
  const ToolButton a = create("a");
  EXPECT_EQ(object(a).label + object(a).key, "");
  int notified = 0;
  app.toolBar()->listener = [&] { ++notified; };
  TavrelView::ToolButtonAttachLabel(a, "Next Hit");
  TavrelView::ToolButtonAttachKey(a, "Ctrl Shift<Key>F3");
  EXPECT_EQ(object(a).label, "Next Hit");
  EXPECT_EQ(object(a).key, "Ctrl Shift<Key>F3");
  EXPECT_EQ(notified, 2);
  TavrelView::ToolButtonAttachLabel(a, nullptr);
  TavrelView::ToolButtonAttachKey(a, nullptr);
  EXPECT_EQ(object(a).label + object(a).key, "");
}

TEST_F(ToolBar, ATextThatIsNoKeyIsRefused) {
  const ToolButton a = create("a");
  TavrelView::ToolButtonAttachKey(a, "Alt<Key>Page_Up");
  static const char *text;
  static ToolButton button;
  button = a;
  const std::string tooLong = "<Key>" + std::string(60, 'x');
  for (const char *one : {"F3", "<Key>", "<Btn1Down>", "Hyper<Key>a", "<Key>a: Quit()", "<Key>a\nb", tooLong.c_str()}) {
    text = one;
    EXPECT_EQ(testPlugin.attempt([] { TavrelView::ToolButtonAttachKey(button, text); }), tavrel::errBadArgument) << one;
  }
  EXPECT_EQ(object(a).key, "Alt<Key>Page_Up");
}

} // namespace
