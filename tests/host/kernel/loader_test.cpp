// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The loader, with small plug-ins that do one thing right or wrong (tests/host/plugins).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <iterator>
#include <stdexcept>

#include "TestPlugin.h"
#include "host/kernel/loader.h"
#include "host/plugins/journal.h"
#include "support/pdf.h"
#include "tavrel/Kernel.h"

namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::vector<std::string> journal;
void note(const char *line) { journal.emplace_back(line); }
tavrel::Entry journalTable[] = {tavrel::entryOf(note)};

// The same, but the initialisation of the test plug-in "provider" fails, after its table has been requested.
tavrel::HFT providersTable;
void noteAndFail(const char *line) {
  note(line);
  if (journal.back() != "provider initialise") return;
  providersTable = Kernel::RequestTable(Kernel::AtomFromString("provider"), 1);
  Kernel::RaiseError(tavrel::errGeneric);
}
tavrel::Entry failingTable[] = {tavrel::entryOf(noteAndFail)};

struct Loader : testing::Test {
  Loader() {
    journal.clear();
    runtime.addTable(test::journalName, test::journalVersion, journalTable);
    runtime.reporter = [this](const std::string &line) { reports.push_back(line); };
  }

  // Puts a test plug-in into the folder, under a name.
  void install(const char *plugin, const std::string &name) const {
    fs::create_symlink(fs::path(TEST_PLUGINS) / (std::string(plugin) + ".so"), folder.path() / name);
  }
  void load() { loader.load({folder.path()}); }
  static tavrel::HFT requestTable(const test::TestPlugin &testPlugin, const char *name) {
    tavrel::HFT table = nullptr;
    testPlugin.attempt([&] { table = Kernel::RequestTable(Kernel::AtomFromString(name), 1); });
    return table;
  }
  std::string reasonOf(size_t index) const { return loader.plugins().at(index).reason; }

  test::ScratchFolder folder;
  std::vector<std::string> reports;
  host::Runtime runtime;
  host::PluginLoader loader{runtime};
};

TEST_F(Loader, TakesEveryPluginThroughAPhaseBeforeTheNextOne) {
  install("second", "b.so");
  install("good", "a.so");
  load();
  loader.unload();
  EXPECT_THAT(journal,
              ElementsAre("good set up", "good handshake", "second set up", "second handshake", "good export",
                          "second export", "good initialise", "second initialise", "second unload", "good unload"));
  EXPECT_THAT(reports, ElementsAre());
}

TEST_F(Loader, KnowsAPluginByItsOwnName) {
  install("good", "a.so");
  load();
  EXPECT_EQ(loader.plugins().at(0).name, "good");
  EXPECT_EQ(loader.plugins().at(0).state, host::PluginState::initialised);
}

TEST_F(Loader, UnloadsOnce) {
  install("good", "a.so");
  load();
  loader.unload();
  journal.clear();
  loader.unload();
  EXPECT_THAT(journal, ElementsAre());
  EXPECT_EQ(loader.plugins().at(0).state, host::PluginState::unloaded);
}

TEST_F(Loader, UnloadsWhenItIsDestroyed) {
  install("good", "a.so");
  {
    host::PluginLoader shortLived(runtime);
    shortLived.load({folder.path()});
    journal.clear();
  }
  EXPECT_THAT(journal, ElementsAre("good unload"));
}

