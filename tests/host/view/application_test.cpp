// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Documents, notifications, auxiliary data, alerts and keys, by way of the TavrelView table.
#include <gmock/gmock.h>

#include "Viewer.h"
#include "host/view/tables.h"
#include "tavrel/DocModel.h"

namespace {

using tavrel::Atom;
using tavrel::Doc;
using testing::ElementsAre;

// What callbacks received; they are functions without data.
std::vector<Doc> opened, closed;
std::vector<std::string> delivered;
tavrel::Bool16 answer;

void didOpen(Doc document, void *) { opened.push_back(document); }
// The document still exists while a plug-in is notified that it closes.
void didClose(Doc document, void *) {
  TavrelView::PageViewRefreshArea(TavrelView::DocGetPageView(document), nullptr);
  closed.push_back(document);
}
tavrel::Bool16 receive(Atom, const void *data, uint32_t length, Doc) {
  delivered.emplace_back(static_cast<const char *>(data), length);
  return answer;
}

struct Application : test::Viewer {
  Application() {
    opened.clear();
    closed.clear();
    delivered.clear();
    answer = 1;
  }
  void listen(int32_t selector, tavrel::DocNotifyProc procedure) {
    TavrelView::RegisterNotification(selector, testPlugin.id, testPlugin.callback(procedure), nullptr);
  }
  host::ViewerDocument &openAnother() { return app.open(std::make_unique<test::FakeDocument>(1), "b.pdf", dpi); }
  bool deliver(Atom type, const std::string &bytes) { return app.auxData.deliver(type, bytes, doc); }
};

TEST_F(Application, TheDocumentOpenedLastIsInFront) {
  EXPECT_EQ(TavrelView::GetFrontDoc(), doc);
  host::ViewerDocument &second = openAnother();
  EXPECT_EQ(TavrelView::GetFrontDoc(), app.documents().handle(&second));
  app.bringToFront(*document);
  EXPECT_EQ(TavrelView::GetFrontDoc(), doc);
}

TEST_F(Application, WithoutADocumentThereIsNoFrontOne) {
  app.close(*document);
  EXPECT_EQ(TavrelView::GetFrontDoc(), nullptr);
}

TEST_F(Application, TheChoiceOfAMarkedPageIsNotified) {
  listen(tavrel::notifyMarkedPageChosen, didOpen);
  app.markedPageChosen(*document);
  EXPECT_THAT(opened, ElementsAre(doc));
}

TEST_F(Application, APageThatIsStillBeingRenderedIsNotified) {
  listen(tavrel::notifyPageAwaited, didOpen);
  app.pageAwaited(*document);
  EXPECT_THAT(opened, ElementsAre(doc));
}

TEST_F(Application, OpeningAndClosingAreNotified) {
  listen(tavrel::notifyDocDidOpen, didOpen);
  listen(tavrel::notifyDocDidClose, didClose);
  host::ViewerDocument &second = openAnother();
  const Doc handle = app.documents().handle(&second);
  EXPECT_THAT(opened, ElementsAre(handle));
  app.close(second);
  EXPECT_THAT(closed, ElementsAre(handle));
  EXPECT_TRUE(testPlugin.reports.empty()) << testPlugin.reports.front();
}

TEST_F(Application, ACallbackRegisteredTwiceIsNotifiedOnce) {
  listen(tavrel::notifyDocDidOpen, didOpen);
  listen(tavrel::notifyDocDidOpen, didOpen);
  openAnother();
  EXPECT_EQ(opened.size(), 1U);
}

TEST_F(Application, AnUnknownNotificationRaises) {
  const tavrel::Callback callback = testPlugin.callback(didOpen);
  EXPECT_EQ(testPlugin.attempt([=, this] { TavrelView::RegisterNotification(5, testPlugin.id, callback, nullptr); }),
            tavrel::errBadArgument);
}

TEST_F(Application, AFunctionThatIsNoCallbackRaises) {
  const tavrel::Entry function = tavrel::entryOf(didOpen);
  EXPECT_EQ(testPlugin.attempt([=, this] { TavrelView::RegisterNotification(4, testPlugin.id, function, nullptr); }),
            tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::RegisterPageDrawProc(function, nullptr); }), tavrel::errBadHandle);
}

