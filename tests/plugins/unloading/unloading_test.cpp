// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The highlight plug-in is unloaded together with a plug-in that uses its table until it is unloaded.
#include <gmock/gmock.h>

#include "tests/plugins/Plugins.h"

namespace {

constexpr const char *hits = "<XML>\n<Body Units=\"words\" mode=\"active\">\n<highlights>\n<loc pg=\"1\" pos=\"0\" "
                             "len=\"1\"/>\n</highlights>\n</Body>\n</XML>\n";

// Counts calls of the enabled tests: they request the front document first.
int asked;
tavrel::Entry frontDocument;
tavrel::Doc countAndGiveFront() {
  ++asked;
  return tavrel::functionOf<tavrel::Doc (*)()>(frontDocument)();
}

tavrel::ToolButton buttonNamed(const char *name) {
  return TavrelView::ToolBarFindButton(TavrelView::GetToolBar(), Kernel::AtomFromString(name));
}

// One test, because a plug-in can be loaded into a program only once.
TEST(Unloading, AClientMayUseTheTableInItsUnloadCallbackAndNothingIsCalledAfterTheProvidersUnloadCallback) {
  const test::AwaitedDisplay display;
  const host::TopLevel topLevel;
  const host::WindowSystem windows(topLevel.widget());
  const test::ScratchFolder folder;
  const std::filesystem::path client(UNLOADING_CLIENT);
  std::filesystem::create_symlink(client, folder.path() / "Client.so");
  std::filesystem::create_symlink(std::filesystem::path(TAVREL_PLUGINS) / "TavrelGLT.so",
                                  folder.path() / "TavrelGLT.so");
  test::PluginHost host(folder.path());
  host::ViewerDocument &document = host.app.open(test::fourPages(folder), "test.pdf", 72);
  const tavrel::Atom type = host.runtime.atoms.atom("xml");
  ASSERT_TRUE(host.app.auxData.deliver(type, std::string_view(hits), host.app.documents().handle(&document)));
  const tavrel::ToolButton next = buttonNamed("TavrelGLT:Next");
  ASSERT_NE(next, nullptr);
  frontDocument = gTavrelViewHFT[TavrelView::GetFrontDoc.index];
  gTavrelViewHFT[TavrelView::GetFrontDoc.index] = tavrel::entryOf(countAndGiveFront);

  host.plugins.unload();
  EXPECT_THAT(host.reports, testing::ElementsAre()) << "of the client's unload callback, which shows the buttons";
  EXPECT_EQ(asked, 2) << "the enabled tests of Prev and Next, in the client's unload callback";

  host.app.toolBar()->updateStates();
  host.app.draw(document);
  host.app.close(document);
  EXPECT_EQ(asked, 2) << "after the highlight plug-in has ended";
  EXPECT_EQ(buttonNamed("TavrelGLT:Next"), nullptr);
  EXPECT_THROW(host.app.toolBar()->handles().find(next), host::HostError);
  gTavrelViewHFT[TavrelView::GetFrontDoc.index] = frontDocument;
}

} // namespace