TEST_F(Loader, PrintsWhatEndsTheUnloadingWhenItIsDestroyed) {
  install("raisesunload", "a.so");
  testing::internal::CaptureStderr();
  {
    host::PluginLoader shortLived(runtime);
    shortLived.load({folder.path()});
    runtime.reporter = [](const std::string &) { throw std::runtime_error("nothing can be reported"); };
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tavrel: the plug-ins were not all unloaded: nothing can be reported\n");
}

TEST_F(Loader, CallsNoPluginAfterItIsUnloaded) {
  install("provider", "a.so");
  load();
  const test::TestPlugin testPlugin(runtime);
  const tavrel::HFT table = requestTable(testPlugin, "provider");
  ASSERT_NE(table, nullptr);
  loader.unload();
  journal.clear();

  const host::Plugin &plugin = loader.plugins().at(0);
  for (const tavrel::Callback callback : {plugin.record.exportTables, plugin.record.initialise, plugin.record.unload}) {
    EXPECT_EQ(host::callPlugin({plugin.extension, "a callback"}, tavrel::functionOf<tavrel::LifecycleProc>(callback)),
              0U);
    EXPECT_THROW(runtime.callbacks.owner(callback), host::HostError);
  }
  EXPECT_EQ(requestTable(testPlugin, "provider"), nullptr) << "its provide procedure";
  EXPECT_EQ(testPlugin.attempt([=] { table[0](); }), tavrel::errBadHandle) << "the operation of its table";
  loader.unload();
  EXPECT_THAT(journal, ElementsAre());
}

TEST_F(Loader, EndsTheClientOfATableBeforeItsProvider) {
  install("client", "a.so");
  install("provider", "b.so");
  load();
  journal.clear();
  loader.unload();
  EXPECT_THAT(journal, ElementsAre("client unload", "provider is asked", "provider destroys", "provider unload"));
  EXPECT_THAT(reports, ElementsAre());
}

TEST_F(Loader, ATableOfAPluginThatHasEndedRaises) {
  install("ping", "a.so");
  install("pong", "b.so");
  load();
  journal.clear();
  loader.unload();
  EXPECT_THAT(journal, ElementsAre("pong unload", "ping is asked", "ping destroys", "ping unload"));
  EXPECT_THAT(reports, ElementsAre(HasSubstr("ping: the unload callback failed with error 3"),
                                   HasSubstr("a.so: the unload callback failed")));
  EXPECT_EQ(loader.plugins().at(0).state, host::PluginState::unloaded);
}

TEST_F(Loader, ARaiseInAnUnloadCallbackDoesNotStopTheOthers) {
  install("good", "a.so");
  install("raisesunload", "b.so");
  install("second", "c.so");
  load();
  journal.clear();
  loader.unload();
  EXPECT_THAT(journal, ElementsAre("second unload", "raisesunload unload", "good unload"));
  EXPECT_FALSE(runtime.extensions.active(loader.plugins().at(1).extension));
  EXPECT_THAT(reports, ElementsAre("raisesunload: the unload callback failed with error 1: raised by the plug-in",
                                   HasSubstr("b.so: the unload callback failed")));
}

// Calls the body inside as many calls of the plug-in as the host allows.
template <typename Body> void callAtTheLimit(const test::TestPlugin &testPlugin, Body body, size_t outer = 0) {
  if (outer == host::maxHostFrames) return body();
  testPlugin.attempt([&] { callAtTheLimit(testPlugin, body, outer + 1); });
}

TEST_F(Loader, APluginThatCannotBeCalledAtItsEndIsReportedAndEnds) {
  install("good", "a.so");
  load();
  const test::TestPlugin testPlugin(runtime);
  callAtTheLimit(testPlugin, [this] { loader.unload(); });
  EXPECT_THAT(testPlugin.reports, ElementsAre("plug-in " + (folder.path() / "a.so").string() +
                                              ": plug-ins and host call each other too deeply"));
  EXPECT_EQ(loader.plugins().at(0).state, host::PluginState::unloaded);
}

TEST_F(Loader, AfterTheEndATableOfAPluginThatFailedRaises) {
  runtime.addTable(test::journalName, test::journalVersion, failingTable);
  install("provider", "a.so");
  load();
  ASSERT_NE(providersTable, nullptr);
  loader.unload();
  const test::TestPlugin testPlugin(runtime);
  EXPECT_EQ(testPlugin.attempt([] { providersTable[0](); }), tavrel::errBadHandle);
  EXPECT_THAT(journal, Not(Contains("provider is asked")));
}

TEST_F(Loader, AnEndedPluginsNumberIsRefused) {
  install("good", "a.so");
  load();
  loader.unload();
  const tavrel::ExtensionID ended = loader.plugins().at(0).extension;
  const test::TestPlugin testPlugin(runtime);
  EXPECT_EQ(testPlugin.attempt([=] { Kernel::CreateCallback(ended, journalTable[0]); }), tavrel::errBadHandle);
}

TEST_F(Loader, IgnoresWhatIsNoLibrary) {
  folder.write("readme.txt", "nothing to load");
  load();
  EXPECT_TRUE(loader.plugins().empty());
}

TEST_F(Loader, HasNoPluginsWhereThereIsNoDirectory) {
  loader.load({folder.path() / "nowhere"});
  EXPECT_TRUE(loader.plugins().empty());
  EXPECT_THAT(reports, ElementsAre());
}

struct BadPlugin {
  const char *plugin, *reason;
};

constexpr BadPlugin badPlugins[] = {
    {"refuses", "its entry point failed"},
    {"nomain", "has no entry point `main`"},
    {"otherversion", "has handshake version 0x30000"},
    {"noversion", "has handshake version 0x0"},
    {"nosetup", "its set-up failed"},
    {"nohandshake", "has no handshake callback"},
    {"raises", "the initialisation callback failed"},
    {"unknowncallback", "gave a callback that it did not create"},
};

struct BadPlugins : Loader {
  BadPlugins() {
    for (const BadPlugin &bad : badPlugins)
      install(bad.plugin, std::string("a-") + bad.plugin + ".so");
  }
};

TEST_F(BadPlugins, AreNamedWithTheirReasonsAndOthersStart) {
  install("good", "b.so");
  load();
  EXPECT_EQ(loader.plugins().back().state, host::PluginState::initialised);
  for (const BadPlugin &bad : badPlugins) {
    const fs::path file = folder.path() / (std::string("a-") + bad.plugin + ".so");
    EXPECT_THAT(reports, Contains(HasSubstr("plug-in " + file.string() + ": " + bad.reason)));
  }
}

TEST_F(BadPlugins, AreReportedInOneLineEach) {
  load();
  EXPECT_EQ(reports.size(), std::size(badPlugins));
}

TEST_F(BadPlugins, StayRefused) {
  load();
  for (const host::Plugin &plugin : loader.plugins())
    EXPECT_EQ(plugin.state, host::PluginState::refused) << plugin.file;
}

TEST_F(Loader, KnowsAPluginThatFailsBeforeItsHandshakeByItsFile) {
  install("refuses", "a.so");
  load();
  EXPECT_EQ(loader.plugins().at(0).name, "a.so");
}

TEST_F(Loader, TheErrorOfAPluginIsItsReasonWithoutItsName) {
  install("raises", "a.so");
  load();
  EXPECT_EQ(reasonOf(0), "the initialisation callback failed with error 7: raised by the plug-in");
}

TEST_F(Loader, SaysWhyALibraryCannotBeOpened) {
  folder.write("broken.so", "no library at all");
  load();
  EXPECT_EQ(reports.size(), 1U);
  EXPECT_THAT(reasonOf(0), testing::AnyOf(HasSubstr("file too short"), HasSubstr("invalid ELF header")));
}

TEST_F(Loader, NamesALibraryThatCannotBeOpenedOnce) {
  folder.write("broken.so", "no library at all");
  load();
  EXPECT_THAT(reports, ElementsAre(StartsWith("plug-in " + (folder.path() / "broken.so").string() + ": ")));
  EXPECT_THAT(reasonOf(0), Not(HasSubstr("broken.so")));
}

TEST_F(Loader, RefusesTheSameLibraryASecondTime) {
  install("good", "a.so");
  install("good", "b.so");
  load();
  EXPECT_THAT(reasonOf(1), HasSubstr("is the same library as"));
  EXPECT_EQ(loader.plugins().at(0).state, host::PluginState::initialised);
}

TEST_F(Loader, APluginThatRaisesIsNotCalledAgain) {
  install("raises", "a.so");
  load();
  EXPECT_FALSE(runtime.extensions.active(loader.plugins().at(0).extension));
  loader.unload();
  EXPECT_THAT(journal, Not(Contains("raises unload")));
}

TEST_F(Loader, APluginThatForgetsAFrameKeepsRunning) {
  install("forgets", "a.so");
  load();
  EXPECT_EQ(loader.plugins().at(0).state, host::PluginState::initialised);
  EXPECT_EQ(runtime.frames.depth(), 0U);
  EXPECT_THAT(reports, ElementsAre("forgets: the initialisation callback left 1 exception frames open"));
}

// Sets variables of the environment until it is destroyed.
class Variables {
public:
  Variables(const char *home, const char *pluginPath) {
    setenv("HOME", home, 1);
    setenv("TAVREL_PLUGIN_PATH", pluginPath, 1);
  }
  ~Variables() {
    setenv("HOME", home_.c_str(), 1);
    unsetenv("TAVREL_PLUGIN_PATH");
  }
  Variables(const Variables &) = delete;
  Variables &operator=(const Variables &) = delete;

private:
  const std::string home_ = std::getenv("HOME") == nullptr ? "" : std::getenv("HOME");
};

// The system's plug-ins for this very program.
fs::path systems() { return host::systemPluginDirectory(fs::read_symlink("/proc/self/exe")); }

TEST(PluginDirectories, AreTheOneGivenThenTheEnvironmentsTheUsersAndTheSystems) {
  const Variables variables("/home/reader", "/one::/two");
  EXPECT_THAT(host::pluginDirectories("/given"),
              ElementsAre(fs::path("/given"), fs::path("/one"), fs::path("/two"),
                          fs::path("/home/reader/.local/lib/tavrel/plugins"), systems()));
}

TEST(PluginDirectories, AreTheSystemsAloneWithoutOthers) {
  const Variables variables("", "");
  EXPECT_THAT(host::pluginDirectories(""), ElementsAre(systems()));
}

TEST(PluginDirectories, AHomeThatIsNoAbsolutePathHasNone) {
  const Variables variables("home", "");
  EXPECT_THAT(host::pluginDirectories(""), ElementsAre(systems()));
}

TEST(PluginDirectories, TheSystemsMovesWithTheProgram) {
  const fs::path prefix = "/opt/elsewhere";
  EXPECT_EQ(host::systemPluginDirectory(prefix / TAVREL_BINDIR / "tavrel"), prefix / TAVREL_LIBDIR / "tavrel/plugins");
}

TEST(PluginDirectories, TheSystemsIsTheConfiguredOneWhereTheProgramsPathIsNotKnown) {
  EXPECT_EQ(host::systemPluginDirectory(""), fs::path(TAVREL_INSTALLED_PLUGINS));
  EXPECT_TRUE(host::systemPluginDirectory("").is_absolute());
}

TEST_F(Loader, LoadsInOrderOfFileNamesWhateverTheirDirectories) {
  const test::ScratchFolder other;
  install("good", "b.so");
  fs::create_symlink(fs::path(TEST_PLUGINS) / "second.so", other.path() / "a.so");
  loader.load({folder.path(), other.path()});
  ASSERT_EQ(loader.plugins().size(), 2U);
  EXPECT_EQ(loader.plugins()[0].name, "second");
}

TEST_F(Loader, OfOneNameTheFirstDirectorysCounts) {
  const test::ScratchFolder other;
  install("good", "a.so");
  fs::create_symlink(fs::path(TEST_PLUGINS) / "second.so", other.path() / "a.so");
  loader.load({folder.path(), other.path()});
  ASSERT_EQ(loader.plugins().size(), 1U);
  EXPECT_EQ(loader.plugins()[0].name, "good");
}

TEST_F(Loader, ReadsTheVersionThatALibraryCarries) {
  install("second", "a.so");
  install("good", "b.so");
  load();
  EXPECT_EQ(loader.plugins().at(0).version, "1.2.3");
  EXPECT_EQ(loader.plugins().at(1).version, "");
}

TEST_F(Loader, FindsTheVersionAmongOtherNotes) {
  install("notes", "a.so");
  load();
  EXPECT_EQ(loader.plugins().at(0).version, "a version of 31 characters.....");
}

TEST_F(Loader, ReadsNoVersionThatIsLongerThanTheNotes) {
  install("brokennote", "a.so");
  load();
  EXPECT_EQ(loader.plugins().at(0).version, "");
  EXPECT_EQ(loader.plugins().at(0).state, host::PluginState::initialised);
}

} // namespace