TEST_F(Application, ADocumentThatIsClosedIsNoHandleAnyMore) {
  const Doc stale = doc;
  const tavrel::PageView staleView = view;
  app.close(*document);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::DocGetPageView(stale); }), tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::DocGetModelDoc(stale); }), tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::PageViewBeginBatch(staleView); }), tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([] { TavrelView::DocGetPageView(nullptr); }), tavrel::errBadHandle);
}

TEST_F(Application, ADocumentThatCannotBePreparedIsNotOpened) {
  app.prepare = [](host::ViewerDocument &) { throw std::bad_alloc(); };
  EXPECT_THROW(app.open(std::make_unique<test::FakeDocument>(1), "second.pdf", dpi), std::bad_alloc);
  EXPECT_EQ(app.front(), document);
  EXPECT_EQ(app.documents().size(), 1U);
  EXPECT_EQ(app.views().size(), 1U);
}

// An action within so many calls of plug-ins, one in the other.
struct Nested {
  const test::TestPlugin &plugin;
  size_t calls;
  const std::function<void()> &action;
  void operator()() const {
    if (calls == 0) return action();
    plugin.attempt(Nested{plugin, calls - 1, action});
  }
};

TEST_F(Application, ADocumentIsClosedEvenWhenNoPluginCanBeNotified) {
  listen(tavrel::notifyDocDidClose, didClose);
  const std::function<void()> close = [this] { EXPECT_THROW(app.close(*document), host::HostError); };
  Nested{testPlugin, host::maxHostFrames, close}();
  EXPECT_EQ(app.front(), nullptr);
  EXPECT_EQ(app.documents().size(), 0U);
  EXPECT_TRUE(closed.empty());
}

TEST_F(Application, ADocumentHasAViewAtEveryResolutionAboveZero) {
  const struct {
    double dpi;
    bool hasView;
  } rows[] = {{0, false}, {0.5, true}, {1, true}};
  for (const auto &row : rows) {
    const host::ViewerDocument &another = app.open(std::make_unique<test::FakeDocument>(1), "b.pdf", row.dpi);
    EXPECT_EQ(another.view != nullptr, row.hasView) << row.dpi;
  }
}

TEST_F(Application, ADocumentWithoutAViewMayBeOpenWhileAPluginIsCalled) {
  app.open(std::make_unique<test::FakeDocument>(1), "unseen.pdf", 0);
  EXPECT_EQ(testPlugin.attempt([] {}), 0);
}

TEST_F(Application, ANullPageViewIsAccepted) {
  const tavrel::TextSelection selection = model->select(0, {{0, 1, 1, 0}});
  EXPECT_EQ(testPlugin.attempt([=] {
    tavrel::DeviceRect rect{};
    tavrel::ColorValue color{};
    tavrel::FixedMatrix matrix{};
    constexpr tavrel::PageView none = nullptr;
    TavrelView::PageViewGetVisibleRect(none, &rect);
    TavrelView::PageViewFetchDrawColor(none, &color);
    TavrelView::PageViewApplyDrawColor(none, &color);
    TavrelView::PageViewBeginBatch(none);
    TavrelView::PageViewEndBatch(none);
    TavrelView::PageViewShowPage(none, 0);
    TavrelView::PageViewScrollToPoint(none, 0, 0);
    TavrelView::PageViewRefreshArea(none, nullptr);
    TavrelView::PageViewGetPageTransform(none, &matrix);
    TavrelView::PageViewPaintSelection(none, selection);
    TavrelView::PageViewHighlightText(none, selection);
  }),
            0);
  EXPECT_EQ(TavrelView::PageViewGetPageNum(nullptr), 0);
  EXPECT_EQ(TavrelView::PageViewGetDoc(nullptr), nullptr);
}

TEST_F(Application, ANullPointerForAResultRaises) {
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::PageViewGetVisibleRect(view, nullptr); }), tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::PageViewGetPageTransform(view, nullptr); }),
            tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::PageViewApplyDrawColor(view, nullptr); }), tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::PageViewFetchDrawColor(view, nullptr); }), tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::DocMarkPages(testPlugin.id, doc, nullptr, 1); }),
            tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::DocAttachAuxData(doc, 1, nullptr, 1); }), tavrel::errBadArgument);
}

TEST_F(Application, AnUnknownSelectionRaises) {
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::PageViewHighlightText(view, nullptr); }), tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::PageViewPaintSelection(view, nullptr); }), tavrel::errBadHandle);
}

TEST_F(Application, AuxiliaryDataGoesToTheHandlerOfItsType) {
  const tavrel::AuxDataHandler handler{8, testPlugin.callback(receive)};
  const Atom type = runtime.atoms.atom("tavrelglt"), other = runtime.atoms.atom("other");
  EXPECT_EQ(TavrelView::HasAuxDataHandler(type), 0);
  EXPECT_EQ(TavrelView::RegisterAuxDataHandler(testPlugin.id, type, &handler), 1);
  EXPECT_EQ(TavrelView::HasAuxDataHandler(type), 1);
  EXPECT_FALSE(deliver(other, "not for it"));
  EXPECT_TRUE(deliver(type, std::string("with a \0 in it", 14)));
  EXPECT_THAT(delivered, ElementsAre(std::string("with a \0 in it", 14)));
}

TEST_F(Application, TheNextHandlerIsAskedOnlyIfTheFirstOneDidNotHandleTheData) {
  const tavrel::AuxDataHandler first{8, testPlugin.callback(receive)}, second{8, testPlugin.callback(receive)};
  const Atom type = runtime.atoms.atom("xml");
  TavrelView::RegisterAuxDataHandler(testPlugin.id, type, &first);
  TavrelView::RegisterAuxDataHandler(testPlugin.id, type, &second);
  EXPECT_TRUE(deliver(type, "a"));
  EXPECT_EQ(delivered.size(), 1U);
  answer = 0;
  EXPECT_FALSE(deliver(type, "b"));
  EXPECT_EQ(delivered.size(), 3U);
}

TEST_F(Application, TheSameHandlerIsRegisteredOnceForAType) {
  const tavrel::AuxDataHandler handler{8, testPlugin.callback(receive)};
  const Atom type = runtime.atoms.atom("xml");
  EXPECT_EQ(TavrelView::RegisterAuxDataHandler(testPlugin.id, type, &handler), 1);
  EXPECT_EQ(TavrelView::RegisterAuxDataHandler(testPlugin.id, type, &handler), 0);
}

TEST_F(Application, AHandlerIsRemovedOnce) {
  const tavrel::AuxDataHandler handler{8, testPlugin.callback(receive)};
  const Atom type = runtime.atoms.atom("xml");
  TavrelView::RegisterAuxDataHandler(testPlugin.id, type, &handler);
  EXPECT_EQ(TavrelView::UnregisterAuxDataHandler(testPlugin.id, type, &handler), 1);
  EXPECT_EQ(TavrelView::UnregisterAuxDataHandler(testPlugin.id, type, &handler), 0);
  EXPECT_EQ(TavrelView::HasAuxDataHandler(type), 0);
}

// What the first of two handlers does to the second, whose record is then freed.
struct TwoHandlers {
  tavrel::ExtensionID owner;
  tavrel::AuxDataHandler first;
  tavrel::AuxDataHandler *second;
};
TwoHandlers *two;

TEST_F(Application, AHandlerUnregisteredByAnEarlierOneIsNotAsked) {
  const tavrel::AuxDataProc removeTheOther = [](Atom type, const void *, uint32_t, Doc) {
    TavrelView::UnregisterAuxDataHandler(two->owner, type, two->second);
    delete two->second;
    return tavrel::Bool16{0};
  };
  TwoHandlers handlers{testPlugin.id,
                       {8, testPlugin.callback(removeTheOther)},
                       new tavrel::AuxDataHandler{8, testPlugin.callback(receive)}}; // the first handler deletes it
  two = &handlers;
  const Atom type = runtime.atoms.atom("xml");
  TavrelView::RegisterAuxDataHandler(testPlugin.id, type, &handlers.first);
  TavrelView::RegisterAuxDataHandler(testPlugin.id, type, handlers.second);
  EXPECT_FALSE(deliver(type, "a"));
  EXPECT_THAT(delivered, ElementsAre());
}

uint32_t s_length;

// The handler reads none of the bytes, so there need not be any.
TEST_F(Application, AuxiliaryDataOfMoreThan32BitsIsRefused) {
  const tavrel::AuxDataProc noteLength = [](Atom, const void *, uint32_t length, Doc) {
    s_length = length;
    return tavrel::Bool16{1};
  };
  const tavrel::AuxDataHandler handler{8, testPlugin.callback(noteLength)};
  const Atom type = runtime.atoms.atom("xml");
  TavrelView::RegisterAuxDataHandler(testPlugin.id, type, &handler);
  const char byte = 'a';
  EXPECT_TRUE(app.auxData.deliver(type, {&byte, size_t{UINT32_MAX}}, doc));
  EXPECT_EQ(s_length, UINT32_MAX);
  s_length = 0;
  EXPECT_THROW(app.auxData.deliver(type, {&byte, size_t{UINT32_MAX} + 1}, doc), host::HostError);
  EXPECT_EQ(s_length, 0U);
}

TEST_F(Application, WhatARetiredPluginRegisteredIsDropped) {
  const tavrel::AuxDataHandler handler{8, testPlugin.callback(receive)};
  const Atom type = runtime.atoms.atom("xml");
  const int32_t page = 1;
  int notified = 0;
  listen(tavrel::notifyDocDidOpen, didOpen);
  TavrelView::RegisterAuxDataHandler(testPlugin.id, type, &handler);
  TavrelView::SetStatusText(testPlugin.id, "at work");
  TavrelView::DocMarkPages(testPlugin.id, doc, &page, 1);
  app.statusListener = [&] { ++notified; };
  runtime.retire(testPlugin.id);
  openAnother();
  EXPECT_THAT(opened, ElementsAre());
  EXPECT_EQ(TavrelView::HasAuxDataHandler(type), 0);
  EXPECT_EQ(app.statusText(), "");
  EXPECT_TRUE(document->markedPages.empty());
  EXPECT_EQ(notified, 1);
  EXPECT_THROW(runtime.callbacks.owner(handler.perform), host::HostError);
}

TEST_F(Application, OnlyWhatARetiredPluginShowedIsNotified) {
  const int32_t page = 1;
  test::TestPlugin withText(runtime, "with a text"), withPages(runtime, "with marked pages"),
      withBoth(runtime, "with marked pages and a list");
  TavrelView::SetStatusText(withText.id, "at work");
  for (const test::TestPlugin *plugin : {&withPages, &withBoth})
    TavrelView::DocMarkPages(plugin->id, doc, &page, 1);
  TavrelView::DocSetList(withBoth.id, doc, "Places", 1,
                         withBoth.callback(+[](tavrel::Doc, uint32_t, tavrel::ListRow *) {}),
                         withBoth.callback(+[](tavrel::Doc, uint32_t) {}));
  int notified = 0;
  app.statusListener = [&] { ++notified; };
  runtime.retire(testPlugin.id);
  EXPECT_EQ(notified, 0);
  runtime.retire(withText.id);
  EXPECT_EQ(notified, 1);
  runtime.retire(withPages.id);
  EXPECT_EQ(notified, 2);
  runtime.retire(withBoth.id);
  EXPECT_EQ(notified, 3);
}

TEST_F(Application, ARetiredPluginRegistersNothing) {
  runtime.retire(testPlugin.id);
  const test::TestPlugin other(runtime, "other");
  const tavrel::AuxDataHandler handler{8, runtime.callbacks.create(other.id, tavrel::entryOf(receive))};
  const auto *const record = &handler;
  const Atom type = runtime.atoms.atom("xml");
  EXPECT_EQ(other.attempt([=, this] { TavrelView::SetStatusText(testPlugin.id, "still here"); }), tavrel::errBadHandle);
  EXPECT_EQ(other.attempt([=, this] { TavrelView::DocMarkPages(testPlugin.id, doc, nullptr, 0); }),
            tavrel::errBadHandle);
  EXPECT_EQ(other.attempt([=, this] { TavrelView::RegisterAuxDataHandler(testPlugin.id, type, record); }),
            tavrel::errBadHandle);
}

TEST_F(Application, AHandlerThatTheHostCannotReadRaises) {
  static tavrel::AuxDataHandler handler;
  const Atom type = runtime.atoms.atom("xml");
  const auto attempt = [&](uint32_t size, tavrel::Callback perform) {
    handler = {size, perform};
    return testPlugin.attempt([=, this] { TavrelView::RegisterAuxDataHandler(testPlugin.id, type, &handler); });
  };
  EXPECT_EQ(attempt(16, testPlugin.callback(receive)), tavrel::errBadArgument);
  EXPECT_EQ(attempt(8, nullptr), tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([=, this] { TavrelView::RegisterAuxDataHandler(testPlugin.id, type, nullptr); }),
            tavrel::errBadArgument);
  handler = {8, testPlugin.callback(receive)};
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::RegisterAuxDataHandler(testPlugin.id, 0, &handler); }),
            tavrel::errBadHandle);
}

TEST_F(Application, AnAlertIsAnsweredNoByDefault) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(TavrelView::Alert(tavrel::alertQuestion, "Go on?", "Yes", "No", nullptr, 1), 2);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "tavrel: asked \"Go on?\", answered \"No\"\n");
}

struct AlertRow {
  const char *first, *second, *third;
  int32_t yes, no;
};

constexpr AlertRow alertRows[] = {
    {"Yes", "No", "Cancel", 1, 2},     {"Yes", "No", nullptr, 1, 2},       {"OK", nullptr, nullptr, 1, 1},
    {nullptr, nullptr, nullptr, 0, 0}, {nullptr, "Second", nullptr, 2, 2}, {"First", nullptr, "Third", 1, 3},
};

TEST_F(Application, YesIsTheFirstButtonAndNoTheSecondOrLast) {
  testing::internal::CaptureStderr();
  for (const AlertRow &row : alertRows) {
    app.alert = host::answerAlerts(true);
    EXPECT_EQ(TavrelView::Alert(0, "?", row.first, row.second, row.third, 0), row.yes);
    app.alert = host::answerAlerts(false);
    EXPECT_EQ(TavrelView::Alert(0, "?", row.first, row.second, row.third, 0), row.no);
  }
  testing::internal::GetCapturedStderr();
}

TEST_F(Application, AWindowGetsTheCompleteAlert) {
  host::Alert shown;
  app.alert = [&](const host::Alert &alert) {
    shown = alert;
    return 3;
  };
  EXPECT_EQ(TavrelView::Alert(tavrel::alertNote, nullptr, "a", "b", "c", 1), 3);
  EXPECT_EQ(shown.icon, tavrel::alertNote);
  EXPECT_EQ(shown.message, "");
  EXPECT_EQ(shown.buttons[2], "c");
  EXPECT_TRUE(shown.beep);
}

TEST_F(Application, ModifierKeysComeFromTheWindow) {
  EXPECT_EQ(TavrelView::GetModifierKeyState(), 0U);
  app.modifierKeys = tavrel::modifierShift | tavrel::modifierAlt;
  EXPECT_EQ(TavrelView::GetModifierKeyState(), 5U);
}

TEST_F(Application, EachPlugInHasItsOwnStatusText) {
  const test::TestPlugin another(runtime, "another");
  TavrelView::SetStatusText(another.id, "page 2");
  TavrelView::SetStatusText(testPlugin.id, "hit 7");
  EXPECT_EQ(app.statusText(), "hit 7; page 2");
  TavrelView::SetStatusText(testPlugin.id, "hit 8");
  EXPECT_EQ(app.statusText(), "hit 8; page 2");
}

TEST_F(Application, AnEmptyStatusTextIsNone) {
  for (const char *none : {static_cast<const char *>(nullptr), ""}) {
    TavrelView::SetStatusText(testPlugin.id, "hit 7");
    TavrelView::SetStatusText(testPlugin.id, none);
    EXPECT_EQ(app.statusText(), "");
  }
}

TEST_F(Application, AStatusTextIsNotifiedWhenItChanges) {
  const struct {
    const char *text;
    int notified;
  } rows[] = {{"", 0}, {"hit 7", 1}, {"hit 7", 1}, {"hit 8", 2}, {"", 3}, {"", 3}};
  int notified = 0;
  app.statusListener = [&] { ++notified; };
  for (const auto &row : rows) {
    TavrelView::SetStatusText(testPlugin.id, row.text);
    EXPECT_EQ(notified, row.notified) << row.text;
  }
}

TEST_F(Application, AnUnknownPluginHasNoStatusText) {
  EXPECT_EQ(testPlugin.attempt([] { TavrelView::SetStatusText(4711, "hello"); }), tavrel::errBadHandle);
  EXPECT_EQ(app.statusText(), "");
}

TEST(AnApplicationThatEnds, ClosesItsDocumentsAndNotifiesThePlugins) {
  host::Runtime runtime;
  test::TestPlugin testPlugin(runtime);
  closed.clear();
  {
    host::Application app(runtime);
    TavrelView::RegisterNotification(tavrel::notifyDocDidClose, testPlugin.id, testPlugin.callback(didClose), nullptr);
    app.open(std::make_unique<test::FakeDocument>(1), "a.pdf", 72);
    app.open(std::make_unique<test::FakeDocument>(1), "b.pdf", 72);
  }
  EXPECT_EQ(closed.size(), 2U);
}

// Its memory is overwritten: a call of what was there crashes.
TEST(AnApplicationThatEnds, IsNoLongerNotifiedOfCalls) {
  host::Runtime runtime;
  const test::TestPlugin testPlugin(runtime);
  alignas(host::Application) std::byte memory[sizeof(host::Application)];
  std::destroy_at(new (memory) host::Application(runtime));
  std::fill(std::begin(memory), std::end(memory), std::byte{0});
  EXPECT_EQ(testPlugin.attempt([] {}), 0);
}

TEST(HostTables, AreKnownAtTheirVersions) {
  host::Runtime runtime;
  host::addHostTables(runtime);
  const auto request = [](const char *name, uint32_t version) {
    return Kernel::RequestTable(Kernel::AtomFromString(name), version);
  };
  struct {
    const char *name;
    uint32_t oldest, newest;
    tavrel::HFT entries;
  } const tables[] = {
      {"DocModel", 0x00050000, tavrel::docModelVersion, host::docModelTable()},
      {"TavrelView", 0x00050001, tavrel::tavrelViewVersion, host::viewTable()},
      {"Desktop", 0x00040000, 0x00040000, host::desktopTable()},
  };
  for (const auto &table : tables) {
    EXPECT_EQ(request(table.name, table.oldest - 1), nullptr) << table.name;
    for (uint32_t version = table.oldest; version <= table.newest; ++version)
      EXPECT_EQ(request(table.name, version), table.entries) << table.name << " " << version;
    EXPECT_EQ(request(table.name, table.newest + 1), nullptr) << table.name;
  }
}

TEST(HostTables, WithoutAnApplicationQuestionsAreAnsweredAndTheRestRaises) {
  host::Runtime runtime;
  test::TestPlugin testPlugin(runtime);
  EXPECT_EQ(TavrelView::GetFrontDoc(), nullptr);
  EXPECT_EQ(TavrelView::GetToolBar(), nullptr);
  EXPECT_EQ(TavrelView::GetModifierKeyState(), 0U);
  EXPECT_EQ(TavrelView::HasAuxDataHandler(1), 0);
  EXPECT_EQ(TavrelView::UnregisterAuxDataHandler(testPlugin.id, 1, nullptr), 0);
  EXPECT_EQ(testPlugin.attempt([] { TavrelView::Alert(0, "?", nullptr, nullptr, nullptr, 0); }), tavrel::errGeneric);
}

} // namespace
